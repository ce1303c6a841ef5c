// Requests to the door and their answers, in a time that is limited; and the errors that come of them.

export const LONGEST_PAUSE = 5; // seconds

// kind: "refused", "failed", "away": nothing was done; "unknown", "needs_operator": ask again with its key.
export class DoorError extends Error {
  constructor(kind, message, more = {}) {
    super(message);
    Object.assign(this, { name: "DoorError", kind, code: "", status: 0, problem: {}, key: null, job: null }, more);
  }
}

export const problemOf = (kind, { status, body }, key = null) => new DoorError(kind,
  [body?.code, body?.detail ?? `the answer has the status ${status}`].filter(Boolean).join(": "),
  { code: body?.code ?? "", status, problem: body ?? {}, key });

// A signal that aborts with `signal`, or so many seconds after begin(); end() leaves nothing behind, and
// stop() no exchange under way either.
function limit(seconds, signal) {
  const cut = new AbortController(), follow = () => cut.abort(signal.reason);
  let timer;
  const rest = () => clearTimeout(timer);
  const begin = () => {
    rest();
    timer = setTimeout(() => cut.abort(new Error("no answer in time")), seconds * 1000);
  };
  const end = () => { rest(); signal?.removeEventListener("abort", follow); };
  const stop = () => { end(); cut.abort(); };
  if (signal?.aborted) follow();
  signal?.addEventListener("abort", follow);
  return { signal: cut.signal, begin, rest, end, stop };
}

export const pause = (seconds, signal) => new Promise((done) => {
  const end = () => { clearTimeout(timer); signal?.removeEventListener("abort", end); done(); };
  const timer = setTimeout(end, seconds * 1000);
  if (signal?.aborted) end();
  else signal?.addEventListener("abort", end);
});

export class Exchange {
  #url; #heads; #timeout; #signal;

  constructor(url, token, timeout, signal) {
    this.#url = url;
    this.#heads = token === undefined ? {} : { Authorization: `Bearer ${token}` };
    [this.#timeout, this.#signal] = [timeout, signal];
  }

  // {status, retryAfter, body, bytes}: body is its JSON, or null. Throws what fetch does.
  async once(method, path, body, heads = {}, waits = 0) {
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

  // The same of an answer that is none of an error. Throws DoorError.
  async answer(method, path, body, heads) {
    const answer = await this.once(method, path, body, heads).catch((error) => {
      throw new DoorError(method === "GET" ? "away" : "unknown", String(error.message));
    });
    // What was to be changed may have been.
    const changes = method !== "GET" && !path.endsWith("?dry_run=true");
    if (answer.status >= 400) throw problemOf(changes && answer.status >= 500 ? "unknown" : "refused", answer);
    return { ...answer, changes };
  }

  async json(method, path, body) {
    const answer = await this.answer(method, path, body);
    if (answer.body === null) throw problemOf(answer.changes ? "unknown" : "refused", answer);
    return answer.body;
  }

  // A page after the other.
  async *jobs({ state, after = 0 } = {}) {
    for (let jobs; !jobs || jobs.length; after = jobs.at(-1)?.id) {
      const query = new URLSearchParams({ after, limit: 100, ...(state && { state }) });
      ({ jobs } = await this.json("GET", `/v1/jobs?${query}`));
      yield* jobs;
    }
  }
  async *documents(span = {}) {
    for (let page; page?.next !== null;) {
      const query = new URLSearchParams({ ...span, ...(page && { after: page.next }) });
      page = await this.json("GET", `/v1/documents?${query}`);
      yield* page.documents;
    }
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
          throw problemOf("refused", { status: reply.status, body: await reply.json().catch(() => null) });
        }
        for await (const event of reply.ok ? eventsOf(reply.body.getReader(), cut) : []) {
          [after, wait] = [event.id ?? after, 0.1];
          yield event;
        }
      } catch (error) {
        if (error instanceof DoorError) throw error;
      } finally {
        cut.stop(); // whoever leaves, or meets an answer that is no stream, takes no connection along
      }
      await pause(wait, signal);
    }
  }
}

// Of a stream: blocks of lines, of which a comment is none.
async function* eventsOf(reader, cut) {
  const decoder = new TextDecoder();
  for (let text = ""; ;) {
    cut.begin();
    const { done, value } = await reader.read();
    cut.rest();
    if (done) return;
    const blocks = (text + decoder.decode(value, { stream: true })).split(/\r?\n\r?\n/);
    text = blocks.pop();
    for (const block of blocks) {
      const field = (name) => block.split(/\r?\n/).filter((line) => line.startsWith(`${name}:`))
        .map((line) => line.slice(name.length + 1).replace(/^ /, ""));
      const [[id], [event = "message"], data] = ["id", "event", "data"].map(field);
      if (data.length) yield { id: id === undefined ? null : Number(id), event, data: JSON.parse(data.join("\n")) };
    }
  }
}
