// The dots of a ticket's PNG file (one bit of grey for each dot, not interlaced), read without a
// browser.
import { inflateSync } from "node:zlib";

const SIGNATURE = 8;

// {columns, rows, black, isBlack(row, column)}
export function pngDots(file) {
  const data = [];
  let header = null;
  for (let at = SIGNATURE; at < file.length;) {
    const length = file.readUInt32BE(at);
    const kind = file.toString("latin1", at + 4, at + 8);
    const content = file.subarray(at + 8, at + 8 + length);
    if (kind === "IHDR") header = content;
    if (kind === "IDAT") data.push(content);
    at += length + 12;
  }
  const columns = header.readUInt32BE(0);
  const rows = header.readUInt32BE(4);
  if (header[8] !== 1 || header[9] !== 0 || header[12] !== 0) throw new Error("not a ticket's PNG");
  const lines = unfiltered(inflateSync(Buffer.concat(data)), rows, Math.ceil(columns / 8));
  const isBlack = (row, column) => (lines[row][column >> 3] & (0x80 >> (column & 7))) === 0;
  let black = 0;
  for (let row = 0; row < rows; ++row) {
    for (let column = 0; column < columns; ++column) black += isBlack(row, column) ? 1 : 0;
  }
  return { columns, rows, black, isBlack };
}

function unfiltered(bytes, rows, width) {
  const lines = [];
  let above = Buffer.alloc(width);
  for (let row = 0; row < rows; ++row) {
    const filter = bytes[row * (width + 1)];
    const line = Buffer.from(bytes.subarray(row * (width + 1) + 1, (row + 1) * (width + 1)));
    for (let x = 0; x < width; ++x) {
      const left = x ? line[x - 1] : 0;
      const corner = x ? above[x - 1] : 0;
      line[x] += [0, left, above[x], (left + above[x]) >> 1, paeth(left, above[x], corner)][filter];
    }
    lines.push((above = line));
  }
  return lines;
}

function paeth(left, up, corner) {
  const guess = left + up - corner;
  const [a, b, c] = [left, up, corner].map((value) => Math.abs(guess - value));
  if (a <= b && a <= c) return left;
  return b <= c ? up : corner;
}
