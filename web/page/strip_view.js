// @ts-check
// One channel strip.
import { inputMonitorToggle, mutePress, recordPress, selectPress, setAutoMode, soloPress } from "./commands.js";
import { modeKind, modeName, shortMode } from "./auto_modes.js";
import { button, make, onPress, setAttribute, setStyle, setText } from "./dom.js";
import { FaderView } from "./fader_view.js";
import { MeterView } from "./meter_view.js";
import { PanView } from "./pan_view.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

const lightNames = ["off", "on", "blinking"];

export class StripView {
    #name = make("span", { class: "title" });
    #select = make("button", { type: "button", class: "name" }, make("span", { class: "color" }), this.#name);
    #mode = button("", "", "mode");
    #keys = {
        monitor: button("", "I", "key monitor"),
        record: button("", "R", "key record"),
        solo: button("", "S", "key solo"),
        mute: button("", "M", "key mute"),
    };
    #link;
    #strip;

    /** @param {Link} link @param {Grips} grips @param {ModeSheet} sheet @param {number} strip */
    constructor(link, grips, sheet, strip) {
        this.#link = link;
        this.#strip = strip;
        setAttribute(this.#mode, "data-caption", "AUTO");
        this.fader = new FaderView(grips, strip);
        this.meter = new MeterView(link, strip);
        this.pan = new PanView(link, strip);
        const { monitor, record, solo, mute } = this.#keys;
        this.element = make(
            "section",
            { class: "strip", role: "group", "data-empty": "" },
            this.#select,
            this.pan.element,
            make("div", { class: "keys" }, this.#mode, monitor, record, solo, mute),
            make("div", { class: "well" }, this.fader.element, this.meter.element),
            this.fader.level,
        );
        /** @type {[HTMLElement, (strip: number) => Uint8Array][]} */
        const presses = [
            [this.#select, selectPress],
            [monitor, inputMonitorToggle],
            [record, recordPress],
            [solo, soloPress],
            [mute, mutePress],
        ];
        for (const [key, command] of presses) onPress(key, () => link.command(command(strip)));
        onPress(this.#mode, () => this.#askMode(sheet));
    }

    update() {
        const { picture } = this.#link;
        const strip = picture.strips[this.#strip];
        const title = strip.title || say("strip", this.#strip + 1);
        setText(this.#name, strip.title);
        setStyle(this.element, "--track", strip.color ?? "transparent");
        setAttribute(this.element, "aria-label", title);
        this.element.toggleAttribute("data-empty", strip.title === "");
        this.#show(this.#select, "select", title, Number(strip.select));
        this.#show(this.#keys.monitor, "monitor", title, Number(strip.inputMonitor));
        this.#show(this.#keys.record, "record", title, strip.lights.record);
        this.#show(this.#keys.solo, "solo", title, strip.lights.solo);
        this.#show(this.#keys.mute, "mute", title, strip.lights.mute);
        setText(this.#mode, shortMode(strip.mode));
        setAttribute(this.#mode, "data-mode", modeKind(strip.mode));
        setAttribute(this.#mode, "aria-label", say("mode", title, modeName(strip.mode), shortMode(strip.mode)));
        this.pan.update(title);
        this.fader.update(title, strip.title !== "");
    }

    /** @param {HTMLElement} key @param {string} name @param {string} title @param {number} light */
    #show(key, name, title, light) {
        setAttribute(key, "aria-label", say(name, title));
        setAttribute(key, "aria-pressed", light !== 0);
        setAttribute(key, "data-light", lightNames[light] ?? "on");
    }

    /** @param {ModeSheet} sheet */
    #askMode(sheet) {
        const strip = this.#link.picture.strips[this.#strip];
        const track = this.#link.picture.trackOn(this.#strip);
        sheet.ask(strip.title, strip.mode, (key) => {
            const isStillThere = this.#link.picture.trackOn(this.#strip) === track;
            if (isStillThere) this.#link.command(setAutoMode(this.#strip, key));
        });
    }
}
