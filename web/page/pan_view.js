// @ts-check
// A strip's pan: a line with eleven places, as the ring around a V-Pot, with a mark for each side. A drag or key asks
// for a place; the line shows where Pro Tools has it. V-Pots turn one side at a time, and so does a finger. A track
// that has only the other side shows that one, and touching it asks for that side first.
import { panModeToggle, panSeek, ringCentre, ringRight } from "./commands.js";
import { make, setAttribute, setStyle, setText } from "./dom.js";
import { dragging } from "./drag.js";
import { sliderKeys } from "./slider_keys.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {{position: number, centre: boolean}} Ring */

const wholeWay = 0.5; // drags of a whole line would need two hands on a narrow strip: this part of it is enough
const places = ringRight - 1;
const sideNames = ["panLeft", "panRight"];

/** @param {Ring} ring */
export const panText = ({ position, centre }) =>
    position === 0 ? say("unknown") : centre ? say("centre") : String(position - ringCentre);

/** @param {number} position of a ring */
const placeOf = (position) => `${(100 * (Math.max(position, 1) - 1)) / places}%`;

export class PanView {
    #dot = make("div", { class: "dot" });
    #other = make("div", { class: "dot other" });
    #sideName = make("span", { class: "side", "aria-hidden": "true" });
    #link;
    #strip;
    /** @type {number | null} */
    #wish = null;
    #place = 0;

    /** @param {Link} link @param {number} strip */
    constructor(link, strip) {
        this.#link = link;
        this.#strip = strip;
        this.element = make(
            "div",
            { class: "pan", role: "slider", tabindex: "0", "aria-valuemin": "1", "aria-valuemax": String(ringRight) },
            this.#sideName,
            make("div", { class: "line" }, this.#other, this.#dot),
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
        const [left, right] = this.#rings;
        const side = this.#side;
        const [{ position, centre }, other] = side === 0 ? [left, right] : [right, left];
        const isStereo = left.position > 0 && right.position > 0;
        setStyle(this.#dot, "left", placeOf(position));
        setStyle(this.#other, "left", placeOf(other.position));
        setText(this.#sideName, isStereo ? "LR"[side] : "");
        setAttribute(this.element, "aria-label", say(isStereo ? sideNames[side] : "panOf", title));
        setAttribute(this.element, "aria-valuenow", position || ringCentre);
        setAttribute(this.element, "aria-valuetext", panText({ position, centre }));
        this.element.toggleAttribute("data-dark", position === 0);
        this.element.toggleAttribute("data-stereo", isStereo);
        this.element.toggleAttribute("data-centre", centre);
    }

    /** @returns {[left: Ring, right: Ring]} */
    get #rings() {
        const { left, right } = this.#link.picture.strips[this.#strip];
        return [left, right];
    }

    /** The side that is shown: the one that V-Pots turn, unless the track has only the other. */
    get #side() {
        const turned = this.#link.picture.panSide === 0 ? 0 : 1;
        const isOnlyOther = this.#rings[turned].position === 0 && this.#rings[1 - turned].position > 0;
        return isOnlyOther ? 1 - turned : turned;
    }

    #begin() {
        if (!this.#link.inControl) return false;
        const side = this.#side;
        const isTurned = side === this.#link.picture.panSide;
        if (!isTurned) this.#link.command(panModeToggle());
        this.#place = this.#rings[side].position;
        return isTurned && this.#place > 0;
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
