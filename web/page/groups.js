// @ts-check
// The user's groups: tracks that are moved together. Kept by this browser under the names of the tracks, because the
// places of tracks change; of tracks with the same name the one at the place where it was counts.

/** @typedef {import("./session_picture.js").SessionPicture} SessionPicture */
/** @typedef {{name: string, index: number}} Member */

export const groupNames = Object.freeze(["A", "B", "C", "D"]);
const storeName = "lumbrine.groups";

export class Groups {
    /** The group that is shown. */
    current = groupNames[0];
    /** @type {Record<string, Member[]>} */
    #members;
    #store;

    /** @param {Pick<Storage, "getItem" | "setItem">} store */
    constructor(store) {
        this.#store = store;
        this.#members = Object.fromEntries(groupNames.map((name) => [name, stored(store, name)]));
    }

    /** The tracks of a group that this session has, by session index. @param {SessionPicture} picture */
    indices(picture, group = this.current) {
        const taken = new Set();
        for (const member of this.#members[group]) {
            const index = placeOf(picture, member);
            if (index !== null) taken.add(index);
        }
        return [...taken].sort((a, b) => a - b);
    }

    /** Puts a track into the shown group, or takes it out. @param {SessionPicture} picture @param {number} index */
    toggle(picture, index) {
        const members = this.#members[this.current];
        const at = members.findIndex((member) => placeOf(picture, member) === index);
        if (at >= 0) members.splice(at, 1);
        else members.push({ name: picture.tracks[index].row?.name ?? "", index });
        this.#save();
    }

    clear() {
        this.#members[this.current] = [];
        this.#save();
    }

    #save() {
        this.#store.setItem(storeName, JSON.stringify(this.#members));
    }
}

/** @param {SessionPicture} picture @param {Member} member */
function placeOf({ tracks }, { name, index }) {
    if (tracks[index]?.row?.name === name) return index;
    const found = tracks.findIndex((track) => track.row?.name === name);
    return found >= 0 ? found : null;
}

/**
 * What was kept, as far as it is what this page keeps: another version, or a user, may have written something else.
 * @param {Pick<Storage, "getItem">} store @param {string} group @returns {Member[]}
 */
function stored(store, group) {
    const members = parsed(store.getItem(storeName) ?? "{}")?.[group];
    if (!Array.isArray(members)) return [];
    return members.filter((member) => typeof member?.name === "string" && Number.isInteger(member.index));
}

/** @param {string} text @returns {any} */
function parsed(text) {
    try {
        return JSON.parse(text);
    } catch {
        return null;
    }
}
