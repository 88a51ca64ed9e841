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
            const page = await openPage(context, studio);
            await page.locator(".strip:not([hidden]):not([data-empty])").first().waitFor();
            await page.waitForFunction(() => document.querySelectorAll(".strip .mute").length > 0);
            if (language === "en" && device === "phone") await prepare(page);
            await page.screenshot({ path: join(folder, `web-strips-${device}-${language}.png`) });
            await page.locator(".tool.view").tap();
            await page.locator(".row").nth(4).waitFor();
            await page.screenshot({ path: join(folder, `web-tracks-${device}-${language}.png`) });
            await context.close();
        }
}

/** Something to see: lights and music. @param {import("playwright-core").Page} page */
async function prepare(page) {
    for (const command of ["play", "mute 4", "solo 2", "arm 3", "select 5", "monitor 3"])
        studio.receiver.type(command);
    await page.locator('.strip:nth-child(4) .mute[data-light="on"]').waitFor();
    await page.locator('.strip:nth-child(3) .record[aria-pressed="true"]').waitFor();
}
