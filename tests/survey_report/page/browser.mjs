// What the tests of the page share: reports, their tables, and pages in a browser.
// The present folder holds what npm installed, and takes what is made.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

const installed = createRequire(join(process.cwd(), "package.json"));
const { chromium } = installed("playwright-core");
export const axe = readFileSync(installed.resolve("axe-core/axe.min.js"), "utf8");

export const sample = fileURLToPath(new URL("../../../examples/survey_report/sample_survey.csv", import.meta.url));
export const languages = ["en", "es"];
export const sizes = [
  { width: 1280, height: 900 },
  { width: 768, height: 1024 },
  { width: 390, height: 844 },
];

// ---- Reports

/// The folder of a report on that point file.
export function report(file, folder, language = "en") {
  const into = join(process.cwd(), "reports", `${folder}-${language}`);
  execFileSync(process.env.SURVEY_REPORT, [file, "-o", into, "--language", language], { stdio: "pipe" });
  return into;
}

/// A point file of these lines, of that name.
export function survey(name, lines) {
  const folder = join(process.cwd(), "surveys");
  mkdirSync(folder, { recursive: true });
  writeFileSync(join(folder, name), lines.join("\n") + "\n");
  return join(folder, name);
}

/// A field as a point file quotes it.
export const quoted = (text) => `"${text.replaceAll('"', '""')}"`;

// ---- Tables

function fieldsOf(line) {
  const fields = [...line.matchAll(/(?:^|,)("(?:[^"]|"")*"|[^,]*)/g)].map((match) => match[1]);
  return fields.map((field) => (field.startsWith('"') ? field.slice(1, -1).replaceAll('""', '"') : field));
}

/// The tables that are on the page, in its order.
export const tables = ["extremes", "repeated_pairs", "section_cuts", "grid_nodes", "profile_stations", "points_in_area",
  "points"];

/// The rows of a table of a report, without its headings; no field has an end of line.
export function table(folder, name) {
  const lines = readFileSync(join(folder, name), "utf8").trimEnd().split("\n");
  return lines.slice(1).map(fieldsOf);
}

/// The points of a report.
export function pointsOf(folder) {
  return table(folder, "points.csv").map(([number, x, y, z, code]) => ({ number, x, y, z, code }));
}

// ---- Pages

const switches = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
  "--disable-background-networking", "--disable-component-update", "--disable-sync"];

const browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args: switches });

export const closeBrowser = () => browser.close();

/// Does `use` with the page of a report. Nothing may be asked of any network, and nothing
/// may be told in the console.
export async function withPage(folder, options, use) {
  const context = await browser.newContext({ viewport: sizes[0], ...options });
  const page = await context.newPage();
  const address = pathToFileURL(join(folder, "index.html")).href;
  const faults = [];
  page.on("console", (message) => faults.push(`${message.type()}: ${message.text()}`));
  page.on("pageerror", (error) => faults.push(error.message));
  page.on("dialog", (dialog) => faults.push(`dialog: ${dialog.message()}`));
  page.on("request", (request) => {
    if (request.url() !== address) faults.push(`request: ${request.url()}`);
  });
  try {
    await page.goto(address);
    await use(page, context);
    assert.deepEqual(faults, []);
  } finally {
    await context.close();
  }
}

/// The texts of all elements that the selector finds.
export const texts = (page, selector) => page.$$eval(selector, (all) => all.map((one) => one.textContent));
