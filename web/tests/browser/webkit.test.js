// @ts-check
// The page in WebKit, the engine of every browser on an iPhone, by the protocol of WebDriver. Its driver has one
// pointer, a mouse, which goes through the browser's own hit test and capture. Ten fingers are events that the test
// makes. WebKit refuses to capture pointers that it does not know, so for these events capture does nothing.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { existsSync, readdirSync } from "node:fs";
import { createServer } from "node:net";
import test, { after, before } from "node:test";
import { axeSource } from "../axe.js";
import { until } from "../hands.js";
import { Studio } from "../studio.js";

const driverPath = "/usr/bin/WebKitWebDriver";
const libraries = `/usr/lib/${process.arch === "arm64" ? "aarch64" : "x86_64"}-linux-gnu`;
const browserFolder = existsSync(libraries) && readdirSync(libraries).find((name) => name.startsWith("webkit2gtk-4"));
const missing = !existsSync(driverPath) || !browserFolder ? "there is no WebKit with its driver" : false;

/** @type {Studio} */
let studio;
/** @type {import("node:child_process").ChildProcess[]} */
const started = [];
/** The driver's address, with the session. */
let session = "";

/** @param {string} method @param {string} path @param {object} [body] */
async function ask(method, path, body) {
    const answer = await fetch(session + path, { method, body: body && JSON.stringify(body) });
    return (await answer.json()).value;
}

/** What an expression is on the page. @param {string} expression */
const onPage = (expression) => ask("POST", "/execute/sync", { script: `return ${expression}`, args: [] });

/** @returns {Promise<number>} */
const freePort = () =>
    new Promise((resolve) => {
        const server = createServer().listen(0, "127.0.0.1", () => {
            const address = server.address();
            server.close(() => resolve(address && typeof address === "object" ? address.port : 0));
        });
    });

/** @returns {Promise<string>} */
function startDisplay() {
    const screen = ["-screen", "0", "1024x800x24", "-nolisten", "tcp", "-displayfd", "3"];
    const display = spawn("Xvfb", screen, { stdio: ["ignore", "ignore", "ignore", "pipe"] });
    started.push(display);
    return new Promise((resolve) => display.stdio[3]?.once("data", (number) => resolve(`:${String(number).trim()}`)));
}

before(async () => {
    if (missing) return;
    studio = await Studio.open(40);
    const port = await freePort();
    const environment = { ...process.env, DISPLAY: await startDisplay() };
    // Its sandbox wants a user other than root.
    const sandbox = process.getuid?.() === 0 ? { WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS: "1" } : {};
    started.push(spawn(driverPath, [`--port=${port}`], { env: { ...environment, ...sandbox }, stdio: "inherit" }));
    session = `http://127.0.0.1:${port}`;
    await until("the driver answers", () => ask("GET", "/status").catch(() => null));
    const binary = `${libraries}/${browserFolder}/MiniBrowser`;
    const browser = { "webkitgtk:browserOptions": { binary, args: ["--automation"] } };
    const { sessionId } = await ask("POST", "/session", { capabilities: { alwaysMatch: browser } });
    session += `/session/${sessionId}`;
    await ask("POST", "/url", { url: studio.address });
});

after(async () => {
    if (missing) return;
    await ask("DELETE", "");
    for (const process of started) process.kill();
    await studio.close();
});

test("WebKit shows the strips and the tracks", { skip: missing }, async () => {
    const names = (await studio.shownTracks()).map((track) => track.name);
    const first = "document.querySelector('.strip .title').textContent";
    await until("the strips", async () => (await onPage(first)) === names[0], 20_000);
    assert.equal(await onPage("document.querySelectorAll('.strip:not([hidden])').length"), 16);
    await onPage("document.querySelector('.tool.view').click()");
    const row = "document.querySelector('.row .title')?.textContent";
    await until("the tracks", async () => (await onPage(row)) === names[0]);
    await onPage("document.querySelector('.tool.view').click()");
});

test("a key and a click in WebKit move and mute a track", { skip: missing }, async () => {
    const before = (await studio.shownTracks())[2].fader;
    const key = "new KeyboardEvent('keydown', { key: 'PageUp' })";
    await onPage(`document.querySelectorAll('.fader')[2].dispatchEvent(${key})`);
    await until("moved", async () => (await studio.shownTracks())[2].fader > before + 0.05);
    await onPage("document.querySelectorAll('.strip .mute')[1].click()");
    await until("muted", async () => (await studio.shownTracks())[1].mute);
    await until("lit", () => onPage("document.querySelectorAll('.strip .mute')[1].ariaPressed === 'true'"));
});

/** A strip's fader on the page. @param {number} strip */
const fader = (strip) => `document.querySelectorAll('.fader')[${strip}]`;
/** @param {number} strip */
const valueOf = async (strip) => Number(await onPage(`${fader(strip)}.ariaValueNow`));
/**
 * Of the first strips, in one command: this driver mixes up the answers to commands that overlap.
 * @param {number} count @returns {Promise<number[]>}
 */
const valuesOf = (count) =>
    onPage(`[...document.querySelectorAll('.fader')].slice(0, ${count}).map((fader) => Number(fader.ariaValueNow))`);
/** @param {string} element @returns {Promise<{x: number, y: number}>} */
async function middleOf(element) {
    const { x, y, width, height } = await onPage(`${element}.getBoundingClientRect().toJSON()`);
    return { x: x + width / 2, y: y + height / 2 };
}

/** The mouse does these, one after the other. @param {object[]} actions */
const mouse = (...actions) =>
    ask("POST", "/actions", { actions: [{ type: "pointer", id: "m", parameters: { pointerType: "mouse" }, actions }] });
/** @param {{x: number, y: number}} place */
const to = ({ x, y }) => ({ type: "pointerMove", duration: 0, x: Math.round(x), y: Math.round(y) });
const down = { type: "pointerDown", button: 0 };
const up = { type: "pointerUp", button: 0 };

test("a drag in WebKit moves the host's fader, finely when it is held sideways", { skip: missing }, async () => {
    const place = await middleOf(fader(3));
    const drag = async (/** @type {number} */ aside) => {
        const before = await valueOf(3);
        const above = { x: place.x + aside, y: place.y - 40 };
        await mouse(to(place), down, to({ x: above.x, y: place.y }), to(above), up);
        await until("drawn", async () => (await valueOf(3)) !== before);
        return (await valueOf(3)) - before;
    };
    const coarse = await drag(0);
    const fine = await drag(80);
    assert.ok(Math.abs(fine - coarse / 8) < 20, `coarse ${coarse}, fine ${fine}`);
    const last = (await valueOf(3)) / 16383;
    await until("Pro Tools has it", async () => Math.abs((await studio.shownTracks())[3].fader - last) < 0.002);
});

test("two clicks in WebKit bring a fader to 0 dB", { skip: missing }, async () => {
    await mouse(to(await middleOf(fader(4))), down, up, down, up);
    const unity = 12288 / 16383;
    await until("at 0 dB", async () => Math.abs((await studio.shownTracks())[4].fader - unity) < 0.002);
});

test("ten fingers in WebKit move ten faders, and those that are taken away let go", { skip: missing }, async () => {
    const ten = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9];
    for (const strip of ten) studio.receiver.type(`fader ${strip + 1} 0.5`);
    await until("all in the middle", async () => (await valuesOf(ten.length)).every((at) => at === 8191));
    await onPage("Element.prototype.setPointerCapture = () => {}");
    const touch = (/** @type {string} */ type, /** @type {number} */ y) =>
        onPage(`[...document.querySelectorAll('.fader')].slice(0, 10).forEach((fader, strip) => fader.dispatchEvent(
            new PointerEvent('${type}', { pointerId: 100 + strip, pointerType: 'touch', button: 0, bubbles: true,
                clientX: 100, clientY: 400 + (strip % 2 ? 1 : -1) * ${y} })))`);
    await touch("pointerdown", 0);
    for (const way of [10, 20, 30]) await touch("pointermove", way);
    const held = () => onPage("document.querySelectorAll('.fader[data-held]').length");
    await until("ten are drawn as held", async () => (await held()) === 10);
    await touch("pointercancel", 30);
    await until("let go", async () => (await held()) === 0);
    const shown = await valuesOf(ten.length);
    for (const strip of ten)
        assert.equal(Math.sign(shown[strip] - 8191), strip % 2 ? -1 : 1, `fader ${strip} of ${shown}`);
    await until("Pro Tools has them", async () => {
        const tracks = await studio.shownTracks();
        return ten.every((strip) => Math.abs(tracks[strip].fader - shown[strip] / 16383) < 0.002);
    });
});

test("in WebKit, too, every control has a role, a name and a value", { skip: missing }, async () => {
    await ask("POST", "/execute/sync", { script: axeSource(), args: [] });
    const script = `const done = arguments[arguments.length - 1];
        axe.run().then(({ violations }) => done(violations.map(({ id, nodes: [{ html }] }) => id + ": " + html)));`;
    assert.deepEqual(await ask("POST", "/execute/async", { script, args: [] }), []);
});
