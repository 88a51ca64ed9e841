// @ts-check
// What Chromium's own trace says of its frames.

/** @typedef {import("playwright-core").CDPSession} CDPSession */
/** @typedef {{name: string, ph: string, tdur?: number, args: any}} TraceEvent */

/**
 * Everything that Chromium notes while `action` runs.
 * @param {CDPSession} session @param {() => Promise<unknown>} action @returns {Promise<TraceEvent[]>}
 */
export async function traceOf(session, action) {
    /** @type {TraceEvent[]} */
    const events = [];
    session.on("Tracing.dataCollected", ({ value }) => events.push(.../** @type {any} */ (value)));
    const complete = new Promise((resolve) => session.once("Tracing.tracingComplete", resolve));
    const includedCategories = ["devtools.timeline", "cc", "benchmark", "disabled-by-default-devtools.timeline.frame"];
    await session.send("Tracing.start", { traceConfig: { includedCategories, excludedCategories: ["*"] } });
    await action();
    await session.send("Tracing.end");
    await complete;
    return events;
}

/**
 * The processor time of the page's thread for its frames, in milliseconds. What other programs on the machine take is
 * not in it.
 * @param {TraceEvent[]} events
 */
export const frameCosts = (events) =>
    events
        .filter(({ name, ph }) => name === "ProxyMain::BeginMainFrame" && ph === "X")
        .map(({ tdur }) => (tdur ?? 0) / 1000);

/** The frames that came to the screen while it scrolled, and those that should have. @param {TraceEvent[]} events */
export function scrollFrames(events) {
    const states = events
        .filter(({ name, ph }) => name === "PipelineReporter" && ph === "b")
        .map(({ args }) => args.frame_reporter)
        .filter((frame) => frame && frame.scroll_state !== "SCROLL_NONE")
        .map((frame) => frame.state);
    const count = (/** @type {RegExp} */ pattern) => states.filter((state) => pattern.test(state)).length;
    return { presented: count(/PRESENTED/), dropped: count(/DROPPED/) };
}
