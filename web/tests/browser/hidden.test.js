// @ts-check
// A tab that is really hidden. Pages that Playwright opens are always visible, so this browser is started without it.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import test, { after, before } from "node:test";
import { chromium } from "playwright-core";
import { fingersOn, middleOf, sentBy, until } from "../hands.js";
import { Studio } from "../studio.js";

/** @type {Studio} */
let studio;
/** @type {import("node:child_process").ChildProcess} */
let browserProcess;
/** @type {import("playwright-core").Browser} */
let browser;
const profile = mkdtempSync(join(tmpdir(), "lumbrine-chromium-"));

before(async () => {
    studio = await Studio.open(24);
    const options = ["--headless=new", "--no-sandbox", "--no-first-run", "--remote-debugging-port=0"];
    browserProcess = spawn("/usr/bin/chromium", [...options, `--user-data-dir=${profile}`, "about:blank"], {
        stdio: ["ignore", "ignore", "pipe"],
    });
    const lines = createInterface({ input: /** @type {import("node:stream").Readable} */ (browserProcess.stderr) });
    /** @type {string} */
    const address = await new Promise((resolve) =>
        lines.on("line", (line) => {
            const found = line.match(/DevTools listening on (ws:.*)/);
            if (found) resolve(found[1]);
        }),
    );
    browser = await chromium.connectOverCDP(address, { noDefaults: true });
});

after(async () => {
    await browser?.close();
    const ended = new Promise((resolve) => browserProcess.once("exit", resolve));
    browserProcess.kill();
    await ended;
    await studio?.close();
    rmSync(profile, { recursive: true, force: true });
});

test("a tab that is hidden lets go, stays in control, and goes on when it is shown again", async () => {
    const [context] = browser.contexts();
    const page = await context.newPage();
    const sent = sentBy(page);
    await page.goto(studio.address);
    await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
    const fingers = await fingersOn(page);
    await fingers.down([await middleOf(page.locator(".strip .fader").first())]);
    await page.locator(".fader[data-held]").waitFor();

    const other = await context.newPage();
    await other.bringToFront();
    await until("hidden", () => page.evaluate(() => document.hidden));
    const releases = () => sent.filter((bytes) => bytes[1] === 0x03).length;
    await until("three releases", async () => releases() === 3);
    const touches = sent.filter((bytes) => bytes[1] === 0x02).length;

    await page.bringToFront();
    await page.locator('.status[data-state="good"]').waitFor();
    assert.equal(await page.locator(".fader[data-held]").count(), 0);
    assert.equal(sent.filter((bytes) => bytes[1] === 0x02).length, touches);
    await page.locator(".strip .mute").first().click();
    await until("muted", async () => (await studio.shownTracks())[0].mute);
});
