// @ts-check
// Checks the page's codec against every byte example of docs/protocol.md.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import test from "node:test";
import * as commands from "../page/commands.js";
import { parseMessage } from "../page/messages.js";
import { SessionPicture } from "../page/session_picture.js";

const document = readFileSync(new URL("../../docs/protocol.md", import.meta.url), "utf8");

/** Bytes stand at the beginning of a line; two blanks end them. @param {string} direction */
function examples(direction) {
    const fences = document.matchAll(new RegExp("```to-" + direction + " (\\w+)\n([^`]*)```", "g"));
    return [...fences].map(([, name, lines]) => ({
        name,
        bytes: Uint8Array.from(lines.trim().split("\n").flatMap(bytesOfLine)),
    }));
}

/** @param {string} line */
const bytesOfLine = (line) => line.split("  ")[0].trim().split(" ").map((byte) => parseInt(byte, 16));

test("each command is built as the document shows it", () => {
    const built = [
        commands.hello(0n),
        commands.hello(0x5b1e900dcafe0007n),
        commands.faderMove(3, 16383),
        commands.faderTouch(11),
        commands.faderRelease(11),
        commands.mutePress(0),
        commands.soloPress(0),
        commands.recordPress(15),
        commands.vpotDelta(2, -1),
        commands.panModeToggle(),
        commands.panSeek(5, commands.ringCentre),
        commands.bankMove(commands.BankStep.bankRight),
        commands.seekBank(24),
        commands.recalibrate(),
        commands.selectPress(4),
        commands.inputMonitorToggle(4),
        commands.setAutoMode(9, commands.ModeKey.read),
        commands.groupAutoMode(commands.ModeKey.touch, [2, 3, 256]),
        commands.groupMute(true, [5, 256]),
        commands.groupSolo(false, [5]),
        commands.groupFaders([[5, 16383], [256, 0]]),
        commands.visibleRange(300, 16),
        commands.takeOver(),
    ];
    assert.deepEqual(built, examples("receiver").map((example) => example.bytes));
});

const off = { mute: 0, solo: 0, record: 0 };
const message = {
    TrackName: { type: "trackName", strip: 9, name: "Bas" },
    Meters: { type: "meters", levels: Uint8Array.from([12, 11, 0, 0, 5, 5, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2]) },
    Fader: { type: "fader", strip: 11, value: 8192 },
    Switches: {
        type: "switches",
        lights: [
            { ...off, mute: 1 },
            { ...off, solo: 1 },
            { mute: 2, solo: 0, record: 2 },
            { ...off, record: 1 },
            off,
            off,
            off,
            off,
        ],
    },
    Pan: { type: "pan", strip: 4, side: 1, position: 6, centre: true },
    PanMode: { type: "panMode", side: 1 },
    Selects: { type: "selects", flags: [false, false, true, false, false, false, false, false] },
    FullName: { type: "fullName", strip: 0, name: "ピアノ" },
    Colors: { type: "colors", colors: ["#336699", null, "#000000", null, null, null, null, null] },
    InputMons: { type: "inputMons", flags: [false, true, false, false, false, false, false, false] },
    TrackRow: {
        type: "trackRow",
        row: {
            index: 256,
            fader: 16383,
            mute: true,
            solo: false,
            record: false,
            color: "#336699",
            inputMonitor: false,
            select: true,
            name: "Vocal",
            comment: "take 3",
        },
    },
    AutoModes: { type: "autoModes", modes: [1, 2, 3, 4, 5, 9, 12, 0] },
    Transport: { type: "transport", playing: true, recording: false },
    SessAutoChunk: { type: "sessionModes", first: 128, modes: [1, 0] },
    SessPanChunk: {
        type: "sessionPans",
        first: 128,
        pans: [
            { side: 0, position: 6, centre: true },
            { side: 0, position: 0, centre: false },
        ],
    },
    Busy: { type: "busy" },
    Pong: { type: "pong" },
};

test("each message is read as the document shows it", () => {
    const shown = examples("client");
    const bankPos = [
        { type: "bankPos", offset: 24, tracks: 130, shown: 16 },
        { type: "bankPos", offset: null, tracks: 0, shown: 8 },
    ];
    for (const { name, bytes } of shown) {
        const expected = name === "BankPos" ? bankPos.shift() : message[/** @type {keyof typeof message} */ (name)];
        assert.deepEqual(parseMessage(bytes), expected, name);
    }
    assert.equal(new Set(shown.map((example) => example.name)).size, 18);
});

test("a message that ends too early is nothing, and bytes after its end are ignored", () => {
    const open = ["Meters", "Switches", "Selects", "FullName", "Colors", "InputMons", "AutoModes", "Busy", "Pong"];
    for (const { name, bytes } of examples("client")) {
        if (open.includes(name)) continue; // their length says how much there is
        const longer = Uint8Array.from([...bytes, 0xaa]);
        assert.deepEqual(parseMessage(longer), parseMessage(bytes), name);
        assert.equal(parseMessage(bytes.subarray(0, -1)), undefined, name);
    }
});

test("other versions, unknown types, strips that do not exist and nothing at all are no message", () => {
    for (const bytes of [[], [1], [2, 0x7f], [1, 0x26, 0], [1, 0x12, 16, 0, 0], [1, 0x16, 0, 0, 0, 4, 17]])
        assert.equal(parseMessage(Uint8Array.from(bytes)), undefined);
});

test("any bytes are a message or none", () => {
    let random = 1; // the same bytes each time
    const next = () => (random = (random * 48271) % 2147483647) & 0xff;
    for (let round = 0; round < 20_000; ++round) {
        const bytes = Uint8Array.from({ length: next() % 40 }, next);
        bytes[0] = 1;
        bytes[1] = 0x10 + (bytes[1] % 16);
        const picture = new SessionPicture();
        const read = parseMessage(bytes);
        if (read) picture.apply(read);
    }
});
