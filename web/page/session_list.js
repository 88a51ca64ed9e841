// @ts-check
// All tracks of the session, which scroll. Only the rows in sight are in the document, whatever the session's size.
import { make, setStyle, setText } from "./dom.js";
import { TrackRowView, rowHeight } from "./track_row_view.js";
import { say } from "./words.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./groups.js").Groups} Groups */
/** @typedef {import("./mode_sheet.js").ModeSheet} ModeSheet */

const spare = 3; // rows above and below, so that a quick finger sees no gap

export class SessionList {
    /** @type {(index: number) => void} */
    onJump = () => {};
    onMember = () => {};
    onOffStrips = () => {};
    /** Called when other rows are in sight. */
    onScroll = () => {};
    /** Called when other tracks are wanted. */
    onSearch = () => {};
    #search = make("input", { type: "search", "aria-label": say("search"), placeholder: say("search") });
    #rows = make("div", { class: "rows", role: "list", "aria-label": say("trackList") });
    #none = make("p", { class: "none", role: "status" });
    #list = make("div", { class: "list", tabindex: "0" }, this.#rows);
    element = make("div", { class: "session" }, this.#search, this.#none, this.#list);
    /** By session index. @type {Map<number, TrackRowView>} */
    #views = new Map();
    /** @type {TrackRowView[]} */
    #idle = [];
    /** The session indices that match. @type {number[]} */
    #matches = [];
    // Where the list is. Kept, because asking the document between two changes has it lay out everything.
    #top = 0;
    #height = 0;
    /** Those in the shown group. @type {Set<number>} */
    #members = new Set();
    #link;
    #grips;
    #groups;
    #sheet;

    /** @param {Link} link @param {Grips} grips @param {Groups} groups @param {ModeSheet} sheet */
    constructor(link, grips, groups, sheet) {
        this.#link = link;
        this.#grips = grips;
        this.#groups = groups;
        this.#sheet = sheet;
        this.#search.addEventListener("input", () => {
            this.#list.scrollTop = this.#top = 0;
            this.onSearch();
        });
        const scrolled = () => {
            this.#top = this.#list.scrollTop;
            this.onScroll();
        };
        this.#list.addEventListener("scroll", scrolled, { passive: true });
        new ResizeObserver(([entry]) => {
            this.#height = entry.contentRect.height;
            this.onScroll();
        }).observe(this.#list);
    }

    /** The session indices in sight. */
    get inSight() {
        const first = Math.floor(this.#top / rowHeight);
        const count = Math.ceil(this.#height / rowHeight);
        return this.#matches.slice(first, first + count);
    }

    update() {
        if (this.element.hidden) return;
        this.#match();
        this.#members = new Set(this.#groups.indices(this.#link.picture));
        this.place();
        for (const [index, view] of this.#views) this.#fill(view, index);
    }

    updateMeters() {
        if (this.element.hidden) return;
        for (const view of this.#views.values()) view.updateMeter();
    }

    /** @param {TrackRowView} view @param {number} index */
    #fill(view, index) {
        view.update(index, this.#members.has(index), this.#groups.current);
    }

    #match() {
        const { tracks } = this.#link.picture;
        const wanted = this.#search.value.trim().toLocaleLowerCase();
        const all = [...tracks.keys()];
        this.#matches = wanted ? all.filter((index) => hasText(tracks[index].row, wanted)) : all;
        setStyle(this.#rows, "height", `${this.#matches.length * rowHeight}px`);
        this.#none.hidden = this.#matches.length > 0 || tracks.length === 0;
        setText(this.#none, this.#none.hidden ? "" : say("noMatch"));
    }

    /** Gives each row in sight a view: those that have gone lend theirs. */
    place() {
        if (this.element.hidden) return;
        const first = Math.max(Math.floor(this.#top / rowHeight) - spare, 0);
        const last = first + Math.ceil(this.#height / rowHeight) + 2 * spare;
        const wanted = new Map(this.#matches.slice(first, last).map((index, i) => [index, first + i]));
        for (const [index, view] of this.#views)
            if (!wanted.has(index) && !view.isHeld) {
                this.#views.delete(index);
                this.#idle.push(view);
            }
        for (const [index, place] of wanted) {
            let view = this.#views.get(index);
            if (!view) {
                view = this.#idle.pop() ?? this.#newView();
                this.#views.set(index, view);
                this.#fill(view, index);
            }
            view.standAt(place, this.#matches.length);
        }
        for (const view of this.#idle.splice(0)) this.#park(view);
    }

    /** @type {TrackRowView[]} */
    #parked = [];

    /** @param {TrackRowView} view */
    #park(view) {
        view.element.hidden = true;
        this.#parked.push(view);
    }

    #newView() {
        const parked = this.#parked.pop();
        if (parked) {
            parked.element.hidden = false;
            return parked;
        }
        const view = new TrackRowView(this.#link, this.#grips, this.#sheet);
        view.onJump = (index) => this.onJump(index);
        view.onOffStrips = () => this.onOffStrips();
        view.onMember = (index) => {
            this.#groups.toggle(this.#link.picture, index);
            this.onMember();
        };
        this.#rows.append(view.element);
        return view;
    }
}

/** @param {import("./messages.js").TrackRow | null} row @param {string} wanted */
const hasText = (row, wanted) => `${row?.name}\n${row?.comment}`.toLocaleLowerCase().includes(wanted);
