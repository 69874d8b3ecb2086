// A virtual printer for a test, and the tool that prints on it.
import { spawn } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import net from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

const bin = process.env.TAVIO_BIN;
export const pictures = join(process.env.TAVIO_WORK, "pictures");
const examples = fileURLToPath(new URL("../../../../examples/", import.meta.url));

export class Printer {
  // Options of tavio-printer; it listens on ports that are free.
  static async start(...options) {
    const printer = new Printer();
    printer.process = spawn(join(bin, "tavio-printer"),
      ["--listen", "127.0.0.1:0", "--page", "127.0.0.1:0", "--quiet", ...options],
      { stdio: ["ignore", "pipe", "inherit"] });
    printer.ended = new Promise((resolve) => printer.process.once("exit", resolve));
    let said = "";
    printer.process.stdout.setEncoding("utf8");
    await new Promise((resolve, reject) => {
      printer.process.stdout.on("data", (text) => {
        said += text;
        if (/page: \S+\n/.test(said)) resolve();
      });
      printer.process.once("exit", (code) => reject(new Error(`tavio-printer ended: ${code}`)));
    });
    printer.address = said.match(/tcp:\/\/\S+/)[0];
    printer.page = said.match(/http:\/\/\S+/)[0];
    return printer;
  }

  // The milliseconds that it takes to stop.
  async stop(signal = "SIGTERM") {
    const begin = performance.now();
    this.process.kill(signal);
    await this.ended;
    return performance.now() - begin;
  }

  // Prints with the tool; the time (as Date.now()) at which it ended.
  async print(...words) {
    await tavio(...words, "--to", this.address);
    return Date.now();
  }

  // Sends bytes as one connection, and waits until the printer has closed its side.
  send(bytes) {
    const { hostname, port } = new URL(this.address.replace("tcp:", "http:"));
    return new Promise((resolve, reject) => {
      const socket = net.connect(Number(port), hostname, () => socket.end(bytes));
      socket.on("error", reject);
      socket.on("close", resolve);
      socket.resume();
    });
  }
}

export function example(name) {
  return join(examples, name);
}

// Runs the tool; its standard output.
export function tavio(...words) {
  return new Promise((resolve, reject) => {
    const child = spawn(join(bin, "tavio"), words, { stdio: ["ignore", "pipe", "pipe"] });
    let output = "";
    let errors = "";
    child.stdout.on("data", (text) => (output += text));
    child.stderr.on("data", (text) => (errors += text));
    child.once("error", reject);
    child.once("close", (code) => (code === 0
      ? resolve(output)
      : reject(new Error(`tavio ${words.join(" ")}: ${errors || code}`))));
  });
}

// The bytes that the tool sends for each of the commands, one after the other.
export async function jobOf(...commands) {
  return inFolder(async (folder) => {
    const parts = [];
    for (const words of commands) {
      const file = join(folder, "part");
      await tavio(...words, "--to", `file:${file}`);
      parts.push(readFileSync(file));
    }
    return Buffer.concat(parts);
  });
}

// The picture that `tavio preview` draws of a job's first ticket, as a PNG file.
export async function previewOf(job, ...options) {
  return inFolder(async (folder) => {
    writeFileSync(join(folder, "job.bin"), job);
    await tavio("preview", join(folder, "job.bin"), "-o", join(folder, "ticket.png"), ...options);
    return readFileSync(join(folder, "ticket.png"));
  });
}

async function inFolder(use) {
  const folder = mkdtempSync(join(tmpdir(), "tavio-browser-"));
  try {
    return await use(folder);
  } finally {
    rmSync(folder, { recursive: true });
  }
}

// Photo, page, stored logo and text on one ticket.
export function eveningTicket() {
  const seal = "7";
  return jobOf(
    ["logo", "store", seal, example("seal.png")],
    ["print", example("photo.jpg"), "--row", "12"],
    ["print", example("stub.pdf"), "--row", "12", "--column", "600"],
    ["logo", "print", seal, "--row", "110", "--column", "1300"],
    ["send", "<RC380,1339>ADMIT ONE<RC430,1294>Row F, seat 12<RC457,1330>No. 004217"],
    ["cut"]);
}

// An unknown command, a logo that was never stored, and dots off the ticket; not cut.
export const brokenTicket = Buffer.concat([
  Buffer.from("<RC20,30>Row F, seat 12<XY> and no further<RC595,1640><G12>"),
  Buffer.alloc(12, 0xff),
  Buffer.from("<LD9><q>"),
]);
