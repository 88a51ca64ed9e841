// @ts-check
// The page in WebKit, the engine of every browser on an iPhone, by the protocol of WebDriver. WebKit's driver has no
// fingers: keys and clicks say that the page works there at all.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { existsSync, readdirSync } from "node:fs";
import { createServer } from "node:net";
import test, { after, before } from "node:test";
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
