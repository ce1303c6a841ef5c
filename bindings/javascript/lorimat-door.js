// A door to a fiscal device (lorimatd) for a till in a browser, or in Node. A request is sent again with
// one key as often as it takes: it becomes one job, and one receipt. index.d.ts has the types.

const FINAL = ["rejected", "expired", "cancelled"];
// What the door answers ahead of taking a job, and which passes.
const NOT_NOW = ["queue_full", "too_many_requests", "document_open", "device_away", "device_busy"];
const LONGEST_WAIT = 30, LONGEST_PAUSE = 5; // seconds
const NOTHING = { getItem: () => null, setItem() {}, removeItem() {} };

// kind: "refused", "failed", "away": nothing was done; "unknown", "needs_operator": ask again with its key.
export class DoorError extends Error {
  constructor(kind, message, more = {}) {
    super(message);
    Object.assign(this, { name: "DoorError", kind, code: "", status: 0, problem: {}, key: null, job: null }, more);
  }
}

const problemOf = (kind, { status, body }, key) => new DoorError(kind,
  [body?.code, body?.detail ?? `the answer has the status ${status}`].filter(Boolean).join(": "),
  { code: body?.code ?? "", status, problem: body ?? {}, key });
const story = (job) => `job ${job.id} is ${job.state}: ${job.history.at(-1)?.why ?? ""}`;
// A signal that aborts with `signal`, or so many seconds after begin(); end() leaves nothing behind.
function limit(seconds, signal) {
  const cut = new AbortController(), stop = () => cut.abort(signal.reason);
  let timer;
  const begin = () => {
    clearTimeout(timer);
    timer = setTimeout(() => cut.abort(new Error("no answer in time")), seconds * 1000);
  };
  const rest = () => clearTimeout(timer);
  const end = () => { rest(); signal?.removeEventListener("abort", stop); };
  if (signal?.aborted) stop();
  signal?.addEventListener("abort", stop);
  return { signal: cut.signal, begin, rest, end };
}
const pause = (seconds, signal) => new Promise((done) => {
  const end = () => { clearTimeout(timer); signal?.removeEventListener("abort", end); done(); };
  const timer = setTimeout(end, seconds * 1000);
  if (signal?.aborted) end();
  else signal?.addEventListener("abort", end);
});

export class Door {
  #url; #heads; #desk; #storage; #patience; #timeout; #signal; #name; #own;

  constructor(url, { token, desk, storage = NOTHING, patience = 60, timeout = 20, signal } = {}) {
    this.#url = String(url).replace(/\/+$/, "");
    this.#heads = token === undefined ? {} : { Authorization: `Bearer ${token}` };
    this.#own = token?.slice(0, Math.max(token.lastIndexOf("."), 0)) || undefined;
    [this.#desk, this.#storage, this.#signal] = [desk ?? this.#own, storage, signal];
    [this.#patience, this.#timeout] = [patience, timeout];
    this.#name = `lorimat-door ${this.#url} ${this.#desk ?? ""}`;
  }

  // randomUUID is missing where a page came by plain http from another computer.
  static newKey() {
    return [...crypto.getRandomValues(new Uint8Array(16))].map((byte) => byte.toString(16).padStart(2, "0")).join("");
  }

  sell(lines, options) { return this.#ask("/v1/jobs", { lines }, options); }
  receipt(receipt, options) { return this.#ask("/v1/receipts", receipt, options); }
  closeDay(options) { return this.#ask("/v1/device/close-day", {}, options); }
  reset(options) { return this.#ask("/v1/device/reset", {}, options); }
  dryRun(receipt) { return this.#do("POST", "/v1/receipts?dry_run=true", receipt); }
  job(id) { return this.#do("GET", `/v1/jobs/${id}`); }
  find(key) {
    const query = new URLSearchParams(this.#desk === undefined ? { key } : { key, desk: this.#desk });
    return this.#do("GET", `/v1/jobs?${query}`).catch((error) => {
      if (error.code === "not_found") return null;
      throw error;
    });
  }
  copy(closure, number, { kind, ...options } = {}) {
    return this.#ask(`/v1/documents/${closure}/${number}/copy${kind ? `?kind=${kind}` : ""}`, {}, options);
  }
  cancel(id) { return this.#do("DELETE", `/v1/jobs/${id}`); }
  resolve(id, resolution) { return this.#do("POST", `/v1/jobs/${id}/resolve`, resolution); }
  device() { return this.#do("GET", "/v1/device"); }

  async *jobs({ state, after = 0 } = {}) {
    for (;;) {
      const query = new URLSearchParams({ after, limit: 100, ...(state && { state }) });
      const { jobs } = await this.#do("GET", `/v1/jobs?${query}`);
      if (!jobs.length) return;
      yield* jobs;
      after = jobs.at(-1).id;
    }
  }
  async *documents(span = {}) {
    for (let next; next !== null;) {
      const query = new URLSearchParams({ ...span, ...(next && { after: next }) });
      const page = await this.#do("GET", `/v1/documents?${query}`);
      yield* page.documents;
      next = page.next;
    }
  }
  async document(closure, number, { accept = "text/plain", kind } = {}) {
    const path = `/v1/documents/${closure}/${number}${kind ? `?kind=${kind}` : ""}`;
    return (await this.#answer("GET", path, undefined, { Accept: accept })).bytes;
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

  // {id, event, data}, as they come, for ever; the connection is made again where it is cut.
  async *events({ after, signal = this.#signal, silence = 45 } = {}) {
    for (let wait = 0.1; !signal?.aborted; wait = Math.min(2 * wait, LONGEST_PAUSE)) {
      const cut = limit(silence, signal);
      try {
        cut.begin();
        const resume = after === undefined ? {} : { "Last-Event-ID": String(after) };
        const reply = await fetch(`${this.#url}/v1/events`, { signal: cut.signal,
          headers: { ...this.#heads, Accept: "text/event-stream", ...resume } });
        if (!reply.ok && ![429, 503].includes(reply.status)) {
          throw problemOf("refused", { status: reply.status, body: await reply.json().catch(() => null) }, null);
        }
        let text = "";
        const decoder = new TextDecoder();
        for (const reader = reply.ok && reply.body.getReader(); reader;) {
          cut.begin();
          const { done, value } = await reader.read();
          cut.rest();
          if (done) break;
          const blocks = (text + decoder.decode(value, { stream: true })).split(/\r?\n\r?\n/);
          text = blocks.pop();
          for (const block of blocks) {
            const field = (name) => block.split(/\r?\n/).filter((line) => line.startsWith(`${name}:`))
              .map((line) => line.slice(name.length + 1).replace(/^ /, ""));
            if (!field("data").length) continue;
            const id = field("id").length ? Number(field("id")[0]) : null;
            after = id ?? after;
            wait = 0.1;
            yield { id, event: field("event")[0] ?? "message", data: JSON.parse(field("data").join("\n")) };
          }
        }
      } catch (error) {
        if (error instanceof DoorError) throw error;
      } finally {
        cut.end();
      }
      await pause(wait, signal);
    }
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
    const { key } = request, begin = performance.now(), since = () => (performance.now() - begin) / 1000;
    if (!/^[A-Za-z0-9_.:-]{1,64}$/.test(key)) {
      this.#forget(request); // never sent
      throw new DoorError("refused", "a key is 1 to 64 of A-Z a-z 0-9 _ . : -", { code: "bad_key", key });
    }
    let job = null, lost = old, last = null;
    for (let rest = 0.1; ; rest = Math.min(2 * rest, LONGEST_PAUSE)) {
      const waits = Math.floor(Math.min(Math.max(wait - since(), 0), LONGEST_WAIT));
      let asked = 0;
      try {
        const answer = await this.#once("POST", `${request.path}${request.path.includes("?") ? "&" : "?"}wait=${waits}`, request.body, { "Idempotency-Key": key }, waits);
        asked = answer.retryAfter;
        if (answer.body?.state) {
          job = answer.body;
          lost = true;
          if (job.state === "confirmed" || FINAL.includes(job.state)) this.#forget(request);
          if (job.state === "confirmed") return job;
          const kind = FINAL.includes(job.state) ? "failed" : job.state;
          if (kind === "failed" || kind === "needs_operator") throw new DoorError(kind, story(job), { code: job.state, key, job });
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
    const query = new URLSearchParams(desk === undefined ? { key } : { key, desk });
    const sees = this.#own ? desk === this.#own : desk !== undefined || ["/v1/jobs", "/v1/receipts"].includes(path);
    return this.#do("GET", `/v1/jobs?${query}`).then(() => false, (error) => {
      if (error.code === "not_found" && sees) return true;
      const { message, code, status, problem } = error;
      throw new DoorError("unknown", message, { code, status, problem, key });
    });
  }

  async #once(method, path, body, heads = {}, waits = 0) {
    const unsafe = method === "GET" ? {} : { "Content-Type": "application/json" };
    const cut = limit(waits + this.#timeout, this.#signal);
    cut.begin();
    try {
      const reply = await fetch(this.#url + path, { method, redirect: "error", cache: "no-store",
        headers: { ...this.#heads, ...unsafe, ...heads }, body: body && JSON.stringify(body), signal: cut.signal });
      const bytes = new Uint8Array(await reply.arrayBuffer());
      let json = null;
      try { json = JSON.parse(new TextDecoder().decode(bytes)); } catch { /* none of a door */ }
      return { status: reply.status, retryAfter: Number(reply.headers.get("Retry-After")) || 0, body: json, bytes };
    } finally {
      cut.end();
    }
  }

  async #answer(method, path, body, heads) {
    const answer = await this.#once(method, path, body, heads).catch((error) => {
      throw new DoorError(method === "GET" ? "away" : "unknown", String(error.message));
    });
    // What was to be changed may have been.
    const changes = method !== "GET" && !path.endsWith("?dry_run=true");
    if (answer.status >= 400) throw problemOf(changes && answer.status >= 500 ? "unknown" : "refused", answer, null);
    return { ...answer, changes };
  }

  async #do(method, path, body) {
    const answer = await this.#answer(method, path, body);
    if (answer.body === null) throw problemOf(answer.changes ? "unknown" : "refused", answer, null);
    return answer.body;
  }
}
