// @ts-check
// A strip's fader: drawn where the hand or the receiver has it, moved by a finger or by keys.
import { faderTop } from "./commands.js";
import { make, setAttribute, setStyle, setText } from "./dom.js";
import { dragging } from "./drag.js";
import { decibelText, printedMarks, unity } from "./fader_scale.js";
import { sliderKeys } from "./slider_keys.js";
import { say } from "./words.js";

/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./grips.js").Grip} Grip */

const keyStep = faderTop / 128;
const keyRest = 400; // a key that is not pressed again for so long has let go

export class FaderView {
    /** @type {Grip | null} */
    #grip = null;
    /** The exact place of a finger; what is sent is whole. */
    #place = 0;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #keysRest;
    #cap = make("div", { class: "cap" });
    #carriage = make("div", { class: "carriage" }, this.#cap);
    #grips;
    #strip;

    /** @param {Grips} grips @param {number} strip */
    constructor(grips, strip) {
        this.#grips = grips;
        this.#strip = strip;
        this.level = make("div", { class: "level", "aria-hidden": "true" });
        this.element = make(
            "div",
            {
                class: "fader",
                role: "slider",
                tabindex: "0",
                "aria-orientation": "vertical",
                "aria-valuemin": "0",
                "aria-valuemax": String(faderTop),
            },
            make("div", { class: "marks", "aria-hidden": "true" }, ...printedMarks.map(mark)),
            make("div", { class: "groove" }),
            make("div", { class: "travel" }, this.#carriage),
        );
        dragging(this.element, {
            towards: "up",
            begin: () => this.#begin(),
            by: (part) => this.#moveTo(this.#place + part * faderTop),
            end: () => this.#end(),
            twice: () => this.#jump(unity),
        });
        sliderKeys(this.element, {
            step: (steps) => this.#byKey((place) => place + steps * keyStep),
            toEnd: (top) => this.#byKey(() => (top ? faderTop : 0)),
            reset: () => this.#byKey(() => unity),
        });
    }

    /** @param {string} title of the track @param {boolean} isUsed whether the strip has a track */
    update(title, isUsed) {
        const value = this.#grips.valueOf(this.#strip);
        const text = isUsed ? decibelText(value) : "";
        setStyle(this.#carriage, "transform", `translateY(${(-100 * value) / faderTop}%)`);
        setText(this.level, text);
        setAttribute(this.element, "aria-label", say("fader", title));
        setAttribute(this.element, "aria-valuenow", value);
        setAttribute(this.element, "aria-valuetext", text + " dB");
        this.element.toggleAttribute("data-held", this.#grips.holds(this.#strip));
    }

    #begin() {
        this.#endKeys();
        this.#grip = this.#grips.take(this.#strip);
        this.#place = this.#grip?.value ?? 0;
        return this.#grip !== null;
    }

    /** @param {number} place */
    #moveTo(place) {
        this.#place = Math.min(Math.max(place, 0), faderTop);
        this.#grip?.move(Math.round(this.#place));
    }

    #end() {
        this.#grip?.release();
        this.#grip = null;
    }

    /** @param {number} place */
    #jump(place) {
        if (!this.#begin()) return;
        this.#moveTo(place);
        this.#end();
    }

    /** @param {(place: number) => number} target */
    #byKey(target) {
        if (!this.#grip?.isHeld && !this.#begin()) return;
        this.#moveTo(target(this.#place));
        clearTimeout(this.#keysRest);
        this.#keysRest = setTimeout(() => this.#endKeys(), keyRest);
    }

    #endKeys() {
        if (this.#keysRest === undefined) return;
        clearTimeout(this.#keysRest);
        this.#keysRest = undefined;
        this.#end();
    }
}

/** @param {[position: number, decibels: number]} mark */
function mark([position, decibels]) {
    const kind = decibels > 0 ? "mark above" : decibels === 0 ? "mark unity" : "mark";
    const line = make("span", { class: kind }, String(Math.abs(decibels)));
    line.style.setProperty("bottom", `${(100 * position) / faderTop}%`);
    return line;
}
