// @ts-check
// One hand on the faders of tracks anywhere in the session, moved together with their offsets. Those on strips follow
// the hand at once; for the others the receiver walks the surfaces, so they get their place when the hand is gone.
import { groupFaders } from "./commands.js";
import { decibelsAt, positionFor } from "./fader_scale.js";

/** @typedef {import("./link.js").Link} Link */
/** @typedef {import("./grips.js").Grips} Grips */
/** @typedef {import("./grips.js").Grip} Grip */

export class TrackMove {
    /** @type {{grip: Grip, base: number}[]} */
    #shown = [];
    /** @type {{index: number, base: number}[]} */
    #others = [];
    #link;
    #losses;
    /** The place of a member whose hand began at `base`. @type {((base: number) => number) | null} */
    #target = null;

    /** @param {Link} link @param {Grips} grips @param {number[]} members session indices */
    constructor(link, grips, members) {
        this.#link = link;
        this.#losses = link.losses;
        for (const index of members) {
            const strip = link.picture.stripOf(index);
            const base = link.picture.faderOf(index);
            if (base === null) continue; // nobody knows where it is, so nobody can keep its offset
            if (strip === null) this.#others.push({ index, base });
            else this.#grip(grips, strip, base);
        }
    }

    /** @param {Grips} grips @param {number} strip @param {number} base */
    #grip(grips, strip, base) {
        const grip = grips.take(strip);
        if (grip) this.#shown.push({ grip, base });
    }

    get isEmpty() {
        return this.#shown.length + this.#others.length === 0;
    }

    /** @param {number} decibels from where the hand began */
    moveBy(decibels) {
        this.#moveEach((base) => (base === 0 ? 0 : positionFor(decibelsAt(base) + decibels)));
    }

    /** @param {number} value the same for all */
    moveTo(value) {
        this.#moveEach(() => value);
    }

    end() {
        for (const { grip } of this.#shown) grip.release();
        const target = this.#target;
        if (!target || this.#others.length === 0 || this.#losses !== this.#link.losses) return;
        /** @type {[member: number, value: number][]} */
        const wishes = this.#others.map(({ index, base }) => [index, target(base)]);
        this.#link.command(groupFaders(wishes));
        // The walk takes a while: until it is told where the fader is, it is where the hand has put it.
        for (const [index, value] of wishes) {
            const row = this.#link.picture.tracks[index]?.row;
            if (row) row.fader = value;
        }
    }

    /** @param {(base: number) => number} target */
    #moveEach(target) {
        this.#target = target;
        for (const { grip, base } of this.#shown) grip.move(target(base));
    }
}
