// @ts-check
// One side of a strip's pan: a line with eleven places, as the ring around a V-Pot. A drag or key asks for a place; the
// line shows where Pro Tools has it. V-Pots turn one side at a time: touching the other one asks for that side first.
import { panModeToggle, panSeek, ringCentre, ringRight } from "./commands.js";
import { make, setAttribute, setStyle } from "./dom.js";
import { dragging } from "./drag.js";
import { sliderKeys } from "./slider_keys.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {{position: number, centre: boolean}} Ring */

const wholeWay = 0.5; // drags of a whole line would need two hands on a narrow strip: this part of it is enough
const places = ringRight - 1;

/** @param {Ring} ring */
export const panText = ({ position, centre }) =>
    position === 0 ? say("unknown") : centre ? say("centre") : String(position - ringCentre);

export class PanView {
    #dot = make("div", { class: "dot" });
    #link;
    #strip;
    #side;
    /** @type {number | null} */
    #wish = null;
    #place = 0;

    /** @param {Link} link @param {number} strip @param {0 | 1} side */
    constructor(link, strip, side) {
        this.#link = link;
        this.#strip = strip;
        this.#side = side;
        this.element = make(
            "div",
            { class: "pan", role: "slider", tabindex: "0", "aria-valuemin": "1", "aria-valuemax": String(ringRight) },
            make("div", { class: "line" }, this.#dot),
        );
        dragging(this.element, {
            towards: "right",
            begin: () => this.#begin(),
            by: (part) => this.#ask(this.#place + (part / wholeWay) * places),
            end: () => (this.#wish = null),
            twice: () => this.#begin() && this.#ask(ringCentre),
        });
        sliderKeys(this.element, {
            step: (steps) => this.#begin() && this.#ask(this.#place + Math.sign(steps) * Math.min(Math.abs(steps), 3)),
            toEnd: (top) => this.#begin() && this.#ask(top ? ringRight : 1),
            reset: () => this.#begin() && this.#ask(ringCentre),
        });
    }

    /** @param {string} title */
    update(title) {
        const { position, centre } = this.#ring;
        setStyle(this.#dot, "left", `${(100 * (Math.max(position, 1) - 1)) / places}%`);
        setAttribute(this.element, "aria-label", say(this.#side === 0 ? "panLeft" : "panRight", title));
        setAttribute(this.element, "aria-valuenow", position || ringCentre);
        setAttribute(this.element, "aria-valuetext", panText({ position, centre }));
        this.element.toggleAttribute("data-dark", position === 0);
        this.element.toggleAttribute("data-centre", centre);
        this.element.toggleAttribute("data-turned", this.#isTurned);
    }

    /** @returns {Ring} */
    get #ring() {
        const strip = this.#link.picture.strips[this.#strip];
        return this.#side === 0 ? strip.left : strip.right;
    }

    get #isTurned() {
        return this.#link.picture.panSide === this.#side;
    }

    #begin() {
        if (this.#link.inControl && !this.#isTurned) this.#link.command(panModeToggle());
        if (!this.#link.inControl || !this.#isTurned || this.#ring.position === 0) return false;
        this.#place = this.#ring.position;
        return true;
    }

    /** @param {number} place */
    #ask(place) {
        this.#place = Math.min(Math.max(place, 1), ringRight);
        const wish = Math.round(this.#place);
        if (wish === this.#wish) return;
        this.#wish = wish;
        this.#link.command(panSeek(this.#strip, wish));
    }
}
