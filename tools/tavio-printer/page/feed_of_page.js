// The feed of a page: shared with other pages if the browser can, else its own.
import { Feed } from "./feed.js";

export function startFeed(take) {
  if (typeof SharedWorker === "undefined") return own(take);
  try {
    const worker = new SharedWorker("feed_worker.js", { type: "module", name: "feed" });
    worker.onerror = () => own(take);
    worker.port.onmessage = ({ data }) => take(data);
    worker.port.postMessage("enter");
    addEventListener("pagehide", () => worker.port.postMessage("leave"));
    addEventListener("pageshow", (event) => {
      if (event.persisted) worker.port.postMessage("enter");
    });
  } catch {
    own(take);
  }
}

function own(take) {
  new Feed(take);
}
