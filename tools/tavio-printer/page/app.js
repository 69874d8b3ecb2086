// The page: connects the printer's events to the parts that show them, and keys and buttons to
// their actions.
import { startFeed } from "./feed_of_page.js";
import { byId, counted, ending, inches, number } from "./format.js";
import { Inspector } from "./inspector.js";
import { Tray } from "./tray.js";
import { Viewer } from "./viewer.js";

const LINKS = {
  lost: "The printer does not answer. Trying again …",
  busy: "The printer has as many pages open as it can. Close one; trying again …",
};

let selected = 0; // the ticket in the inspector
let live = false; // tickets arrive as they are cut; false while earlier ones are loaded

const tray = new Tray({ select, open });
const viewer = new Viewer(close);
const inspector = new Inspector();

function select(id) {
  selected = id;
  tray.mark(id);
  inspector.show(tray.ticket(id) ?? null);
}

function open(id) {
  const ticket = tray.ticket(id);
  if (!ticket) return;
  select(id);
  document.body.classList.add("open");
  byId("tray").hidden = true;
  viewer.open(ticket);
  byId("canvas").focus({ preventScroll: true });
}

function close() {
  if (!viewer.ticket) return;
  document.body.classList.remove("open");
  viewer.close();
  byId("tray").hidden = false;
  tray.focus(selected);
}

const takes = {
  printer(message) {
    const { address, stock, dpi } = message.printer;
    byId("address").textContent = address;
    byId("stock").textContent = stock;
    byId("resolution").textContent = `${dpi} dpi`;
    byId("empty-command").textContent = `tavio print photo.jpg --cut --to ${address}`;
  },

  state({ state }) {
    byId("state").dataset.state = stateName(state);
    byId("state-text").textContent = stateText(state);
    byId("load-paper").hidden = !state.paperOut;
    live = true;
  },

  link({ link }) {
    byId("link").hidden = link === "live";
    byId("link").textContent = LINKS[link] ?? "";
    document.body.classList.toggle("offline", link !== "live");
  },

  reset() {
    close();
    tray.clear();
    select(0);
    live = false;
  },

  ticket({ ticket }) {
    const following = selected === tray.newest && !viewer.ticket;
    tray.add(ticket);
    byId(`ticket-${ticket.id}`).classList.toggle("fresh", live);
    if (following) select(ticket.id);
    if (!live) return;
    const problems = ticket.problems ? `, ${counted(ticket.problems, "problem")}` : "";
    byId("announcer").textContent =
      `Ticket ${ticket.id}, ${inches(ticket)}, ${ending(ticket)}${problems}`;
  },
};

function stateName(state) {
  if (state.paperOut) return "paper-out";
  if (state.moving) return "moving";
  return state.connected ? "connected" : "ready";
}

function stateText(state) {
  if (state.paperOut) return "Paper is out";
  const waiting = state.waitingBytes ? `, ${counted(state.waitingBytes, "byte")} waiting` : "";
  if (state.moving) return `Paper is moving${waiting}`;
  if (state.connected) return `Receiving, ${number(state.received)} bytes so far`;
  return "Ready";
}

function step(by) {
  const id = selected ? tray.neighbour(selected, by) : tray.newest;
  if (!id) return;
  if (viewer.ticket) return open(id);
  select(id);
  tray.focus(id);
}

const keys = {
  j: () => step(1),
  k: () => step(-1),
  "?": () => byId("help").showModal(),
  Escape: close,
  "+": () => zoom(1),
  "=": () => zoom(1),
  "-": () => zoom(-1),
  0: () => viewer.ticket && viewer.fit(),
  1: () => viewer.ticket && viewer.setScale(1 / devicePixelRatio),
  t: () => viewer.ticket && viewer.trueSize(),
};

// Zooming with no ticket open opens the selected one.
function zoom(direction) {
  if (!viewer.ticket) return open(selected);
  viewer.zoom(direction);
}

addEventListener("keydown", (event) => {
  if (event.ctrlKey || event.metaKey || event.altKey || byId("help").open) return;
  const within = (id) => byId(id).contains(event.target);
  if (event.key.startsWith("Arrow")) {
    if (within("inspector")) return; // its lists scroll
    if (viewer.ticket) {
      if (viewer.key(event.key)) event.preventDefault();
      return;
    }
    const by = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (!by || !tray.size) return;
    event.preventDefault();
    return step(by);
  }
  if (event.key === "Enter" && !viewer.ticket && event.target === document.body) open(selected);
  const action = Object.hasOwn(keys, event.key) ? keys[event.key] : null;
  if (!action) return;
  event.preventDefault();
  action();
});

byId("help-button").onclick = () => byId("help").showModal();
byId("load-paper").onclick = () => fetch("/paper", { method: "POST" }).catch(() => {});
byId("copy").onclick = async () => {
  const copied = await navigator.clipboard?.writeText(byId("address").textContent)
    .then(() => true, () => false);
  byId("copy").textContent = copied ? "Copied" : "Not allowed";
  setTimeout(() => (byId("copy").textContent = "Copy"), 1500);
};

startFeed((message) => takes[message.kind](message));
