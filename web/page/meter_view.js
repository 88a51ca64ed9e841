// @ts-check
// A strip's two meters, with the highest level of the last while. A cover hides what is above the level, so that
// drawing one is a transform and no layout.
import { make, setStyle } from "./dom.js";

/** @typedef {import("./link.js").Link} Link */

const clip = 12;
const peakTime = 1500;
const clipTime = 3000; // long enough to be seen by eyes that were elsewhere

class Side {
    #cover = make("div", { class: "cover" });
    #peak = make("div", { class: "peak" });
    element = make("div", { class: "bar" }, this.#cover, this.#peak);
    #highest = 0;
    #highestAt = 0;

    /** @param {number} level @param {number} now */
    update(level, now) {
        if (level >= this.#highest || now - this.#highestAt > peakTime) {
            this.#highest = level;
            this.#highestAt = now;
        }
        setStyle(this.#cover, "transform", `scaleY(${1 - level / clip})`);
        setStyle(this.#peak, "transform", `translateY(${100 * (1 - this.#highest / clip)}%)`);
        setStyle(this.#peak, "visibility", this.#highest > 0 ? "visible" : "hidden");
    }
}

export class MeterView {
    #sides = [new Side(), new Side()];
    #link;
    #strip;
    #clippedAt = -Infinity;

    /** @param {Link} link @param {number} strip */
    constructor(link, strip) {
        this.#link = link;
        this.#strip = strip;
        this.element = make("div", { class: "meter", "aria-hidden": "true" }, ...this.#sides.map((it) => it.element));
    }

    /** Also while no levels come: peaks fall. @param {number} now */
    update(now) {
        const levels = this.#link.picture.meters.subarray(2 * this.#strip);
        this.#sides.forEach((side, i) => side.update(levels[i], now));
        if (Math.max(levels[0], levels[1]) >= clip) this.#clippedAt = now;
        this.element.toggleAttribute("data-clip", now - this.#clippedAt < clipTime);
    }
}
