// Tables: their rows are those of the files, and each column sorts.
import assert from "node:assert/strict";
import { test } from "node:test";
import { languages, report, sample, survey, table, tables as files, texts, withPage } from "./browser.mjs";

const tableOf = (file) => `[aria-labelledby="table-${file}"] table`;

const rowsOf = (page, file) => page.$$eval(`${tableOf(file)} tbody tr`, (rows) =>
  rows.map((row) => [...row.cells].map((cell) => cell.textContent)));

// Flags have a language on the page.
const flags = { en: { 0: "no", 1: "yes" }, es: { 0: "no", 1: "sí" } };
const asOnPage = (file, language) => (row) =>
  (file === "repeated_pairs" ? [...row.slice(0, 6), ...row.slice(6).map((flag) => flags[language][flag])] : row);

for (const language of languages) {
  const folder = report(sample, "sample", language);
  for (const file of files) {
    test(`the rows of ${file}, ${language}`, () => withPage(folder, {}, async (page) => {
      const rows = table(folder, `${file}.csv`).map(asOnPage(file, language));
      assert.notEqual(rows.length, 0);
      assert.deepEqual(await rowsOf(page, file), rows);
    }));
  }
}

// ---- Sorting

const folder = report(sample, "sample");
const byText = new Intl.Collator("en", { numeric: true }).compare;

// Full cells in order, empty ones behind them.
function assertSorted(cells, compare, what) {
  const full = cells.filter((cell) => cell !== "");
  assert.deepEqual(cells, [...full, ...cells.filter((cell) => cell === "")], what);
  for (let i = 1; i < full.length; ++i) assert.ok(compare(full[i - 1], full[i]) <= 0, `${what}: ${full[i - 1]}, ${full[i]}`);
}

for (const file of files) {
  test(`the columns of ${file} sort up and down`, () => withPage(folder, {}, async (page) => {
    const before = (await rowsOf(page, file)).map(String).sort();
    const headings = await page.$$eval(`${tableOf(file)} th`, (all) => all.map((one) => one.classList.contains("number")));
    for (const [column, isNumber] of headings.entries()) {
      const heading = page.locator(`${tableOf(file)} th`).nth(column);
      const compare = isNumber ? (a, b) => a - b : byText;
      for (const direction of ["ascending", "descending"]) {
        await heading.locator("button").click();
        assert.equal(await heading.getAttribute("aria-sort"), direction);
        assert.equal(await page.locator(`${tableOf(file)} [aria-sort]`).count(), 1);
        const rows = await rowsOf(page, file);
        const what = `column ${column} ${direction}`;
        assertSorted(rows.map((row) => row[column]), direction === "ascending" ? compare : (a, b) => compare(b, a), what);
        assert.deepEqual(rows.map(String).sort(), before, what);
      }
    }
  }));
}

test("columns of numbers are those with numbers", () => withPage(folder, {}, async (page) => {
  for (const file of files) {
    const texts = await page.$$eval(`${tableOf(file)} td.number`, (cells) => cells.map((cell) => cell.textContent));
    assert.deepEqual(texts.filter((text) => Number.isNaN(Number(text))), [], file);
  }
}));

test("numbers, names and empty cells", () => {
  const lines = ["10,1,1,-5,b", "9,3,20,-12,", "P2,20,3,7,B", "P10,100,2,0,a", "1e3,0,0,1,á", "2x,50,9,2,"];
  return withPage(report(survey("sorting.csv", lines), "sorting"), {}, async (page) => {
    const sorted = async (column, times) => {
      for (let i = 0; i < times; ++i) await page.locator(`${tableOf("points")} th button`).nth(column).click();
      return (await rowsOf(page, "points")).map((row) => row[column]);
    };
    assert.deepEqual(await sorted(0, 1), ["1e3", "2x", "9", "10", "P2", "P10"]);
    assert.deepEqual(await sorted(1, 1), ["0.000", "1.000", "3.000", "20.000", "50.000", "100.000"]);
    assert.deepEqual(await sorted(3, 1), ["-12.000", "-5.000", "0.000", "1.000", "2.000", "7.000"]);
    assert.deepEqual(await sorted(3, 1), ["7.000", "2.000", "1.000", "0.000", "-5.000", "-12.000"]);
    assert.deepEqual(await sorted(4, 1), ["a", "á", "b", "B", "", ""]);
    assert.deepEqual(await sorted(4, 1), ["B", "b", "á", "a", "", ""]);
    await page.locator(`${tableOf("points")} th button`).nth(5).focus();
    await page.keyboard.press("Enter");
    assert.equal((await sorted(5, 0)).at(-1), "");
    assert.equal((await sorted(5, 1)).at(-1), "");
  });
});

// ---- What there is none of

test("a table without rows is not there", () => {
  const line = report(survey("line.csv", ["1,0,0,1,A", "2,5,5,1,A", "3,10,10,1,A"]), "line");
  return withPage(line, {}, async (page) => {
    assert.deepEqual(await page.$$eval("table", (all) => all.map((one) => one.parentNode.getAttribute("aria-labelledby"))),
      ["table-extremes", "table-points"]);
    const none = "None: the points do not enclose an area.";
    assert.equal((await texts(page, ".facts p")).filter((text) => text.trim() === none).length, 5);
    assert.equal(await page.locator("#plan-view").count(), 1);
    assert.equal(await page.locator("#profile-view").count(), 0);
  });
});
