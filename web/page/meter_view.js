// @ts-check
// A strip's two meters: a cover that hides what is above the level, so that drawing one is a transform and no layout.
import { make, setStyle } from "./dom.js";

/** @typedef {import("./link.js").Link} Link */

const clip = 12;

export class MeterView {
    #covers = [make("div", { class: "cover" }), make("div", { class: "cover" })];
    #link;
    #strip;

    /** @param {Link} link @param {number} strip */
    constructor(link, strip) {
        this.#link = link;
        this.#strip = strip;
        const bars = this.#covers.map((cover) => make("div", { class: "bar" }, cover));
        this.element = make("div", { class: "meter", "aria-hidden": "true" }, ...bars);
    }

    update() {
        const levels = this.#link.picture.meters.subarray(2 * this.#strip);
        this.#covers.forEach((cover, side) => setStyle(cover, "transform", `scaleY(${1 - levels[side] / clip})`));
        this.element.toggleAttribute("data-clip", Math.max(levels[0], levels[1]) >= clip);
    }
}
