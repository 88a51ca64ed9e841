// @ts-check
// Whether the page is in front of somebody: sleep and wake, other tabs, and a screen that stays on.

/**
 * @typedef {object} PresenceActions
 * @property {() => void} leave the page is hidden, or about to end
 * @property {() => void} back it is seen again, or the network is back
 * @property {() => void} end it is gone for good, or kept for the browser's back button
 */

/** @param {PresenceActions} actions */
export function watchPresence({ leave, back, end }) {
    document.addEventListener("visibilitychange", () => (document.hidden ? leave() : back()));
    addEventListener("pagehide", end);
    addEventListener("pageshow", (event) => event.persisted && back());
    addEventListener("online", back);
    document.addEventListener("freeze", leave);
}

/** Has the screen stay on where the browser allows it, which is on pages of https alone. */
export function keepScreenOn() {
    if (!("wakeLock" in navigator)) return;
    const ask = () => {
        if (!document.hidden) navigator.wakeLock.request("screen").catch(() => {}); // refused when the battery is low
    };
    document.addEventListener("visibilitychange", ask);
    document.addEventListener("pointerup", ask, { once: true });
}

/**
 * Two tabs of one browser have the same token, so that the receiver would take them for one device: only the newest is
 * in use.
 * @param {() => void} onOther another tab has been opened, or taken into use
 * @returns call it to take this one into use
 */
export function onlyTab(onOther) {
    const channel = new BroadcastChannel("lumbrine");
    channel.onmessage = onOther;
    return () => channel.postMessage("here");
}
