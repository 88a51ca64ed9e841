// @ts-check
// All tracks of the session as a line of their colours, with a window where the strips are. A finger on it takes the
// strips there.
import { seekBank } from "./commands.js";
import { make, setAttribute, setStyle } from "./dom.js";
import { sliderKeys } from "./slider_keys.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */

const seekInterval = 60;
const noColor = "#3a4049";

export class SessionMap {
    #canvas = make("canvas", { "aria-hidden": "true" });
    #window = make("div", { class: "window" });
    #link;
    /** The colour of each column. @type {string[]} */
    #drawn = [];
    /** @type {number | null} */
    #wish = null;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #pacing;
    #sent = -1;

    /** @param {Link} link */
    constructor(link) {
        this.#link = link;
        this.element = make(
            "div",
            { class: "map", role: "slider", tabindex: "0", "aria-label": say("map"), "aria-valuemin": "1" },
            this.#canvas,
            this.#window,
        );
        this.element.addEventListener("pointerdown", (event) => {
            if (event.button !== 0 || !link.inControl) return;
            this.element.setPointerCapture(event.pointerId);
            this.#seekTo(this.#offsetAt(event));
        });
        this.element.addEventListener("pointermove", (event) => {
            if (this.element.hasPointerCapture(event.pointerId)) this.#seekTo(this.#offsetAt(event));
        });
        this.element.addEventListener("lostpointercapture", () => this.#finish());
        sliderKeys(this.element, {
            step: (steps) => this.#seekTo((this.#wish ?? link.picture.offset ?? 0) + steps),
            toEnd: (end) => this.#seekTo(end ? this.#lastOffset : 0),
        });
    }

    update() {
        const { picture } = this.#link;
        const { offset, shown, trackCount } = picture;
        this.#drawColors();
        const at = this.#wish ?? offset;
        const share = trackCount > 0 ? Math.min(shown / trackCount, 1) : 1;
        this.#window.hidden = at === null || trackCount === 0;
        this.#window.toggleAttribute("data-wished", this.#wish !== null && this.#wish !== offset);
        setStyle(this.#window, "width", `${100 * share}%`);
        setStyle(this.#window, "left", `${(100 * (at ?? 0)) / Math.max(trackCount, 1)}%`);
        setAttribute(this.element, "aria-valuemax", Math.max(trackCount, 1));
        setAttribute(this.element, "aria-valuenow", Math.max((at ?? 0) + 1, 1));
        const last = Math.min((at ?? 0) + shown, trackCount);
        const text = at === null ? say("mapUnknown") : say("mapPlace", at + 1, last, trackCount);
        setAttribute(this.element, "aria-valuetext", text);
    }

    get #lastOffset() {
        return Math.max(this.#link.picture.trackCount - this.#link.picture.shown, 0);
    }

    /** The window's middle goes under the finger. @param {PointerEvent} event */
    #offsetAt(event) {
        const { left, width } = this.element.getBoundingClientRect();
        const { trackCount, shown } = this.#link.picture;
        return Math.round(((event.clientX - left) / width) * trackCount - shown / 2);
    }

    /** @param {number} offset */
    #seekTo(offset) {
        this.#wish = Math.min(Math.max(offset, 0), this.#lastOffset);
        this.update();
        if (this.#pacing === undefined) this.#send();
    }

    #send() {
        this.#pacing = undefined;
        if (this.#wish === null || this.#wish === this.#sent) return this.#finish();
        this.#sent = this.#wish;
        this.#link.command(seekBank(this.#wish));
        this.#pacing = setTimeout(() => this.#send(), seekInterval);
    }

    /** From here on the window is where the strips are. */
    #finish() {
        if (this.#pacing !== undefined) return;
        this.#wish = null;
        this.#sent = -1;
        this.update();
    }

    /** Only the columns that have changed: a session's rows may come by the hundred, for as long as a second. */
    #drawColors() {
        const { tracks } = this.#link.picture;
        const columns = Math.max(tracks.length, 1);
        if (this.#drawn.length !== columns) {
            this.#canvas.width = columns; // which also clears it
            this.#canvas.height = 1;
            this.#drawn = Array(columns).fill("");
        }
        const context = /** @type {CanvasRenderingContext2D} */ (this.#canvas.getContext("2d"));
        tracks.forEach(({ row }, i) => {
            const color = row?.color ?? noColor;
            if (color === this.#drawn[i]) return;
            this.#drawn[i] = color;
            context.fillStyle = color;
            context.fillRect(i, 0, 1, 1);
        });
    }
}
