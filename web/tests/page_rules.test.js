// @ts-check
// Groups, the scale beside the faders, words, and what the page consists of.
import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import test from "node:test";
import { decibelText, decibelsAt, positionFor, unity } from "../page/fader_scale.js";
import { Groups } from "../page/groups.js";
import { SessionPicture } from "../page/session_picture.js";
import { isJapanese, sayIn } from "../page/words.js";

const page = new URL("../page/", import.meta.url);

/** @param {string[]} names */
function sessionOf(...names) {
    const picture = new SessionPicture();
    picture.apply({ type: "bankPos", offset: 0, tracks: names.length, shown: 8 });
    const row = { fader: 0, mute: false, solo: false, record: false, color: null, inputMonitor: false, select: false };
    names.forEach((name, index) => picture.apply({ type: "trackRow", row: { ...row, index, name, comment: "" } }));
    return picture;
}

/** What a browser keeps for a page. */
function store() {
    /** @type {Map<string, string>} */
    const kept = new Map();
    return {
        getItem: (/** @type {string} */ name) => kept.get(name) ?? null,
        setItem: (/** @type {string} */ name, /** @type {string} */ value) => void kept.set(name, value),
    };
}

test("a group keeps its tracks when they get other places", () => {
    const kept = store();
    const groups = new Groups(kept);
    const before = sessionOf("Kick", "Snare", "Bass");
    groups.toggle(before, 0);
    groups.toggle(before, 2);
    const later = new Groups(kept);
    assert.deepEqual(later.indices(sessionOf("Click", "Kick", "Bass", "Snare")), [1, 2]);
});

test("a group leaves out what the session does not have, and keeps tracks of the same name apart", () => {
    const groups = new Groups(store());
    const session = sessionOf("Vox", "Vox", "Bass");
    groups.toggle(session, 1);
    groups.toggle(session, 2);
    assert.deepEqual(groups.indices(session), [1, 2]);
    assert.deepEqual(groups.indices(sessionOf("Drums", "Vox")), [1]);
    groups.toggle(session, 1);
    assert.deepEqual(groups.indices(session), [2]);
});

test("groups that something else has written are empty", () => {
    for (const text of ["", "{", "7", "null", '{"A": 3}', '{"A": [null, {"name": "Kick"}]}']) {
        const kept = store();
        kept.setItem("lumbrine.groups", text);
        assert.deepEqual(new Groups(kept).indices(sessionOf("Kick")), [], text);
    }
});

test("decibels lead back to the position that they were read at", () => {
    for (let position = 0; position <= 16383; position += 7)
        assert.ok(Math.abs(positionFor(decibelsAt(position)) - position) <= 1, String(position));
    assert.equal(decibelText(unity), "0.0");
    assert.equal(decibelText(0), "-∞");
    assert.equal(decibelText(16383), "+12.0");
});

test("the browser's first language decides", () => {
    assert.equal(sayIn(isJapanese(["ja-JP", "en"]))("mapPlace", 1, 16, 40), "40 本中 1 – 16 本目");
    assert.equal(sayIn(isJapanese(["de", "ja"]))("mapPlace", 1, 16, 40), "Tracks 1 to 16 of 40");
});

test("the gateway has every file of the page", () => {
    const listed = readFileSync(new URL("CMakeLists.txt", page), "utf8").match(/^ {4}[\w-]+\.\w+(?=\)?$)/gm);
    const files = readdirSync(page).filter((name) => name !== "CMakeLists.txt");
    assert.deepEqual(listed?.map((name) => name.trim()).sort(), files.sort());
});
