// @ts-check
// The strips of the surfaces side by side: all of them where there is room, otherwise a part of them at a time.
import { strips, stripsPerSurface } from "./commands.js";
import { make } from "./dom.js";
import { StripView } from "./strip_view.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

/**
 * Where the keys stand, by the room that a strip has. The fader has to stay long enough to be of use. From the width
 * `scale` on there is room for a large scale.
 * @type {{keys: string, width: number, height: number, scale: number}[]}
 */
const layouts = [
    { keys: "above", width: 46, height: 560, scale: 66 },
    { keys: "beside", width: 76, height: 280, scale: 114 },
    { keys: "pairs", width: 128, height: 0, scale: 160 },
];
const roomy = 110; // a strip of this width looks best with its keys beside the fader
const fewest = 4;

export class StripsPanel {
    element = make("div", { class: "strips" });
    /** Called when the number of pages has changed. */
    onPages = () => {};
    #link;
    /** Those that there was room for so far. @type {StripView[]} */
    #views = [];
    #newView;
    #page = 0;
    #perPage = strips;
    #room = { width: 0, height: 0 };

    /** @param {Link} link @param {Grips} grips @param {ModeSheet} sheet */
    constructor(link, grips, sheet) {
        this.#link = link;
        this.#newView = (/** @type {number} */ strip) => new StripView(link, grips, sheet, strip);
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
        const now = performance.now();
        for (const view of this.#visible) view.meter.update(now);
    }

    #shown = 0;
    /** @type {StripView[]} */
    #visible = [];

    #arrange() {
        if (this.#room.width === 0) return;
        this.#shown = this.#link.picture.shown;
        const firstBefore = this.#page * this.#perPage;
        this.#perPage = this.#mostPerPage;
        this.#page = Math.min(Math.floor(firstBefore / this.#perPage), this.pages - 1);
        const first = this.#page * this.#perPage;
        const last = Math.min(first + this.#perPage, this.#shown);
        while (this.#views.length < last) {
            const view = this.#newView(this.#views.length);
            this.#views.push(view);
            this.element.append(view.element);
        }
        this.#visible = this.#views.slice(first, last);
        const layout = this.#layoutOf(last - first) ?? layouts[layouts.length - 1];
        this.element.dataset.keys = layout.keys;
        this.element.toggleAttribute("data-roomy", this.#room.width / (last - first) >= layout.scale);
        for (const view of this.#views) view.element.hidden = !this.#visible.includes(view);
        this.onPages();
    }

    /** All strips, or a half or quarter of them: as many as have room. */
    get #mostPerPage() {
        const { shown } = this.#link.picture;
        const counts = [shown, stripsPerSurface, fewest].filter((count) => count <= shown);
        return counts.find((count) => this.#layoutOf(count)) ?? Math.min(fewest, shown);
    }

    /** @param {number} count of strips */
    #layoutOf(count) {
        const width = this.#room.width / count;
        const fitting = layouts.filter((layout) => width >= layout.width && this.#room.height >= layout.height);
        return (width >= roomy && fitting.find(({ keys }) => keys === "beside")) || fitting[0];
    }
}
