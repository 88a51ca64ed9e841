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
