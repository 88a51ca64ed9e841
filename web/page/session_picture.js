// @ts-check
// What the receiver shows on its strips and knows of its session, built from the messages that have arrived.
import { strips, stripsPerSurface } from "./commands.js";

/** @typedef {import("./messages.js").Message} Message */
/** @typedef {import("./messages.js").TrackRow} TrackRow */
/** @typedef {import("./messages.js").TrackPan} TrackPan */

/** One channel strip. */
export class StripPicture {
    name = ""; // four characters of the surface
    fullName = "";
    fader = 0;
    lights = { mute: 0, solo: 0, record: 0 };
    select = false;
    inputMonitor = false;
    mode = 0;
    /** @type {string | null} */
    color = null;
    left = { position: 0, centre: false };
    right = { position: 0, centre: false };

    get title() {
        return this.fullName || this.name;
    }
}

/** One track of the session. Its row, mode and pan arrive in separate messages, in any order. */
export class TrackPicture {
    /** @type {TrackRow | null} */
    row = null;
    mode = 0;
    /** @type {TrackPan} */
    pan = { side: 0, position: 0, centre: false };
}

export class SessionPicture {
    /** All strips; those from `shown` on keep what was last heard of them. */
    strips = Array.from({ length: strips }, () => new StripPicture());
    shown = stripsPerSurface;
    panSide = 0;
    /** The track on the first strip. @type {number | null} */
    offset = null;
    /** By session index. @type {TrackPicture[]} */
    tracks = [];
    playing = false;
    recording = false;
    /** Left and right level of each strip, 0 to 12. */
    meters = new Uint8Array(2 * strips);

    get trackCount() {
        return this.tracks.length;
    }

    /** The track on this strip, where known. @param {number} strip */
    trackOn(strip) {
        const index = this.offset === null ? -1 : this.offset + strip;
        return index >= 0 && index < this.trackCount ? index : null;
    }

    /** The strip that shows this track, where one does. @param {number} index */
    stripOf(index) {
        const strip = this.offset === null ? -1 : index - this.offset;
        return strip >= 0 && strip < this.shown ? strip : null;
    }

    /** Where the fader of this track is, null while nobody has seen it. @param {number} index */
    faderOf(index) {
        const strip = this.stripOf(index);
        return strip === null ? (this.tracks[index]?.row?.fader ?? null) : this.strips[strip].fader;
    }

    /** Where the pan of this track is, null while nobody has seen it. @param {number} index */
    panOf(index) {
        const strip = this.stripOf(index);
        return strip === null ? (this.tracks[index]?.pan ?? null) : this.strips[strip].left;
    }

    /**
     * Whether this track is muted or soloed itself. Strips are told at once, rows after the next list.
     * @param {number} index @param {"mute" | "solo"} light
     */
    isLit(index, light) {
        const strip = this.stripOf(index);
        return strip === null ? (this.tracks[index]?.row?.[light] ?? false) : this.strips[strip].lights[light] === 1;
    }

    /** @param {Message} message */
    apply(message) {
        switch (message.type) {
            case "trackName":
                this.strips[message.strip].name = message.name;
                break;
            case "fullName":
                this.strips[message.strip].fullName = message.name;
                break;
            case "fader":
                this.strips[message.strip].fader = message.value;
                break;
            case "pan":
                this.strips[message.strip][message.side === 0 ? "left" : "right"] = message;
                break;
            case "meters":
                this.meters.fill(0);
                this.meters.set(message.levels.subarray(0, this.meters.length));
                break;
            case "switches":
                message.lights.forEach((lights, i) => (this.strips[i].lights = lights));
                break;
            case "selects":
                message.flags.forEach((flag, i) => (this.strips[i].select = flag));
                break;
            case "inputMons":
                message.flags.forEach((flag, i) => (this.strips[i].inputMonitor = flag));
                break;
            case "colors":
                message.colors.forEach((color, i) => (this.strips[i].color = color));
                break;
            case "autoModes":
                message.modes.forEach((mode, i) => (this.strips[i].mode = mode));
                break;
            case "panMode":
                this.panSide = message.side;
                break;
            case "transport":
                this.playing = message.playing;
                this.recording = message.recording;
                break;
            default:
                this.#applyToSession(message);
        }
    }

    /** @param {Message} message */
    #applyToSession(message) {
        if (message.type === "bankPos") {
            this.offset = message.offset;
            this.shown = message.shown;
            while (this.tracks.length < message.tracks) this.tracks.push(new TrackPicture());
            this.tracks.length = message.tracks;
        } else if (message.type === "trackRow") {
            const track = this.tracks[message.row.index];
            if (track) track.row = message.row;
        } else if (message.type === "sessionModes") {
            this.#each(message.first, message.modes, (track, mode) => (track.mode = mode));
        } else if (message.type === "sessionPans") {
            this.#each(message.first, message.pans, (track, pan) => (track.pan = pan));
        }
    }

    /**
     * @template Value
     * @param {number} first @param {Value[]} values @param {(track: TrackPicture, value: Value) => void} store
     */
    #each(first, values, store) {
        values.forEach((value, i) => this.tracks[first + i] && store(this.tracks[first + i], value));
    }
}
