// The printer's event stream. It reconnects, continues after the last ticket, and keeps all tickets
// that the printer keeps, for pages that are opened later.
//
// Messages: {kind: "link", link: "live" | "lost" | "busy"}, {kind: "printer", printer},
// {kind: "state", state}, {kind: "reset"}, {kind: "ticket", ticket}.

const FIRST_DELAY = 250; // ms before the first new attempt; doubled with each attempt
const MAX_DELAY = 3000;
const MAX_SILENCE = 30000; // the printer sends an event every 10 s

export class Feed {
  #report;
  #source = null;
  #lastId = "";
  #delay = FIRST_DELAY;
  #silence = 0;
  #tickets = new Map();
  #printer = null;
  #state = null;
  #link = "lost";

  constructor(report) {
    this.#report = report;
    this.#connect();
  }

  // The messages for a new page.
  snapshot() {
    const messages = [{ kind: "reset" }];
    if (this.#printer) messages.push({ kind: "printer", printer: this.#printer });
    for (const ticket of this.#tickets.values()) messages.push({ kind: "ticket", ticket });
    if (this.#state) messages.push({ kind: "state", state: this.#state });
    if (this.#printer) messages.push({ kind: "link", link: this.#link });
    return messages;
  }

  close() {
    clearTimeout(this.#silence);
    this.#source?.close();
    this.#source = null;
  }

  #connect() {
    const source = new EventSource("/events?after=" + encodeURIComponent(this.#lastId));
    this.#source = source;
    const listen = (name, take) => source.addEventListener(name, (event) => {
      this.#watch();
      take(JSON.parse(event.data), event);
    });
    listen("printer", (printer) => this.#greeted(printer));
    listen("reset", () => this.#reset());
    listen("ticket", (ticket, event) => this.#take(ticket, event.lastEventId));
    listen("state", (state) => this.#send({ kind: "state", state: (this.#state = state) }));
    listen("alive", () => {});
    source.onerror = () => this.#lost();
    this.#watch();
  }

  #watch() {
    clearTimeout(this.#silence);
    this.#silence = setTimeout(() => this.#lost(), MAX_SILENCE);
  }

  async #lost() {
    if (!this.#source) return;
    this.close();
    setTimeout(() => this.#connect(), this.#delay * (0.75 + Math.random() / 2));
    this.#delay = Math.min(this.#delay * 2, MAX_DELAY);
    // A printer that answers but refuses the stream has reached its limit of pages.
    const answers = await fetch("/printer.json").then((answer) => answer.ok, () => false);
    if (this.#link !== "live" || !answers) this.#setLink(answers ? "busy" : "lost");
    else this.#link = "uncertain"; // it answers: the next attempt decides
  }

  #greeted(printer) {
    this.#delay = FIRST_DELAY;
    this.#printer = printer;
    this.#send({ kind: "printer", printer });
    this.#setLink("live");
  }

  #reset() {
    this.#lastId = "";
    this.#tickets.clear();
    this.#send({ kind: "reset" });
  }

  #take(ticket, lastId) {
    this.#lastId = lastId;
    if (this.#tickets.has(ticket.id)) return;
    this.#tickets.set(ticket.id, ticket);
    for (const id of this.#tickets.keys()) if (id < ticket.oldest) this.#tickets.delete(id);
    this.#send({ kind: "ticket", ticket });
  }

  #setLink(link) {
    this.#link = link;
    this.#send({ kind: "link", link });
  }

  #send(message) {
    this.#report(message);
  }
}
