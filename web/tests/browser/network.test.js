// @ts-check
// Networks and programs that go and come back. The times are what a user waits, from the moment all is well again.
import assert from "node:assert/strict";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test, { after, before } from "node:test";
import { drawn, fingersOn, middleOf, sentBy, until } from "../hands.js";
import { PlayedReceiver } from "../peers.js";
import { Gateway, Program, Studio, freePort, launch, openPage, phone } from "../studio.js";
import { Wire } from "../wire.js";

/** @type {Studio} */
let studio;
/** @type {Wire} */
let wire;
/** @type {import("playwright-core").Browser} */
let browser;
/** @type {import("playwright-core").Page} */
let page;
/** @type {number[][]} */
let sent;

before(async () => {
    [studio, browser] = await Promise.all([Studio.open(40), launch()]);
    wire = new Wire(studio.gateway.port);
    page = await (await browser.newContext(phone)).newPage();
    sent = sentBy(page);
    await page.goto(studio.addressAt(await wire.open()));
    await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
});

after(async () => {
    await browser?.close();
    wire?.close();
    await studio?.close();
});

const fader = () => page.locator(".strip").first().locator(".fader");

/** The value of the page's first fader follows Pro Tools'. @param {number} value 0 to 1 @param {number} patience */
async function follows(value, patience) {
    const start = performance.now();
    await until(
        "the page follows Pro Tools",
        async () => {
            studio.receiver.type(`fader 1 ${value}`);
            await drawn(page);
            return Math.abs(Number(await fader().getAttribute("aria-valuenow")) - value * 16383) < 2;
        },
        patience,
    );
    return performance.now() - start;
}

for (const [seconds, value] of [[0.5, 0.3], [5, 0.4], [30, 0.6]])
    test(`a network that is away for ${seconds} s is back within 2 s`, { timeout: 60_000 }, async () => {
        wire.cut();
        await new Promise((resolve) => setTimeout(resolve, seconds * 1000));
        if (seconds >= 5) assert.equal(await page.locator(".status").getAttribute("data-state"), "bad");
        wire.mend();
        const took = await follows(value, 6000);
        assert.ok(took < 2000, `after ${took} ms`);
    });

test("a finger that is down when the network goes lets go, and moves nothing when it is back", async () => {
    const fingers = await fingersOn(page);
    const start = await middleOf(fader());
    await fingers.down([start]);
    await page.locator(".fader[data-held]").waitFor();
    wire.cut();
    await until("the fader is let go", async () => (await page.locator(".fader[data-held]").count()) === 0);
    const before = sent.length;
    await fingers.move([{ x: start.x, y: start.y - 60 }]);
    wire.mend();
    await follows(0.5, 6000);
    await fingers.move([{ x: start.x, y: start.y - 90 }]);
    await fingers.up();
    assert.deepEqual(sent.slice(before).filter((bytes) => bytes[1] === 0x01 || bytes[1] === 0x02), []);
});

test("a receiver that is started again is found again", { timeout: 60_000 }, async () => {
    await studio.receiver.end();
    await page.locator('.status[data-state="bad"]').waitFor();
    await studio.startReceiver();
    const start = performance.now();
    await page.locator('.status:not([data-state="bad"])').waitFor();
    assert.ok(performance.now() - start < 2000, `after ${performance.now() - start} ms`);
    await page.locator('.status[data-state="good"]').waitFor({ timeout: 20_000 });
    const tokens = sent.filter((bytes) => bytes[1] === 0x00).map(String);
    assert.equal(new Set(tokens).size, 1, "to the receiver, it is the same device");
});

test("Pro Tools that closes its session and its ports is followed when it is back", { timeout: 60_000 }, async () => {
    studio.receiver.type("session close");
    await page.locator(".status .text", { hasText: "no tracks" }).waitFor();
    studio.receiver.type("release");
    studio.receiver.type("session open");
    studio.receiver.type("grab");
    await page.locator('.status[data-state="good"]').waitFor({ timeout: 40_000 });
    await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
    assert.ok((await follows(0.45, 6000)) < 2000);
});

test("a receiver that wants a key is said to be silent, until the gateway has it", async () => {
    const home = mkdtempSync(join(tmpdir(), "lumbrine-keys-"));
    const port = await freePort();
    const environment = { QV_PORT: String(port), QV_NO_BONJOUR: "1", LUMBRINE_CLIENTS: "paired" };
    const receiver = new Program("lumbrine-headless", [], { ...environment, HOME: home, XDG_STATE_HOME: home });
    await receiver.line(/:\d+/);
    const stranger = await Gateway.open(port);
    const context = await browser.newContext(phone);
    const shown = await context.newPage();
    await shown.goto(stranger.address);
    await shown.locator(".veil p", { hasText: "give lumbrine-web its key" }).waitFor();
    const friend = await Gateway.open(port, ["--seal-key", "@" + join(home, "lumbrine/keys")]);
    await shown.goto(friend.address);
    await shown.locator(".status .text", { hasText: "no tracks" }).waitFor();
    await context.close();
    await Promise.all([stranger.close(), friend.close(), receiver.end()]);
    rmSync(home, { recursive: true });
});

test("two pages and a client that is no browser take control from each other, and each says who has it", async () => {
    const context = await browser.newContext({ ...phone, locale: "ja-JP" });
    const other = await openPage(context, studio, { takesOver: true });
    await page.locator(".veil p", { hasText: "Another device" }).waitFor();
    await other.locator(".strip .title", { hasText: "Kick In" }).waitFor();

    const mutes = ["--send", "mute 1", "--expect", "switches 1=M*"];
    assert.equal(await studio.remote(...mutes), 1, "it is refused while a page has control");
    assert.equal((await studio.shownTracks())[0].mute, false);
    assert.equal(await studio.remote("--take-over", ...mutes), 0);
    await other.locator(".veil p", { hasText: "別の端末" }).waitFor();
    assert.equal(await page.locator(".veil").isVisible(), true);

    await page.locator(".take-over").tap();
    await page.locator('.status[data-state="good"]').waitFor();
    assert.equal(await page.locator(".veil").isVisible(), false);
    await page.locator('.strip .mute[aria-pressed="true"]').first().waitFor();
    assert.equal(await other.locator(".veil").isVisible(), true);
    await context.close();
});

test("a page that is left or closed lets its fader go before it is gone", async () => {
    const receiver = new PlayedReceiver();
    const gateway = await Gateway.open(await receiver.open());
    const context = await browser.newContext(phone);
    const came = (/** @type {number} */ opcode) => receiver.came.some(({ bytes }) => bytes[1] === opcode);
    /** @type {((it: import("playwright-core").Page) => Promise<unknown>)[]} */
    const ways = [(it) => it.goto("about:blank"), (it) => it.close()];
    for (const leave of ways) {
        const left = await openPage(context, gateway);
        const fingers = await fingersOn(left);
        await fingers.down([await middleOf(left.locator(".strip .fader").first())]);
        await until("touched", async () => came(0x02));
        await leave(left);
        await until("released", async () => came(0x03));
        receiver.came = [];
    }
    await context.close();
    await gateway.close();
    receiver.close();
});

test("sixteen pages are open at once, and one more says that it waits", { timeout: 120_000 }, async () => {
    await page.close(); // it would be one of the sixteen
    const contexts = await Promise.all(Array.from({ length: 17 }, () => browser.newContext(phone)));
    const pages = await Promise.all(contexts.map((context) => context.newPage()));
    for (const each of pages) await each.goto(studio.address, { waitUntil: "commit" });
    const wanted = { Connected: 1, "Another device is in control": 15, "Too many pages are open – waiting": 1 };
    await until("each says how it is", async () => {
        const lines = await Promise.all(pages.map((each) => each.locator(".status .text").textContent()));
        return Object.entries(wanted).every(([text, count]) => lines.filter((line) => line === text).length === count);
    }, 90_000);
    await Promise.all(contexts.map((context) => context.close()));
});

test("a key that is wrong is said so, and the right one counts at once", async () => {
    const stranger = await (await browser.newContext(phone)).newPage();
    await stranger.goto(studio.address.replace(/#.*/, "#" + "0".repeat(26)));
    await stranger.locator(".status .text", { hasText: "Scan the code" }).waitFor();
    await stranger.locator(".veil p", { hasText: "window shows the new one" }).waitFor();
    await stranger.evaluate((hash) => void (location.hash = hash), new URL(studio.address).hash);
    await stranger.locator('.status:not([data-state="waiting"]) .text', { hasText: "control" }).waitFor();
});

test("a page without a key in its address has the key that this browser knows, and puts it there", async () => {
    const context = await browser.newContext(phone);
    const known = await context.newPage();
    await known.goto(studio.address);
    await known.locator(".veil, .status[data-state='good']").first().waitFor();
    await known.goto("about:blank");
    await known.goto(studio.address.replace(/#.*/, ""));
    assert.equal(known.url(), studio.address);
    await context.close();
});
