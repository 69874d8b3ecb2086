// Pictures of the page, for people to look at.
import assert from "node:assert/strict";
import { statSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { DESKTOP, drawn, openPage, PHONE, startBrowser, ticketShown, viewerShows } from "./browser.js";
import { brokenTicket, eveningTicket, example, pictures, Printer } from "./printer.js";

let browser;
let printer;
before(async () => {
  browser = await startBrowser();
  printer = await Printer.start();
  await printer.print("print", example("ticket.pdf"), "--cut");
  await printer.send(brokenTicket);
  await printer.send(await eveningTicket());
});
after(async () => {
  await browser.close();
  await printer.stop();
});

async function picture(name, options, prepare = () => {}) {
  const page = await openPage(browser, printer.page, options);
  await ticketShown(page, 3);
  await page.evaluate(() => document.querySelector(".tray").scrollTo(0, 0));
  await page.evaluate(() => scrollTo(0, 0));
  await page.locator("#command-list tr").first().waitFor({ state: "attached" });
  await prepare(page);
  await page.evaluate(() => Promise.all(document.getAnimations()
    .filter(({ effect }) => effect.getTiming().iterations !== Infinity).map((each) => each.finished)));
  await drawn(page);
  const file = join(pictures, `${name}.png`);
  await page.screenshot({ path: file });
  assert.ok(statSync(file).size > 10000);
  await page.context().close();
}

async function openAndZoom(page) {
  await page.keyboard.press("Enter");
  await viewerShows(page, 3);
  await page.click("#zoom-dots");
  await viewerShows(page, 3, 16);
  const box = await page.locator("#canvas").boundingBox();
  await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
}

test("desktop", () => picture("desktop", DESKTOP));
test("desktop, dark", () => picture("dark", { ...DESKTOP, colorScheme: "dark" }));
test("problems", () => picture("problems", DESKTOP, async (page) => {
  await page.keyboard.press("j");
  await page.locator("#problem-list .problem").nth(2).waitFor();
}));
test("an open ticket", () => picture("open", DESKTOP, async (page) => {
  await page.keyboard.press("Enter");
  await viewerShows(page, 3);
}));
test("single dots", () => picture("dots", DESKTOP, openAndZoom));
test("single dots, dark", () => picture("dots-dark", { ...DESKTOP, colorScheme: "dark" }, openAndZoom));
test("keys", () => picture("keys", DESKTOP, (page) => page.keyboard.press("?")));
test("phone", () => picture("phone", PHONE));
test("phone, a ticket open", () => picture("phone-open", { ...PHONE, colorScheme: "dark" },
  async (page) => {
    await page.tap("#ticket-3 .paper");
    await viewerShows(page, 3);
  }));
