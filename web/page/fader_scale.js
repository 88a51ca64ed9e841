// @ts-check
// The scale beside a fader. Control surfaces are sent positions only, so the decibels are those that the scale of such
// a surface prints at these positions; between two marks the scale is straight.
import { faderTop } from "./commands.js";

/** From the bottom to the top. @type {[position: number, decibels: number][]} */
const marks = [
    [0, -90],
    [600, -60],
    [1900, -40],
    [3300, -30],
    [5400, -20],
    [7000, -15],
    [8700, -10],
    [10400, -5],
    [12288, 0],
    [14200, 5],
    [faderTop, 12],
];

export const unity = 12288;
export const printedMarks = marks.filter(([, decibels]) => [12, 5, 0, -5, -10, -20, -30, -40, -60].includes(decibels));

/**
 * Straight between neighbours, by the column `from`.
 * @param {number} value @param {0 | 1} from @param {0 | 1} to
 */
function between(value, from, to) {
    const above = Math.max(1, marks.findIndex((mark) => mark[from] >= value));
    const [low, high] = [marks[above - 1], marks[above]];
    return low[to] + ((value - low[from]) / (high[from] - low[from])) * (high[to] - low[to]);
}

/** @param {number} position */
export const decibelsAt = (position) =>
    position <= 0 ? -Infinity : between(Math.min(position, faderTop), 0, 1);

/** @param {number} decibels @returns a position, a whole number */
export function positionFor(decibels) {
    if (decibels <= marks[0][1]) return 0;
    return decibels >= marks[marks.length - 1][1] ? faderTop : Math.round(between(decibels, 1, 0));
}

/** As a mixer shows it: "-12.3", "+3.0", "-∞". @param {number} position */
export function decibelText(position) {
    const decibels = decibelsAt(position);
    if (decibels === -Infinity) return "-∞";
    const rounded = decibels.toFixed(1);
    return Number(rounded) > 0 ? "+" + rounded : rounded === "-0.0" ? "0.0" : rounded;
}
