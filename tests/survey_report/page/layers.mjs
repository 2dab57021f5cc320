// Layers: each switches off what is its own, in both drawings, and nothing else.
import assert from "node:assert/strict";
import { test } from "node:test";
import { pointsOf, report, sample, sizes, survey, texts, withPage } from "./browser.mjs";

const folder = report(sample, "sample");
const painted = "path, text, line, rect";

// Which elements of the drawings are hidden, by their places among all.
const hidden = (page) => page.$$eval(`.view :is(${painted})`, (all) =>
  all.flatMap((one, place) => (getComputedStyle(one).visibility === "visible" ? [] : [place])));

// Which of them belong to the groups that `selector` finds.
const belonging = (page, selector) => page.$$eval(`.view :is(${painted})`, (all, groups) =>
  all.flatMap((one, place) => (one.closest(groups) ? [place] : [])), selector);

test("each code is listed with how many points have it", () => withPage(folder, {}, async (page) => {
  const counts = {};
  for (const { code } of pointsOf(folder)) counts[code] = (counts[code] || 0) + 1;
  const listed = await page.$$eval("[data-code][type=checkbox]", (boxes) => boxes.map((box) =>
    [box.dataset.code, Number(box.parentNode.querySelector(".count").textContent)]));
  assert.deepEqual(Object.fromEntries(listed), counts);
  assert.equal(listed.length, Object.keys(counts).length);
}));

test("a code switches its points in both drawings", () => withPage(folder, {}, async (page) => {
  for (const box of await page.locator("[data-code][type=checkbox]").all()) {
    const code = await box.getAttribute("data-code");
    const own = await belonging(page, `.code[data-code="${code}"]`);
    assert.notEqual(own.length, 0);
    await box.uncheck();
    assert.deepEqual(await hidden(page), own, code);
    await box.check();
    assert.deepEqual(await hidden(page), [], code);
  }
}));

test("the terrain's points are switched with their code", () => withPage(folder, {}, async (page) => {
  const code = await page.locator("#terrain-points .code").first().getAttribute("data-code");
  await page.locator(`[data-code="${code}"][type=checkbox]`).uncheck();
  assert.equal(await page.locator("#terrain-points .code").first().evaluate((one) => getComputedStyle(one).visibility), "hidden");
}));

test("a kind switches its group", () => withPage(folder, {}, async (page) => {
  const boxes = await page.locator("[data-group]").all();
  assert.ok(boxes.length >= 6);
  for (const box of boxes) {
    const own = await belonging(page, `[id="${await box.getAttribute("data-group")}"]`);
    assert.notEqual(own.length, 0);
    await box.uncheck();
    assert.deepEqual(await hidden(page), own);
    await box.check();
    assert.deepEqual(await hidden(page), []);
  }
}));

test("all codes and none of them", () => withPage(folder, {}, async (page) => {
  const own = await belonging(page, ".code");
  await page.locator('[data-layers="none"]').click();
  assert.deepEqual(await hidden(page), own);
  assert.equal(await page.locator("[data-code]:checked").count(), 0);
  await page.locator('[data-layers="all"]').click();
  assert.deepEqual(await hidden(page), []);
  assert.equal(await page.locator("[data-code][type=checkbox]:not(:checked)").count(), 0);
}));

test("a point that is off tells nothing", () => withPage(folder, {}, async (page) => {
  await page.locator('[data-layers="none"]').click();
  await page.locator("#plan-view").scrollIntoViewIfNeeded();
  const { x, y, width, height } = await page.locator("#points path").nth(20).boundingBox();
  await page.mouse.move(x + width / 2, y + height / 2);
  assert.ok(await page.locator(".tip").isHidden());
  await page.locator('[data-layers="all"]').click();
  await page.mouse.move(x + width / 2, y + height / 2);
  assert.ok(await page.locator(".tip").isVisible());
}));

test("on a small screen the list opens when it is asked for", () => withPage(folder, { viewport: sizes[2] }, async (page) => {
  const box = page.locator("[data-group]").first();
  assert.ok(await box.isHidden());
  await page.locator(".layers summary").click();
  assert.ok(await box.isVisible());
}));

// ---- Many codes

test("of many codes a few are found by their letters", () => {
  const lines = [];
  for (let i = 0; i < 2000; ++i) lines.push(`${i},${(i * 37) % 500},${(i * 91) % 400},${i % 7},CODE ${i}`);
  const many = report(survey("many_codes.csv", lines), "many_codes");
  return withPage(many, {}, async (page) => {
    const shown = () => texts(page, ".layers label:not([hidden]) bdi");
    assert.equal((await shown()).length, 2000);
    const filter = page.locator("[data-filter]");
    await filter.fill(" code 199");
    assert.equal((await shown()).length, 11);
    await page.locator('[data-layers="none"]').click();
    assert.equal(await page.locator("[data-code][type=checkbox]:not(:checked)").count(), 11);
    await filter.fill("nothing of the sort");
    assert.deepEqual(await shown(), []);
    await filter.fill("");
    assert.equal((await shown()).length, 2000);
  });
});

test("few codes need no filter", () => {
  const few = report(survey("few_codes.csv", ["1,0,0,1,A", "2,9,0,1,B", "3,0,9,1,C"]), "few_codes");
  return withPage(few, {}, async (page) => assert.ok(await page.locator(".filter").isHidden()));
});
