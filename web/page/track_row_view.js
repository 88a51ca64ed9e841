// @ts-check
// A row of the session list: one track, whether a strip shows it or not.
import { modeKind, modeName, shortMode } from "./auto_modes.js";
import {
    faderTop,
    groupAutoMode,
    groupMute,
    groupSolo,
    inputMonitorToggle,
    recordPress,
    ringCentre,
} from "./commands.js";
import { button, make, setAttribute, setStyle, setText } from "./dom.js";
import { dragging } from "./drag.js";
import { decibelText, unity } from "./fader_scale.js";
import { panText } from "./pan_view.js";
import { sliderKeys } from "./slider_keys.js";
import { TrackMove } from "./track_move.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

export const rowHeight = 56;
const loudest = 12;
const panStep = 5; // pixels

export class TrackRowView {
    /** @type {(index: number) => void} */
    onJump = () => {};
    /** @type {(index: number) => void} */
    onMember = () => {};
    /** A key was pressed that works on the strips' tracks alone. */
    onOffStrips = () => {};
    #color = make("span", { class: "color" });
    #tick = button("", "", "tick");
    #title = make("span", { class: "title" });
    #comment = make("span", { class: "comment" });
    #armed = make("span", { class: "armed", role: "img" }, "R");
    #monitored = make("span", { class: "monitored", role: "img" }, "I");
    #detail = make("span", { class: "detail" }, this.#armed, this.#monitored, this.#comment);
    #name = make(
        "button",
        { type: "button", class: "jump", "aria-description": say("jump") },
        this.#title,
        this.#detail,
    );
    #mode = button("", "", "mode");
    #dot = make("div", { class: "dot" });
    #pan = make("span", { class: "row-pan", role: "img" }, make("div", { class: "line" }, this.#dot));
    #monitor = button("", "I", "key monitor");
    #record = button("", "R", "key record");
    #solo = button("", "S", "key solo");
    #mute = button("", "M", "key mute");
    #fill = make("div", { class: "fill" });
    #meter = make("div", { class: "row-meter" });
    #level = make("span", { class: "level" });
    #fader = make(
        "div",
        { class: "row-fader", role: "slider", tabindex: "0", "aria-valuemin": "0", "aria-valuemax": String(faderTop) },
        this.#fill,
        this.#meter,
        this.#level,
    );
    element = make(
        "div",
        { class: "row", role: "listitem" },
        this.#color,
        this.#tick,
        this.#mode,
        this.#name,
        this.#pan,
        this.#monitor,
        this.#record,
        this.#solo,
        this.#mute,
        this.#fader,
    );
    #index = 0;
    /** What the row shows now. @type {unknown[]} */
    #drawn = [];
    /** @type {TrackMove | null} */
    #move = null;
    #place = 0;
    #link;

    /** @param {Link} link @param {Grips} grips @param {ModeSheet} sheet */
    constructor(link, grips, sheet) {
        this.#link = link;
        this.#mode.addEventListener("click", () => this.#askMode(sheet));
        this.#name.addEventListener("click", () => this.onJump(this.#index));
        this.#tick.addEventListener("click", () => this.onMember(this.#index));
        this.#mute.addEventListener("click", () => link.command(groupMute(!this.#isLit("mute"), [this.#index])));
        this.#solo.addEventListener("click", () => link.command(groupSolo(!this.#isLit("solo"), [this.#index])));
        this.#pan.addEventListener("click", () => this.onOffStrips()); // it shows only: V-Pots turn those of strips
        this.#monitor.addEventListener("click", () => this.#pressOnStrip(inputMonitorToggle));
        this.#record.addEventListener("click", () => this.#pressOnStrip(recordPress));
        dragging(this.#fader, {
            towards: "right",
            slack: 8, // a finger that scrolls the list touches no fader on its way
            begin: () => this.#begin(grips),
            by: (part) => this.#moveTo(this.#place + part * faderTop),
            end: () => this.#end(),
            twice: () => this.#once(grips, () => unity),
        });
        sliderKeys(this.#fader, {
            step: (steps) => this.#once(grips, (place) => place + (steps * faderTop) / 128),
            toEnd: (top) => this.#once(grips, () => (top ? faderTop : 0)),
            reset: () => this.#once(grips, () => unity),
        });
    }

    /** A finger is on it: it must not become another track's row. */
    get isHeld() {
        return this.#move !== null;
    }

    /** @param {number} place among the matches @param {number} of */
    standAt(place, of) {
        setStyle(this.element, "transform", `translateY(${place * rowHeight}px)`);
        setAttribute(this.element, "aria-posinset", place + 1);
        setAttribute(this.element, "aria-setsize", of);
    }

    /** @param {number} index @param {boolean} isMember @param {string} group */
    update(index, isMember, group) {
        this.#index = index;
        const { picture } = this.#link;
        const track = picture.tracks[index];
        const fader = this.#move ? Math.round(this.#place) : picture.faderOf(index);
        const [isMute, isSolo, isShown] = [this.#isLit("mute"), this.#isLit("solo"), picture.stripOf(index) !== null];
        const pan = picture.panOf(index);
        const strip = picture.strips[picture.stripOf(index) ?? -1];
        const isArmed = strip ? strip.lights.record > 0 : (track?.row?.record ?? false);
        const isMonitored = (strip ?? track?.row)?.inputMonitor ?? false;
        const isSelected = (strip ?? track?.row)?.select ?? false;
        const lights = [isMute, isSolo, isArmed, isMonitored, isSelected, isShown, isMember, this.isHeld];
        const facts = [index, group, track?.row, track?.mode, fader, pan, ...lights];
        if (facts.every((fact, i) => fact === this.#drawn[i])) return;
        this.#drawn = facts;

        const row = track?.row;
        const title = row?.name ?? "";
        const mode = track?.mode ?? 0;
        setAttribute(this.#mode, "data-caption", index + 1);
        setText(this.#title, title);
        setText(this.#comment, row?.comment ?? "");
        setText(this.#mode, shortMode(mode));
        setAttribute(this.#mode, "data-mode", modeKind(mode));
        setAttribute(this.#mode, "aria-label", say("mode", title, modeName(mode), shortMode(mode)));
        this.#showPan(title, pan);
        setStyle(this.#color, "background", row?.color ?? "transparent");
        setAttribute(this.#tick, "aria-label", say("member", title, group));
        setAttribute(this.#tick, "aria-pressed", isMember);
        setText(this.#tick, isMember ? group : "");
        this.#show(this.#mute, say("mute", title), isMute);
        this.#show(this.#solo, say("solo", title), isSolo);
        this.#showStripKey(this.#record, "record", title, isArmed, isShown);
        this.#showStripKey(this.#monitor, "monitor", title, isMonitored, isShown);
        this.#detail.hidden = !isArmed && !isMonitored && !row?.comment;
        this.#armed.hidden = !isArmed;
        this.#monitored.hidden = !isMonitored;
        setAttribute(this.#armed, "aria-label", say("record", title));
        setAttribute(this.#monitored, "aria-label", say("monitor", title));
        this.element.toggleAttribute("data-selected", isSelected);
        this.element.toggleAttribute("data-shown", isShown);
        this.#showFader(title);
    }

    /** The louder side; tracks on no strip have none. */
    updateMeter() {
        const { picture } = this.#link;
        const strip = picture.stripOf(this.#index);
        const level = strip === null ? 0 : Math.max(picture.meters[2 * strip], picture.meters[2 * strip + 1]);
        setStyle(this.#meter, "transform", `scaleX(${level / loudest})`);
    }

    /** @param {"mute" | "solo"} light */
    #isLit(light) {
        return this.#link.picture.isLit(this.#index, light);
    }

    /** @param {(strip: number) => Uint8Array} command */
    #pressOnStrip(command) {
        const strip = this.#link.picture.stripOf(this.#index);
        if (strip === null) this.onOffStrips();
        else this.#link.command(command(strip));
    }

    /**
     * A key that surfaces alone have, so that it works on the tracks of strips.
     * @param {HTMLElement} key @param {string} name @param {string} title @param {boolean} isOn
     * @param {boolean} works
     */
    #showStripKey(key, name, title, isOn, works) {
        this.#show(key, say(name, title), isOn);
        setAttribute(key, "aria-disabled", !works);
        setAttribute(key, "aria-description", works ? "" : say("onStripsOnly"));
    }

    /** @param {string} title @param {{position: number, centre: boolean} | null} pan */
    #showPan(title, pan) {
        setStyle(this.#dot, "transform", `translateX(${((pan?.position || ringCentre) - ringCentre) * panStep}px)`);
        setAttribute(this.#pan, "aria-label", say("pan", title, pan ? panText(pan) : say("unknown")));
        this.#pan.toggleAttribute("data-dark", !pan?.position);
        this.#pan.toggleAttribute("data-centre", pan?.centre ?? false);
    }

    /** @param {ModeSheet} sheet */
    #askMode(sheet) {
        const index = this.#index;
        const track = this.#link.picture.tracks[index];
        sheet.ask(track?.row?.name ?? "", track?.mode ?? 0, (key) => this.#link.command(groupAutoMode(key, [index])));
    }

    /** @param {HTMLElement} key @param {string} label @param {boolean} isOn */
    #show(key, label, isOn) {
        setAttribute(key, "aria-label", label);
        setAttribute(key, "aria-pressed", isOn);
        setAttribute(key, "data-light", isOn ? "on" : "off");
    }

    /** @param {string} title */
    #showFader(title) {
        const value = this.#move ? Math.round(this.#place) : this.#link.picture.faderOf(this.#index);
        const text = value === null ? "?" : decibelText(value);
        setStyle(this.#fill, "transform", `scaleX(${(value ?? 0) / faderTop})`);
        setText(this.#level, text);
        setAttribute(this.#fader, "aria-label", say("fader", title));
        setAttribute(this.#fader, "aria-valuenow", value ?? 0);
        setAttribute(this.#fader, "aria-valuetext", value === null ? say("unknown") : text + " dB");
        this.#fader.toggleAttribute("data-held", this.#move !== null);
    }

    /** @param {Grips} grips */
    #begin(grips) {
        const value = this.#link.picture.faderOf(this.#index);
        if (!this.#link.inControl || value === null) return false;
        const move = new TrackMove(this.#link, grips, [this.#index]);
        if (move.isEmpty) return false;
        this.#move = move;
        this.#place = value;
        return true;
    }

    /** @param {number} place */
    #moveTo(place) {
        this.#place = Math.min(Math.max(place, 0), faderTop);
        this.#move?.moveTo(Math.round(this.#place));
        this.#showFader(this.#title.textContent ?? "");
    }

    #end() {
        this.#move?.end();
        this.#move = null;
    }

    /** @param {Grips} grips @param {(place: number) => number} target */
    #once(grips, target) {
        if (!this.#begin(grips)) return;
        this.#moveTo(target(this.#place));
        this.#end();
    }
}
