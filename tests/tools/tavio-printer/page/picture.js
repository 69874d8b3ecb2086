// The picture of the page for the documents: node picture.js FILE
import { DESKTOP, drawn, openPage, startBrowser, ticketShown } from "./browser.js";
import { brokenTicket, eveningTicket, example, Printer } from "./printer.js";

const printer = await Printer.start();
const browser = await startBrowser();
try {
  await printer.send(brokenTicket);
  await printer.print("print", example("ticket.pdf"), "--cut");
  await printer.send(await eveningTicket());
  const page = await openPage(browser, printer.page, DESKTOP);
  for (const id of [1, 2, 3]) await ticketShown(page, id);
  await page.evaluate(() => document.getElementById("tray").scrollTo(0, 0));
  await page.locator("#command-list tr").first().waitFor();
  await drawn(page);
  await page.screenshot({ path: process.argv[2] });
} finally {
  await browser.close();
  await printer.stop();
}
