// @ts-check
// node pictures.js FOLDER: takes pictures of the page on a phone, on its side, and on a tablet, in both languages.
import { join } from "node:path";
import { Studio, launch, openPage, phone } from "./studio.js";

const folder = process.argv[2];
const devices = {
    phone,
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
            await context.close();
        }
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
