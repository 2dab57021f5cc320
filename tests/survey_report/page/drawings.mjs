// What the drawings hold, what a point tells of itself, and how a point is found.
import assert from "node:assert/strict";
import { test } from "node:test";
import { languages, pointsOf, report, sample, sizes, table, texts, withPage } from "./browser.mjs";

const folder = report(sample, "sample");
const points = pointsOf(folder);
const wordsOf = ({ number, x, y, z, code }) => `${number}${code && " "}${code}: X ${x}, Y ${y}, Z ${z}`;

test("the plan has a symbol a point, by code", () => withPage(folder, {}, async (page) => {
  const drawn = await page.$$eval("#points .code", (groups) => groups.flatMap((group) =>
    [...group.querySelectorAll("path")].map((path) => [group.dataset.code, path.textContent])));
  const told = points.map((point) => [point.code, wordsOf(point)]);
  assert.deepEqual(drawn.sort(), told.sort());
}));

test("labels are drawn or said to be left out", () => withPage(folder, {}, async (page) => {
  const labels = await page.$$eval("#labels .code", (groups) => groups.flatMap((group) =>
    [...group.querySelectorAll("text")].map((text) => `${text.textContent} ${group.dataset.code}`)));
  const known = new Set(points.map(({ number, code }) => `${number} ${code}`));
  assert.equal(new Set(labels).size, labels.length);
  assert.deepEqual(labels.filter((label) => !known.has(label)), []);
  const nodes = await page.locator("#nodes > path").count();
  const cuts = table(folder, "section_cuts.csv").length;
  const all = await page.locator("#labels text").count();
  const [left] = (await texts(page, "#plan-view text")).filter((text) => text.endsWith("left out"));
  assert.equal(all + (Number.parseInt(left, 10) || 0), points.length + nodes + cuts);
}));

test("the profile has a symbol a point of the terrain", () => withPage(folder, {}, async (page) => {
  const told = await texts(page, "#terrain-points path");
  const known = new Set(points.map(wordsOf));
  const said = (await texts(page, "dd")).filter((text) => text.startsWith(`${told.length} points within`));
  assert.equal(said.length, 1);
  assert.deepEqual(told.filter((words) => !known.has(words)), []);
}));

test("no two elements have one identifier", () => withPage(folder, {}, async (page) => {
  const names = await page.$$eval("[id]", (all) => all.map((one) => one.id));
  assert.equal(new Set(names).size, names.length);
}));

// ---- What a point tells

// The middles of all symbols on the screen, with their titles.
const middles = (page, group) => page.$$eval(`${group} path`, (paths) => paths.map((path) => {
  const { x, y, width, height } = path.getBoundingClientRect();
  return { words: path.textContent, x: x + width / 2, y: y + height / 2 };
}));

async function assertTip(page, symbol, all) {
  const { told, box, width, height } = await page.$eval(".tip", (tip) =>
    ({ told: tip.textContent, box: tip.getBoundingClientRect().toJSON(), width: window.innerWidth, height: window.innerHeight }));
  const near = all.filter(({ x, y }) => Math.hypot(x - symbol.x, y - symbol.y) < 0.5);
  assert.ok(near.some(({ words }) => words === told), `${told} at ${symbol.words}`);
  assert.ok(box.left >= 0 && box.top >= 0 && box.right <= width && box.bottom <= height,
    `${JSON.stringify(box)} in ${width} x ${height}`);
}

for (const [view, group] of [["#plan-view", "#points"], ["#profile-view", "#terrain-points"]]) {
  for (const viewport of sizes) {
    test(`${group} tell their figures at ${viewport.width}`, () => withPage(folder, { viewport }, async (page) => {
      await page.locator(view).evaluate((frame) => frame.scrollIntoView({ block: "center", behavior: "instant" }));
      const all = await middles(page, group);
      const inSight = all.filter(({ y }) => y > 0 && y < viewport.height);
      assert.ok(inSight.length > 0.9 * all.length);
      const every = viewport === sizes[0] ? 1 : 4;
      for (const symbol of inSight.filter((_, i) => i % every === 0)) {
        await page.mouse.move(symbol.x, symbol.y);
        await assertTip(page, symbol, all);
      }
      await page.keyboard.press("Escape");
      assert.ok(await page.locator(".tip").isHidden());
    }));
  }
}

test("a finger beside a point finds it", () =>
  withPage(folder, { viewport: sizes[2], hasTouch: true }, async (page) => {
    await page.locator("#plan-view").evaluate((frame) => frame.scrollIntoView({ block: "center", behavior: "instant" }));
    const all = await middles(page, "#points");
    const alone = all.find((one) => all.every((other) => other === one || Math.hypot(other.x - one.x, other.y - one.y) > 14));
    await page.touchscreen.tap(alone.x + 5, alone.y - 4);
    assert.equal(await page.locator(".tip").textContent(), alone.words);
  }));

// ---- Finding

async function find(page, view, number) {
  await page.fill(`#find-${view}`, number);
  await page.locator(`.find[data-of="${view}"] button`).click();
}

const none = { en: "No point has that number", es: "Ningún punto tiene ese número" };
const noneDrawn = { en: "No drawn point has that number", es: "Ningún punto dibujado tiene ese número" };

for (const language of languages) {
  test(`a point is found by its number, ${language}`, () => withPage(report(sample, "sample", language), {}, async (page) => {
    const said = page.locator('.find[data-of="plan-view"] [role=status]');
    const tip = page.locator(".tip");
    for (const point of [points[0], points[137], points.at(-1)]) {
      await find(page, "plan-view", ` ${point.number} `);
      assert.equal(await tip.textContent(), wordsOf(point));
      assert.ok(await tip.isVisible());
      assert.equal(await said.textContent(), "");
    }
    for (const number of ["302", "", "1 ", "1: X", "<b>1</b>", '"]', "\\", ".*", "LINDERO", "__proto__"]) {
      await find(page, "plan-view", number);
      const known = points.some((point) => point.number === number.trim());
      assert.equal(await said.textContent(), known ? "" : none[language], number);
      assert.equal(await tip.isVisible(), known, number);
    }
    await find(page, "profile-view", "302");
    assert.equal(await page.locator('.find[data-of="profile-view"] [role=status]').textContent(), noneDrawn[language]);
  }));
}

test("a point that is found is in the middle, eight times as large, and on", () => withPage(folder, {}, async (page) => {
  const box = () => page.$eval("#plan-view svg", ({ viewBox: { baseVal: { x, y, width, height } } }) => ({ x, y, width, height }));
  const whole = await box();
  const { number, code } = points.find(({ number: wanted }) => wanted === "150");
  await page.locator(`[data-code="${code}"][type=checkbox]`).uncheck();
  await find(page, "plan-view", number);
  const near = await box();
  assert.ok(Math.abs(whole.width / near.width - 8) < 1e-9);
  const middle = await page.$eval(".pointed", (path) => {
    const { x, y, width, height } = path.getBBox();
    return { x: x + width / 2, y: y + height / 2, seen: getComputedStyle(path).visibility };
  });
  assert.equal(middle.seen, "visible");
  assert.ok(Math.abs(near.x + near.width / 2 - middle.x) < 1e-3 && Math.abs(near.y + near.height / 2 - middle.y) < 1e-3);
  assert.ok(await page.locator(`[data-code="${code}"][type=checkbox]`).isChecked());
}));

test("a point of the profile is found in the profile", () => withPage(folder, {}, async (page) => {
  const [words] = await texts(page, "#terrain-points path");
  await find(page, "profile-view", points.find((point) => wordsOf(point) === words).number);
  assert.equal(await page.locator(".tip").textContent(), words);
}));
