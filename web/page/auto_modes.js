// @ts-check
// What the numbers of automation modes mean.
import { ModeKey } from "./commands.js";
import { say } from "./words.js";

/** A mode with trim has this added to that without. */
const trim = 8;

/** @type {Record<number, {short: string, name: string}>} */
const modes = {
    1: { short: "READ", name: "read" },
    2: { short: "TCH", name: "touch" },
    3: { short: "LTCH", name: "latch" },
    4: { short: "WRT", name: "write" },
    5: { short: "OFF", name: "autoOff" },
};

/** The keys in the order of a menu. @type {{key: number, name: string, mode: number}[]} */
export const modeKeys = [
    { key: ModeKey.read, name: "read", mode: 1 },
    { key: ModeKey.touch, name: "touch", mode: 2 },
    { key: ModeKey.latch, name: "latch", mode: 3 },
    { key: ModeKey.write, name: "write", mode: 4 },
    { key: ModeKey.off, name: "autoOff", mode: 5 },
    { key: ModeKey.trim, name: "trim", mode: -1 },
];

/** @param {number} mode */
export const hasTrim = (mode) => mode > trim;
/** @param {number} mode */
export const withoutTrim = (mode) => (hasTrim(mode) ? mode - trim : mode);

/** As a narrow button shows it. @param {number} mode */
export function shortMode(mode) {
    const known = modes[withoutTrim(mode)];
    return known ? (hasTrim(mode) ? "T " : "") + known.short : "–";
}

/** @param {number} mode */
export function modeName(mode) {
    const known = modes[withoutTrim(mode)];
    return known ? (hasTrim(mode) ? say("trim") + " " : "") + say(known.name) : say("unknown");
}

/** What decides its colour: "read", "touch", "latch", "write", "off", "none". @param {number} mode */
export const modeKind = (mode) => ["none", "read", "touch", "latch", "write", "off"][withoutTrim(mode)] ?? "none";
