// A door to a fiscal device (lorimatd) for a till in a browser, or in Node. A request is sent again with
// one key as often as it takes: it becomes one job, and one receipt. index.d.ts has the types.
import { DoorError, Exchange, LONGEST_PAUSE, pause, problemOf } from "./exchange.js";

export { DoorError };

const FINAL = ["rejected", "expired", "cancelled"];
// What the door answers ahead of taking a job, and which passes.
const NOT_NOW = ["queue_full", "too_many_requests", "document_open", "device_away", "device_busy"];
const LONGEST_WAIT = 30; // seconds
const NOTHING = { getItem: () => null, setItem() {}, removeItem() {} };

const story = (job) => `job ${job.id} is ${job.state}: ${job.history.at(-1)?.why ?? ""}`;
const keyed = (key, desk) => `/v1/jobs?${new URLSearchParams(desk === undefined ? { key } : { key, desk })}`;
const ofKind = (path, kind) => kind ? `${path}?kind=${kind}` : path;

export class Door {
  #exchange; #desk; #storage; #patience; #signal; #name; #own;

  constructor(url, { token, desk, storage = NOTHING, patience = 60, timeout = 20, signal } = {}) {
    const base = String(url).replace(/\/+$/, "");
    this.#exchange = new Exchange(base, token, timeout, signal);
    this.#own = token?.slice(0, Math.max(token.lastIndexOf("."), 0)) || undefined;
    [this.#desk, this.#storage, this.#patience, this.#signal] = [desk ?? this.#own, storage, patience, signal];
    this.#name = `lorimat-door ${base} ${this.#desk ?? ""}`;
  }

  // randomUUID is missing where a page came by plain http from another computer.
  static newKey() {
    return [...crypto.getRandomValues(new Uint8Array(16))].map((byte) => byte.toString(16).padStart(2, "0")).join("");
  }

  sell(lines, options) { return this.#ask("/v1/jobs", { lines }, options); }
  receipt(receipt, options) { return this.#ask("/v1/receipts", receipt, options); }
  closeDay(options) { return this.#ask("/v1/device/close-day", {}, options); }
  reset(options) { return this.#ask("/v1/device/reset", {}, options); }
  copy(closure, number, { kind, ...options } = {}) {
    return this.#ask(ofKind(`/v1/documents/${closure}/${number}/copy`, kind), {}, options);
  }
  dryRun(receipt) { return this.#exchange.json("POST", "/v1/receipts?dry_run=true", receipt); }
  job(id) { return this.#exchange.json("GET", `/v1/jobs/${id}`); }
  find(key) {
    return this.#exchange.json("GET", keyed(key, this.#desk)).catch((error) => {
      if (error.code === "not_found") return null;
      throw error;
    });
  }
  cancel(id) { return this.#exchange.json("DELETE", `/v1/jobs/${id}`); }
  resolve(id, resolution) { return this.#exchange.json("POST", `/v1/jobs/${id}/resolve`, resolution); }
  device() { return this.#exchange.json("GET", "/v1/device"); }
  jobs(query) { return this.#exchange.jobs(query); }
  documents(span) { return this.#exchange.documents(span); }
  events(options) { return this.#exchange.events(options); }
  async document(closure, number, { accept = "text/plain", kind } = {}) {
    const path = ofKind(`/v1/documents/${closure}/${number}`, kind);
    return (await this.#exchange.answer("GET", path, undefined, { Accept: accept })).bytes;
  }

  // What was asked and whose outcome is not known, the oldest first: {key, path, body, made}.
  get pending() { return JSON.parse(this.#storage.getItem(this.#name) ?? "[]"); }

  // Asks again for all of it. What the door never took and whose time is over is not sent any more.
  async resume(options) {
    const outcomes = [];
    for (const request of this.pending) {
      try {
        const late = Date.now() > request.made + 1000 * (request.body.expires_s ?? 600);
        if (late && await this.#neverTaken(request)) {
          this.#forget(request);
          throw new DoorError("away", "its time was over before the door took it", { code: "expired", key: request.key });
        }
        outcomes.push({ request, job: await this.#carry(request, true, options), error: null });
      } catch (error) {
        if (!(error instanceof DoorError)) throw error;
        outcomes.push({ request, job: null, error });
      }
    }
    return outcomes;
  }

  #keep(requests) {
    if (requests.length) this.#storage.setItem(this.#name, JSON.stringify(requests));
    else this.#storage.removeItem(this.#name);
  }
  #forget({ key }) { this.#keep(this.pending.filter((one) => one.key !== key)); }

  // A key that is given may have been used before.
  async #ask(path, body, { key: given, reference, expires_s, wait } = {}) {
    const key = given ?? Door.newKey();
    const whole = JSON.parse(JSON.stringify({ desk: this.#desk, reference, expires_s, ...body }));
    const request = { key, path, body: whole, made: Date.now() };
    const kept = this.pending.find((one) => one.key === key);
    if (kept && (kept.path !== path || JSON.stringify(kept.body) !== JSON.stringify(whole))) {
      throw new DoorError("unknown", "the key is kept with another request", { code: "key_reused", key });
    }
    if (!kept) this.#keep([...this.pending, request]);
    return this.#carry(kept ?? request, given !== undefined, { wait }).catch((error) => {
      if (error.code === "key_reused" && !kept) this.#forget(request); // the job of the key is another one
      throw error;
    });
  }

  // Sends it until its outcome is known. Once a request may have reached the door, or another life of the
  // till has sent it, only a final answer tells, or the door when it has no job of what it refuses.
  async #carry(request, old, { wait = 60 } = {}) {
    const { key, path } = request, begin = performance.now(), since = () => (performance.now() - begin) / 1000;
    if (!/^[A-Za-z0-9_.:-]{1,64}$/.test(key)) {
      this.#forget(request); // never sent
      throw new DoorError("refused", "a key is 1 to 64 of A-Z a-z 0-9 _ . : -", { code: "bad_key", key });
    }
    let job = null, lost = old, last = null;
    for (let rest = 0.1; ; rest = Math.min(2 * rest, LONGEST_PAUSE)) {
      const waits = Math.floor(Math.min(Math.max(wait - since(), 0), LONGEST_WAIT));
      const address = `${path}${path.includes("?") ? "&" : "?"}wait=${waits}`;
      let asked = 0;
      try {
        const answer = await this.#exchange.once("POST", address, request.body, { "Idempotency-Key": key }, waits);
        asked = answer.retryAfter;
        if (answer.body?.state) {
          job = answer.body;
          lost = true;
          const failed = FINAL.includes(job.state);
          if (failed || job.state === "confirmed") this.#forget(request);
          if (job.state === "confirmed") return job;
          if (failed || job.state === "needs_operator") {
            throw new DoorError(failed ? "failed" : job.state, story(job), { code: job.state, key, job });
          }
        } else {
          last = problemOf("away", answer, key);
          const passes = NOT_NOW.includes(last.code) || answer.status === 429;
          if (!passes && ((answer.status >= 400 && answer.status < 500) || answer.status === 501)) {
            const never = !lost || ([400, 413, 422].includes(answer.status)
              && await this.#neverTaken(request).catch(() => false));
            if (never) this.#forget(request);
            throw problemOf(never ? "refused" : "unknown", answer, key);
          }
          lost ||= !passes; // what failed may have done so behind the job's acceptance
        }
      } catch (error) {
        if (error instanceof DoorError) throw error;
        lost = true; // fetch does not tell whether the request left
        last = new DoorError("away", String(error.message), { key });
      }
      const left = (job ? wait : Math.max(wait, this.#patience)) - since();
      if (left <= 0 || this.#signal?.aborted) {
        if (lost) throw new DoorError("unknown", job ? story(job) : last.message, { key, job });
        this.#forget(request);
        throw last;
      }
      await pause(Math.min(Math.max(asked, rest), left), this.#signal);
    }
  }

  // To a token the jobs of other desks are not found either, and what was asked without a desk may have
  // become the operator's.
  async #neverTaken({ key, path, body: { desk } }) {
    const sees = this.#own ? desk === this.#own : desk !== undefined || ["/v1/jobs", "/v1/receipts"].includes(path);
    return this.#exchange.json("GET", keyed(key, desk)).then(() => false, (error) => {
      if (error.code === "not_found" && sees) return true;
      throw Object.assign(error, { kind: "unknown", key });
    });
  }
}
