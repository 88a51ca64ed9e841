// @ts-check
// The keys below the strips: what is shown, bank and channel, the other strips of the bank, the side of pans, and more.
import { BankStep, bankMove, panModeToggle, recalibrate, visibleRange } from "./commands.js";
import { button, make, onPress, setAttribute, setText } from "./dom.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./strips_panel.js").StripsPanel} StripsPanel */
/** @typedef {import("./session_list.js").SessionList} SessionList */

/** @type {[string, string, number][]} */
const steps = [
    ["bankLeft", "«", BankStep.bankLeft],
    ["channelLeft", "‹", BankStep.channelLeft],
    ["channelRight", "›", BankStep.channelRight],
    ["bankRight", "»", BankStep.bankRight],
];
const handName = "lumbrine.left-handed";

export class ToolBar {
    onView = () => {};
    showsTracks = false;
    #view = button("", "", "tool view");
    #page = button(say("otherStrips"), "", "tool page");
    #pan = button("", "", "tool pan-side");
    #link;
    #panel;

    /** @param {Link} link @param {StripsPanel} panel @param {SessionList} list */
    constructor(link, panel, list) {
        this.#link = link;
        this.#panel = panel;
        const moves = steps.map(([name, text, step]) => {
            const key = button(say(name), text, "tool step");
            onPress(key, () => link.command(bankMove(step)));
            return key;
        });
        const more = button(say("menu"), "⋯", "tool");
        const { sheet, open } = menu(link, list);
        this.sheet = sheet;
        more.addEventListener("click", open);
        onPress(this.#view, () => this.show(!this.showsTracks));
        onPress(this.#page, () => {
            panel.turnPage();
            this.update();
        });
        onPress(this.#pan, () => link.command(panModeToggle()));
        const bank = make("div", { class: "steps" }, ...moves); // left stays left, also for the left-handed
        this.element = make("nav", { class: "tools" }, this.#view, bank, this.#page, this.#pan, more);
    }

    /** @param {boolean} tracks whether the tracks of the session are shown and not the strips */
    show(tracks) {
        this.showsTracks = tracks;
        this.onView();
        this.update();
    }

    update() {
        const other = say(this.showsTracks ? "strips" : "tracks");
        setText(this.#view, other);
        setAttribute(this.#view, "aria-label", `${say("view")}: ${other}`);
        this.#page.hidden = this.showsTracks || this.#panel.pages < 2;
        setText(this.#page, this.#panel.pageText);
        setAttribute(this.#page, "aria-label", `${say("otherStrips")}: ${this.#panel.pageText}`);
        const side = this.#link.picture.panSide === 0 ? "L" : "R";
        setText(this.#pan, "Pan " + side);
        setAttribute(this.#pan, "aria-label", `${say("panSide")}: Pan ${side}`);
    }
}

/** @param {Link} link @param {SessionList} list */
function menu(link, list) {
    const sheet = make("dialog", { class: "sheet", "aria-label": say("menu") });
    /** @param {string} name @param {() => void} action */
    const entry = (name, action) => {
        const key = button(say(name), say(name), "choice");
        key.addEventListener("click", () => {
            sheet.close();
            action();
        });
        sheet.append(key);
        return key;
    };
    const readModes = entry("readModes", () => {
        const [first] = list.inSight;
        if (first !== undefined) link.command(visibleRange(first, Math.min(list.inSight.length, 255)));
    });
    entry("rescan", () => link.command(recalibrate()));
    const root = document.documentElement;
    if (root.requestFullscreen !== undefined)
        entry("fullScreen", () => (document.fullscreenElement ? document.exitFullscreen() : root.requestFullscreen()));
    const leftHanded = entry("leftHanded", () => setLeft(!root.hasAttribute("data-left")));
    /** @param {boolean} isLeft */
    const setLeft = (isLeft) => {
        root.toggleAttribute("data-left", isLeft);
        leftHanded.setAttribute("aria-pressed", String(isLeft));
        localStorage.setItem(handName, isLeft ? "1" : "");
    };
    setLeft(localStorage.getItem(handName) === "1");
    entry("close", () => {});
    const open = () => {
        readModes.hidden = list.element.hidden;
        sheet.showModal();
    };
    return { sheet, open };
}
