// @ts-check
// Builds every command of a client: values in, datagram out. docs/protocol.md describes the bytes.

const version = 1;

export const strips = 16;
export const stripsPerSurface = 8;
export const faderTop = 16383;
export const ringCentre = 6;
export const ringRight = 11;
const maxMembers = 255;

/** How far the strips move along the session; a bank has as many tracks as there are shown strips. */
export const BankStep = Object.freeze({ channelLeft: 0, bankLeft: 1, channelRight: 2, bankRight: 3 });

/** The keys that set an automation mode. Their numbers differ from those in which a mode is reported. */
export const ModeKey = Object.freeze({ trim: 0, latch: 1, read: 2, off: 3, write: 4, touch: 5 });

/** @param {number[]} bytes */
const datagram = (...bytes) => Uint8Array.from([version, ...bytes]);

/** @param {number} number */
const twoBytes = (number) => [(number >> 8) & 0xff, number & 0xff];

/** @param {number[]} members */
const membersOf = (members) => {
    const taken = members.slice(0, maxMembers);
    return [taken.length, ...taken.flatMap(twoBytes)];
};

/** @param {bigint} token identifies this device; 0 for none */
export function hello(token) {
    const bytes = new Uint8Array(10);
    bytes[0] = version;
    new DataView(bytes.buffer).setBigUint64(2, token);
    return token === 0n ? bytes.subarray(0, 2) : bytes;
}

export const takeOver = () => datagram(0x25);

/** @param {number} strip @param {number} value 0 to `faderTop` */
export const faderMove = (strip, value) => datagram(0x01, strip, ...twoBytes(value));
/** @param {number} strip */
export const faderTouch = (strip) => datagram(0x02, strip);
/** @param {number} strip */
export const faderRelease = (strip) => datagram(0x03, strip);

// Each press asks for a change: it is sent once.
/** @param {number} strip */
export const mutePress = (strip) => datagram(0x04, strip);
/** @param {number} strip */
export const soloPress = (strip) => datagram(0x05, strip);
/** @param {number} strip */
export const recordPress = (strip) => datagram(0x06, strip);
/** @param {number} strip */
export const selectPress = (strip) => datagram(0x0d, strip);
/** @param {number} strip */
export const inputMonitorToggle = (strip) => datagram(0x0e, strip);

/** @param {number} strip @param {number} clicks -128 to 127, clockwise when positive; 0 turns nothing */
export const vpotDelta = (strip, clicks) => datagram(0x07, strip, clicks & 0xff);
export const panModeToggle = () => datagram(0x08);
/** @param {number} strip @param {number} position 1 to `ringRight` */
export const panSeek = (strip, position) => datagram(0x09, strip, position);

/** @param {number} step one of `BankStep` */
export const bankMove = (step) => datagram(0x0a, step);
/** @param {number} index the track to bring to the first strip */
export const seekBank = (index) => datagram(0x0b, ...twoBytes(index));
export const recalibrate = () => datagram(0x0c);

/** @param {number} strip @param {number} key one of `ModeKey` */
export const setAutoMode = (strip, key) => datagram(0x0f, strip, key);

/** @param {number} key one of `ModeKey` @param {number[]} members session indices */
export const groupAutoMode = (key, members) => datagram(0x20, key, ...membersOf(members));
/** @param {boolean} on @param {number[]} members */
export const groupMute = (on, members) => datagram(0x21, Number(on), ...membersOf(members));
/** @param {boolean} on @param {number[]} members */
export const groupSolo = (on, members) => datagram(0x22, Number(on), ...membersOf(members));

/** @param {[member: number, value: number][]} entries */
export function groupFaders(entries) {
    const taken = entries.slice(0, maxMembers);
    return datagram(0x23, taken.length, ...taken.flat().flatMap(twoBytes));
}

/** @param {number} first session index @param {number} count at most 255 */
export const visibleRange = (first, count) => datagram(0x24, ...twoBytes(first), count);
