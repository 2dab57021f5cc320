// Zooming and panning: buttons, keys, wheel, dragging, double clicks and fingers.
import assert from "node:assert/strict";
import { test } from "node:test";
import { report, sample, sizes, withPage } from "./browser.mjs";

const folder = report(sample, "sample");
const views = ["plan-view", "profile-view"];

const boxOf = (page, view) => page.$eval(`#${view} svg`, ({ viewBox: { baseVal: { x, y, width, height } } }) => ({ x, y, width, height }));

// Where a place of the screen is on the sheet.
const onSheet = (page, view, at) => page.$eval(`#${view} svg`, (svg, { x, y }) => {
  const place = new DOMPoint(x, y).matrixTransform(svg.getScreenCTM().inverse());
  return { x: place.x, y: place.y };
}, at);

// In the right lower part of the drawing, and in sight.
async function placeIn(page, view) {
  await page.locator(`#${view}`).evaluate((frame) => frame.scrollIntoView({ block: "center", behavior: "instant" }));
  const { x, y, width, height } = await page.locator(`#${view} svg`).boundingBox();
  return { x: Math.round(x + 0.6 * width), y: Math.round(y + 0.55 * height) };
}

function assertNear(actual, expected, slack = 1e-6) {
  for (const [name, value] of Object.entries(expected)) {
    assert.ok(Math.abs(actual[name] - value) < slack, `${name}: ${actual[name]}, not ${value}`);
  }
}

// So many times as large, in the middle of what was seen.
function about(middle, box, times) {
  const width = box.width / times;
  const height = box.height / times;
  return { x: middle.x - width / 2, y: middle.y - height / 2, width, height };
}
const middleOf = ({ x, y, width, height }) => ({ x: x + width / 2, y: y + height / 2 });

for (const view of views) {
  test(`buttons zoom, ${view}`, () => withPage(folder, {}, async (page) => {
    const press = (what) => page.locator(`[data-of="${view}"][data-zoom="${what}"]`).click();
    const whole = await boxOf(page, view);
    await press("in");
    assertNear(await boxOf(page, view), about(middleOf(whole), whole, 1.5), 1e-3);
    await press("in");
    assertNear(await boxOf(page, view), about(middleOf(whole), whole, 2.25), 1e-3);
    await press("out");
    assertNear(await boxOf(page, view), about(middleOf(whole), whole, 1.5), 1e-3);
    await press("all");
    assert.deepEqual(await boxOf(page, view), whole);
    await press("out");
    assert.deepEqual(await boxOf(page, view), whole);
    for (let i = 0; i < 15; ++i) await press("in");
    assertNear(await boxOf(page, view), about(middleOf(whole), whole, 100), 1e-3);
    const [other] = views.filter((one) => one !== view);
    assert.equal((await boxOf(page, other)).x, 0);
  }));

  test(`keys zoom and pan, ${view}`, () => withPage(folder, {}, async (page) => {
    const whole = await boxOf(page, view);
    const after = async (key) => {
      await page.keyboard.press(key);
      return boxOf(page, view);
    };
    await page.locator(`#${view}`).focus();
    const near = await after("+");
    assertNear(near, about(middleOf(whole), whole, 1.5), 1e-3);
    const step = near.width / 10;
    assertNear(await after("ArrowLeft"), { x: near.x - step, y: near.y }, 1e-3);
    assertNear(await after("ArrowUp"), { x: near.x - step, y: near.y - step }, 1e-3);
    assertNear(await after("ArrowRight"), { x: near.x, y: near.y - step }, 1e-3);
    assertNear(await after("ArrowDown"), near, 1e-3);
    assert.deepEqual(await after("Control+ArrowLeft"), await after("Shift"));
    assert.deepEqual(await after("-"), whole);
    await after("+");
    assert.deepEqual(await after("0"), whole);
    for (const key of ["ArrowLeft", "ArrowUp", "ArrowRight", "ArrowDown"]) assert.deepEqual(await after(key), whole);
  }));

  test(`the drawing does not leave the sheet, ${view}`, () => withPage(folder, {}, async (page) => {
    const whole = await boxOf(page, view);
    await page.locator(`#${view}`).focus();
    await page.keyboard.press("+");
    for (let i = 0; i < 20; ++i) for (const key of ["ArrowRight", "ArrowDown"]) await page.keyboard.press(key);
    const { x, y, width, height } = await boxOf(page, view);
    assertNear({ x: x + width, y: y + height }, { x: whole.width, y: whole.height }, 1e-3);
  }));

  test(`the wheel zooms about the pointer, ${view}`, () => withPage(folder, {}, async (page) => {
    const at = await placeIn(page, view);
    const whole = await boxOf(page, view);
    await page.mouse.move(at.x, at.y);
    for (const [turn, width] of [[-100, whole.width / 1.25], [-100, whole.width / 1.5625], [100, whole.width / 1.25]]) {
      const before = await onSheet(page, view, at);
      await page.mouse.wheel(0, turn);
      await page.waitForFunction(([name, wanted]) =>
        Math.abs(document.querySelector(`#${name} svg`).viewBox.baseVal.width - wanted) < 1e-3, [view, width]);
      assertNear(await onSheet(page, view, at), before, 0.01);
    }
  }));

  test(`dragging takes the drawing along, ${view}`, () => withPage(folder, {}, async (page) => {
    const at = await placeIn(page, view);
    await page.mouse.dblclick(at.x, at.y);
    const held = await onSheet(page, view, at);
    await page.mouse.down();
    assert.ok(await page.locator(`#${view}.held`).isVisible());
    await page.mouse.move(at.x + 20, at.y + 13, { steps: 4 });
    assertNear(await onSheet(page, view, { x: at.x + 20, y: at.y + 13 }), held, 0.01);
    await page.mouse.up();
    await page.mouse.move(at.x, at.y);
    assertNear(await onSheet(page, view, { x: at.x + 20, y: at.y + 13 }), held, 0.01);
    assert.equal(await page.locator(`#${view}.held`).count(), 0);
  }));

  test(`a double click zooms in about its place, ${view}`, () => withPage(folder, {}, async (page) => {
    const at = await placeIn(page, view);
    const whole = await boxOf(page, view);
    const before = await onSheet(page, view, at);
    await page.mouse.dblclick(at.x, at.y);
    assertNear(await boxOf(page, view), { width: whole.width / 2, height: whole.height / 2 }, 1e-3);
    assertNear(await onSheet(page, view, at), before, 0.01);
  }));
}

test("the wheel scrolls the page where all is seen", () => withPage(folder, {}, async (page) => {
  const at = await placeIn(page, "plan-view");
  await page.mouse.move(at.x, at.y);
  const before = await page.evaluate(() => window.scrollY);
  await page.mouse.wheel(0, 300);
  await page.waitForFunction((from) => window.scrollY > from, before);
}));

test("what is seen is printed whole, and seen again afterwards", () => withPage(folder, {}, async (page) => {
  const whole = await boxOf(page, "plan-view");
  await page.locator('[data-of="plan-view"][data-zoom="in"]').click();
  const near = await boxOf(page, "plan-view");
  await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
  assert.deepEqual(await boxOf(page, "plan-view"), whole);
  await page.evaluate(() => window.dispatchEvent(new Event("afterprint")));
  assert.deepEqual(await boxOf(page, "plan-view"), near);
}));

// ---- Fingers

const phone = { viewport: sizes[2], hasTouch: true, isMobile: true };

// Fingers go from their first places to their last in ten steps; each is { from, to }.
async function touch(context, page, fingers) {
  const driver = await context.newCDPSession(page);
  const send = (type, part) => driver.send("Input.dispatchTouchEvent", { type,
    touchPoints: type === "touchEnd" ? [] : fingers.map(({ from, to }, id) =>
      ({ id, x: from.x + (to.x - from.x) * part, y: from.y + (to.y - from.y) * part })) });
  await send("touchStart", 0);
  for (let i = 1; i <= 10; ++i) await send("touchMove", i / 10);
  await send("touchEnd", 1);
}

const beside = ({ x, y }, dx, dy) => ({ x: x + dx, y: y + dy });

for (const [name, dx, dy] of [["sideways", 1, 0], ["up and down", 0, 1], ["aslant", 0.8, 0.6]]) {
  test(`two fingers zoom, ${name}`, () => withPage(folder, phone, async (page, context) => {
    const at = await placeIn(page, "plan-view");
    const whole = await boxOf(page, "plan-view");
    const scrolled = await page.evaluate(() => window.scrollY);
    const before = await onSheet(page, "plan-view", at);
    const apart = (from, to) => [-1, 1].map((side) => ({ from: beside(at, side * from * dx, side * from * dy),
      to: beside(at, side * to * dx, side * to * dy) }));
    await touch(context, page, apart(20, 60));
    const near = await boxOf(page, "plan-view");
    assertNear({ times: whole.width / near.width }, { times: 3 }, 0.05);
    assertNear(await onSheet(page, "plan-view", at), before, 2);
    await touch(context, page, apart(60, 20));
    assertNear(await boxOf(page, "plan-view"), whole, 1);
    assert.equal(await page.evaluate(() => window.visualViewport.scale), 1);
    assert.equal(await page.evaluate(() => window.scrollY), scrolled);
  }));
}

test("one finger scrolls the page where all is seen, and moves the drawing where it is near", () =>
  withPage(folder, phone, async (page, context) => {
    const at = await placeIn(page, "plan-view");
    const scrolled = await page.evaluate(() => window.scrollY);
    const whole = await boxOf(page, "plan-view");
    await touch(context, page, [{ from: at, to: beside(at, 0, -90) }]);
    await page.waitForFunction((from) => window.scrollY > from + 30, scrolled);
    assert.deepEqual(await boxOf(page, "plan-view"), whole);

    await page.locator('[data-of="plan-view"][data-zoom="in"]').click();
    await page.locator('[data-of="plan-view"][data-zoom="in"]').click();
    const again = await placeIn(page, "plan-view");
    const rests = await page.evaluate(() => window.scrollY);
    const near = await boxOf(page, "plan-view");
    await touch(context, page, [{ from: again, to: beside(again, -40, -30) }]);
    const moved = await boxOf(page, "plan-view");
    const millimetres = near.width / (await page.locator("#plan-view svg").boundingBox()).width;
    assertNear(moved, { x: near.x + 40 * millimetres, y: near.y + 30 * millimetres }, 4);
    assert.equal(await page.evaluate(() => window.scrollY), rests);
  }));
