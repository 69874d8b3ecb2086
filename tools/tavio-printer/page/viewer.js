// One ticket, from the whole to its single dots: zooming and panning by mouse, touch or keys.
import { byId, ending, inches, millimetres, number } from "./format.js";

// CSS pixels for one dot.
const STEPS = [1 / 16, 1 / 8, 1 / 4, 1 / 2, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32];
const MOST_SCALE = STEPS.at(-1);
const DOTS_SCALE = 16;
const GRID_FROM = 6; // from this scale on the dots have a grid
const PIXELS_PER_INCH = 96;
const MARGIN = 24; // around a fitted ticket
const BAND = 8; // rows and columns between the stronger lines of the grid
const KEY_STEP = 60; // pixels

export class Viewer {
  #canvas = byId("canvas");
  #ticket = null;
  #image = null;
  #scale = 1;
  #x = 0; // the dot in the middle of the window
  #y = 0;
  #fitted = true;
  #pointers = new Map();
  #drawing = 0;

  constructor(close) {
    byId("close").onclick = close;
    byId("zoom-in").onclick = () => this.zoom(1);
    byId("zoom-out").onclick = () => this.zoom(-1);
    byId("zoom-fit").onclick = () => this.fit();
    byId("zoom-true").onclick = () => this.trueSize();
    byId("zoom-dots").onclick = () => this.setScale(DOTS_SCALE);
    new ResizeObserver(() => (this.#fitted ? this.fit() : this.#draw())).observe(this.#canvas);
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.#draw());
    this.#listen();
  }

  get ticket() { return this.#ticket; }
  get scale() { return this.#scale; }

  async open(ticket) {
    this.#ticket = ticket;
    this.#image = null;
    byId("viewer").hidden = false;
    byId("viewer-title").textContent = `Ticket ${ticket.id}`;
    byId("place").textContent = "";
    delete this.#canvas.dataset.shows;
    this.#canvas.setAttribute("aria-label",
      `Picture of ticket ${ticket.id}, ${inches(ticket)}, ${ending(ticket)}. Arrow keys move, plus and minus zoom.`);
    this.fit();
    if (!ticket.picture) return;
    const image = new Image();
    image.src = `/tickets/${ticket.id}.png?at=${ticket.time}`;
    try {
      await image.decode();
    } catch {
      if (this.#ticket === ticket) byId("place").textContent = "The printer no longer has this picture.";
      return;
    }
    if (this.#ticket !== ticket) return;
    this.#image = image;
    this.#draw();
  }

  close() {
    this.#ticket = null;
    this.#image = null;
    byId("viewer").hidden = true;
  }

  fit() {
    if (!this.#ticket) return;
    const { columns, rows } = this.#ticket;
    const { clientWidth, clientHeight } = this.#canvas;
    const scale = Math.min((clientWidth - 2 * MARGIN) / columns, (clientHeight - 2 * MARGIN) / rows);
    this.#x = columns / 2;
    this.#y = rows / 2;
    this.setScale(Math.max(scale, 1 / 1000));
    this.#fitted = true;
    this.#showScale();
  }

  trueSize() {
    this.setScale(PIXELS_PER_INCH / this.#ticket.dpi);
  }

  zoom(direction, about) {
    const near = 1.001;
    const next = direction > 0
      ? STEPS.find((step) => step > this.#scale * near) ?? Math.max(MOST_SCALE, this.#scale)
      : STEPS.findLast((step) => step < this.#scale / near) ?? Math.min(STEPS[0], this.#scale);
    this.setScale(next, about);
  }

  // Keeps the dot under `about`, a place in the window, in its place.
  setScale(scale, about = { x: this.#canvas.clientWidth / 2, y: this.#canvas.clientHeight / 2 }) {
    const dot = this.#dotAt(about);
    this.#scale = scale;
    this.#fitted = false;
    const moved = this.#dotAt(about);
    this.#moveTo(this.#x + dot.x - moved.x, this.#y + dot.y - moved.y);
    this.#showScale();
  }

  pan(right, down) {
    this.#fitted = false;
    this.#moveTo(this.#x + right / this.#scale, this.#y + down / this.#scale);
  }

  key(key) {
    const moves = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
    if (!moves[key]) return false;
    const step = Math.max(KEY_STEP, this.#scale);
    this.pan(moves[key][0] * step, moves[key][1] * step);
    this.#tell(this.#dotAt({ x: this.#canvas.clientWidth / 2, y: this.#canvas.clientHeight / 2 }));
    return true;
  }

  #moveTo(x, y) {
    if (!this.#ticket) return;
    this.#x = Math.min(Math.max(x, 0), this.#ticket.columns);
    this.#y = Math.min(Math.max(y, 0), this.#ticket.rows);
    this.#draw();
  }

  // The place of the ticket's top left corner in the window, in whole pixels, so that dots are
  // sharp.
  #corner() {
    const ratio = devicePixelRatio;
    const whole = (value) => Math.round(value * ratio) / ratio;
    return {
      x: whole(this.#canvas.clientWidth / 2 - this.#x * this.#scale),
      y: whole(this.#canvas.clientHeight / 2 - this.#y * this.#scale),
    };
  }

  #dotAt({ x, y }) {
    const corner = this.#corner();
    return { x: (x - corner.x) / this.#scale, y: (y - corner.y) / this.#scale };
  }

  #showScale() {
    const trueScale = PIXELS_PER_INCH / this.#ticket.dpi;
    const percent = (100 * this.#scale) / trueScale;
    byId("zoom").textContent = this.#scale >= 1
      ? `${Number(this.#scale.toPrecision(3))} px/dot`
      : `${number(Math.round(percent))} %`;
    byId("zoom").title = `${Number(this.#scale.toPrecision(3))} pixels for each dot`;
    const press = (id, on) => byId(id).setAttribute("aria-pressed", String(on));
    press("zoom-fit", this.#fitted);
    press("zoom-true", !this.#fitted && Math.abs(percent - 100) < 0.5);
    press("zoom-dots", !this.#fitted && this.#scale === DOTS_SCALE);
    this.#canvas.dataset.scale = String(this.#scale);
  }

  // The printer's row and column under the pointer. The upright picture of a portrait ticket is
  // turned, so they differ from the picture's.
  #tell(dot) {
    const { columns, rows, dpi, orientation } = this.#ticket;
    const x = Math.floor(dot.x);
    const y = Math.floor(dot.y);
    const on = x >= 0 && y >= 0 && x < columns && y < rows;
    const [row, column] = orientation === "portrait" ? [columns - 1 - x, y] : [y, x];
    byId("place").textContent = on
      ? `row ${number(row)}, column ${number(column)} · ` +
        `${millimetres(x, dpi)} from the left, ${millimetres(y, dpi)} from the top`
      : "";
  }

  #draw() {
    if (this.#drawing) return;
    this.#drawing = requestAnimationFrame(() => {
      this.#drawing = 0;
      if (this.#ticket) this.#drawNow();
    });
  }

  #drawNow() {
    const canvas = this.#canvas;
    const ratio = devicePixelRatio;
    const width = Math.round(canvas.clientWidth * ratio);
    const height = Math.round(canvas.clientHeight * ratio);
    if (canvas.width !== width) canvas.width = width;
    if (canvas.height !== height) canvas.height = height;
    const context = canvas.getContext("2d");
    context.setTransform(ratio, 0, 0, ratio, 0, 0);
    context.clearRect(0, 0, canvas.clientWidth, canvas.clientHeight);
    const corner = this.#corner();
    this.#drawPaper(context, corner);
    if (!this.#image) return;
    context.imageSmoothingEnabled = this.#scale * ratio < 1;
    context.imageSmoothingQuality = "high";
    context.drawImage(this.#image, corner.x, corner.y,
      this.#ticket.columns * this.#scale, this.#ticket.rows * this.#scale);
    if (this.#scale >= GRID_FROM) this.#drawGrid(context, corner);
    canvas.dataset.shows = String(this.#ticket.id);
  }

  #drawPaper(context, corner) {
    const style = getComputedStyle(this.#canvas);
    const width = this.#ticket.columns * this.#scale;
    const height = this.#ticket.rows * this.#scale;
    context.save();
    context.shadowColor = style.getPropertyValue("--shadow-colour");
    context.shadowBlur = 18;
    context.shadowOffsetY = 4;
    context.fillStyle = "#fff";
    context.fillRect(corner.x, corner.y, width, height);
    context.restore();
    if (this.#ticket.end === "cut") return;
    // Not cut off: the paper continues.
    const tail = Math.min(40, height / 4);
    const fade = context.createLinearGradient(0, corner.y + height, 0, corner.y + height + tail);
    fade.addColorStop(0, "rgba(255, 255, 255, 0.85)");
    fade.addColorStop(1, "rgba(255, 255, 255, 0)");
    context.fillStyle = fade;
    context.fillRect(corner.x, corner.y + height, width, tail);
    context.strokeStyle = style.getPropertyValue("--muted");
    context.setLineDash([5, 4]);
    context.strokeRect(corner.x, corner.y + height + 0.5, width, 0);
    context.setLineDash([]);
  }

  #drawGrid(context, corner) {
    const { columns, rows } = this.#ticket;
    const scale = this.#scale;
    const { clientWidth, clientHeight } = this.#canvas;
    const first = (start) => Math.max(0, Math.floor(-start / scale));
    const last = (start, room, count) => Math.min(count, Math.ceil((room - start) / scale));
    const left = first(corner.x), right = last(corner.x, clientWidth, columns);
    const top = first(corner.y), bottom = last(corner.y, clientHeight, rows);
    const line = (fine, draw) => {
      context.fillStyle = fine ? "rgba(70, 130, 150, 0.28)" : "rgba(20, 120, 140, 0.75)";
      draw();
    };
    for (const fine of [true, false]) {
      line(fine, () => {
        for (let x = left; x <= right; ++x) {
          if ((x % BAND !== 0) !== fine) continue;
          context.fillRect(corner.x + x * scale, corner.y + top * scale, 1, (bottom - top) * scale);
        }
        for (let y = top; y <= bottom; ++y) {
          if ((y % BAND !== 0) !== fine) continue;
          context.fillRect(corner.x + left * scale, corner.y + y * scale, (right - left) * scale, 1);
        }
      });
    }
  }

  #listen() {
    const canvas = this.#canvas;
    const place = (event) => ({ x: event.offsetX, y: event.offsetY });
    canvas.addEventListener("wheel", (event) => {
      event.preventDefault();
      this.zoom(event.deltaY < 0 ? 1 : -1, place(event));
    }, { passive: false });
    canvas.addEventListener("dblclick", (event) => this.setScale(DOTS_SCALE, place(event)));
    canvas.addEventListener("pointerdown", (event) => {
      canvas.setPointerCapture(event.pointerId);
      this.#pointers.set(event.pointerId, place(event));
    });
    canvas.addEventListener("pointermove", (event) => this.#pointerMoved(event, place(event)));
    for (const name of ["pointerup", "pointercancel"]) {
      canvas.addEventListener(name, (event) => this.#pointers.delete(event.pointerId));
    }
  }

  #pointerMoved(event, now) {
    if (!this.#ticket) return;
    const before = this.#pointers.get(event.pointerId);
    if (!before) return this.#tell(this.#dotAt(now));
    const others = [...this.#pointers].filter(([id]) => id !== event.pointerId);
    this.#pointers.set(event.pointerId, now);
    if (others.length === 0) return this.pan(before.x - now.x, before.y - now.y);
    const other = others[0][1]; // two fingers
    const apart = (a) => Math.max(1, Math.hypot(a.x - other.x, a.y - other.y));
    const scale = this.#scale * (apart(now) / apart(before));
    const middle = { x: (now.x + other.x) / 2, y: (now.y + other.y) / 2 };
    this.setScale(Math.min(Math.max(scale, STEPS[0]), MOST_SCALE), middle);
  }
}
