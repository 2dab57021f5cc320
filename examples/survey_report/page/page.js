"use strict";
const root = document.documentElement;
root.classList.add("js");
for (const tool of document.querySelectorAll(".tools, .layers")) tool.hidden = false;

// ---- What a point is, beside it

const tip = document.createElement("div");
tip.className = "tip";
tip.hidden = true;
tip.setAttribute("role", "status");
document.body.append(tip);
let pointed = null;

function hideTip() {
  tip.hidden = true;
  if (pointed) pointed.symbol.classList.remove("pointed");
  pointed = null;
}

// The name is set apart, as its letters may run from right to left.
function showTip(point, x, y) {
  if (point !== pointed) {
    hideTip();
    pointed = point;
    point.symbol.classList.add("pointed");
    const name = document.createElement("bdi");
    const figures = document.createElement("span");
    name.textContent = point.name;
    figures.textContent = point.figures;
    tip.replaceChildren(name, ": ", figures);
    tip.hidden = false;
  }
  const { width, height } = tip.getBoundingClientRect();
  const left = Math.max(4, Math.min(x + 14, root.clientWidth - width - 4));
  const top = y + 14 + height > root.clientHeight ? y - height - 10 : y + 14;
  tip.style.left = left + window.scrollX + "px";
  tip.style.top = Math.max(4, top) + window.scrollY + "px";
}

// ---- A drawing that zooms and pans: its viewBox is what is seen of the sheet.

const nearest = 100;  // times as large as the whole
const keyStep = 1.5;

class View {
  constructor(frame) {
    this.frame = frame;
    this.svg = frame.querySelector("svg");
    const { x, y, width, height } = this.svg.viewBox.baseVal;
    this.sheet = { x, y, width, height };
    this.pointers = new Map();
    this.nameDrawing();
    this.reset();
    const listen = (name, does) => frame.addEventListener(name, (event) => this[does](event), { passive: false });
    listen("wheel", "onWheel");
    listen("keydown", "onKey");
    listen("dblclick", "onDoubleClick");
    listen("pointerdown", "onDown");
    listen("pointermove", "onMove");
    listen("pointerup", "onUp");
    listen("pointercancel", "onUp");
    listen("click", "point");
    frame.addEventListener("pointerleave", hideTip);
  }

  // As a label the drawing's title shows itself nowhere.
  nameDrawing() {
    const title = this.svg.querySelector(":scope > title");
    this.svg.setAttribute("role", "img");
    this.svg.setAttribute("aria-label", title.textContent);
    title.remove();
    this.frame.tabIndex = 0;
    this.frame.setAttribute("aria-label", `${this.frame.getAttribute("aria-label")}. ${this.frame.dataset.keys}`);
  }

  reset() { this.show({ ...this.sheet }); }

  show(box) {
    const { x, y, width, height } = this.sheet;
    const within = (at, size, from, whole) => Math.min(Math.max(at, from), from + whole - size);
    this.box = { ...box, x: within(box.x, box.width, x, width), y: within(box.y, box.height, y, height) };
    this.svg.setAttribute("viewBox", [this.box.x, this.box.y, box.width, box.height].join(" "));
    this.frame.classList.toggle("whole", box.width === width);
    hideTip();
  }

  onSheet(event) {
    const at = new DOMPoint(event.clientX, event.clientY);
    return at.matrixTransform(this.svg.getScreenCTM().inverse());
  }

  // The place stays where it is on the screen. Never more than the sheet is shown.
  zoom(times, place) {
    const { x, y, width, height } = this.box;
    const size = Math.min(Math.max(width / times, this.sheet.width / nearest), this.sheet.width);
    const at = place || { x: x + width / 2, y: y + height / 2 };
    const factor = size / width;
    this.show({ x: at.x - (at.x - x) * factor, y: at.y - (at.y - y) * factor,
      width: size, height: this.sheet.height * size / this.sheet.width });
  }

  pan(dx, dy) { this.show({ ...this.box, x: this.box.x + dx, y: this.box.y + dy }); }

  centre(place, times) {
    const width = this.sheet.width / times;
    const height = this.sheet.height / times;
    this.show({ x: place.x - width / 2, y: place.y - height / 2, width, height });
  }

  // Where nothing is left to zoom the page scrolls.
  onWheel(event) {
    const before = this.box.width;
    const pixels = event.deltaY * (event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? 1 : 33);
    this.zoom(1.25 ** (-Math.min(Math.max(pixels, -100), 100) / 100), this.onSheet(event));
    if (this.box.width !== before) event.preventDefault();
  }

  onKey(event) {
    const step = this.box.width / 10;
    const actions = {
      "+": () => this.zoom(keyStep), "-": () => this.zoom(1 / keyStep), "0": () => this.reset(),
      ArrowLeft: () => this.pan(-step, 0), ArrowRight: () => this.pan(step, 0),
      ArrowUp: () => this.pan(0, -step), ArrowDown: () => this.pan(0, step),
    };
    const action = actions[event.key];
    if (!action || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    action();
  }

  onDoubleClick(event) { this.zoom(2, this.onSheet(event)); }

  onDown(event) {
    if (event.button !== 0) return;
    this.pointers.set(event.pointerId, event);
    this.frame.classList.add("held");
  }

  // One pointer pans, two zoom about the middle between them; one that is up points.
  onMove(event) {
    const before = this.pointers.get(event.pointerId);
    if (!before) {
      this.point(event);
      return;
    }
    if (!this.frame.hasPointerCapture(event.pointerId)) this.frame.setPointerCapture(event.pointerId);
    const other = [...this.pointers.values()].find((one) => one.pointerId !== event.pointerId);
    if (other) {
      const apart = (one) => Math.hypot(one.clientX - other.clientX, one.clientY - other.clientY);
      const middle = { clientX: (event.clientX + other.clientX) / 2, clientY: (event.clientY + other.clientY) / 2 };
      if (apart(before) > 0) this.zoom(apart(event) / apart(before), this.onSheet(middle));
    } else {
      const from = this.onSheet(before);
      const to = this.onSheet(event);
      this.pan(from.x - to.x, from.y - to.y);
    }
    this.pointers.set(event.pointerId, event);
  }

  onUp(event) {
    this.pointers.delete(event.pointerId);
    if (this.pointers.size === 0) this.frame.classList.remove("held");
  }

  // The points with what is told of them, from their titles, which a browser would show too.
  points() {
    if (this.known) return this.known;
    const titles = [...this.svg.querySelectorAll(".code > path > title")];
    this.known = titles.map((title) => pointOf(title.parentNode, title.textContent));
    for (const title of titles) title.remove();
    return this.known;
  }

  // A symbol is hit some pixels beside it too, more of them by a finger.
  point(event) {
    const at = this.onSheet(event);
    const slack = (event.pointerType === "touch" ? 16 : 5) / this.svg.getScreenCTM().a;
    let found = null;
    let least = Infinity;
    for (const point of this.points()) {
      const distance = Math.hypot(point.x - at.x, point.y - at.y);
      if (distance >= least || distance > point.reach + slack || isHidden(point.symbol.parentNode)) continue;
      found = point;
      least = distance;
    }
    if (found) showTip(found, event.clientX, event.clientY);
    else hideTip();
  }
}

// A title is the number, the code if there is one, and the coordinates.
function pointOf(symbol, title) {
  const [, name, figures] = /^(.*): (X \S+, Y \S+, Z \S+)$/.exec(title);
  const { code } = symbol.parentNode.dataset;
  const number = code ? name.slice(0, -code.length - 1) : name;
  const { x, y, width, height } = symbol.getBBox();
  return { symbol, name, number, figures, x: x + width / 2, y: y + height / 2, reach: Math.max(width, height) / 2 };
}

const views = new Map();
for (const frame of document.querySelectorAll(".view")) views.set(frame.id, new View(frame));

for (const button of document.querySelectorAll("button[data-zoom]")) {
  const view = views.get(button.dataset.of);
  const actions = { in: () => view.zoom(keyStep), out: () => view.zoom(1 / keyStep), all: () => view.reset() };
  button.addEventListener("click", actions[button.dataset.zoom]);
}
document.addEventListener("keydown", (event) => { if (event.key === "Escape") hideTip(); });
window.addEventListener("beforeprint", () => {
  for (const view of views.values()) {
    view.beforePrint = view.box;
    view.reset();
  }
});
window.addEventListener("afterprint", () => { for (const view of views.values()) view.show(view.beforePrint); });

// ---- Layers

// Hidden symbols keep their places, which display: none would take.
const isHidden = (layer) => layer.style.visibility === "hidden";
const boxes = [...document.querySelectorAll(".layers [type=checkbox]")];
const boxOfCode = new Map(boxes.filter((box) => !box.dataset.group).map((box) => [box.dataset.code, box]));
const layersOf = new Map(boxes.map((box) => [box, [...document.querySelectorAll(`.view g[id="${box.dataset.group}"]`)]]));
for (const layer of document.querySelectorAll(".view .code")) {
  layersOf.get(boxOfCode.get(layer.dataset.code))?.push(layer);  // none beside a profile alone
}

function switchLayers(box, on) {
  box.checked = on;
  for (const layer of layersOf.get(box)) layer.style.visibility = on ? "" : "hidden";
  hideTip();
}

for (const box of boxes) {
  box.addEventListener("change", () => switchLayers(box, box.checked));
  if (!box.checked) switchLayers(box, false);  // as the browser kept it
}

const isListed = (box) => !box.parentNode.hidden;
for (const button of document.querySelectorAll("button[data-layers]")) {
  button.addEventListener("click", () => {
    const listed = [...boxOfCode.values()].filter(isListed);
    for (const box of listed) switchLayers(box, button.dataset.layers === "all");
  });
}

const fewCodes = 12;  // are seen at a glance
for (const filter of document.querySelectorAll("[data-filter]")) {
  const apply = () => {
    const wanted = filter.value.trim().toLowerCase();
    for (const { parentNode } of boxOfCode.values()) {
      parentNode.hidden = !parentNode.querySelector("bdi").textContent.toLowerCase().includes(wanted);
    }
  };
  filter.parentNode.hidden = boxOfCode.size <= fewCodes;
  filter.addEventListener("input", apply);
  apply();
}

// On a small screen the list would part the drawings.
const besideDrawing = window.matchMedia("(min-width: 64rem)").matches;
for (const panel of document.querySelectorAll(".layers")) panel.open = besideDrawing;

// ---- Finding a point by its number

function find(form) {
  const view = views.get(form.dataset.of);
  const number = form.elements.number.value.trim();
  const point = view.points().find((one) => one.number.trim() === number);
  form.querySelector("[role=status]").textContent = point ? "" : form.dataset.none;
  if (!point) {
    hideTip();
    return;
  }
  if (isHidden(point.symbol.parentNode)) switchLayers(boxOfCode.get(point.symbol.parentNode.dataset.code), true);
  view.centre(point, 8);
  view.frame.scrollIntoView({ block: "nearest", behavior: "instant" });
  const { right, bottom } = point.symbol.getBoundingClientRect();
  showTip(point, right - 10, bottom - 10);
}

for (const form of document.querySelectorAll(".find")) {
  form.addEventListener("submit", (event) => {
    event.preventDefault();
    find(form);
  });
}

// ---- Tables that sort: columns of numbers as such, others as people do, empty cells last

const byText = new Intl.Collator(root.lang, { numeric: true }).compare;
const byNumber = (a, b) => Number(a) - Number(b);

function sort(table, column) {
  const headings = [...table.tHead.rows[0].cells];
  const heading = headings[column];
  const upwards = heading.getAttribute("aria-sort") !== "ascending";
  const compare = heading.classList.contains("number") ? byNumber : byText;
  const rows = [...table.tBodies[0].rows].map((row) => ({ row, text: row.cells[column].textContent }));
  const isEmpty = ({ text }) => text === "";
  const sorted = rows.filter((one) => !isEmpty(one));
  sorted.sort((a, b) => (upwards ? compare(a.text, b.text) : compare(b.text, a.text)));
  for (const other of headings) other.removeAttribute("aria-sort");
  heading.setAttribute("aria-sort", upwards ? "ascending" : "descending");
  table.tBodies[0].append(...[...sorted, ...rows.filter(isEmpty)].map(({ row }) => row));
}

for (const table of document.querySelectorAll("table")) {
  [...table.tHead.rows[0].cells].forEach((heading, column) => {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = heading.textContent;
    button.addEventListener("click", () => sort(table, column));
    heading.replaceChildren(button);
  });
}
