// Formatting of numbers and names, and making of elements.

const MM_PER_INCH = 25.4;

export function number(value) {
  return value.toLocaleString("en");
}

// "1 dot", "2 dots"
export function counted(value, noun) {
  return `${number(value)} ${noun}${value === 1 ? "" : "s"}`;
}

export function bytes(value) {
  if (value < 10000) return counted(value, "byte");
  if (value < 1e6) return `${(value / 1e3).toFixed(1)} kB`;
  return `${(value / 1e6).toFixed(1)} MB`;
}

// "5.5 × 2 in"
export function inches(ticket) {
  const side = (dots) => String(Math.round((dots / ticket.dpi) * 100) / 100);
  return `${side(ticket.columns)} × ${side(ticket.rows)} in`;
}

export function millimetres(dots, dpi) {
  return `${((dots / dpi) * MM_PER_INCH).toFixed(1)} mm`;
}

export function clock(ticket) {
  return new Date(ticket.time).toLocaleTimeString("en-GB");
}

export function date(ticket) {
  return new Date(ticket.time).toLocaleString("en-GB", { dateStyle: "long", timeStyle: "medium" });
}

export function ending(ticket) {
  if (ticket.end === "cut") return "cut";
  return ticket.end === "ejected" ? "ejected, not cut" : "not cut, job ended";
}

// element("a", {class: "button", href: "/"}, "text", child...)
export function element(tag, attributes = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
  made.append(...children);
  return made;
}

export function byId(id) {
  return document.getElementById(id);
}
