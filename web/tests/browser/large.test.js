// @ts-check
// A session of 1,000 tracks, on a phone that is slow.
import assert from "node:assert/strict";
import test, { after, before } from "node:test";
import { fingersOn, until } from "../hands.js";
import { Studio, launch, openPage, phone } from "../studio.js";
import { frameCosts, scrollFrames, traceOf } from "../trace.js";

const slowness = 4; // a phone of some years ago

/** @type {Studio} */
let studio;
/** @type {import("playwright-core").Browser} */
let browser;
/** @type {import("playwright-core").Page} */
let page;

before(async () => {
    [studio, browser] = await Promise.all([Studio.open(1000), launch()]);
    page = await openPage(await browser.newContext(phone), studio, { patience: 120_000 });
    await page.locator(".tool.view").tap();
});

after(async () => {
    await browser?.close();
    await studio?.close();
});

test("all tracks are in the list, and only those in sight in the document", { timeout: 60_000 }, async () => {
    const tracks = (await studio.shownTracks()).length;
    await page.locator(`.row[aria-setsize="${tracks}"] .title:not(:empty)`).first().waitFor({ timeout: 30_000 });
    assert.ok((await page.locator(".row").count()) < 40);
    await page.locator(".list").evaluate((list) => (list.scrollTop = list.scrollHeight));
    await page.locator(`.row[aria-posinset="${tracks}"] .title:not(:empty)`).waitFor();
});

test("a flick through the list draws sixty frames a second on a slow phone", async () => {
    const session = await page.context().newCDPSession(page);
    await page.locator(".list").evaluate((list) => (list.scrollTop = 0));
    await session.send("Emulation.setCPUThrottlingRate", { rate: slowness });
    const flick = { x: 150, y: 500, yDistance: -6000, speed: 3000 };
    const seconds = Math.abs(flick.yDistance) / flick.speed;
    const trace = await traceOf(session, () => session.send("Input.synthesizeScrollGesture", flick));
    await session.send("Emulation.setCPUThrottlingRate", { rate: 1 });
    assert.ok((await page.locator(".list").evaluate((list) => list.scrollTop)) > 3000);

    const { presented, dropped } = scrollFrames(trace);
    const costs = frameCosts(trace).sort((a, b) => a - b);
    const busy = costs.reduce((sum, cost) => sum + cost, 0) / (1000 * seconds);
    const [median, most] = [0.5, 0.95].map((share) => costs[Math.floor(share * costs.length)].toFixed(1));
    console.log(`frames: ${presented} on the screen, ${dropped} dropped; the page's own: median ${median} ms, ` +
        `p95 ${most} ms, ${(100 * busy).toFixed(0)} % of its time`);
    assert.ok(presented >= 60 * seconds * 0.95, `${presented} frames`);
    assert.ok(dropped <= presented / 50, `${dropped} of ${presented} dropped`);
    assert.ok(busy < 0.75, `busy for ${busy} of the time`);
});

test("search finds a track by its name, and a tap on it brings it to the strips", { timeout: 60_000 }, async () => {
    const wanted = (await studio.shownTracks())[700].name;
    await page.locator(".session input").fill(wanted);
    await page.locator(`.row:not([hidden]) .title:text-is("${wanted}")`).tap();
    const first = page.locator(".strip .title").first();
    await until("on the first strip", async () => (await first.textContent()) === wanted, 20_000);
});

test("a finger's move is in the WebSocket with the frame that brings it", async () => {
    const fingers = await fingersOn(page);
    const box = await page.locator(".strip .fader").first().boundingBox();
    assert.ok(box);
    const start = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    await page.evaluate(() => {
        /** @type {number[]} */
        const delays = [];
        Reflect.set(window, "delays", delays);
        let movedAt = 0;
        addEventListener("pointermove", (event) => (movedAt = event.timeStamp), true);
        const send = WebSocket.prototype.send;
        WebSocket.prototype.send = function (data) {
            if (data instanceof Uint8Array && data[1] === 0x01) delays.push(performance.now() - movedAt);
            send.call(this, data);
        };
    });
    await fingers.down([start]);
    for (let way = 1; way <= 60; ++way) await fingers.move([{ x: start.x, y: start.y - way }]);
    await fingers.up();
    /** @type {number[]} */
    const delays = await page.evaluate(() => Reflect.get(window, "delays"));
    delays.sort((a, b) => a - b);
    assert.ok(delays.length >= 30, `${delays.length} moves`);
    const median = delays[Math.floor(delays.length / 2)];
    console.log(`event to WebSocket: median ${median.toFixed(1)} ms, worst ${delays[delays.length - 1].toFixed(1)} ms`);
    assert.ok(median < 34); // browsers hold a move back until their next frame
});

test("the page's scripts need little time while music plays", async () => {
    studio.receiver.type("play");
    await page.locator(".light.play[data-on]").waitFor();
    const session = await page.context().newCDPSession(page);
    await session.send("Performance.enable");
    const seconds = 5;
    const before = await scriptTime(session);
    await new Promise((resolve) => setTimeout(resolve, seconds * 1000));
    const each = ((await scriptTime(session)) - before) / seconds;
    console.log(`scripts: ${(1000 * each).toFixed(0)} ms a second`);
    assert.ok(each < 0.1);
});

/** In seconds. @param {import("playwright-core").CDPSession} session */
async function scriptTime(session) {
    const { metrics } = await session.send("Performance.getMetrics");
    return metrics.find(({ name }) => name === "ScriptDuration")?.value ?? 0;
}
