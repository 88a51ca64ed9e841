// @ts-check
// The page in both languages, on systems set to dark and to light, on a phone and on a tablet.
import assert from "node:assert/strict";
import test, { after, before } from "node:test";
import { findsNothing } from "../axe.js";
import { Studio, launch, openPage, phone } from "../studio.js";

const tablet = { ...phone, viewport: { width: 1180, height: 820 } };

/** @type {Studio} */
let studio;
/** @type {import("playwright-core").Browser} */
let browser;

before(async () => {
    [studio, browser] = await Promise.all([Studio.open(24), launch()]);
});

after(async () => {
    await browser?.close();
    await studio?.close();
});

for (const [locale, language, device] of /** @type {const} */ ([["en-GB", "en", phone], ["ja-JP", "ja", tablet]]))
    for (const colorScheme of /** @type {const} */ (["dark", "light"]))
        test(`every control has role, name and value: ${language}, ${colorScheme}`, { timeout: 60_000 }, async () => {
            const context = await browser.newContext({ ...device, locale, colorScheme, reducedMotion: "reduce" });
            // One device to the receiver, so that nothing has to be taken over.
            await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
            const page = await openPage(context, studio);
            await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
            assert.equal(await page.locator("html").getAttribute("lang"), language);
            await findsNothing(page, "strips");
            await page.locator(".tool.view").tap();
            await page.locator(".row .title:text('Kick In')").waitFor();
            await findsNothing(page, "tracks");
            await context.close();
        });

test("the left-handed have the meters on the other side, also the next time", { timeout: 60_000 }, async () => {
    const context = await browser.newContext(phone);
    await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
    const page = await openPage(context, studio);
    const leftOf = async (/** @type {string} */ place) => {
        const box = await page.locator(".strip").first().locator(place).boundingBox();
        return box?.x ?? NaN;
    };
    assert.ok((await leftOf(".meter")) > (await leftOf(".fader")));
    await page.locator(".tool").last().tap();
    await page.locator(".sheet[open] .choice", { hasText: "Left-handed" }).tap();
    assert.ok((await leftOf(".meter")) < (await leftOf(".fader")));
    await page.reload();
    await page.locator('.status[data-state="good"]').waitFor();
    assert.ok((await leftOf(".meter")) < (await leftOf(".fader")));
    await context.close();
});

test("a tablet has record and monitor for all tracks, and says where they work", { timeout: 60_000 }, async () => {
    const context = await browser.newContext(tablet);
    await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
    const page = await openPage(context, studio);
    await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
    await page.locator(".tool.view").tap();
    for (const [key, command] of [["record", "arm 2"], ["monitor", "monitor 2"]]) {
        const button = page.locator(`.row[aria-posinset="2"] .${key}`);
        await button.tap();
        await page.locator(`.row[aria-posinset="2"] .${key}[aria-pressed="true"]`).waitFor();
        studio.receiver.type(command); // as it was
        await page.locator(`.row[aria-posinset="2"] .${key}[aria-pressed="false"]`).waitFor();
    }
    await page.locator(".list").evaluate((list) => (list.scrollTop = list.scrollHeight));
    for (const place of ['.record[aria-disabled="true"]', ".row-pan"]) {
        await page.locator(".status .text", { hasText: "Connected" }).waitFor();
        await page.locator(`.row ${place}`).last().tap({ force: true });
        await page.locator(".status .text", { hasText: "works on the strips' tracks" }).waitFor();
    }
    await context.close();
});

test("a stereo pan turns the side that is chosen, and shows both", { timeout: 60_000 }, async () => {
    const context = await browser.newContext(tablet);
    await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
    const page = await openPage(context, studio);
    await page.locator(".strip .title", { hasText: "OH" }).waitFor();
    const pan = page.locator(".strip", { hasText: "OH" }).first().locator(".pan");
    studio.receiver.type("pan 9 -100 100");
    await page.locator(".tool.pan-side").tap();
    await page.locator('[aria-label="OH: right pan"][aria-valuenow="11"]').waitFor();
    await pan.focus();
    await page.keyboard.press("ArrowLeft");
    await page.locator('[aria-label="OH: right pan"][aria-valuenow="10"]').waitFor();
    await page.locator(".tool.pan-side").tap();
    await page.locator('[aria-label="OH: left pan"][aria-valuenow="1"]').waitFor();
    assert.notEqual(await pan.getAttribute("data-stereo"), null);
    await context.close();
});

for (const [name, size, count, keys] of /** @type {const} */ ([
    ["a phone with a browser's bars", { width: 390, height: 664 }, 4, "beside"],
    ["a phone without them", { width: 390, height: 844 }, 8, "above"],
    ["a phone on its side", { width: 844, height: 390 }, 8, "beside"],
    ["a small phone on its side", { width: 664, height: 330 }, 4, "pairs"],
    ["a tablet", { width: 820, height: 1180 }, 16, "above"],
]))
    test(`${name} shows ${count} strips, and no control is smaller than 30 pixels`, { timeout: 60_000 }, async () => {
        const context = await browser.newContext({ ...phone, viewport: size });
        await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
        const page = await openPage(context, studio);
        await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
        assert.equal(await page.locator(".strip:not([hidden])").count(), count);
        assert.equal(await page.locator(".strips").getAttribute("data-keys"), keys);
        const controls = page.locator(".strip:not([hidden]) :is(button, [role=slider]), .tools button");
        const small = await controls.evaluateAll((all) =>
            all
                .map((control) => ({ name: control.ariaLabel, box: control.getBoundingClientRect() }))
                .filter(({ box: { width, height } }) => width > 0 && Math.min(width, height) < 30)
                .map(({ name, box }) => `${name}: ${box.width} x ${box.height}`),
        );
        assert.deepEqual(small, []);
        await context.close();
    });

test("the page has what a home screen needs, and keeps the screen on", { timeout: 60_000 }, async () => {
    const context = await browser.newContext(phone);
    await context.addInitScript(() => {
        localStorage.setItem("lumbrine.token", "7");
        navigator.wakeLock.request = async () => Reflect.set(window, "isAwake", true) && /** @type {any} */ ({});
    });
    const page = await openPage(context, studio);
    const manifest = await (await page.request.get(new URL("manifest.webmanifest", studio.address).href)).json();
    assert.equal(manifest.display, "standalone");
    assert.equal(manifest.start_url, undefined, "the page's own address has the key");
    for (const { src, type } of manifest.icons) {
        const icon = await page.request.get(new URL(src, studio.address).href);
        assert.deepEqual([icon.status(), icon.headers()["content-type"]], [200, type], src);
    }
    await page.locator(".strip .fader").first().tap();
    await page.waitForFunction(() => Reflect.get(window, "isAwake"));
    await context.close();
});
