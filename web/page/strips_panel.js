// @ts-check
// The strips of the surfaces side by side: all of them where there is room, otherwise a part of them at a time.
import { strips, stripsPerSurface } from "./commands.js";
import { make } from "./dom.js";
import { StripView } from "./strip_view.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

const narrowest = 46; // a strip's width that a finger still hits
const lowest = 560; // below this height keys stand beside the fader, which takes twice the width

export class StripsPanel {
    element = make("div", { class: "strips" });
    /** Called when the number of pages has changed. */
    onPages = () => {};
    #link;
    #views;
    #page = 0;
    #perPage = strips;
    #room = { width: 0, height: 0 };

    /** @param {Link} link @param {Grips} grips @param {ModeSheet} sheet */
    constructor(link, grips, sheet) {
        this.#link = link;
        this.#views = Array.from({ length: strips }, (_, strip) => new StripView(link, grips, sheet, strip));
        for (const { element } of this.#views) element.hidden = true; // until it is known how many there is room for
        this.element.append(...this.#views.map((view) => view.element));
        new ResizeObserver(([entry]) => {
            if (entry.contentRect.width === 0) return; // another view is shown
            this.#room = entry.contentRect;
            this.#arrange();
        }).observe(this.element);
    }

    get pages() {
        return Math.ceil(this.#link.picture.shown / this.#perPage);
    }

    turnPage() {
        this.#page = (this.#page + 1) % this.pages;
        this.#arrange();
        this.update();
    }

    /** The shown part of the strips, as "1–8". */
    get pageText() {
        const last = Math.min((this.#page + 1) * this.#perPage, this.#link.picture.shown);
        return `${this.#page * this.#perPage + 1}–${last}`;
    }

    update() {
        if (this.#shown !== this.#link.picture.shown) this.#arrange();
        for (const view of this.#visible) view.update();
    }

    updateMeters() {
        if (this.element.hidden) return;
        for (const view of this.#visible) view.meter.update();
    }

    #shown = 0;
    /** @type {StripView[]} */
    #visible = [];

    #arrange() {
        this.#shown = this.#link.picture.shown;
        const isLow = this.#room.height < lowest;
        const columns = Math.floor(this.#room.width / (isLow ? 2 * narrowest : narrowest));
        this.#perPage = columns >= this.#shown ? this.#shown : Math.min(stripsPerSurface, this.#shown);
        this.#page = Math.min(this.#page, this.pages - 1);
        const first = this.#page * this.#perPage;
        this.#visible = this.#views.slice(first, Math.min(first + this.#perPage, this.#shown));
        const isWide = this.#room.width / this.#visible.length >= 2 * narrowest;
        this.element.toggleAttribute("data-wide", isWide || isLow);
        for (const view of this.#views) view.element.hidden = !this.#visible.includes(view);
        this.onPages();
    }
}
