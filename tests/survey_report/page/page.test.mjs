// The page of a report in a browser.
import { after } from "node:test";
import { closeBrowser } from "./browser.mjs";
import "./drawings.mjs";
import "./pointers.mjs";
import "./layers.mjs";
import "./tables.mjs";
import "./looks.mjs";
import "./hostile.mjs";

after(closeBrowser);
