// The details of one ticket: facts, problems, and commands.
import { byId, bytes, clock, counted, date, element, ending, inches, number } from "./format.js";

const PAGE = 2000; // commands in one answer of the printer

export class Inspector {
  #ticket = null;
  #detail = null;
  #request = null;

  constructor() {
    byId("page-back").onclick = () => this.#load(Math.max(0, this.#detail.firstLine - PAGE));
    byId("page-on").onclick = () => this.#load(this.#detail.firstLine + PAGE);
  }

  show(ticket) {
    if (this.#ticket === ticket) return;
    this.#ticket = ticket;
    this.#detail = null;
    this.#request?.abort();
    byId("inspector").hidden = !ticket;
    if (!ticket) return;
    this.#describe(ticket);
    this.#load(0);
  }

  #describe(ticket) {
    byId("inspector-title").textContent = `Ticket ${ticket.id}`;
    byId("inspector-time").textContent = date(ticket);
    const png = byId("download-png");
    png.hidden = !ticket.picture;
    png.href = `/tickets/${ticket.id}.png?download`;
    const bin = byId("download-bin");
    bin.hidden = ticket.bytesKept === 0;
    bin.href = `/tickets/${ticket.id}.bin`;
    const share = (100 * ticket.blackDots) / (ticket.rows * ticket.columns);
    const facts = [
      ["Size", `${inches(ticket)}, ${number(ticket.columns)} × ${number(ticket.rows)} dots`],
      ["Orientation", ticket.orientation],
      ["End", ending(ticket)],
      ["Black dots", `${number(ticket.blackDots)} (${share.toFixed(1)} %)`],
      ["Job", `${bytes(ticket.byteCount)}, ticket ${number(ticket.number)} of connection ` +
        number(ticket.connection)],
    ];
    if (ticket.dotsOff) facts.push(["Off the ticket", counted(ticket.dotsOff, "dot")]);
    byId("inspector-facts").replaceChildren(...facts.map(([name, value]) =>
      element("div", {}, element("dt", {}, name), element("dd", {}, value))));
    byId("problems").hidden = ticket.problems === 0;
    byId("problems-title").textContent = counted(ticket.problems, "problem");
    byId("problem-list").replaceChildren();
    byId("command-list").replaceChildren();
    byId("pager").hidden = true;
    this.#note("Decoding …");
  }

  // Loads the commands from that line on; then shows the line of a problem, if one is given.
  async #load(line, problem = null) {
    const id = this.#ticket.id;
    this.#request?.abort();
    this.#request = new AbortController();
    const { signal } = this.#request;
    try {
      const answer = await fetch(`/tickets/${id}.json?line=${line}`, { signal });
      if (answer.status === 404) return this.#note("The printer no longer has this ticket.");
      if (!answer.ok) throw new Error(answer.statusText);
      const detail = await answer.json();
      if (signal.aborted) return;
      this.#detail = detail;
      this.#showDetail();
      if (problem !== null) this.#go(problem);
    } catch (error) {
      if (error.name !== "AbortError") this.#note("The commands could not be had. Select the ticket again.");
    }
  }

  #showDetail() {
    const { commands, problemList, firstLine, lineCount } = this.#detail;
    const problemsAt = Map.groupBy
      ? Map.groupBy(problemList, ({ line }) => line)
      : groupByLine(problemList);
    byId("command-list").replaceChildren(...commands.map((command, index) =>
      row(command, firstLine + index, problemsAt.get(firstLine + index))));
    byId("command-scroll").scrollTop = 0;
    this.#showProblems(problemList);
    const shown = `${number(firstLine + 1)} to ${number(firstLine + commands.length)}`;
    byId("pager").hidden = lineCount <= PAGE;
    byId("page-range").textContent = `${shown} of ${number(lineCount)}`;
    byId("page-back").disabled = firstLine === 0;
    byId("page-on").disabled = firstLine + PAGE >= lineCount;
    byId("commands-title").textContent = counted(lineCount, "command");
    this.#note(this.#missing());
  }

  #missing() {
    const { bytesKept, byteCount } = this.#ticket;
    if (bytesKept === byteCount) return "";
    if (bytesKept === 0) return "The bytes of this ticket were too many to keep.";
    return `These are the first ${bytes(bytesKept)} of ${bytes(byteCount)}; more were not kept.`;
  }

  #showProblems(list) {
    const items = list.map((problem) => {
      const button = element("button", { type: "button", class: "problem" },
        element("span", { class: "offset" }, offset(problem.offset)),
        element("span", {}, problem.text));
      button.onclick = () => this.#go(problem);
      return element("li", {}, button);
    });
    const more = this.#ticket.problems - list.length;
    if (more > 0) items.push(element("li", { class: "note" }, `and ${number(more)} more`));
    byId("problem-list").replaceChildren(...items);
  }

  #go(problem) {
    const line = byId(`line-${problem.line}`);
    if (!line) {
      if (problem.line < this.#detail.lineCount) {
        this.#load(problem.line - (problem.line % PAGE), problem);
      }
      return;
    }
    const scroll = byId("command-scroll");
    scroll.scrollTop = line.offsetTop - scroll.clientHeight / 2;
    if (scroll.scrollHeight <= scroll.clientHeight) line.scrollIntoView({ block: "center" });
    line.classList.remove("called");
    void line.offsetWidth; // restarts the animation of the line
    line.classList.add("called");
  }

  #note(text) {
    byId("command-note").textContent = text;
    byId("command-note").hidden = !text;
  }
}

function offset(value) {
  return String(value).padStart(7, "0");
}

function groupByLine(problems) {
  const groups = new Map();
  for (const problem of problems) {
    groups.set(problem.line, [...(groups.get(problem.line) ?? []), problem]);
  }
  return groups;
}

function row(command, line, problems) {
  const meaning = element("td", {}, command.meaning);
  for (const { text } of problems ?? []) {
    meaning.append(element("span", { class: "wrong" }, text));
  }
  return element("tr", { id: `line-${line}`, ...(problems && { class: "problem-line" }) },
    element("td", { class: "offset" }, offset(command.offset)),
    element("td", { class: "command" }, command.command),
    meaning);
}
