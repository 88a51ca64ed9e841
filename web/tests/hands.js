// @ts-check
// Fingers for the tests: real touches that go through the browser's own hit test, capture and gestures.

/** @typedef {import("playwright-core").Page} Page */
/** @typedef {import("playwright-core").CDPSession} CDPSession */
/** @typedef {{x: number, y: number}} Point */

/** @param {Page} page */
export async function fingersOn(page) {
    const session = await page.context().newCDPSession(page);
    return new Fingers(session);
}

class Fingers {
    #session;

    /** @param {CDPSession} session */
    constructor(session) {
        this.#session = session;
    }

    /** Each finger by its place in the list. @param {Point[]} points */
    down(points) {
        return this.#send("touchStart", points);
    }

    /** @param {Point[]} points */
    move(points) {
        return this.#send("touchMove", points);
    }

    up() {
        return this.#send("touchEnd", []);
    }

    /** The system takes them away. */
    cancel() {
        return this.#send("touchCancel", []);
    }

    /** @param {"touchStart" | "touchMove" | "touchEnd" | "touchCancel"} type @param {Point[]} points */
    #send(type, points) {
        const touchPoints = points.map(({ x, y }, id) => ({ x, y, id }));
        return this.#session.send("Input.dispatchTouchEvent", { type, touchPoints });
    }
}

/** The middle of an element. @param {import("playwright-core").Locator} locator @returns {Promise<Point>} */
export async function middleOf(locator) {
    const box = await locator.boundingBox();
    if (!box) throw new Error(`not to be seen: ${locator}`);
    return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}

/** @param {Point} point @param {number} dx @param {number} dy */
export const moved = ({ x, y }, dx, dy) => ({ x: x + dx, y: y + dy });

/** What has come so far is drawn when this is done. @param {Page} page */
export const drawn = (page) =>
    page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));

/**
 * Waits until `check` gives what is wanted; `what` says for what.
 * @template T
 * @param {string} what @param {() => Promise<T | false | null | undefined>} check
 */
export async function until(what, check, patience = 15_000) {
    const end = performance.now() + patience;
    while (performance.now() < end) {
        const found = await check();
        if (found) return found;
        await new Promise((resolve) => setTimeout(resolve, 30));
    }
    throw new Error(`never: ${what}`);
}

/** What the page sends from here on, as lists of bytes. @param {Page} page */
export function sentBy(page) {
    /** @type {number[][]} */
    const sent = [];
    page.on("websocket", (socket) =>
        socket.on("framesent", ({ payload }) => typeof payload !== "string" && sent.push([...payload])),
    );
    return sent;
}
