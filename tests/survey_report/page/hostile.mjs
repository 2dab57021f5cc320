// Codes, numbers and names of files that a page could take for its own.
import assert from "node:assert/strict";
import { test } from "node:test";
import { languages, pointsOf, quoted, report, sizes, survey, texts, withPage } from "./browser.mjs";

const codes = [
  "</script><script>document.title='taken'</script>", "<img src=x onerror=alert(1)>", "\"'><svg onload=alert(1)>",
  "a & b &amp; &lt;c&gt;", "]]>--><!--", "`${code}`", "</title></svg></div>", "back\\slash", "'quoted'",
  "\u05e9\u05dc\u05d5\u05dd \u0645\u0631\u062d\u0628\u0627", "\u202etfel ot thgir\u202c", "tab\there", "bell\u0007 escape\u001b[1m",
  "wide \u6e2c\u91cf \u{1f4d0}", "W".repeat(3000), "long ".repeat(300).trim(), "constructor", "__proto__", "{1}", "",
];
const numbers = codes.map((code, i) => [`<b>${i}</b>`, `"${i}"`, `${i}&`, `\u05d0${i}`, `n ${i}: X 1`][i % 5]);
const lines = codes.map((code, i) => `${quoted(numbers[i])},${1000 + 37 * (i % 5)},${2000 + 29 * Math.floor(i / 5)},${i},${quoted(code)}`);
const name = "<img src=x onerror=alert(1)> & \"quoted\" 'name' \u05e9\u05dd.csv";
const file = survey(name, lines);

// Controls are blanks.
const plain = (text) => text.replace(/[\u0000-\u001f\u007f]/g, " ");

for (const language of languages) {
  const folder = report(file, "hostile", language);
  const points = pointsOf(folder);

  test(`what the survey brings is text, ${language}`, () => withPage(folder, {}, async (page) => {
    assert.ok((await page.title()).endsWith(name));
    assert.ok((await page.textContent("h1")).endsWith(name));
    assert.equal(await page.locator("script").count(), 1);
    assert.equal(await page.locator("img, iframe, object, [onload], [onerror]").count(), 0);
    const cells = await page.$$eval('[aria-labelledby="table-points"] tbody tr', (rows) =>
      rows.map((row) => [row.cells[0].textContent, row.cells[4].textContent]));
    assert.deepEqual(cells, points.map(({ number, code }) => [plain(number), plain(code)]));
    const listed = (await texts(page, ".layers bdi")).filter((text) => !["no code", "sin código"].includes(text));
    assert.deepEqual(listed.sort(), codes.filter((code) => code !== "").map(plain).sort());
    const labels = await texts(page, "#labels .code text");
    assert.deepEqual(labels.filter((label) => !numbers.map(plain).includes(label)), []);
  }));

  test(`each point is found and tells its words, ${language}`, () => withPage(folder, {}, async (page) => {
    for (const { number, code, x, y, z } of points) {
      await page.fill("#find-plan-view", number);
      await page.locator('.find[data-of="plan-view"] button').click();
      assert.equal(await page.locator(".tip").textContent(), plain(`${number}${code && " "}${code}: X ${x}, Y ${y}, Z ${z}`));
    }
    await page.fill("#find-plan-view", "n 4");
    await page.locator('.find[data-of="plan-view"] button').click();
    assert.ok(await page.locator(".tip").isHidden());
  }));

  test(`each code switches its own point, ${language}`, () => withPage(folder, {}, async (page) => {
    const off = () => page.$$eval("#points .code", (groups) =>
      groups.filter((group) => getComputedStyle(group).visibility === "hidden").map((group) => group.dataset.code));
    for (const box of await page.locator("[data-code][type=checkbox]").all()) {
      await box.uncheck();
      assert.deepEqual(await off(), [await box.getAttribute("data-code")]);
      await box.check();
    }
    assert.deepEqual(await off(), []);
  }));

  for (const viewport of sizes) {
    test(`nothing leaves the page at ${viewport.width}, ${language}`, () => withPage(folder, { viewport }, async (page) => {
      await page.locator(".layers").evaluate((panel) => { panel.open = true; });
      for (const { number } of points) {
        await page.fill("#find-plan-view", number);
        await page.keyboard.press("Enter");
        const box = await page.locator(".tip").boundingBox();
        assert.ok(box.x >= 0 && box.x + box.width <= viewport.width, number);
        assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), viewport.width, number);
      }
    }));
  }
}
