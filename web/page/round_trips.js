// @ts-check
// The time from a question to its answer: a hello has its pong, and the release of a fader has the fader's value.

const span = 10_000;
const tooLate = 3000; // what comes after this long is the answer to something else

export class RoundTrips {
    /** By what was asked: "hello", or a strip. @type {Map<string | number, number>} */
    #open = new Map();
    /** @type {{at: number, took: number}[]} */
    #done = [];

    /** @param {string | number} what @param {number} now */
    asked(what, now) {
        const since = this.#open.get(what);
        if (since === undefined || now - since > tooLate) this.#open.set(what, now);
    }

    /** @param {string | number} what @param {number} now */
    answered(what, now) {
        const since = this.#open.get(what);
        this.#open.delete(what);
        if (since === undefined || now - since > tooLate) return;
        this.#done = this.#done.filter(({ at }) => now - at < span);
        this.#done.push({ at: now, took: now - since });
    }

    /** It got another answer than that whose time counts. @param {string | number} what */
    dismissed(what) {
        this.#open.delete(what);
    }

    forget() {
        this.#open.clear();
        this.#done = [];
    }

    /**
     * Median and worst of the last ten seconds; with nothing so new, the newest.
     * @param {number} now
     */
    summary(now) {
        const recent = this.#done.filter(({ at }) => now - at < span);
        const used = (recent.length > 0 ? recent : this.#done.slice(-1)).map(({ took }) => took).sort((a, b) => a - b);
        if (used.length === 0) return null;
        return { median: used[Math.floor((used.length - 1) / 2)], worst: used[used.length - 1] };
    }
}
