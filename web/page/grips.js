// @ts-check
// The hands on the faders of the strips: each finger, key or group has a grip of its own on a strip, and a strip has
// one grip at most. While a strip is gripped, the grip says where its fader is, not the receiver.

/** @typedef {import("./link.js").Link} Link */

// Browsers report a finger once a frame. What comes more often than this waits for the next picture, so that the hands
// on sixteen strips stay below what the gateway takes.
const leastPause = 12;

/** One hand on one strip's fader. */
export class Grip {
    /** False once it was let go, by whomever. */
    isHeld = true;
    /** @type {number | null} */
    #unsent = null;
    #sentAt = -Infinity;
    #grips;

    /** @param {Grips} grips @param {number} strip @param {number} value */
    constructor(grips, strip, value) {
        this.#grips = grips;
        this.strip = strip;
        this.value = value;
    }

    /** The newest value counts. @param {number} value */
    move(value) {
        if (!this.isHeld || value === this.value) return;
        this.value = value;
        this.#unsent = value;
        if (performance.now() - this.#sentAt >= leastPause) this.#grips.flush();
        this.#grips.onChange();
    }

    /** @param {Link} link */
    flush(link) {
        if (this.#unsent === null) return;
        link.move(this.strip, this.#unsent);
        this.#unsent = null;
        this.#sentAt = performance.now();
    }

    release() {
        if (this.isHeld) this.#grips.release(this);
    }
}

export class Grips {
    /** Called when a picture has to be drawn. */
    onChange = () => {};
    /** By strip. @type {Map<number, Grip>} */
    #held = new Map();
    /** The track on the first strip when the first grip was taken. @type {number | null} */
    #offset = null;
    #link;

    /** @param {Link} link */
    constructor(link) {
        this.#link = link;
    }

    /** Null while somebody else has this strip, or this client is not in control. @param {number} strip */
    take(strip) {
        const link = this.#link;
        if (this.#held.has(strip) || !link.inControl) return null;
        if (this.#held.size === 0) this.#offset = link.picture.offset;
        const grip = new Grip(this, strip, link.picture.strips[strip].fader);
        this.#held.set(strip, grip);
        link.touch(strip);
        this.onChange();
        return grip;
    }

    /** Where the strip's fader is to be drawn. @param {number} strip */
    valueOf(strip) {
        return this.#held.get(strip)?.value ?? this.#link.picture.strips[strip].fader;
    }

    /** @param {number} strip */
    holds(strip) {
        return this.#held.has(strip);
    }

    /** @param {Grip} grip */
    release(grip) {
        grip.flush(this.#link);
        // Until the receiver says where the fader is, it is where the hand has left it.
        this.#link.picture.strips[grip.strip].fader = grip.value;
        this.#forget(grip);
        this.#link.release(grip.strip);
    }

    releaseAll() {
        for (const grip of [...this.#held.values()]) this.release(grip);
    }

    /** The receiver holds nothing for this client any more. */
    dropAll() {
        for (const grip of [...this.#held.values()]) this.#forget(grip);
    }

    /** Sends the newest moves. A finger moves the track it was put on: once the strips show others, it lets go. */
    flush() {
        if (this.#held.size > 0 && this.#link.picture.offset !== this.#offset) this.#dropMoved();
        for (const grip of this.#held.values()) grip.flush(this.#link);
    }

    #dropMoved() {
        for (const grip of [...this.#held.values()]) {
            this.#forget(grip);
            this.#link.release(grip.strip);
        }
    }

    /** @param {Grip} grip */
    #forget(grip) {
        grip.isHeld = false;
        this.#held.delete(grip.strip);
        this.onChange();
    }
}
