// @ts-check
// What checks that people who see little, or use no finger, can use the page.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

export const axeSource = () => readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

/** @param {import("playwright-core").Page} page @param {string} where */
export async function findsNothing(page, where) {
    if (!(await page.evaluate(() => "axe" in window))) await page.evaluate(axeSource());
    const found = await page.evaluate(async () => {
        /** @type {import("axe-core").AxeResults} */
        const { violations } = await Reflect.get(window, "axe").run();
        return violations.map(({ id, nodes: [{ html, failureSummary }] }) => `${id}: ${html} ${failureSummary}`);
    });
    assert.deepEqual(found, [], where);
}
