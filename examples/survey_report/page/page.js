"use strict";
document.documentElement.classList.add("js");
for (const tool of document.querySelectorAll(".tools, .layers")) tool.hidden = false;

// ---- A drawing that zooms and pans: its viewBox is what is seen of the sheet.

class View {
  constructor(frame) {
    this.frame = frame;
    this.svg = frame.querySelector("svg");
    const sheet = this.svg.viewBox.baseVal;
    this.sheet = { x: sheet.x, y: sheet.y, width: sheet.width, height: sheet.height };
    this.pointers = new Map();
    this.reset();
    frame.addEventListener("wheel", (event) => this.onWheel(event), { passive: false });
    frame.addEventListener("keydown", (event) => this.onKey(event));
    frame.addEventListener("dblclick", (event) => this.zoom(2, this.onSheet(event)));
    frame.addEventListener("pointerdown", (event) => this.onDown(event));
    frame.addEventListener("pointermove", (event) => this.onMove(event));
    for (const name of ["pointerup", "pointercancel"]) {
      frame.addEventListener(name, (event) => this.onUp(event));
    }
  }

  reset() { this.show({ ...this.sheet }); }

  // Never more than the sheet, nor less than a hundredth of its width.
  show(box) {
    const factor = Math.min(Math.max(box.width, this.sheet.width / 100), this.sheet.width) / box.width;
    const width = box.width * factor;
    const height = box.height * factor;
    const within = (at, size, from, whole) => Math.min(Math.max(at, from), from + whole - size);
    this.box = {
      x: within(box.x, width, this.sheet.x, this.sheet.width),
      y: within(box.y, height, this.sheet.y, this.sheet.height),
      width, height,
    };
    this.svg.setAttribute("viewBox", [this.box.x, this.box.y, width, height].join(" "));
  }

  onSheet(event) {
    const at = new DOMPoint(event.clientX, event.clientY);
    return at.matrixTransform(this.svg.getScreenCTM().inverse());
  }

  // The place stays where it is on the screen.
  zoom(times, place) {
    const { x, y, width, height } = this.box;
    const least = this.sheet.width / 100;
    const factor = Math.min(Math.max(width / times, least), this.sheet.width) / width;
    const at = place || { x: x + width / 2, y: y + height / 2 };
    this.show({ x: at.x - (at.x - x) * factor, y: at.y - (at.y - y) * factor,
      width: width * factor, height: height * factor });
  }

  pan(dx, dy) { this.show({ ...this.box, x: this.box.x + dx, y: this.box.y + dy }); }

  centre(place, times) {
    const width = this.sheet.width / times;
    const height = this.sheet.height / times;
    this.show({ x: place.x - width / 2, y: place.y - height / 2, width, height });
  }

  onWheel(event) {
    event.preventDefault();
    this.zoom(event.deltaY < 0 ? 1.25 : 0.8, this.onSheet(event));
  }

  onKey(event) {
    const step = this.box.width / 10;
    const actions = {
      "+": () => this.zoom(1.5), "-": () => this.zoom(1 / 1.5), "0": () => this.reset(),
      ArrowLeft: () => this.pan(-step, 0), ArrowRight: () => this.pan(step, 0),
      ArrowUp: () => this.pan(0, -step), ArrowDown: () => this.pan(0, step),
    };
    const action = actions[event.key];
    if (!action || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    action();
  }

  onDown(event) {
    if (event.button !== 0) return;
    this.pointers.set(event.pointerId, event);
    this.frame.classList.add("held");
  }

  // One pointer pans, two zoom about the middle between them.
  onMove(event) {
    const before = this.pointers.get(event.pointerId);
    if (!before) return;
    if (!this.frame.hasPointerCapture(event.pointerId)) this.frame.setPointerCapture(event.pointerId);
    const others = [...this.pointers.values()].filter((one) => one.pointerId !== event.pointerId);
    if (others.length === 1) {
      const apart = (one) => Math.hypot(one.clientX - others[0].clientX, one.clientY - others[0].clientY);
      const middle = { clientX: (event.clientX + others[0].clientX) / 2,
        clientY: (event.clientY + others[0].clientY) / 2 };
      if (apart(before) > 0) this.zoom(apart(event) / apart(before), this.onSheet(middle));
    } else if (others.length === 0) {
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
}

const views = new Map();
for (const frame of document.querySelectorAll(".view")) views.set(frame.id, new View(frame));

for (const button of document.querySelectorAll("button[data-zoom]")) {
  const view = views.get(button.dataset.of);
  const actions = { in: () => view.zoom(1.5), out: () => view.zoom(1 / 1.5), all: () => view.reset() };
  button.addEventListener("click", actions[button.dataset.zoom]);
}
window.addEventListener("beforeprint", () => views.forEach((view) => view.reset()));

// ---- What a point is, where the pointer rests or a finger points

const tip = document.createElement("div");
tip.className = "tip";
tip.hidden = true;
tip.setAttribute("role", "status");
document.body.append(tip);

// The browser would show its own beside ours.
function wordsOf(symbol) {
  const title = symbol.querySelector("title");
  if (title) {
    symbol.dataset.words = title.textContent;
    title.textContent = "";
  }
  return symbol.dataset.words;
}

function showTip(words, x, y) {
  tip.textContent = words;
  tip.hidden = false;
  const { width, height } = tip.getBoundingClientRect();
  tip.style.left = Math.max(0, Math.min(x + 14, window.innerWidth - width - 4)) + "px";
  tip.style.top = Math.max(0, y + 14 + height > window.innerHeight ? y - height - 10 : y + 14) + "px";
}

function onPoint(event) {
  const symbol = event.target.closest(".code path");
  const words = symbol && wordsOf(symbol);
  if (words) showTip(words, event.clientX, event.clientY);
  else tip.hidden = true;
}

for (const { frame } of views.values()) {
  frame.addEventListener("pointermove", onPoint);
  frame.addEventListener("click", onPoint);
  frame.addEventListener("pointerleave", () => { tip.hidden = true; });
}
document.addEventListener("keydown", (event) => { if (event.key === "Escape") tip.hidden = true; });

// ---- Layers

function layersOf(box) {
  const { code, group } = box.dataset;
  if (group !== undefined) return document.querySelectorAll(`.view g[id="${group}"]`);
  return [...document.querySelectorAll(".view .code")].filter((one) => one.dataset.code === code);
}

const boxes = [...document.querySelectorAll(".layers input")];
for (const box of boxes) {
  const apply = () => { for (const layer of layersOf(box)) layer.style.display = box.checked ? "" : "none"; };
  box.addEventListener("change", apply);
  if (!box.checked) apply();  // as the browser kept it
}
for (const button of document.querySelectorAll("button[data-layers]")) {
  button.addEventListener("click", () => {
    for (const box of boxes.filter((one) => one.dataset.code !== undefined)) {
      box.checked = button.dataset.layers === "all";
      box.dispatchEvent(new Event("change"));
    }
  });
}

// ---- Finding a point by its number

// What is told of a point begins with its number and its code.
function symbolOf(view, number) {
  for (const group of view.svg.querySelectorAll(".code")) {
    const { code } = group.dataset;
    const start = `${number}${code && " "}${code}: `;
    for (const symbol of group.querySelectorAll("path")) {
      if ((symbol.dataset.words || symbol.textContent).startsWith(start)) return symbol;
    }
  }
  return null;
}

for (const form of document.querySelectorAll(".find")) {
  const view = views.get(form.dataset.of);
  form.addEventListener("submit", (event) => {
    event.preventDefault();
    const symbol = symbolOf(view, form.elements.number.value.trim());
    const said = form.querySelector("[role=status]");
    said.textContent = symbol ? "" : form.dataset.none;
    if (!symbol) return;
    const box = symbol.getBBox();
    view.centre({ x: box.x + box.width / 2, y: box.y + box.height / 2 }, 8);
    view.frame.scrollIntoView({ block: "nearest" });
    const at = symbol.getBoundingClientRect();
    showTip(wordsOf(symbol), at.right, at.bottom);
  });
}

// ---- Tables that sort: numbers as such, other texts as people do

function compare(a, b) {
  const numbers = [Number(a), Number(b)];
  if (a !== "" && b !== "" && !numbers.some(Number.isNaN)) return numbers[0] - numbers[1];
  if ((a === "") !== (b === "")) return a === "" ? 1 : -1;
  return a.localeCompare(b, document.documentElement.lang, { numeric: true });
}

function sort(table, column) {
  const heading = table.tHead.rows[0].cells[column];
  const upwards = heading.getAttribute("aria-sort") !== "ascending";
  const body = table.tBodies[0];
  const rows = [...body.rows].map((row) => [row.cells[column].textContent, row]);
  rows.sort((a, b) => (upwards ? compare(a[0], b[0]) : compare(b[0], a[0])));
  for (const other of table.tHead.rows[0].cells) other.removeAttribute("aria-sort");
  heading.setAttribute("aria-sort", upwards ? "ascending" : "descending");
  body.append(...rows.map(([, row]) => row));
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
