// @ts-check
// Asks for an automation mode.
import { hasTrim, modeKeys, withoutTrim } from "./auto_modes.js";
import { button, make, setAttribute, setText } from "./dom.js";
import { say } from "./words.js";

export class ModeSheet {
    #title = make("h2");
    /** @type {(key: number) => void} */
    #chosen = () => {};
    #buttons = modeKeys.map(({ key, name }) => {
        const choice = button(say(name), say(name), "choice " + name);
        choice.addEventListener("click", () => {
            this.element.close();
            this.#chosen(key);
        });
        return choice;
    });

    constructor() {
        const close = button(say("close"), say("close"), "close");
        close.addEventListener("click", () => this.element.close());
        this.#title.id = "mode-title";
        this.element = make(
            "dialog",
            { class: "sheet", "aria-labelledby": "mode-title" },
            this.#title,
            make("div", { class: "choices" }, ...this.#buttons),
            close,
        );
    }

    /**
     * @param {string} title of the track or group
     * @param {number} mode the present one, 0 where there is no single one
     * @param {(key: number) => void} chosen
     */
    ask(title, mode, chosen) {
        this.#chosen = chosen;
        setText(this.#title, say("modeTitle", title));
        modeKeys.forEach((choice, i) => {
            const isOn = choice.mode < 0 ? hasTrim(mode) : choice.mode === withoutTrim(mode);
            setAttribute(this.#buttons[i], "aria-pressed", isOn);
        });
        this.element.showModal();
    }
}
