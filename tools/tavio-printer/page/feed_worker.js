// One event stream for all pages of a browser: it gives one printer six connections at most, and a
// stream holds one for good.
import { Feed } from "./feed.js";

const ports = new Set();
const feed = new Feed((message) => {
  for (const port of ports) port.postMessage(message);
});

self.onconnect = ({ ports: [port] }) => {
  port.onmessage = ({ data }) => {
    if (data === "leave") ports.delete(port);
    if (data !== "enter") return;
    ports.add(port);
    for (const message of feed.snapshot()) port.postMessage(message);
  };
};
