"""lorimat.Door against a door: outcomes, errors, cut connections, killed tills."""
import http.server
import json
import os
import pathlib
import signal
import subprocess
import sys
import threading

import pytest

from conftest import SALE, make_token
from cutting_proxy import WAYS, CuttingProxy

PACKAGE = pathlib.Path(__file__).parents[2] / "bindings/python"
sys.path.insert(0, str(PACKAGE))
import lorimat  # noqa: E402  behind the path that has it

COFFEE = {"kind": "receipt", "items": [{"department": 1, "price": "1.20"}], "payments": [{"tender": "cash"}]}


def client_of(door, **more):
    return lorimat.Door(f"http://127.0.0.1:{door.port}", desk="cassa-1", **more)


def test_a_sale_and_a_receipt_are_confirmed(door):
    with client_of(door) as client:
        job = client.sell(SALE, reference="order 4711")
        assert (job.state, job.desk, job.reference) == ("confirmed", "cassa-1", "order 4711")
        assert (job.document.closure, job.document.number, job.document.total) == (1, 1, "1.20")
        assert client.receipt(COFFEE).document.number == 2
        assert client.dry_run(COFFEE)["sums"]["total"] == "1.20"
        assert client.sell(SALE, job.key, reference="order 4711").replayed
        assert client.job(job.id).document == job.document
        assert client.find(job.key).id == job.id and client.find("none") is None
        assert [one.id for one in client.jobs("confirmed")] == [1, 2]
        assert client.device()["ready"] is True
    assert door.documents() == [(1, 1), (1, 2)]


def test_an_operator_closes_the_day_and_resets(door):
    with lorimat.Door(f"http://127.0.0.1:{door.port}") as client:
        assert client.sell(SALE).document.closure == 1
        assert client.close_day().document.number is None
        assert client.reset().state == "confirmed"
        assert client.sell(SALE).document.closure == 2


def test_what_a_door_refuses_has_its_code(door):
    with client_of(door) as client:
        with pytest.raises(lorimat.RequestRefused) as refused:
            client.sell(["SETP ABORT=1"])
        assert (refused.value.code, refused.value.status) == ("line_not_allowed", 422)
        with pytest.raises(lorimat.RequestRefused) as refused:
            client.receipt({**COFFEE, "colour": "red"})
        assert refused.value.problem["pointer"] == "/colour"
        with pytest.raises(lorimat.JobFailed) as failed:
            client.sell(["VEND REP=99, PRE=1"], "k1")
        assert failed.value.job.state == "rejected" and failed.value.key == "k1"
        with pytest.raises(lorimat.OutcomeUnknown) as reused:
            client.sell(SALE, "k1")
        assert reused.value.code == "key_reused"
        with pytest.raises(lorimat.DoorError) as missing:
            client.job(4711)
        assert missing.value.code == "not_found"
        with pytest.raises(lorimat.DoorError) as state:
            client.cancel(1)
        assert state.value.code == "wrong_state"


@pytest.mark.parametrize("url", ["ftp://x", "127.0.0.1:8577", "http://a:b@127.0.0.1", "http://"])
def test_an_address_that_is_none(url):
    with pytest.raises(ValueError):
        lorimat.Door(url)


def test_a_lost_report_waits_for_the_operator(doors, folder):
    door = doors(folder, faulty=True).start(fault="lose@line:1")
    with lorimat.Door(f"http://127.0.0.1:{door.port}", desk="operator", pending=folder / "pending") as client:
        with pytest.raises(lorimat.NeedsOperator) as waiting:
            client.sell(["REPORT"], "r1")
        assert [one.key for one in client.pending] == ["r1"]
        job = client.resolve(waiting.value.job.id, "done", "it is printed")
        assert job.state == "confirmed"
        assert [outcome.job.id for outcome in client.resume()] == [job.id]
        assert client.pending == []


def test_without_a_door_nothing_was_done(folder):
    with lorimat.Door("http://127.0.0.1:1", pending=folder / "pending", patience=0) as client:
        with pytest.raises(lorimat.DoorAway):
            client.sell(SALE, wait=0)
        assert client.pending == []
        with pytest.raises(lorimat.DoorAway):
            client.device()


@pytest.mark.parametrize("seed", [1, 2])
def test_cut_connections_make_one_document_for_each_key(door, folder, monkeypatch, seed):
    from lorimat import door as module
    monkeypatch.setattr(module, "_LONGEST_PAUSE", 0.05)
    way = CuttingProxy(lambda: door.port, seed)
    numbers = {}
    with lorimat.Door(f"http://127.0.0.1:{way.port}", desk="till", pending=folder / "pending") as client:
        for number in range(12):
            job = client.sell(SALE, f"k{number}") if number % 2 else client.receipt(COFFEE, f"k{number}")
            numbers[f"k{number}"] = (job.document.closure, job.document.number)
        assert client.pending == []
        assert [client.find(key).document[:2] for key in numbers] == list(numbers.values())
    way.close()
    assert sorted(numbers.values()) == door.documents() == [(1, n + 1) for n in range(12)]
    assert all(way.seen[one] for one in WAYS)


TILL = """
import sys
import lorimat
with lorimat.Door(sys.argv[1], desk="till", pending=sys.argv[2]) as door:
    for outcome in door.resume():
        print(outcome.request.key, *outcome.job.document[:2], flush=True)
    while True:
        key = lorimat.new_key()
        job = door.sell(["VEND REP=1, PRE=1.20", "CHIU"], key)
        print(key, *job.document[:2], flush=True)
"""


def test_a_till_that_is_killed_asks_again(door, folder):
    told = {}
    environment = dict(os.environ, PYTHONPATH=str(PACKAGE))

    def life(lines):
        till = subprocess.Popen([sys.executable, "-c", TILL, f"http://127.0.0.1:{door.port}",
                                 folder / "pending"], env=environment, stdout=subprocess.PIPE, text=True)
        for _ in range(lines):
            key, closure, number = till.stdout.readline().split()
            assert told.setdefault(key, (int(closure), int(number))) == (int(closure), int(number))
        till.send_signal(signal.SIGKILL)
        rest, _ = till.communicate(timeout=60)
        # What was cut in its midst was not told.
        for line in rest.splitlines(keepends=True):
            if line.endswith("\n"):
                key, closure, number = line.split()
                told[key] = (int(closure), int(number))

    for lines in (0, 1, 2, 3):
        life(lines)
    with lorimat.Door(f"http://127.0.0.1:{door.port}", desk="till", pending=folder / "pending") as client:
        for outcome in client.resume():
            told[outcome.request.key] = outcome.job.document[:2]
        assert client.pending == []
        # One that was told late, between the door's answer and the till's line, is found by its key.
        for job in client.jobs("confirmed"):
            told.setdefault(job.key, job.document[:2])
    assert sorted(told.values()) == door.documents()


def test_what_was_never_taken_is_not_sold_behind_its_time(door, folder, monkeypatch):
    from lorimat import door as module
    with lorimat.Door("http://127.0.0.1:1", pending=folder / "pending", patience=0) as away:
        # It cannot know that nothing was sent when it is killed ahead of that.
        monkeypatch.setattr(away, "_carry", lambda *_: None)
        away.sell(SALE, "k1", expires_s=60)
    with lorimat.Door(f"http://127.0.0.1:{door.port}", pending=folder / "pending") as client:
        asked = client.pending[0].made
        monkeypatch.setattr(module, "now", lambda: asked + 61)
        (outcome,) = client.resume()
        assert (outcome.job, outcome.error.code) == (None, "expired")
        assert client.pending == []
    assert door.documents() == []


def test_a_late_request_of_another_desk_stays(doors, folder, monkeypatch):
    """To a desk's token the door tells nothing of other desks, be they there or not."""
    from lorimat import door as module
    file = folder / "tokens"
    tokens = [make_token(file, name, "desk") for name in ("till-1", "till-2")]
    door = doors(folder).start("--tokens", file, "--require-token")
    url = f"http://127.0.0.1:{door.port}"
    tills = [lorimat.Door(url, token, pending=folder / "pending") for token in tokens]
    with monkeypatch.context() as killed:
        killed.setattr(tills[0]._pending, "forget", lambda _: None)
        tills[0].sell(SALE, "k1")
    monkeypatch.setattr(module, "now", lambda: tills[0].pending[0].made + 601)
    for other in (tills[1], lorimat.Door(url, tokens[1], "till-1", pending=folder / "pending"),
                  lorimat.Door(url, pending=folder / "pending")):
        (outcome,) = other.resume()
        assert isinstance(outcome.error, lorimat.OutcomeUnknown) and outcome.error.key == "k1"
        assert [one.key for one in tills[0].pending] == ["k1"]
    (outcome,) = tills[0].resume()
    assert outcome.job.state == "confirmed" and tills[0].pending == []


def test_a_late_closing_without_a_desk_is_not_told_as_never_done(door, folder, monkeypatch):
    """Without a token it is the operator's job, and not found under no desk."""
    from lorimat import door as module
    with lorimat.Door(f"http://127.0.0.1:{door.port}", pending=folder / "pending") as client:
        with monkeypatch.context() as killed:
            killed.setattr(client._pending, "forget", lambda _: None)
            assert client.close_day("z1").state == "confirmed"
        made = client.pending[0].made
        monkeypatch.setattr(module, "now", lambda: made + 601)
        (outcome,) = client.resume()
        assert isinstance(outcome.error, lorimat.OutcomeUnknown)
        assert [one.key for one in client.pending] == ["z1"]


def test_what_a_till_asked_is_never_sold_by_another_one(doors, folder, monkeypatch):
    """Tills that share a folder, each known by its token alone."""
    file = folder / "tokens"
    tokens = [make_token(file, name, "desk") for name in ("till-1", "till-2")]
    door = doors(folder).start("--tokens", file, "--require-token")
    tills = [lorimat.Door(f"http://127.0.0.1:{door.port}", token, pending=folder / "pending") for token in tokens]
    with monkeypatch.context() as killed:
        killed.setattr(tills[0], "_carry", lambda *_: None)
        tills[0].sell(SALE, "k1")
    assert [(one.desk, one.body["desk"]) for one in tills[1].pending] == [("till-1", "till-1")]
    (outcome,) = tills[1].resume()
    assert (outcome.job, outcome.error.code) == (None, "foreign_desk")
    assert door.documents() == []
    job = tills[0].sell(SALE, "k1")
    assert job.desk == "till-1" and tills[0].find("k1").id == job.id
    assert door.documents() == [(1, 1)]


def test_a_kept_key_keeps_its_request(folder, monkeypatch):
    with lorimat.Door("http://127.0.0.1:1", pending=folder / "pending") as client:
        monkeypatch.setattr(client, "_carry", lambda *_: None)
        client.sell(SALE, "k1")
        with pytest.raises(lorimat.OutcomeUnknown) as reused:
            client.sell(["CLEAR"], "k1")
        assert reused.value.code == "key_reused"
        assert [one.body["lines"] for one in client.pending] == [SALE]
        # What JSON does not tell apart is the same.
        receipt = {"kind": "receipt", "items": ({"department": 1},)}
        client.receipt(receipt, "k2")
        client.receipt(receipt, "k2")


@pytest.mark.parametrize("key", ["", "a b", "k\n", "caff\u00e8", "k" * 65])
def test_a_bad_key_is_neither_kept_nor_sent(folder, key):
    with lorimat.Door("http://127.0.0.1:1", pending=folder / "pending", patience=0) as client:
        with pytest.raises(ValueError):
            client.sell(SALE, key, wait=0)
    assert os.listdir(folder / "pending") == []


@pytest.mark.parametrize("wait", [float("inf"), float("nan")])
def test_a_wait_that_is_no_time_is_neither_kept_nor_sent(door, folder, wait):
    with client_of(door, pending=folder / "till") as client:
        with pytest.raises(ValueError, match="wait"):
            client.sell(SALE, wait=wait)
        assert client.pending == []
        with pytest.raises(ValueError, match="wait"):
            list(client.resume(wait=wait))
    assert door.documents() == []


def test_what_cannot_be_read_or_sent_does_not_stop_the_others(door, folder, monkeypatch):
    with client_of(door, pending=folder / "pending") as client:
        with monkeypatch.context() as killed:
            killed.setattr(client, "_carry", lambda *_: None)
            client.sell(SALE, "k2")
        (kept,) = client.pending
        client._pending.keep(kept._replace(key="k 1", made=kept.made - 1))
        damaged = ["", "{}", "[1]", "\xff", "[" * 100000, json.dumps({**kept._asdict(), "made": "now"}),
                   json.dumps({**kept._asdict(), "body": []}), json.dumps({**kept._asdict(), "body": {"expires_s": "1"}})]
        for number, text in enumerate(damaged):
            (folder / "pending" / f"{number}.json").write_text(text, encoding="latin-1")
        found = list(client.resume())
        assert [type(one.error) for one in found] == [ValueError, type(None)] + [OSError] * len(damaged)
        assert found[1].job.key == "k2"
        assert ["0.json" in str(found[2].error), found[2].request] == [True, None]
        # What is damaged stays for whoever looks.
        assert len(os.listdir(folder / "pending")) == len(damaged) + 1
    assert door.documents() == [(1, 1)]


@pytest.mark.parametrize("status", [401, 403, 422])
def test_a_key_that_is_given_counts_as_used_before(scripted, folder, status):
    """Without a folder, too: the till has it of error.key."""
    refusal = json.dumps({"status": status, "code": "no", "detail": "no"}).encode()
    scripted.answers["/v1/jobs"] = [(status, {}, refusal)]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}", patience=0) as client:
        with pytest.raises(lorimat.OutcomeUnknown):
            client.sell(SALE, "k1")
    with lorimat.Door("http://127.0.0.1:1", pending=folder / "pending", patience=0) as client:
        with pytest.raises(lorimat.OutcomeUnknown):
            client.sell(SALE, "k1", wait=0)
        assert [one.key for one in client.pending] == ["k1"]


def test_a_given_key_is_refused_when_the_door_has_none(door, folder):
    with client_of(door, pending=folder / "pending") as client:
        with pytest.raises(lorimat.RequestRefused) as refused:
            client.sell(["SETP ABORT=1"], "k1")
        assert refused.value.code == "line_not_allowed"
        client.sell(SALE, "k2")
        with pytest.raises(lorimat.OutcomeUnknown) as reused:
            client.sell(["CLEAR"], "k2")
        assert reused.value.code == "key_reused" and client.pending == []


class Scripted(http.server.BaseHTTPRequestHandler):
    """Answers what a test has put down: by the path, a list of (status, heads, body), the last for ever."""

    def do_GET(self):
        self.rfile.read(int(self.headers.get("Content-Length", 0)))
        rows = self.server.answers[self.path.split("?")[0]]
        status, heads, body = rows.pop(0) if len(rows) > 1 else rows[0]
        self.server.asked.append((self.path, dict(self.headers)))
        self.send_response(status)
        for name, value in heads.items():
            self.send_header(name, value)
        if heads.get("Content-Type") != "text/event-stream":
            self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    do_POST = do_DELETE = do_GET

    def log_message(self, *_):
        pass


@pytest.fixture
def scripted():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Scripted)
    server.answers, server.asked = {}, []
    threading.Thread(target=server.serve_forever, daemon=True).start()
    yield server
    server.shutdown()
    server.server_close()


def test_what_fails_within_the_door_leaves_the_outcome_unknown(scripted, folder):
    full = json.dumps({"status": 503, "code": "disk_full", "detail": "the log cannot be read"}).encode()
    away = json.dumps({"status": 503, "code": "device_away", "detail": "no"}).encode()
    scripted.answers["/v1/jobs"] = [(503, {}, full), (503, {}, away)]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}", token="till.x", patience=0.3,
                      pending=folder / "pending") as client:
        with pytest.raises(lorimat.OutcomeUnknown):
            client.sell(SALE, "k1", wait=0)
        assert [one.key for one in client.pending] == ["k1"]
        scripted.answers["/v1/jobs"] = [(503, {}, away)]
        with pytest.raises(lorimat.DoorAway) as told:
            client.sell(SALE, wait=0)
        assert told.value.code == "device_away"
        assert [one.key for one in client.pending] == ["k1"]
    keys = {head["Idempotency-Key"] for _, head in scripted.asked}
    assert len(keys) == 2 and "k1" in keys and len(scripted.asked) > 2
    assert {head["Authorization"] for _, head in scripted.asked} == {"Bearer till.x"}


@pytest.mark.parametrize("status", [401, 403, 404, 422, 501])
def test_a_refusal_does_not_tell_what_became_of_an_old_request(scripted, folder, monkeypatch, status):
    refusal = json.dumps({"status": status, "code": "no", "detail": "no"}).encode()
    scripted.answers["/v1/jobs"] = [(status, {}, refusal)]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}", pending=folder / "pending", patience=0) as client:
        with monkeypatch.context() as killed:
            killed.setattr(client, "_carry", lambda *_: None)
            client.sell(SALE, "k1")
        (outcome,) = client.resume()
        assert isinstance(outcome.error, lorimat.OutcomeUnknown) and outcome.error.status == status
        with pytest.raises(lorimat.OutcomeUnknown):
            client.sell(SALE, "k1")
        assert [one.key for one in client.pending] == ["k1"]
        # Of a new one it tells.
        with pytest.raises(lorimat.RequestRefused):
            client.sell(SALE)
        assert [one.key for one in client.pending] == ["k1"]


def test_an_old_request_is_refused_when_the_door_has_none(door, folder, monkeypatch):
    with client_of(door, pending=folder / "pending") as client:
        with monkeypatch.context() as killed:
            killed.setattr(client, "_carry", lambda *_: None)
            client.sell(["SETP ABORT=1"], "k1")
        (outcome,) = client.resume()
        assert isinstance(outcome.error, lorimat.RequestRefused) and outcome.error.code == "line_not_allowed"
        assert client.pending == []


@pytest.mark.parametrize("status", [500, 503])
def test_what_fails_within_the_door_may_have_been_changed(scripted, status):
    """Asked again it would be told as wrong_state, by its own doing."""
    failed = json.dumps({"status": status, "code": "disk_full", "detail": "no"}).encode()
    wrong = json.dumps({"status": 409, "code": "wrong_state", "detail": "no"}).encode()
    for path in ("/v1/jobs/7", "/v1/jobs/7/resolve"):
        scripted.answers[path] = [(status, {}, failed), (409, {}, wrong)]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}") as client:
        with pytest.raises(lorimat.OutcomeUnknown):
            client.cancel(7)
        with pytest.raises(lorimat.OutcomeUnknown):
            client.resolve(7, "done", "seen")
    assert len(scripted.asked) == 2


def test_events_go_on_behind_the_last(scripted):
    first = (b": still here\n\nid: 7\nevent: job\ndata: {\"id\": 1}\n\nid: 8\nevent: warning\n"
             b"data: {\"code\":\ndata: \"paper\"}\n\nid: 9\nevent: job\ndata: {\"cut")
    second = b"id: 9\nevent: reset\ndata: {}\n\n"
    scripted.answers["/v1/events"] = [(200, {"Content-Type": "text/event-stream"}, first),
                                      (200, {"Content-Type": "text/event-stream"}, second)]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}") as client:
        events = client.events(after=6)
        found = [next(events) for _ in range(3)]
    assert found == [(7, "job", {"id": 1}), (8, "warning", {"code": "paper"}), (9, "reset", {})]
    assert [head["Last-Event-ID"] for _, head in scripted.asked] == ["6", "8"]


def test_documents_are_read_page_by_page(scripted):
    row = {"closure": 1, "number": 2, "kind": "receipt", "serial": "S", "time": None, "total": "1.20"}
    scripted.answers["/v1/documents"] = [
        (200, {}, json.dumps({"documents": [row], "next": "1-2"}).encode()),
        (200, {}, json.dumps({"documents": [], "next": None}).encode())]
    scripted.answers["/v1/documents/1/2"] = [(200, {"Content-Type": "text/plain"}, b"CAFFE\n")]
    with lorimat.Door(f"http://127.0.0.1:{scripted.server_port}") as client:
        (document,) = client.documents("2026-11-22")
        assert (document.number, document.kind) == (2, "receipt")
        assert client.document(1, 2) == b"CAFFE\n"
    assert [path for path, _ in scripted.asked] == ["/v1/documents?from=2026-11-22",
                                                    "/v1/documents?from=2026-11-22&after=1-2",
                                                    "/v1/documents/1/2"]
