// Sizes, paper, languages, readers of the screen, and browsers without scripts.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { axe, languages, pointsOf, report, sample, sizes, survey, table, tables, texts, withPage } from "./browser.mjs";

const surveys = {
  sample,
  line: survey("line.csv", ["1,0,0,1,A", "2,5,5,1,A", "3,10,10,1,A"]),
  one: survey("one.csv", ["1,100,200,10,"]),
};

const pixels = ({ width, height }) => `${width}x${height}`;

async function violations(page) {
  await page.evaluate(axe);
  const found = await page.evaluate(() => window.axe.run());
  return found.violations.flatMap(({ id, nodes }) => nodes.map((node) => `${id}: ${node.target} ${node.failureSummary}`));
}

const scrollsSideways = (page) => page.evaluate(() =>
  document.documentElement.scrollWidth > document.documentElement.clientWidth);

for (const [name, file] of Object.entries(surveys)) {
  for (const language of languages) {
    const folder = report(file, name, language);
    for (const viewport of sizes) {
      test(`${name} at ${pixels(viewport)}, ${language}`, () => withPage(folder, { viewport }, async (page) => {
        assert.ok(!(await scrollsSideways(page)));
        await page.locator(".layers").evaluateAll((panels) => panels.forEach((panel) => { panel.open = true; }));
        await page.locator("th button").first().click();
        await page.fill("#find-plan-view", "1");
        await page.keyboard.press("Enter");
        assert.ok(await page.locator(".tip").isVisible());
        assert.ok(!(await scrollsSideways(page)));
        assert.deepEqual(await violations(page), []);
      }));
    }
  }
}

// ---- Languages

// Words of one letter and figures are of no language.
const wordsIn = (text) => new Set(text.toLowerCase().match(/\p{L}{2,}/gu));

// In both languages alike, besides what the survey brings along.
const alike = new Set(["gon", "no", "plan", "csv", "svg", "txt", "mm", "longitudinal", "vertical"]);

test("neither language has words of the other", async () => {
  const own = wordsIn(readFileSync(sample, "utf8"));
  const files = wordsIn("report plan profile points repeated pairs section cuts grid nodes stations in area extremes contours dxf");
  const found = {};
  for (const language of languages) {
    await withPage(report(sample, "sample", language), {}, async (page) => {
      await page.locator(".files").evaluate((list) => list.remove());
      const attributes = await page.$$eval("[aria-label], [title], [data-none], [data-keys]", (all) => all.flatMap((one) =>
        ["aria-label", "title", "data-none", "data-keys"].map((name) => one.getAttribute(name) || "")));
      found[language] = wordsIn([...attributes, await page.title(), ...await texts(page, "header, main")].join(" "));
      assert.equal(await page.getAttribute("html", "lang"), language);
    });
  }
  assert.ok(found.en.size > 100 && found.es.size > 100);
  const shared = [...found.en].filter((word) => found.es.has(word) && !own.has(word) && !alike.has(word) && !files.has(word));
  assert.deepEqual(shared, []);
});

// ---- Without scripts

for (const language of languages) {
  const folder = report(sample, "sample", language);
  test(`all is read without scripts, ${language}`, () => withPage(folder, { javaScriptEnabled: false }, async (page) => {
    for (const control of await page.locator("button, input, summary, form, [tabindex]:not(.scroll)").all()) {
      assert.ok(await control.isHidden());
    }
    for (const section of ["#plan-view svg", "#profile-view svg", "header dl", ".files a"]) {
      assert.ok(await page.locator(section).first().isVisible(), section);
    }
    assert.equal(await page.locator(".scroll tbody tr").count(),
      tables.reduce((sum, file) => sum + table(folder, `${file}.csv`).length, 0));
    const titles = (await texts(page, "#points path > title")).length;
    assert.equal(titles, pointsOf(folder).length);
  }));
}

test("links lead to files beside the page", () => withPage(report(sample, "sample"), {}, async (page) => {
  const names = await page.$$eval(".files a", (links) => links.map((link) => link.getAttribute("href")));
  assert.ok(names.length >= 10);
  for (const name of names) assert.notEqual(readFileSync(join(report(sample, "sample"), name)).length, 0);
  const ways = await page.$$eval('a[href^="#"]', (links) => links.map((link) => link.getAttribute("href")));
  for (const way of ways) assert.equal(await page.locator(way).count(), 1, way);
}));

// ---- Paper

const sheet = { format: "A4", margin: { top: "12mm", bottom: "12mm", left: "12mm", right: "12mm" } };

async function printed(page) {
  const pages = execFileSync("pdftotext", ["-layout", "-", "-"], { input: await page.pdf(sheet), encoding: "utf8" });
  return pages.split("\f");
}

for (const language of languages) {
  const folder = report(sample, "sample", language);
  test(`each drawing is on one sheet of paper, ${language}`, () => withPage(folder, {}, async (page) => {
    await page.locator('[data-of="plan-view"][data-zoom="in"]').click();
    const pages = await printed(page);
    for (const view of ["#plan-view", "#profile-view"]) {
      const level = await page.$$eval(`${view} text:not([transform])`, (all) =>
        all.map((one) => one.textContent).filter((text) => /^[\p{L}\d .,()-]{5,}$/u.test(text)));
      assert.ok(level.length > 8);
      const holds = (paper) => level.every((text) => paper.replace(/\s+/g, "").includes(text.replace(/\s+/g, "")));
      assert.equal(pages.filter(holds).length, 1, view);
    }
  }));

  test(`tables are whole on paper, with their headings on every sheet, ${language}`, () => withPage(folder, {}, async (page) => {
    await page.locator(`[aria-labelledby="table-points"]`).evaluate((box) => box.scrollTo(0, 300));
    const pages = await printed(page);
    const lines = pages.flatMap((paper) => paper.split("\n")).map((line) => line.trim().split(/\s{2,}/).join(" "));
    for (const file of ["points", "grid_nodes"]) {
      for (const row of table(folder, `${file}.csv`)) {
        const text = row.filter((cell) => cell !== "").join(" ").replace(/\s+/g, " ");
        assert.ok(lines.some((line) => line.replace(/\s+/g, " ") === text), text);
      }
    }
    const heading = (await texts(page, '[aria-labelledby="table-points"] th')).join(" ");
    const withHeading = pages.filter((paper) => paper.replace(/[ ]+/g, " ").includes(heading)).length;
    assert.ok(withHeading >= Math.ceil(pointsOf(folder).length / 80), `${heading}: ${withHeading}`);
  }));
}

test("paper has no tools", () => withPage(report(sample, "sample"), {}, async (page) => {
  await page.emulateMedia({ media: "print" });
  for (const tool of await page.locator(".tools, .layers, .tip, nav, .skip").all()) assert.ok(await tool.isHidden());
}));
