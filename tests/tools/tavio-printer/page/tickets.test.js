// Tickets on the page: their arrival, their dots and their details.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { after, before, test } from "node:test";
import {
  blackDots, drawn, openPage, startBrowser, ticketIds, ticketShown, viewerShows,
} from "./browser.js";
import { pngDots } from "./png_dots.js";
import { brokenTicket, eveningTicket, example, jobOf, previewOf, Printer } from "./printer.js";

let browser;
before(async () => { browser = await startBrowser(); });
after(() => browser.close());

async function withPage(options, use) {
  const printer = await Printer.start(...options);
  try {
    const page = await openPage(browser, printer.page);
    await use(page, printer);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
  } finally {
    await printer.stop();
  }
}

test("an empty page tells how to print", () => withPage([], async (page, printer) => {
  assert.equal(await page.textContent("#empty-command"),
    `tavio print photo.jpg --cut --to ${printer.address}`);
  assert.equal(await page.textContent("#address"), printer.address);
  assert.equal(await page.textContent("#resolution"), "300 dpi");
  assert.equal(await page.isVisible("#inspector"), false);
}));

test("a ticket appears within a second of the cut", (context) =>
  withPage([], async (page, printer) => {
    await page.evaluate(() => {
      window.seen = {};
      new MutationObserver((changes) => {
        for (const { addedNodes } of changes) {
          for (const item of addedNodes) {
            const note = () => (window.seen[item.value] = Date.now());
            item.querySelector("img").addEventListener("load", note);
          }
        }
      }).observe(document.getElementById("tickets"), { childList: true });
    });
    const delays = [];
    for (let id = 1; id <= 5; ++id) {
      const ended = await printer.print("print", example("photo.jpg"), "--cut");
      await ticketShown(page, id);
      delays.push(await page.evaluate((number) => window.seen[number], id) - ended);
    }
    context.diagnostic(`from the end of tavio to the picture on the page, ms: ${delays.join(" ")}`);
    // The best of five, as the machine may have other things to do.
    assert.ok(Math.min(...delays) < 1000, `milliseconds: ${delays}`);
    assert.equal(await page.textContent("#announcer"), "Ticket 5, 5.5 × 2 in, cut");
  }));

test("the dots counted in the page are those of the stream", () =>
  withPage([], async (page, printer) => {
    const jobs = [
      [["print", example("photo.jpg"), "--cut"]],
      [["print", example("ticket.pdf"), "--cut"]],
      [["print", example("photo.jpg"), "--orientation", "portrait", "--cut"]],
      [["send", "<RC20,20>Row F, seat 12<p>"]],
    ];
    let id = 0;
    for (const commands of jobs) {
      const job = await jobOf(...commands);
      const expected = pngDots(await previewOf(job));
      assert.ok(expected.black > 100);
      await printer.send(job);
      await ticketShown(page, ++id);
      const { blackDots: told } = await page.evaluate((number) =>
        fetch(`/tickets/${number}.json`).then((answer) => answer.json()), id);
      assert.equal(told, expected.black);
      assert.equal(await blackDots(page, id), expected.black);
      const image = await page.$eval(`#ticket-${id} img`,
        ({ naturalWidth, naturalHeight }) => [naturalWidth, naturalHeight]);
      assert.deepEqual(image, [expected.columns, expected.rows]);
    }
    assert.deepEqual(await ticketIds(page), [4, 3, 2, 1]);
  }));

test("tickets are true to scale", () => withPage(["--stock", "receipt"], async (page, printer) => {
  await printer.send("<p>");
  await ticketShown(page, 1);
  const inches = async () => page.$eval("#ticket-1 .paper", (paper) => {
    const { width, height } = paper.getBoundingClientRect();
    return [width / 96, height / 96];
  });
  const [width, height] = await inches();
  assert.ok(Math.abs(width - 8) < 0.02 && Math.abs(height - 3.25) < 0.02, `${width} x ${height}`);
  await page.click("#scale-fit");
  const [fitted] = await inches();
  assert.ok(fitted < 8);
}));

test("cut, ejected and unfinished tickets look different", () =>
  withPage([], async (page, printer) => {
    await printer.send("one<p>two<q>three");
    await ticketShown(page, 3);
    const looks = await page.$$eval(".ticket", (items) => items.map((item) => {
      const tail = getComputedStyle(item.querySelector(".tail"));
      return [item.querySelector(".end").textContent, tail.display, tail.borderTopStyle];
    }));
    assert.deepEqual(looks, [
      ["not cut, job ended", "block", "none"],
      ["ejected, not cut", "block", "dashed"],
      ["cut", "none", "none"],
    ]);
  }));

test("problems are marked at the ticket, in the list and in the commands", () =>
  withPage([], async (page, printer) => {
    await printer.send(brokenTicket);
    await ticketShown(page, 1);
    assert.equal(await page.textContent(".badge"), "3 problems");
    await page.locator("#problem-list .problem").nth(2).waitFor();
    const offset = (text) => String(brokenTicket.indexOf(text)).padStart(7, "0");
    const marked = await page.$$eval(".problem-line", (rows) => rows.map((row) =>
      [row.querySelector(".offset").textContent, row.querySelector(".wrong").textContent]));
    assert.equal(marked.length, 3);
    assert.deepEqual(marked[0], [offset("<XY>"), 'unknown command "<XY>"']);
    assert.deepEqual(marked[1], [offset("<LD9>"), "logo 9 is not stored"]);
    assert.equal(marked[2][0], offset("<q>"));
    assert.match(marked[2][1], /46 dots fall outside the ticket/);
    assert.match(await page.textContent("#inspector-facts"), /Off the ticket\s*46 dots/);
  }));

test("a problem far down in many commands is a click away", () =>
  withPage([], async (page, printer) => {
    await printer.send(`${"<P1>".repeat(5000)}<XY><p>`);
    await ticketShown(page, 1);
    await page.locator("#command-list tr").first().waitFor();
    assert.equal(await page.textContent("#page-range"), "1 to 2,000 of 5,002");
    await page.click(".problem");
    await page.locator(".called").waitFor();
    assert.equal(await page.textContent("#page-range"), "4,001 to 5,002 of 5,002");
    assert.match(await page.textContent(".called"), /^0020000<XY>unknown command/);
    const visible = await page.$eval(".called", (row) => {
      const box = row.getBoundingClientRect();
      return box.top >= 0 && box.bottom <= innerHeight;
    });
    assert.ok(visible);
    await page.click("#page-back");
    await page.waitForFunction(() =>
      document.getElementById("page-range").textContent.startsWith("2,001 to 4,000"));
  }));

test("picture and bytes can be downloaded", () => withPage([], async (page, printer) => {
  const job = await eveningTicket();
  await printer.send(job);
  await ticketShown(page, 1);
  const download = async (button) => {
    const [file] = await Promise.all([page.waitForEvent("download"), page.click(button)]);
    return [file.suggestedFilename(), readFileSync(await file.path())];
  };
  const [binName, bytes] = await download("#download-bin");
  assert.equal(binName, "ticket-000001.bin");
  assert.ok(bytes.equals(job));
  const [pngName, png] = await download("#download-png");
  assert.equal(pngName, "ticket-000001.png");
  assert.ok(png.equals(await previewOf(job)));
}));

test("the page forgets tickets as the printer does", () =>
  withPage(["--keep", "3"], async (page, printer) => {
    await printer.send("<p>".repeat(5));
    await ticketShown(page, 5);
    assert.deepEqual(await ticketIds(page), [5, 4, 3]);
    assert.equal(await page.textContent("#count"), "3");
    // The page may have asked for a picture that was forgotten meanwhile.
    page.complaints = page.complaints.filter((text) => !text.includes("404"));
  }));

test("paper that is out is told, and loaded from the page", () =>
  withPage(["--paper", "1"], async (page, printer) => {
    await printer.send("<p>");
    await ticketShown(page, 1);
    const second = printer.send("<RC9,9>second<p>");
    await page.locator("#load-paper").waitFor();
    assert.equal(await page.textContent("#state-text"), "Paper is out");
    assert.deepEqual(await ticketIds(page), [1]);
    await page.click("#load-paper");
    await ticketShown(page, 2);
    await second;
  }));

test("zooming shows single dots, each where the printer has it", () =>
  withPage([], async (page, printer) => {
    const job = await jobOf(["print", example("photo.jpg"), "--cut"]);
    const dots = pngDots(await previewOf(job));
    await printer.send(job);
    await ticketShown(page, 1);
    await page.click("#ticket-1 .paper");
    await viewerShows(page, 1);
    const box = await page.locator("#canvas").boundingBox();
    // Moves to the photo, which is at the left of the ticket.
    await page.mouse.move(box.x + 100, box.y + box.height / 2);
    await page.mouse.dblclick(box.x + 100, box.y + box.height / 2);
    await viewerShows(page, 1, 16);
    assert.equal(await page.textContent("#zoom"), "16 px/dot");
    await page.evaluate(() => {
      document.getElementById("canvas").addEventListener("pointermove", (event) => {
        window.pointed = [Math.floor(event.offsetX), Math.floor(event.offsetY)];
      });
    });
    await drawn(page);
    await page.evaluate(() => {
      const canvas = document.getElementById("canvas");
      window.pixels = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
    });
    const counts = { black: 0, white: 0 };
    for (let index = 0; index < 60; ++index) {
      const x = 20 + Math.floor(((index * 37) % 60) / 60 * (box.width - 40));
      const y = 20 + Math.floor((index / 60) * (box.height - 40));
      await page.mouse.move(box.x + x, box.y + y);
      const [place, red] = await page.evaluate(() => {
        const [left, top] = window.pointed;
        const { data, width } = window.pixels;
        return [document.getElementById("place").textContent, data[4 * (top * width + left)]];
      });
      const [, row, column] = place.match(/^row ([\d,]+), column ([\d,]+) /)
        .map((text) => Number(text.replace(",", "")));
      const black = dots.isBlack(row, column);
      assert.equal(red < 50, black, `row ${row}, column ${column}`);
      counts[black ? "black" : "white"] += 1;
    }
    assert.ok(counts.black > 5 && counts.white > 5, JSON.stringify(counts));
  }));

test("at one pixel a dot the viewer shows exactly the dots of the stream", () =>
  withPage([], async (page, printer) => {
    await page.setViewportSize({ width: 3000, height: 1200 });
    const job = await eveningTicket();
    await printer.send(job);
    await ticketShown(page, 1);
    await page.click("#ticket-1 .paper");
    await page.keyboard.press("1");
    await viewerShows(page, 1, 1);
    const black = await page.$eval("#canvas", (canvas) => {
      const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
      let count = 0;
      for (let at = 0; at < data.length; at += 4) {
        count += data[at] + data[at + 1] + data[at + 2] === 0 && data[at + 3] === 255 ? 1 : 0;
      }
      return count;
    });
    assert.equal(black, pngDots(await previewOf(job)).black);
  }));
