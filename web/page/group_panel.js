// @ts-check
// The shown group: its faders as one, mute, solo and automation mode.
import { groupAutoMode, groupMute, groupSolo } from "./commands.js";
import { button, make, onPress, setAttribute, setStyle, setText } from "./dom.js";
import { dragging } from "./drag.js";
import { groupNames } from "./groups.js";
import { sliderKeys } from "./slider_keys.js";
import { TrackMove } from "./track_move.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./groups.js").Groups} Groups */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

/** @param {string} text */
const span = (text) => make("span", {}, text);
const reach = 24; // decibels that a drag over the whole fader moves

export class GroupPanel {
    /** Called when another group is shown or it has other tracks. */
    onChange = () => {};
    #tabs = groupNames.map((name) => button(say("group", name), name, "tab"));
    #text = make("span", { class: "count" });
    #empty = make("p", { class: "empty" });
    #knob = make("div", { class: "knob" });
    #fader = make(
        "div",
        { class: "group-fader", role: "slider", tabindex: "0", "aria-valuemin": "-24", "aria-valuemax": "24" },
        make("span", { class: "ends", "aria-hidden": "true" }, ...[`−${reach}`, `+${reach} dB`].map(span)),
        this.#text,
        this.#knob,
    );
    #mute = button("", "M", "key mute");
    #solo = button("", "S", "key solo");
    #mode = button("", "AUTO", "mode");
    #clear = button("", "✕", "key clear");
    /** @type {TrackMove | null} */
    #move = null;
    #decibels = 0;
    #link;
    #grips;
    #groups;

    /** @param {Link} link @param {Grips} grips @param {Groups} groups @param {ModeSheet} sheet */
    constructor(link, grips, groups, sheet) {
        this.#link = link;
        this.#grips = grips;
        this.#groups = groups;
        this.element = make(
            "section",
            { class: "group", "aria-label": say("groups") },
            make("div", { class: "tabs" }, ...this.#tabs, this.#mode, this.#solo, this.#mute, this.#clear),
            this.#empty,
            this.#fader,
        );
        this.#tabs.forEach((tab, i) =>
            onPress(tab, () => {
                groups.current = groupNames[i];
                this.onChange();
            }),
        );
        dragging(this.#fader, {
            towards: "right",
            begin: () => this.#begin(),
            by: (part) => this.#moveBy(this.#decibels + part * 2 * reach),
            end: () => this.#end(),
        });
        sliderKeys(this.#fader, {
            step: (steps) => this.#once(steps / 2),
            toEnd: (top) => this.#once(top ? reach : -reach),
        });
        onPress(this.#mute, () => this.#send(groupMute(!this.#allAre("mute"), this.#members)));
        onPress(this.#solo, () => this.#send(groupSolo(!this.#allAre("solo"), this.#members)));
        onPress(this.#mode, () =>
            sheet.ask(say("group", groups.current), 0, (key) => this.#send(groupAutoMode(key, this.#members))),
        );
        onPress(this.#clear, () => {
            groups.clear();
            this.onChange();
        });
    }

    update() {
        const group = this.#groups.current;
        const count = this.#members.length;
        const moved = `${this.#decibels > 0 ? "+" : ""}${this.#decibels.toFixed(1)} dB`;
        const text = this.#move ? moved : say("members", count);
        setText(this.#empty, say("groupEmpty", group));
        this.#tabs.forEach((tab, i) => setAttribute(tab, "aria-pressed", groupNames[i] === group));
        setText(this.#text, text);
        setStyle(this.#knob, "left", `${50 + (50 * this.#decibels) / reach}%`);
        setAttribute(this.#fader, "aria-label", say("groupFader", group));
        setAttribute(this.#fader, "aria-valuenow", this.#decibels.toFixed(1));
        setAttribute(this.#fader, "aria-valuetext", this.#move ? moved : text);
        this.#show(this.#mute, say("groupMute", group), this.#allAre("mute"));
        this.#show(this.#solo, say("groupSolo", group), this.#allAre("solo"));
        setAttribute(this.#mode, "aria-label", say("groupMode", group));
        setAttribute(this.#clear, "aria-label", say("clear", group));
        this.element.toggleAttribute("data-empty", count === 0);
    }

    get #members() {
        return this.#groups.indices(this.#link.picture);
    }

    /** @param {"mute" | "solo"} state */
    #allAre(state) {
        const members = this.#members;
        return members.length > 0 && members.every((index) => this.#link.picture.isLit(index, state));
    }

    /** @param {HTMLElement} key @param {string} label @param {boolean} isOn */
    #show(key, label, isOn) {
        setAttribute(key, "aria-label", label);
        setAttribute(key, "aria-pressed", isOn);
        setAttribute(key, "data-light", isOn ? "on" : "off");
    }

    /** @param {Uint8Array} command */
    #send(command) {
        if (this.#members.length > 0) this.#link.command(command);
    }

    #begin() {
        if (!this.#link.inControl || this.#members.length === 0) return false;
        this.#move = new TrackMove(this.#link, this.#grips, this.#members);
        return true;
    }

    /** @param {number} decibels */
    #moveBy(decibels) {
        this.#decibels = Math.min(Math.max(decibels, -reach), reach);
        this.#move?.moveBy(this.#decibels);
        this.update();
    }

    #end() {
        this.#move?.end();
        this.#move = null;
        this.#decibels = 0;
        this.update();
    }

    /** @param {number} decibels */
    #once(decibels) {
        if (!this.#begin()) return;
        this.#moveBy(decibels);
        this.#end();
    }
}
