// @ts-check
// The page in Chromium, against the real gateway, receiver and simulated Pro Tools: what a user does all day.
import assert from "node:assert/strict";
import test, { after, before, beforeEach } from "node:test";
import { findsNothing } from "../axe.js";
import { drawn, fingersOn, middleOf, moved, sentBy, until } from "../hands.js";
import { Studio, launch, openPage, phone } from "../studio.js";

/** @type {Studio} */
let studio;
/** @type {import("playwright-core").Browser} */
let browser;
/** @type {import("playwright-core").BrowserContext} */
let context;
/** @type {import("playwright-core").Page} */
let page;

const touch = 0x02;
const release = 0x03;

before(async () => {
    [studio, browser] = await Promise.all([Studio.open(40), launch()]);
    context = await browser.newContext(phone);
    page = await openPage(context, studio);
    await strip(0).locator(".title", { hasText: "Kick In" }).waitFor();
});

after(async () => {
    await browser?.close();
    await studio?.close();
});

beforeEach(async () => {
    if ((await page.locator(".tool.view").textContent()) === "Strips") await page.locator(".tool.view").tap();
});

/** @param {number} number from 0 */
const strip = (number, on = page) => on.locator(".strip").nth(number);
/** @param {number} number */
const faderOf = (number, on = page) => strip(number, on).locator(".fader");
/** @param {number} number */
async function valueOf(number, on = page) {
    await drawn(on);
    return Number(await faderOf(number, on).getAttribute("aria-valuenow"));
}

/** @param {number} index of a shown track @param {(track: import("../studio.js").HostTrack) => boolean} check */
const untilHost = (index, check) =>
    until(`track ${index} of Pro Tools`, async () => check((await studio.shownTracks())[index]));

test("shows all tracks of the session with their names", async () => {
    const names = (await studio.shownTracks()).map((track) => track.name);
    await page.locator(".tool.view").tap();
    await page.locator(`.row[aria-setsize="${names.length}"] .title:text-is("${names[0]}")`).waitFor();
    /** @type {string[]} */
    const found = [];
    for (let place = 0; place < names.length; place += 6) {
        await page.locator(".list").evaluate((list, top) => (list.scrollTop = top), 56 * place);
        await page.locator(`.row[aria-posinset="${place + 1}"] .title:text-is("${names[place]}")`).waitFor();
        const rows = await page
            .locator(".row:not([hidden])")
            .evaluateAll((rows) =>
                rows.map((row) => [Number(row.ariaPosInSet) - 1, row.querySelector(".title")?.textContent]),
            );
        for (const [at, name] of rows) found[Number(at)] = String(name);
    }
    assert.deepEqual(found, names);
});

test("the page asks for three files, and weighs less than 150 kB with its icons", async () => {
    const other = await context.newPage();
    /** @type {string[]} */
    const asked = [];
    other.on("request", (request) => asked.push(new URL(request.url()).pathname));
    await other.goto(studio.gateway.address.replace(/#.*/, ""));
    await other.close();
    const icons = ["/icon.svg", "/icon-180.png", "/icon-192.png", "/icon-512.png"];
    assert.deepEqual(asked.filter((path) => !icons.includes(path)).slice(0, 3), ["/", "/page.css", "/page.js"]);
    let weight = 0;
    for (const path of ["/", "/page.css", "/page.js", "/manifest.webmanifest", ...icons]) {
        const answer = await page.request.get(new URL(path, studio.address).href);
        assert.equal(answer.status(), 200, path);
        weight += (await answer.body()).length;
    }
    assert.ok(weight < 150_000, `${weight} bytes`);
    await page.locator(".take-over").tap(); // "use this tab"
    await page.locator('.status[data-state="good"]').waitFor();
});

test("a finger moves the host's fader, and no echo moves it back", async () => {
    const fingers = await fingersOn(page);
    const start = await middleOf(faderOf(2));
    await fingers.down([start]);
    let last = await valueOf(2);
    for (let way = 5; way <= 60; way += 5) {
        await fingers.move([moved(start, 0, -way)]);
        const now = await valueOf(2);
        assert.ok(now >= last, `from ${last} back to ${now}`);
        last = now;
    }
    await fingers.up();
    await untilHost(2, (track) => Math.abs(track.fader - last / 16383) < 0.002);
    assert.ok(Math.abs((await valueOf(2)) - last) < 20);
});

test("a finger that moves sideways moves finely", async () => {
    const fingers = await fingersOn(page);
    const start = await middleOf(faderOf(4));
    const before = await valueOf(4);
    await fingers.down([start]);
    await fingers.move([moved(start, 80, 0)]);
    await fingers.move([moved(start, 80, -40)]);
    const fine = (await valueOf(4)) - before;
    await fingers.up();
    const height = (await faderOf(4).boundingBox())?.height ?? 1;
    assert.ok(Math.abs(fine - (40 / height) * 16383 * (1 / 8)) < 60, `moved by ${fine}`);
});

test("two taps bring a fader to 0 dB", async () => {
    await faderOf(5).tap();
    await faderOf(5).tap();
    await untilHost(5, (track) => Math.abs(track.fader - 12288 / 16383) < 0.002);
});

test("ten fingers move ten faders at once", async () => {
    const wide = await browser.newContext({ ...phone, viewport: { width: 1180, height: 820 } });
    const tablet = await openPage(wide, studio, { takesOver: true });
    await strip(15, tablet).locator(".title", { hasText: "ギターソロ" }).waitFor();
    const fingers = await fingersOn(tablet);
    const ten = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9];
    for (const number of ten) studio.receiver.type(`fader ${number + 1} 0.5`);
    for (const number of ten) await until("all in the middle", async () => (await valueOf(number, tablet)) === 8191);
    const before = await Promise.all(ten.map((number) => valueOf(number, tablet)));
    const starts = await Promise.all(ten.map((number) => middleOf(faderOf(number, tablet))));
    await fingers.down(starts);
    for (let step = 1; step <= 6; ++step)
        await fingers.move(starts.map((start, number) => moved(start, 0, (number % 2 ? 4 : -3) * step)));
    await fingers.up();
    const shown = await Promise.all(ten.map((number) => valueOf(number, tablet)));
    for (const number of ten) {
        assert.equal(Math.sign(shown[number] - before[number]), number % 2 ? -1 : 1, `fader ${number}`);
        await untilHost(number, (track) => Math.abs(track.fader - shown[number] / 16383) < 0.002);
    }
    await page.locator(".take-over").tap(); // the other page was told, and takes control back
    await page.locator('.status[data-state="good"]').waitFor();
    await wide.close();
});

test("mute, solo and record press once and show what the host says", async () => {
    for (const [key, flag] of /** @type {const} */ ([["mute", "mute"], ["solo", "solo"], ["record", "record"]])) {
        const button = strip(3).locator("." + key);
        await button.tap();
        await untilHost(3, (track) => track[flag]);
        await until(`${key} is lit`, async () => (await button.getAttribute("aria-pressed")) === "true");
        await button.tap();
        await untilHost(3, (track) => !track[flag]);
    }
});

test("a pan goes where it is dragged, and the middle with two taps", async () => {
    const pan = strip(1).locator(".pan").first();
    const fingers = await fingersOn(page);
    const start = await middleOf(pan);
    await fingers.down([start]);
    await fingers.move([moved(start, 12, 0)]);
    await fingers.up();
    await until("right of the middle", async () => Number(await pan.getAttribute("aria-valuenow")) > 6);
    await pan.tap();
    await pan.tap();
    await until("the middle", async () => (await pan.getAttribute("aria-valuenow")) === "6");
});

test("an automation mode is chosen from a sheet", async () => {
    await strip(6).locator(".mode").tap();
    await page.locator(".sheet[open] .choice.latch").tap();
    await strip(6).locator('.mode[data-mode="latch"]').waitFor();
});

test("bank keys and the map move the strips", async () => {
    const first = strip(0).locator(".title");
    const names = (await studio.shownTracks()).map((track) => track.name);
    await page.locator(".tool.step").nth(3).tap();
    await until("a bank on", async () => (await first.textContent()) === names[16]);
    await page.locator(".tool.step").nth(1).tap();
    await until("a channel back", async () => (await first.textContent()) === names[15]);
    const map = await page.locator(".map").boundingBox();
    assert.ok(map);
    const fingers = await fingersOn(page);
    await fingers.down([{ x: map.x + 2, y: map.y + map.height / 2 }]);
    await fingers.up();
    await until("the first track", async () => (await first.textContent()) === names[0]);
});

test("a group moves tracks that no strip shows, with their offsets", async () => {
    const names = (await studio.shownTracks()).map((track) => track.name);
    await page.locator(".tool.view").tap();
    for (const index of [24, 30]) {
        await page.locator(".session input").fill(names[index]);
        await page.locator(`.row:not([hidden]):has(.title:text-is("${names[index]}")) .tick`).tap();
    }
    await page.locator(".session input").fill("");
    await page.locator(".group .mute").tap();
    await untilHost(24, (track) => track.mute);
    await untilHost(30, (track) => track.mute);
    await page.locator(".group .solo").tap();
    await untilHost(24, (track) => track.solo);
    await untilHost(30, (track) => track.solo);
    await page.locator('.group .solo[aria-pressed="true"]').tap();
    await untilHost(30, (track) => !track.solo);
    await page.locator(".list").evaluate((list) => (list.scrollTop = 56 * 24));
    const row = page.locator('.row[aria-posinset="25"]');
    await row.locator(".mode").tap();
    await page.locator(".sheet[open] .choice.write").tap();
    await row.locator('.mode[data-mode="write"]').waitFor();
    const before = await studio.shownTracks();
    const fingers = await fingersOn(page);
    const start = await middleOf(page.locator(".group-fader"));
    await fingers.down([start]);
    await fingers.move([moved(start, -20, 0)]);
    await fingers.move([moved(start, -40, 0)]);
    await fingers.up();
    await untilHost(24, (track) => track.fader < before[24].fader - 0.02);
    await untilHost(30, (track) => track.fader < before[30].fader - 0.02);
    await studio.receiver.line(/Applied faders/); // until then the strips are not at their places
    await page.locator(".group .clear").tap();
});

test("a finger that scrolls the list over faders moves none, and one that goes along a fader does", async () => {
    await page.locator(".tool.view").tap();
    await page.locator(".list").evaluate((list) => (list.scrollTop = 0));
    const fader = page.locator('.row[aria-posinset="4"] .row-fader');
    studio.receiver.type("fader 4 0.5");
    await until("the page knows", async () => (await fader.getAttribute("aria-valuenow")) === "8191");
    const before = await studio.shownTracks();
    const fingers = await fingersOn(page);
    const start = await middleOf(fader);
    await fingers.down([start]);
    for (let way = 10; way <= 100; way += 10) await fingers.move([moved(start, 0, -way)]);
    await fingers.up();
    await until("scrolled", async () => (await page.locator(".list").evaluate((list) => list.scrollTop)) > 40);
    assert.deepEqual(await studio.shownTracks(), before);
    await page.locator(".list").evaluate((list) => (list.scrollTop = 0));
    await drawn(page);
    await fingers.down([start]);
    for (let way = 5; way <= 30; way += 5) await fingers.move([moved(start, -way, 0)]);
    await fingers.up();
    await untilHost(3, (track) => track.fader < before[3].fader - 0.05);
});

test("a finger that the system takes away lets its fader go at once", async () => {
    const other = await context.newPage(); // the newest tab of a browser is the one in use
    const sent = sentBy(other);
    await other.goto(studio.address);
    await strip(0, other).locator(".title", { hasText: "Kick In" }).waitFor();
    const fingers = await fingersOn(other);
    await fingers.down([await middleOf(faderOf(0, other))]);
    await until("touches repeated while the finger is down", async () => count(sent, touch, 0) >= 2);
    await fingers.cancel();
    await until("three releases", async () => count(sent, release, 0) === 3);
    const touches = count(sent, touch, 0);

    await fingers.down([await middleOf(faderOf(1, other))]);
    await other.evaluate(() => {
        Object.defineProperty(document, "hidden", { value: true });
        document.dispatchEvent(new Event("visibilitychange"));
    });
    await until("releases when the tab is hidden", async () => count(sent, release, 1) === 3);
    assert.equal(count(sent, touch, 0), touches);
    await other.close();
    await page.locator(".take-over").tap(); // "use this tab"
    await page.locator('.status[data-state="good"]').waitFor();
});

/** @param {number[][]} sent @param {number} opcode @param {number} number */
const count = (sent, opcode, number) => sent.filter((bytes) => bytes[1] === opcode && bytes[2] === number).length;

test("every control has a role, a name and a value, in both views and both sheets", async () => {
    await findsNothing(page, "strips");
    await strip(2).locator(".mode").tap();
    await findsNothing(page, "automation modes");
    await page.keyboard.press("Escape");
    await page.locator(".tool").last().tap();
    await findsNothing(page, "menu");
    await page.keyboard.press("Escape");
    await page.locator(".tool.view").tap();
    await page.locator(".row .title").first().waitFor();
    await findsNothing(page, "tracks");
});

test("a gateway that is killed and started again is found again", async () => {
    await studio.gateway.program.end("SIGKILL");
    await page.locator('.status[data-state="bad"]').waitFor();
    await studio.gateway.start();
    const back = performance.now();
    await page.locator('.status[data-state="good"]').waitFor();
    assert.ok(performance.now() - back < 2000, `after ${performance.now() - back} ms`);
    await faderOf(0).focus();
    const before = await valueOf(0);
    await page.keyboard.press("ArrowUp");
    await untilHost(0, (track) => Math.abs(track.fader - (before + 128) / 16383) < 0.002);
});
