// The page by keyboard, by mouse, by finger, and on a narrow window.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { DESKTOP, drawn, openPage, PHONE, startBrowser, ticketShown, viewerShows } from "./browser.js";
import { brokenTicket, eveningTicket, Printer } from "./printer.js";

let browser;
let printer;
before(async () => {
  browser = await startBrowser();
  printer = await Printer.start("--stock", "receipt");
  await printer.send(await eveningTicket());
  await printer.send(brokenTicket);
  await printer.send("<PM><RC900,40>third<p>");
});
after(async () => {
  await browser.close();
  await printer.stop();
});

async function onPage(options, use) {
  const page = await openPage(browser, printer.page, options);
  await ticketShown(page, 3);
  await use(page);
  assert.deepEqual(page.complaints, []);
  await page.context().close();
}

const selected = (page) => page.$eval(".ticket.selected", (item) => item.value);
const focused = (page) => page.evaluate(() => document.activeElement.id ||
  document.activeElement.closest(".ticket")?.id);
const scale = (page) => page.$eval("#canvas", (canvas) => Number(canvas.dataset.scale));

test("j and k and the arrows go from ticket to ticket", () => onPage(DESKTOP, async (page) => {
  assert.equal(await selected(page), 3); // the newest, to begin with
  const path = [["j", 2], ["ArrowDown", 1], ["j", 1], ["k", 2], ["ArrowUp", 3], ["k", 3]];
  for (const [key, id] of path) {
    await page.keyboard.press(key);
    assert.equal(await selected(page), id, key);
    assert.equal(await focused(page), `ticket-${id}`, key);
    assert.equal(await page.textContent("#inspector-title"), `Ticket ${id}`);
  }
}));

test("focus is visible", () => onPage(DESKTOP, async (page) => {
  await page.keyboard.press("j");
  const outline = await page.evaluate(() => getComputedStyle(document.activeElement).outlineStyle);
  assert.equal(outline, "solid");
}));

test("Enter opens, plus and minus zoom, 0 fits, Esc closes", () =>
  onPage(DESKTOP, async (page) => {
    await page.keyboard.press("j");
    await page.keyboard.press("Enter");
    await viewerShows(page, 2);
    assert.equal(await focused(page), "canvas");
    const fitted = await scale(page);
    await page.keyboard.press("+");
    const larger = await scale(page);
    assert.ok(larger > fitted);
    await page.keyboard.press("+");
    await page.keyboard.press("-");
    assert.equal(await scale(page), larger);
    await page.keyboard.press("1");
    assert.equal(await scale(page), 1);
    await page.keyboard.press("t");
    assert.equal(await scale(page), 96 / 300);
    assert.equal(await page.textContent("#zoom"), "100 %");
    await page.keyboard.press("0");
    assert.equal(await scale(page), fitted);
    await page.keyboard.press("j");
    await viewerShows(page, 1);
    await page.keyboard.press("Escape");
    assert.equal(await page.isVisible("#viewer"), false);
    assert.equal(await focused(page), "ticket-1");
  }));

test("zooming ends at its largest and its smallest", () => onPage(DESKTOP, async (page) => {
  await page.keyboard.press("Enter");
  await viewerShows(page, 3);
  for (let count = 0; count < 30; ++count) await page.keyboard.press("+");
  assert.equal(await scale(page), 32);
  for (let count = 0; count < 30; ++count) await page.keyboard.press("-");
  assert.equal(await scale(page), 1 / 16);
}));

test("arrows and dragging move about in an open ticket", () => onPage(DESKTOP, async (page) => {
  await page.keyboard.press("k");
  await page.keyboard.press("Enter");
  await page.click("#zoom-dots");
  await viewerShows(page, 3, 16);
  const box = await page.locator("#canvas").boundingBox();
  const place = async () => {
    await page.mouse.move(box.x + 90, box.y + 90);
    await page.mouse.move(box.x + 100, box.y + 100);
    const [, row, column] = (await page.textContent("#place"))
      .match(/^row ([\d,]+), column ([\d,]+) /).map((text) => Number(text.replace(",", "")));
    return { row, column };
  };
  const first = await place();
  await page.focus("#canvas");
  for (let count = 0; count < 4; ++count) await page.keyboard.press("ArrowRight"); // 240 pixels
  const right = await place();
  // A portrait ticket stands upright here: to the right is to smaller rows of the printer.
  assert.deepEqual(right, { row: first.row - 15, column: first.column });
  for (let count = 0; count < 4; ++count) await page.keyboard.press("ArrowDown");
  assert.deepEqual(await place(), { row: right.row, column: right.column + 15 });

  await page.mouse.down();
  await page.mouse.move(box.x + 180, box.y + 100, { steps: 5 });
  await page.mouse.up();
  assert.deepEqual(await place(), { row: right.row + 5, column: right.column + 15 });
}));

test("the question mark shows the keys, which Esc puts away", () =>
  onPage(DESKTOP, async (page) => {
    await page.keyboard.press("?");
    assert.ok(await page.isVisible("#help"));
    await page.keyboard.press("j"); // does nothing meanwhile
    await page.keyboard.press("Escape");
    assert.equal(await page.isVisible("#help"), false);
    assert.equal(await selected(page), 3);
  }));

test("everything can be reached by Tab, and has a name", () => onPage(DESKTOP, async (page) => {
  const names = await page.evaluate(() => [...document.querySelectorAll(
    "button, a[href], [tabindex='0']")].filter((each) => each.checkVisibility())
    .map((each) => each.getAttribute("aria-label") || each.textContent.trim() || each.id));
  assert.ok(names.length > 10);
  assert.ok(names.every((name) => name !== ""));
  const reached = new Set();
  for (let count = 0; count < 25; ++count) {
    await page.keyboard.press("Tab");
    reached.add(await focused(page));
  }
  for (const id of ["copy", "scale-true", "scale-fit", "help-button", "ticket-3", "ticket-1",
    "download-png", "download-bin", "command-scroll"]) {
    assert.ok(reached.has(id), id);
  }
}));

const narrow = (page) => page.evaluate(() => document.documentElement.scrollWidth);

test("at the width of a phone nothing sticks out", () => onPage(PHONE, async (page) => {
  assert.ok(await narrow(page) <= 360);
  await page.tap("#scale-true");
  assert.ok(await narrow(page) <= 360, "true size");
  await page.tap("#ticket-2 .paper");
  await viewerShows(page, 2);
  await page.locator("#problem-list .problem").first().waitFor();
  assert.ok(await narrow(page) <= 360, "open");
  await page.tap("#zoom-dots");
  await viewerShows(page, 2, 16);
  assert.ok(await narrow(page) <= 360, "zoomed");
  await page.tap("#close");
  await page.tap("#help-button");
  assert.ok(await narrow(page) <= 360, "help");
}));

test("a phone shows commands and problems with the open ticket", () =>
  onPage(PHONE, async (page) => {
    assert.equal(await page.isVisible("#inspector"), false);
    await page.tap("#ticket-2 .paper");
    await page.locator("#command-list tr").first().waitFor();
    assert.ok(await page.isVisible("#inspector"));
    await page.tap(".problem >> nth=0");
    await page.locator(".called").waitFor();
    await drawn(page);
    const visible = await page.$eval(".called", (row) => {
      const box = row.getBoundingClientRect();
      return box.top >= 0 && box.bottom <= innerHeight;
    });
    assert.ok(visible);
  }));

test("nothing moves for those who want no motion", () =>
  onPage({ ...DESKTOP, reducedMotion: "reduce" }, async (page) => {
    const moving = await page.evaluate(() => document.getAnimations().length);
    assert.equal(moving, 0);
    const lamp = await page.$eval(".lamp", (each) => getComputedStyle(each).animationName);
    assert.equal(lamp, "none");
  }));
