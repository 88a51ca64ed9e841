// @ts-check
// Reads what the receiver sends: a datagram in, a message out. docs/protocol.md describes the bytes.
import { strips } from "./commands.js";

/** @typedef {{mute: number, solo: number, record: number}} Lights 0 off, 1 on, 2 blinking */
/** @typedef {{side: number, position: number, centre: boolean}} TrackPan all 0 while unknown */
/**
 * @typedef {{type: "trackName", strip: number, name: string}
 *     | {type: "meters", levels: Uint8Array}
 *     | {type: "fader", strip: number, value: number}
 *     | {type: "switches", lights: Lights[]}
 *     | {type: "pan", strip: number, side: number, position: number, centre: boolean}
 *     | {type: "panMode", side: number}
 *     | {type: "bankPos", offset: number | null, tracks: number, shown: number}
 *     | {type: "selects", flags: boolean[]}
 *     | {type: "fullName", strip: number, name: string}
 *     | {type: "colors", colors: (string | null)[]}
 *     | {type: "inputMons", flags: boolean[]}
 *     | {type: "trackRow", row: TrackRow}
 *     | {type: "autoModes", modes: number[]}
 *     | {type: "transport", playing: boolean, recording: boolean}
 *     | {type: "sessionModes", first: number, modes: number[]}
 *     | {type: "sessionPans", first: number, pans: TrackPan[]}
 *     | {type: "busy"}
 *     | {type: "pong"}} Message
 */
/**
 * One track of the session. Colours are as CSS writes them; a fader that was never seen is null.
 * @typedef {{index: number, fader: number | null, mute: boolean, solo: boolean, record: boolean,
 *     color: string | null, inputMonitor: boolean, select: boolean, name: string, comment: string}} TrackRow
 */

const version = 1;
const unknownOffset = 0xffff;
const text = new TextDecoder();

/** @param {DataView} data @param {number} at */
const stripAt = (data, at) => (data.getUint8(at) < strips ? data.getUint8(at) : undefined);

/** @param {DataView} data @param {number} at @param {number} length */
function textAt(data, at, length) {
    if (at + length > data.byteLength) throw new RangeError();
    return text.decode(new Uint8Array(data.buffer, data.byteOffset + at, length));
}

/** @param {DataView} data @param {number} at */
function colorAt(data, at) {
    if (data.getUint8(at) === 0) return null;
    return "#" + (data.getUint32(at) & 0xffffff).toString(16).padStart(6, "0");
}

/**
 * The entries of a message about all shown strips, `size` bytes each.
 * @template Entry
 * @param {DataView} data @param {number} size @param {(at: number) => Entry} read
 */
function perStrip(data, size, read) {
    const count = Math.min(Math.floor((data.byteLength - 2) / size), strips);
    return Array.from({ length: count }, (_, i) => read(2 + i * size));
}

/**
 * The entries of a chunk of the session, from `first` on.
 * @template Entry
 * @param {DataView} data @param {number} size @param {(at: number) => Entry} read
 */
function chunk(data, size, read) {
    const count = data.getUint8(4);
    if (data.byteLength < 5 + count * size) throw new RangeError();
    return Array.from({ length: count }, (_, i) => read(5 + i * size));
}

/** @param {DataView} data @returns {TrackRow} */
function trackRow(data) {
    const nameLength = data.getUint8(16);
    const commentLength = data.getUint8(17 + nameLength);
    return {
        index: data.getUint16(2),
        fader: data.getUint8(4) === 1 ? data.getUint16(5) : null,
        mute: data.getUint8(7) !== 0,
        solo: data.getUint8(8) !== 0,
        record: data.getUint8(9) !== 0,
        color: colorAt(data, 10),
        inputMonitor: data.getUint8(14) !== 0,
        select: data.getUint8(15) !== 0,
        name: textAt(data, 17, nameLength),
        comment: textAt(data, 18 + nameLength, commentLength),
    };
}

/** @param {DataView} data @param {number} at */
const flagAt = (data, at) => data.getUint8(at) !== 0;

/** @param {DataView} data @returns {Message} */
const sessionModes = (data) => ({
    type: "sessionModes",
    first: data.getUint16(2),
    modes: chunk(data, 1, (at) => data.getUint8(at)),
});

/** @param {DataView} data @param {(strip: number) => Message} message */
function ofStrip(data, message) {
    const strip = stripAt(data, 2);
    return strip === undefined ? undefined : message(strip);
}

/** @param {DataView} data */
const metersIn = (data) => new Uint8Array(data.buffer.slice(data.byteOffset + 2, data.byteOffset + data.byteLength));

/** @param {DataView} data @param {number} from */
const rest = (data, from) => data.byteLength - from;

/** @param {DataView} data @param {number} at @returns {Lights} */
const lightsAt = (data, at) => ({
    mute: data.getUint8(at),
    solo: data.getUint8(at + 1),
    record: data.getUint8(at + 2),
});

/** @param {DataView} data @param {number} at @returns {TrackPan} */
const panAt = (data, at) => ({
    side: data.getUint8(at) === 0 ? 0 : 1,
    position: data.getUint8(at + 1),
    centre: flagAt(data, at + 2),
});

/** @param {DataView} data @returns {Message | undefined} */
function bankPos(data) {
    const offset = data.getUint16(2);
    const shown = data.getUint8(6);
    if (shown === 0 || shown > strips) return undefined;
    return { type: "bankPos", offset: offset === unknownOffset ? null : offset, tracks: data.getUint16(4), shown };
}

/** @type {Record<number, (data: DataView) => Message | undefined>} */
const readers = {
    0x10: (data) => ofStrip(data, (strip) => ({ type: "trackName", strip, name: textAt(data, 3, 4).trim() })),
    0x11: (data) => ({ type: "meters", levels: metersIn(data) }),
    0x12: (data) => ofStrip(data, (strip) => ({ type: "fader", strip, value: data.getUint16(3) })),
    0x13: (data) => ({ type: "switches", lights: perStrip(data, 3, (at) => lightsAt(data, at)) }),
    0x14: (data) => ofStrip(data, (strip) => ({ type: "pan", strip, ...panAt(data, 3) })),
    0x15: (data) => ({ type: "panMode", side: data.getUint8(2) }),
    0x16: (data) => bankPos(data),
    0x17: (data) => ({ type: "selects", flags: perStrip(data, 1, (at) => flagAt(data, at)) }),
    0x18: (data) => ofStrip(data, (strip) => ({ type: "fullName", strip, name: textAt(data, 3, rest(data, 3)) })),
    0x19: (data) => ({ type: "colors", colors: perStrip(data, 4, (at) => colorAt(data, at)) }),
    0x1a: (data) => ({ type: "inputMons", flags: perStrip(data, 1, (at) => flagAt(data, at)) }),
    0x1b: (data) => ({ type: "trackRow", row: trackRow(data) }),
    0x1c: (data) => ({ type: "autoModes", modes: perStrip(data, 1, (at) => data.getUint8(at)) }),
    0x1d: (data) => ({ type: "transport", playing: flagAt(data, 2), recording: flagAt(data, 3) }),
    0x1e: (data) => sessionModes(data),
    0x1f: (data) => ({ type: "sessionPans", first: data.getUint16(2), pans: chunk(data, 3, (at) => panAt(data, at)) }),
    0x7d: () => ({ type: "busy" }),
    0x7f: () => ({ type: "pong" }),
};

/**
 * Undefined for what is no message of a receiver. Bytes after the end of a message are ignored.
 * @param {Uint8Array} datagram
 * @returns {Message | undefined}
 */
export function parseMessage(datagram) {
    const reader = datagram[0] === version ? readers[datagram[1]] : undefined;
    if (!reader) return undefined;
    try {
        return reader(new DataView(datagram.buffer, datagram.byteOffset, datagram.byteLength));
    } catch (error) {
        if (error instanceof RangeError) return undefined; // it ends too early
        throw error;
    }
}
