// @ts-check
// The line that says how things are, the lights of the transport and the time that a datagram takes.
import { button, make, onPress, setAttribute, setText } from "./dom.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./connection.js").Connection} Connection */

const hintTime = 3000;
const needHelp = ["searching", "refused", "closed"];
const passing = 2000; // a trouble that is shorter than this needs no explanation

/** What is wrong, or the key of the text for "nothing". @param {Connection} connection @param {Link} link */
export function situation(connection, link) {
    if (connection.state !== "open") return connection.state;
    if (link.state !== "connected") return link.state;
    if (link.picture.trackCount === 0) return "noTracks";
    return link.picture.offset === null ? "finding" : "connected";
}

export class StatusBar {
    #lamp = make("span", { class: "lamp", "aria-hidden": "true" });
    #text = make("span", { class: "text", role: "status" });
    #trip = make("span", { class: "trip", role: "img" });
    #lights = {
        play: make("span", { class: "light play", role: "img" }, "▶"),
        record: make("span", { class: "light record", role: "img" }, "●"),
    };
    element = make(
        "header",
        { class: "status" },
        make("h1", { class: "unseen" }, "Lumbrine"),
        this.#lamp,
        this.#text,
        this.#trip,
        make("span", { class: "transport" }, this.#lights.play, this.#lights.record),
    );
    #veilText = make("p");
    #takeOver = button(say("takeOver"), say("takeOver"), "take-over");
    /** Over everything while another device is in control, and while nothing can be done here. */
    veil = make("div", { class: "veil", role: "alert" }, this.#veilText, this.#takeOver);
    /** This browser has the page in another tab, which is in use. */
    isElsewhere = false;
    onUseHere = () => {};
    #hint = { text: "", until: -Infinity };
    #last = { now: "", since: 0 };
    #link;
    #connection;

    /** @param {Connection} connection @param {Link} link */
    constructor(connection, link) {
        this.#link = link;
        this.#connection = connection;
        onPress(this.#takeOver, () => (this.isElsewhere ? this.onUseHere() : link.takeOver()));
    }

    /** Says this for a while, in the place of what is right now. @param {string} text the key of a text */
    hint(text) {
        this.#hint = { text, until: performance.now() + hintTime };
        this.update();
    }

    update() {
        const now = this.isElsewhere ? "elsewhere" : situation(this.#connection, this.#link);
        const { picture } = this.#link;
        const hasHint = now === "connected" && performance.now() < this.#hint.until;
        setText(this.#text, say(hasHint ? this.#hint.text : now));
        const isGood = now === "connected" || now === "finding" || now === "noTracks";
        setAttribute(this.element, "data-state", now === "connected" ? "good" : isGood ? "waiting" : "bad");
        this.#showVeil(now);
        this.#light(this.#lights.play, "playing", picture.playing);
        this.#light(this.#lights.record, "recording", picture.recording);
        this.#showTrip(isGood);
    }

    /** Who has control, or what to do against a trouble that has lasted. @param {string} now */
    #showVeil(now) {
        const time = performance.now();
        if (now !== this.#last.now) this.#last = { now, since: time };
        const hasOther = now === "busy" || now === "takenOver" || now === "elsewhere";
        const needsHelp = needHelp.includes(now) && time - this.#last.since > passing;
        this.veil.hidden = !hasOther && !needsHelp;
        if (this.veil.hidden) return;
        setText(this.#veilText, say(hasOther ? now : now + "Help"));
        setText(this.#takeOver, say(this.isElsewhere ? "useHere" : "takeOver"));
        setAttribute(this.#takeOver, "aria-label", this.#takeOver.textContent ?? "");
        this.#takeOver.hidden = !hasOther;
    }

    /** @param {HTMLElement} light @param {string} name @param {boolean} isOn */
    #light(light, name, isOn) {
        light.toggleAttribute("data-on", isOn);
        setAttribute(light, "aria-label", `${say(name)}: ${say(isOn ? "on" : "off")}`);
    }

    /** @param {boolean} isGood */
    #showTrip(isGood) {
        const trip = isGood ? this.#link.roundTrips.summary(performance.now()) : null;
        const text = trip ? `${trip.median.toFixed(0)} / ${trip.worst.toFixed(0)} ms` : "";
        setText(this.#trip, text);
        setAttribute(this.#trip, "aria-label", `${say("roundTrip")} ${text}`);
    }
}
