// @ts-check
// node pictures.js FOLDER: takes pictures of the page in both languages: on a phone, with and without a browser's bars
// and on its side, and on a tablet; all tracks; and, on the phone, what it says when it cannot work.
import { join } from "node:path";
import { Gateway, Studio, freePort, launch, openPage, phone } from "./studio.js";

const folder = process.argv[2];
const devices = {
    phone,
    browser: { ...phone, viewport: { width: 390, height: 664 } },
    landscape: { ...phone, viewport: { width: 844, height: 390 } },
    tablet: { ...phone, viewport: { width: 1180, height: 820 }, deviceScaleFactor: 2 },
};

let isPrepared = false;
const studio = await Studio.open(130);
const browser = await launch();
try {
    await takePictures();
} finally {
    await browser.close();
    await studio.close();
}

async function takePictures() {
    for (const [language, locale] of [["en", "en-GB"], ["ja", "ja-JP"]])
        for (const [device, settings] of Object.entries(devices)) {
            const context = await browser.newContext({ ...settings, locale });
            // One device to the receiver, so that nothing has to be taken over.
            await context.addInitScript(() => localStorage.setItem("lumbrine.token", "7"));
            const page = await openPage(context, studio);
            await page.locator(".strip .title", { hasText: "Kick In" }).waitFor();
            await prepare(page);
            await page.screenshot({ path: join(folder, `web-strips-${device}-${language}.png`) });
            await page.locator(".tool.view").tap();
            for (const row of [0, 2, 3]) await page.locator(".row .tick").nth(row).tap();
            await page.locator(".row .title:text('Kick In')").waitFor();
            await page.screenshot({ path: join(folder, `web-tracks-${device}-${language}.png`) });
            if (device === "phone") await takeSheets(page, language);
            if (device === "phone") await takeTroubles(page, locale, language);
            await context.close();
        }
}

/** What is over the page at times. @param {import("playwright-core").Page} page @param {string} language */
async function takeSheets(page, language) {
    const openers = { menu: page.locator(".tool").last(), modes: page.locator(".row .mode").first() };
    for (const [name, opener] of Object.entries(openers)) {
        await opener.tap();
        await page.screenshot({ path: join(folder, `web-${name}-phone-${language}.png`) });
        await page.keyboard.press("Escape");
    }
}

/**
 * Another device in control, and no receiver.
 * @param {import("playwright-core").Page} page @param {string} locale @param {string} language
 */
async function takeTroubles(page, locale, language) {
    const context = await browser.newContext({ ...phone, locale });
    const other = await context.newPage();
    await other.goto(studio.address);
    await other.locator(".veil:not([hidden])").waitFor();
    await other.screenshot({ path: join(folder, `web-busy-phone-${language}.png`) });
    const lonely = await Gateway.open(await freePort());
    await other.goto(lonely.address);
    await other.locator(".veil .take-over[hidden]").waitFor({ state: "attached" });
    await other.locator(".veil:not([hidden])").waitFor();
    await other.screenshot({ path: join(folder, `web-silent-phone-${language}.png`) });
    await context.close();
    await lonely.close();
    await page.locator('.status[data-state="good"]').waitFor();
}

/** Something to see: lights, and music. @param {import("playwright-core").Page} page */
async function prepare(page) {
    if (!isPrepared)
        for (const command of ["play", "mute 4", "arm 3", "select 5", "monitor 3", "auto 1 read"])
            studio.receiver.type(command);
    isPrepared = true;
    const muted = '.strip:nth-child(4) .mute[aria-pressed="true"]';
    const lit = [muted, '.strip:nth-child(3) .record[aria-pressed="true"]'];
    for (const light of lit) await page.locator(light).waitFor();
    await page.locator(".light.play[data-on]").waitFor();
}
