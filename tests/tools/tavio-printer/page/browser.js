// The browser for a test file, and what tests ask a page.
import { createRequire } from "node:module";
import { join } from "node:path";

const { chromium } = createRequire(join(process.env.TAVIO_WORK, "/"))("playwright-core");

export const DESKTOP = { viewport: { width: 1400, height: 900 } };
export const PHONE = {
  viewport: { width: 360, height: 740 }, deviceScaleFactor: 2, hasTouch: true, isMobile: true,
};
export const PATIENCE = 30000; // ms, for what comes at once unless the machine is very busy

export function startBrowser() {
  return chromium.launch({
    executablePath: process.env.TAVIO_CHROMIUM,
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
      "--disable-background-networking", "--disable-component-update", "--disable-sync"],
  });
}

// Opens the page in a context of its own. `page.complaints` are all errors of its scripts, all
// messages of its console, and all addresses that it asked for beside the printer's.
export async function openPage(browser, url, options = DESKTOP) {
  const context = await browser.newContext(options);
  context.setDefaultTimeout(PATIENCE);
  return openTab(context, url);
}

export async function openTab(context, url) {
  const page = await context.newPage();
  page.complaints = [];
  page.on("pageerror", (error) => page.complaints.push(String(error)));
  page.on("console", (message) => page.complaints.push(message.text()));
  page.on("request", (request) => {
    if (!request.url().startsWith(url)) page.complaints.push(request.url());
  });
  await page.goto(url);
  await page.locator("#state-text", { hasNotText: "Connecting" }).waitFor();
  return page;
}

// Waits until the ticket is there, with its picture.
export function ticketShown(page, id) {
  return page.waitForFunction((number) => {
    const image = document.querySelector(`#ticket-${number} img`);
    image?.scrollIntoView({ block: "nearest" }); // pictures far away are not loaded
    return image?.complete && image.naturalWidth > 0;
  }, id, { timeout: PATIENCE });
}

// The ids of the tickets, from the top.
export function ticketIds(page) {
  return page.$$eval(".ticket", (items) => items.map((item) => item.value));
}

// Counted in the page: black pixels of the ticket's picture, one pixel for each dot.
export function blackDots(page, id) {
  return page.$eval(`#ticket-${id} img`, (image) => {
    const canvas = document.createElement("canvas");
    canvas.width = image.naturalWidth;
    canvas.height = image.naturalHeight;
    const context = canvas.getContext("2d");
    context.drawImage(image, 0, 0);
    const { data } = context.getImageData(0, 0, canvas.width, canvas.height);
    let black = 0;
    for (let at = 0; at < data.length; at += 4) black += data[at] < 128 ? 1 : 0;
    return black;
  });
}

// The picture in the viewer is drawn: this ticket, at this scale.
export function viewerShows(page, id, scale) {
  return page.waitForFunction(([wantedId, wantedScale]) => {
    const { shows, scale: drawn } = document.getElementById("canvas").dataset;
    return shows === String(wantedId) && (!wantedScale || Number(drawn) === wantedScale);
  }, [id, scale], { timeout: PATIENCE });
}

// Two frames later all that was asked for is drawn.
export function drawn(page) {
  return page.evaluate(() => new Promise((resolve) => {
    requestAnimationFrame(() => requestAnimationFrame(resolve));
  }));
}
