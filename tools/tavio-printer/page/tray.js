// The tickets, newest first, true to scale.
import { byId, bytes, clock, counted, element, ending, inches, number } from "./format.js";

const PHONE = matchMedia("(max-width: 700px)");
const PIXELS_PER_INCH = 96; // of CSS

export class Tray {
  #list = byId("tickets");
  #items = new Map(); // id -> {ticket, item}
  #actions;

  // actions: {select(id), open(id)}
  constructor(actions) {
    this.#actions = actions;
    byId("scale-true").onclick = () => this.#setScale("true");
    byId("scale-fit").onclick = () => this.#setScale("fit");
    this.#setScale(PHONE.matches ? "fit" : "true");
  }

  get size() { return this.#items.size; }
  get newest() { return Math.max(0, ...this.#items.keys()); }
  ticket(id) { return this.#items.get(id)?.ticket; }

  add(ticket) {
    if (this.#items.has(ticket.id)) return;
    const item = this.#item(ticket);
    this.#items.set(ticket.id, { ticket, item });
    this.#list.prepend(item);
    for (const [id, { item: old }] of this.#items) {
      if (id >= ticket.oldest) continue;
      old.remove();
      this.#items.delete(id);
    }
    this.#count();
  }

  clear() {
    this.#items.clear();
    this.#list.replaceChildren();
    this.#count();
  }

  // The id of the ticket `step` places further down the list, or of the last one in that direction.
  neighbour(id, step) {
    const ids = [...this.#items.keys()].sort((a, b) => b - a);
    const index = Math.min(Math.max(ids.indexOf(id) + step, 0), ids.length - 1);
    return ids[index] ?? 0;
  }

  mark(id) {
    for (const [each, { item }] of this.#items) {
      item.classList.toggle("selected", each === id);
      if (each === id) item.setAttribute("aria-current", "true");
      else item.removeAttribute("aria-current");
    }
  }

  focus(id) {
    this.#items.get(id)?.item.querySelector("button").focus();
  }

  #count() {
    byId("count").textContent = this.size ? number(this.size) : "";
    byId("empty").hidden = this.size > 0;
  }

  #setScale(scale) {
    this.#list.dataset.scale = scale;
    byId("scale-true").setAttribute("aria-pressed", String(scale === "true"));
    byId("scale-fit").setAttribute("aria-pressed", String(scale === "fit"));
  }

  #item(ticket) {
    const problems = ticket.problems ? counted(ticket.problems, "problem") : "";
    const label = [`Ticket ${ticket.id}`, ending(ticket), inches(ticket), problems];
    const button = element("button", {
      type: "button", class: "paper", "aria-label": label.filter(Boolean).join(", "),
    }, this.#picture(ticket));
    button.onclick = () => this.#actions.open(ticket.id);
    button.onfocus = () => this.#actions.select(ticket.id);

    const sheet = element("div", { class: "sheet" }, button);
    sheet.append(element("div", { class: "tail", "aria-hidden": "true" }));
    const item = element("li", { class: "ticket", id: `ticket-${ticket.id}`, value: ticket.id },
      this.#caption(ticket, problems), element("div", { class: "roll" }, sheet));
    item.dataset.end = ticket.end;
    item.style.setProperty("--width", `${(ticket.columns / ticket.dpi) * PIXELS_PER_INCH}px`);
    return item;
  }

  #picture(ticket) {
    const image = element("img", {
      alt: "", loading: "lazy", decoding: "async", width: ticket.columns, height: ticket.rows,
    });
    if (ticket.picture) image.src = `/tickets/${ticket.id}.png?at=${ticket.time}`;
    return image;
  }

  #caption(ticket, problems) {
    const caption = element("p", { class: "caption" },
      element("strong", {}, String(ticket.id)),
      element("time", { datetime: new Date(ticket.time).toISOString() }, clock(ticket)),
      element("span", {}, inches(ticket)),
      element("span", { class: `end ${ticket.end === "cut" ? "cut" : "uncut"}` }, ending(ticket)),
      element("span", {}, bytes(ticket.byteCount)));
    if (problems) caption.append(element("span", { class: "badge" }, problems));
    return caption;
  }
}
