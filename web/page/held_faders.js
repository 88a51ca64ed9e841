// @ts-check
// The fingers of this client on the faders of the receiver. The touch of a finger that stays down is repeated, so that
// the receiver soon notices when the network is gone; a release is sent three times, because a fader whose release is
// lost stays held. To the receiver, a touch or release too many changes nothing.
import { faderRelease, faderTouch } from "./commands.js";

const touchInterval = 500;
const releaseInterval = 50;
const releases = 3;

export class HeldFaders {
    /** @type {Map<number, ReturnType<typeof setTimeout>>} */
    #timers = new Map();
    /** @type {Set<number>} */
    #held = new Set();
    #send;

    /** @param {(datagram: Uint8Array) => void} send */
    constructor(send) {
        this.#send = send;
    }

    /** @param {number} strip */
    touch(strip) {
        this.#held.add(strip);
        this.#send(faderTouch(strip));
        this.#later(strip, touchInterval, () => this.touch(strip));
    }

    /** @param {number} strip */
    release(strip) {
        this.#held.delete(strip);
        this.#sendRelease(strip, releases);
    }

    /** @param {number} strip */
    holds(strip) {
        return this.#held.has(strip);
    }

    /** The receiver holds nothing for this client any more: nothing is repeated after this. */
    forget() {
        for (const timer of this.#timers.values()) clearTimeout(timer);
        this.#timers.clear();
        this.#held.clear();
    }

    /** @param {number} strip @param {number} times */
    #sendRelease(strip, times) {
        this.#send(faderRelease(strip));
        if (times > 1) this.#later(strip, releaseInterval, () => this.#sendRelease(strip, times - 1));
        else this.#timers.delete(strip);
    }

    /**
     * Replaces what this strip's timer was to do.
     * @param {number} strip @param {number} delay @param {() => void} job
     */
    #later(strip, delay, job) {
        clearTimeout(this.#timers.get(strip));
        this.#timers.set(strip, setTimeout(job, delay));
    }
}
