// The event stream: lost and found again, to many pages, and to a printer that stops.
import assert from "node:assert/strict";
import net from "node:net";
import { after, before, test } from "node:test";
import { DESKTOP, openPage, openTab, PATIENCE, startBrowser, ticketIds, ticketShown } from "./browser.js";
import { example, Printer } from "./printer.js";

const PAGES = 20;

let browser;
before(async () => { browser = await startBrowser(); });
after(() => browser.close());

// Between browser and printer: a connection that can be cut and mended, and lead elsewhere.
class Line {
  #server = null;
  #sockets = new Set();
  #port = 0;
  target = "";

  static async to(page) {
    const line = new Line();
    line.target = page;
    await line.mend();
    return line;
  }

  get page() { return `http://127.0.0.1:${this.#port}/`; }

  mend() {
    this.#server = net.createServer((near) => {
      const far = net.connect(Number(new URL(this.target).port), "127.0.0.1");
      for (const [socket, other] of [[near, far], [far, near]]) {
        this.#sockets.add(socket);
        socket.on("error", () => {});
        socket.on("close", () => {
          this.#sockets.delete(socket);
          other.destroy();
        });
        socket.pipe(other);
      }
    });
    return new Promise((resolve) => {
      this.#server.listen(this.#port, "127.0.0.1", () => {
        this.#port = this.#server.address().port;
        resolve();
      });
    });
  }

  // No bytes pass, and no connection is accepted.
  async cut() {
    const closed = new Promise((resolve) => this.#server.close(resolve));
    this.drop();
    await closed;
  }

  // All connections end; new ones may come.
  drop() {
    for (const socket of this.#sockets) socket.destroy();
  }
}

const kinds = [
  ["a stream shared by all pages", () => {}],
  ["a stream of its own", () => { delete window.SharedWorker; }],
];

for (const [kind, prepare] of kinds) {
  async function throughALine(use) {
    const printer = await Printer.start();
    const line = await Line.to(printer.page);
    const context = await browser.newContext(DESKTOP);
    context.setDefaultTimeout(PATIENCE);
    await context.addInitScript(prepare);
    try {
      await use(await openTab(context, line.page), printer, line);
    } finally {
      await context.close();
      await line.cut();
      await printer.stop();
    }
  }

  test(`${kind}: tickets printed while the line is cut are not missed, and none comes twice`, () =>
    throughALine(async (page, printer, line) => {
      await printer.send("<p>");
      await ticketShown(page, 1);
      await line.cut();
      await page.locator("#link", { hasText: "does not answer" }).waitFor();
      await printer.send("<p><p>");
      await line.mend();
      await ticketShown(page, 3);
      assert.deepEqual(await ticketIds(page), [3, 2, 1]);
      await page.locator("#link").waitFor({ state: "hidden" });

      await printer.send("<p>");
      await ticketShown(page, 4);
      assert.deepEqual(await ticketIds(page), [4, 3, 2, 1]);
    }));

  test(`${kind}: dropped again and again while printing`, () =>
    throughALine(async (page, printer, line) => {
      for (let id = 1; id <= 12; ++id) {
        const sent = printer.send("<p>");
        if (id % 2 === 0) line.drop();
        await sent;
      }
      await ticketShown(page, 12);
      assert.deepEqual(await ticketIds(page), [12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1]);
    }));

  test(`${kind}: another printer in its place begins a page of its own`, () =>
    throughALine(async (page, printer, line) => {
      await printer.send("<RC9,9>old<p><p>");
      await ticketShown(page, 2);
      const other = await Printer.start();
      try {
        await other.send("<RC9,9>new<q><p><p>");
        line.target = other.page;
        line.drop();
        await ticketShown(page, 3);
        assert.deepEqual(await ticketIds(page), [3, 2, 1]);
        assert.equal(await page.textContent("#ticket-1 .end"), "ejected, not cut");
        assert.equal(await page.textContent("#address"), other.address);
      } finally {
        await other.stop();
      }
    }));
}

test(`${PAGES} pages of as many browsers get a ticket, and the printer stops within 2 s`,
  async (context) => {
    const printer = await Printer.start();
    const pages = [];
    for (let index = 0; index < PAGES; ++index) pages.push(await openPage(browser, printer.page));
    const ended = await printer.print("print", example("photo.jpg"), "--cut");
    await Promise.all(pages.map((page) => ticketShown(page, 1)));
    context.diagnostic(`all ${PAGES} pages have it after ${Date.now() - ended} ms`);
    for (const page of pages) assert.deepEqual(await ticketIds(page), [1]);
    const stopped = await printer.stop();
    context.diagnostic(`stopped after ${stopped.toFixed()} ms`);
    assert.ok(stopped < 2000, `${stopped} ms`);
    for (const page of pages) await page.locator("#link").waitFor();
    for (const page of pages) await page.context().close();
  });

test(`${PAGES} pages of one browser get a ticket, though it gives a printer 6 connections`,
  async () => {
    const printer = await Printer.start();
    const context = await browser.newContext(DESKTOP);
    context.setDefaultTimeout(PATIENCE);
    const pages = [];
    for (let index = 0; index < PAGES; ++index) pages.push(await openTab(context, printer.page));
    await printer.send("<p>");
    await Promise.all(pages.map((page) => ticketShown(page, 1)));
    for (const page of pages.slice(1)) await page.close();
    await printer.send("<p>");
    await ticketShown(pages[0], 2);
    assert.deepEqual(await ticketIds(pages[0]), [2, 1]);
    await context.close();
    await printer.stop();
  });
