// The JavaScript client against the door at DOOR_URL, and through DOOR_CUT_URL, on which connections are
// cut by chance; test_javascript_client.py runs it.
import assert from "node:assert/strict";
import { webcrypto } from "node:crypto";
import { EventEmitter, getEventListeners } from "node:events";
import { createServer } from "node:http";
import { test } from "node:test";

import { Door, DoorError } from "../../bindings/javascript/lorimat-door.js";

// Node 18 has it elsewhere.
globalThis.crypto ??= webcrypto;
const url = process.env.DOOR_URL, cut = process.env.DOOR_CUT_URL;
const SALE = ["VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"];
const COFFEE = { kind: "receipt", items: [{ department: 1, price: "1.20" }], payments: [{ tender: "cash" }] };

function memory() {
  const texts = new Map();
  return { getItem: (name) => texts.get(name) ?? null, setItem: (name, text) => texts.set(name, text),
    removeItem: (name) => texts.delete(name), texts };
}

async function scripted(answers) {
  const asked = [];
  const server = createServer((request, reply) => {
    const [path, query] = request.url.split("?");
    asked.push([path, request.headers, query]);
    request.resume().on("end", () => {
      const [status, type, body] = answers.length > 1 ? answers.shift() : answers[0];
      reply.writeHead(status, { "Content-Type": type });
      reply.end(body);
    });
  });
  await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
  server.unref();
  return { server, asked, url: `http://127.0.0.1:${server.address().port}` };
}

const kindOf = (kind, code) => (error) => error instanceof DoorError && error.kind === kind && error.code === code;

test("a sale and a receipt are confirmed, and asked again are the same", async () => {
  const door = new Door(url, { desk: "js" });
  const key = Door.newKey();
  const job = await door.sell(SALE, { key, reference: "order 4711" });
  assert.equal(job.state, "confirmed");
  assert.equal(job.document.total, "1.20");
  const again = await door.sell(SALE, { key, reference: "order 4711" });
  assert.deepEqual([again.id, again.replayed], [job.id, true]);
  assert.equal((await door.receipt(COFFEE)).document.number, job.document.number + 1);
  assert.equal((await door.dryRun(COFFEE)).sums.total, "1.20");
  assert.equal((await door.job(job.id)).key, key);
  const all = async (rows) => {
    const found = [];
    for await (const row of rows) found.push(row);
    return found;
  };
  assert.deepEqual((await all(door.jobs({ state: "confirmed" }))).map((one) => one.id), [job.id, job.id + 1]);
  assert.deepEqual((await all(door.jobs({ after: job.id }))).map((one) => one.id), [job.id + 1]);
  assert.deepEqual([(await door.find(key)).id, await door.find("none")], [job.id, null]);
  const { closure, number } = job.document;
  assert.deepEqual((await all(door.documents())).map((one) => one.number), [number, number + 1]);
  assert.deepEqual(await all(door.documents({ from: "2000-01-01", to: "2000-01-02" })), []);
  assert.match(new TextDecoder().decode(await door.document(closure, number)), /DOCUMENTO N/);
  const picture = await door.document(closure, number, { accept: "image/png", kind: "receipt" });
  assert.deepEqual([...picture.slice(1, 4)], [..."PNG"].map((letter) => letter.charCodeAt(0)));
  await assert.rejects(door.document(9, 9), kindOf("refused", "not_found"));
  const operator = new Door(url, { desk: "operator" });
  assert.equal((await operator.copy(closure, number, { kind: "receipt" })).state, "confirmed");
  assert.equal((await door.device()).ready, true);
});

test("what is refused or fails has its kind and code", async () => {
  const door = new Door(url, { desk: "js", storage: memory() });
  await assert.rejects(door.sell(["SETP ABORT=1"]), kindOf("refused", "line_not_allowed"));
  await assert.rejects(door.sell(["VEND REP=99, PRE=1"]), kindOf("failed", "rejected"));
  await assert.rejects(door.job(4711), kindOf("refused", "not_found"));
  await assert.rejects(door.cancel(1), kindOf("refused", "wrong_state"));
  await assert.rejects(door.resolve(1, { outcome: "done", reason: "seen" }), kindOf("refused", "wrong_state"));
  assert.deepEqual(door.pending, []);
});

test("cut connections make one document for each key", async () => {
  const door = new Door(cut, { desk: "cut", storage: memory() });
  const jobs = [];
  for (let n = 0; n < 6; ++n) jobs.push(await (n % 2 ? door.receipt(COFFEE) : door.sell(SALE)));
  assert.equal(new Set(jobs.map((job) => job.document.number)).size, 6);
  assert.deepEqual(door.pending, []);
});

test("a page that is closed asks again, and sells nothing behind its time", async () => {
  const storage = memory();
  const gone = new Door(url, { desk: "page", storage, signal: AbortSignal.abort(), patience: 0, timeout: 0 });
  await assert.rejects(gone.sell(SALE, { key: "page-1", wait: 0 }), (error) => error.kind === "unknown");
  const back = new Door(url, { desk: "page", storage });
  const [outcome] = await back.resume();
  assert.equal(outcome.job.key, "page-1");
  assert.deepEqual(back.pending, []);
  const [name] = ["lorimat-door " + url + " page"];
  storage.setItem(name, JSON.stringify([{ key: "late", path: "/v1/jobs", body: { lines: SALE, desk: "page" }, made: 0 }]));
  const [late] = await back.resume();
  assert.deepEqual([late.job, late.error.code], [null, "expired"]);
  assert.deepEqual(back.pending, []);
});

test("what a page asks is its token's", async () => {
  const away = await scripted([[503, "text/plain", ""]]);
  const storage = memory();
  const door = new Door(away.url, { token: "till.x", storage, patience: 0 });
  await assert.rejects(door.sell(SALE, { wait: 0 }), (error) => error.kind === "unknown");
  assert.equal(door.pending[0].body.desk, "till");
  assert.deepEqual(new Door(away.url, { token: "other.y", storage }).pending, []);
  assert.equal(new Door(away.url, { desk: "till", storage }).pending.length, 1);
  away.server.close();
});

test("what fails within the door leaves the outcome unknown", async () => {
  const problem = (code) => [503, "application/problem+json", JSON.stringify({ status: 503, code, detail: "" })];
  const full = await scripted([problem("disk_full"), problem("device_away")]);
  const storage = memory();
  const door = new Door(full.url, { token: "till.x", storage, patience: 0.3 });
  await assert.rejects(door.sell(SALE, { wait: 0 }), (error) => error.kind === "unknown");
  assert.equal(door.pending.length, 1);
  assert.equal(new Set(full.asked.map(([, heads]) => heads["idempotency-key"])).size, 1);
  assert.equal(full.asked[0][1].authorization, "Bearer till.x");
  await assert.rejects(door.sell(SALE, { wait: 0 }), kindOf("away", "device_away"));
  assert.equal(door.pending.length, 1);
  full.server.close();
});

test("a refusal does not tell what became of an old request", async () => {
  for (const status of [401, 403, 404, 422, 501]) {
    const refusal = await scripted([[status, "application/problem+json", JSON.stringify({ status, code: "no" })]]);
    const storage = memory();
    const body = { lines: SALE };
    storage.setItem(`lorimat-door ${refusal.url} `, JSON.stringify([{ key: "old", path: "/v1/jobs", body, made: Date.now() }]));
    const door = new Door(refusal.url, { storage });
    assert.equal((await door.resume())[0].error.kind, "unknown");
    await assert.rejects(door.sell(SALE, { key: "old" }), kindOf("unknown", "no"));
    await assert.rejects(door.sell(SALE), kindOf("refused", "no"));
    assert.deepEqual(door.pending.map((one) => one.key), ["old"]);
    refusal.server.close();
  }
});

test("an old request is refused when the door has none", async () => {
  const storage = memory();
  storage.setItem(`lorimat-door ${url} js`,
    JSON.stringify([{ key: "none", path: "/v1/jobs", body: { lines: ["SETP ABORT=1"], desk: "js" }, made: Date.now() }]));
  const door = new Door(url, { desk: "js", storage });
  assert.equal((await door.resume())[0].error.kind, "refused");
  assert.deepEqual(door.pending, []);
});

test("a key that is given counts as used before", async () => {
  const refusal = await scripted([[401, "application/problem+json", JSON.stringify({ status: 401, code: "no_token" })]]);
  await assert.rejects(new Door(refusal.url).sell(SALE, { key: "k1" }), kindOf("unknown", "no_token"));
  refusal.server.close();
  const storage = memory();
  const door = new Door(url, { desk: "given", storage });
  await assert.rejects(door.sell(["SETP ABORT=1"], { key: "given-1" }), kindOf("refused", "line_not_allowed"));
  await door.sell(SALE, { key: "given-1" });
  await assert.rejects(door.sell(["CLEAR"], { key: "given-1" }), kindOf("unknown", "key_reused"));
  assert.deepEqual(door.pending, []);
});

test("a bad key is neither kept nor sent, and does not stop the others", async () => {
  const storage = memory();
  const door = new Door(url, { desk: "bad", storage });
  await assert.rejects(door.sell(SALE, { key: "a b" }), kindOf("refused", "bad_key"));
  assert.deepEqual(door.pending, []);
  const kept = (key) => ({ key, path: "/v1/jobs", body: { lines: SALE, desk: "bad" }, made: Date.now() });
  storage.setItem(`lorimat-door ${url} bad`, JSON.stringify([kept("caff\u00e8\n"), kept("bad-1")]));
  const [bad, good] = await door.resume();
  assert.deepEqual([bad.error.code, good.job.key], ["bad_key", "bad-1"]);
  assert.deepEqual(door.pending, []);
});

test("what fails within the door may have been changed", async () => {
  for (const status of [500, 503]) {
    const failed = await scripted([[status, "application/problem+json", JSON.stringify({ status, code: "failed" })]]);
    const door = new Door(failed.url);
    await assert.rejects(door.cancel(7), kindOf("unknown", "failed"));
    await assert.rejects(door.resolve(7, { outcome: "done", reason: "seen" }), kindOf("unknown", "failed"));
    await assert.rejects(door.job(7), kindOf("refused", "failed"));
    failed.server.close();
  }
});

test("what waits is cut by its time or its signal, and leaves no listener", async () => {
  // It pauses for 3600 seconds, and never answers a GET.
  const asked = new EventEmitter();
  const server = createServer((request, reply) => {
    if (request.method === "GET") return void asked.emit("get");
    reply.writeHead(429, { "Retry-After": "3600", "Content-Type": "application/json" });
    request.resume().on("end", () => reply.end("{}"));
  });
  await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
  const stop = new AbortController();
  const door = new Door(`http://127.0.0.1:${server.address().port}`, { patience: 0.3, timeout: 3600, signal: stop.signal });
  await assert.rejects(door.sell(SALE, { wait: 0 }), kindOf("away", ""));
  assert.equal(getEventListeners(stop.signal, "abort").length, 0);
  asked.once("get", () => stop.abort());
  await assert.rejects(door.device(), kindOf("away", ""));
  assert.equal(getEventListeners(stop.signal, "abort").length, 0);
  server.closeAllConnections();
  server.close();
});

test("whoever leaves the events leaves no connection behind", { timeout: 60000 }, async () => {
  const began = [], ended = [];
  const server = createServer((request, reply) => {
    ended.push(new Promise((gone) => reply.on("close", gone)));
    reply.writeHead(began.push(1) === 1 ? 503 : 200, { "Content-Type": "text/event-stream" });
    // Neither of the first two ends by itself: an answer that is no stream, and one that cannot be read.
    reply.write(`id: ${began.length}\ndata: ${began.length === 2 ? "{" : "{}"}\n\n`);
  });
  await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
  for await (const one of new Door(`http://127.0.0.1:${server.address().port}`).events()) {
    assert.equal(one.id, 3);
    break;
  }
  await Promise.all(ended);
  assert.equal(ended.length, 3);
  server.close();
});

test("events come again behind a silence", async () => {
  let times = 0;
  const server = createServer((request, reply) => {
    reply.writeHead(200, { "Content-Type": "text/event-stream" });
    reply.write(`id: ${++times}\nevent: job\ndata: {}\n\n`); // and nothing more
  });
  await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
  const found = [];
  for await (const one of new Door(`http://127.0.0.1:${server.address().port}`).events({ silence: 0.5 })) {
    if (found.push(one.id) === 2) break;
  }
  assert.deepEqual(found, [1, 2]);
  server.closeAllConnections();
  server.close();
});

test("a late request that is not found is told by its own token alone", async () => {
  const none = await scripted([[404, "application/problem+json", JSON.stringify({ status: 404, code: "not_found" })]]);
  const resumed = async (options, path, desk) => {
    const storage = memory();
    storage.setItem(`lorimat-door ${none.url} ${options.desk ?? options.token?.slice(0, -2) ?? ""}`,
      JSON.stringify([{ key: "late", path, body: { desk }, made: 0 }]));
    const door = new Door(none.url, { ...options, storage });
    const [{ error }] = await door.resume();
    return [error.kind, door.pending.length];
  };
  assert.deepEqual(await resumed({ token: "t1.x" }, "/v1/jobs", "t1"), ["away", 0]);
  assert.deepEqual(await resumed({ token: "t2.x", desk: "t1" }, "/v1/jobs", "t1"), ["unknown", 1]);
  assert.deepEqual(await resumed({ desk: "t1" }, "/v1/device/close-day", "t1"), ["away", 0]);
  assert.deepEqual(await resumed({}, "/v1/device/close-day"), ["unknown", 1]);
  none.server.close();
});

test("jobs and documents are read page by page", async () => {
  const json = (body) => [200, "application/json", JSON.stringify(body)];
  const pages = await scripted([json({ jobs: [{ id: 3 }] }), json({ jobs: [] }),
    json({ documents: [{ number: 1 }], next: "1-1" }), json({ documents: [{ number: 2 }], next: null })]);
  const door = new Door(pages.url), found = [];
  for await (const one of door.jobs()) found.push(one.id);
  for await (const one of door.documents({ from: "2026-11-22" })) found.push(one.number);
  assert.deepEqual(found, [3, 1, 2]);
  assert.deepEqual(pages.asked.map(([, , query]) => query), ["after=0&limit=100", "after=3&limit=100",
    "from=2026-11-22", "from=2026-11-22&after=1-1"]);
  pages.server.close();
});

test("events go on behind the last", async () => {
  const first = ": still here\n\nid: 7\nevent: job\ndata: {\"id\": 1}\n\nid: 8\nevent: warning\ndata: {\"code\":\n" +
    "data: \"paper\"}\n\nid: 9\nevent: job\ndata: {\"cut";
  const stream = await scripted([[200, "text/event-stream", first],
    [200, "text/event-stream", "id: 9\nevent: reset\ndata: {}\n\n"]]);
  const found = [];
  for await (const one of new Door(stream.url).events({ after: 6 })) {
    found.push(one);
    if (found.length === 3) break;
  }
  assert.deepEqual(found, [{ id: 7, event: "job", data: { id: 1 } },
    { id: 8, event: "warning", data: { code: "paper" } }, { id: 9, event: "reset", data: {} }]);
  assert.deepEqual(stream.asked.map(([, heads]) => heads["last-event-id"]), ["6", "8"]);
  stream.server.close();
});
