// One event stream for all pages of a browser: a browser opens at most six connections to one
// server, and each stream holds one.
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
