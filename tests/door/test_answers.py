"""Each answer of the door, as a client gets it."""
import json
import os
import pathlib
import re
import resource
import select
import socket
import sqlite3
import subprocess
import time

import pytest

from conftest import SALE


def code(reply):
    status, body = reply[0], reply[-1]
    return status, body["code"]


def test_a_sale_is_confirmed_and_a_repeat_is_the_same_job(door):
    status, job = door.post(SALE, "k1", desk="cassa-1", reference="order 4711")
    assert status == 201
    assert job["state"] == "confirmed"
    assert (job["key"], job["desk"], job["reference"]) == ("k1", "cassa-1", "order 4711")
    assert job["document"]["closure"] == 1 and job["document"]["number"] == 1
    assert job["document"]["total"] == "1.20"
    assert job["document"]["serial"] == "99LRM0000001VR"
    time = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d"
    assert re.fullmatch(time, job["document"]["time"])
    assert [step["state"] for step in job["history"]] == ["queued", "running", "confirmed"]
    assert all(re.fullmatch(time, step["time"]) for step in job["history"])
    assert [(line["line"], line["code"]) for line in job["lines"]] == [(1, 0), (2, 0)]
    assert job["replayed"] is False

    status, again = door.post(SALE, "k1", desk="cassa-1", reference="order 4711")
    assert (status, again["replayed"], again["id"]) == (200, True, job["id"])
    assert door.documents() == [(1, 1)]


def test_the_body_counts_by_its_value_and_not_by_its_bytes(door):
    body = {"lines": SALE, "desk": "a", "expires_s": 600}
    headers = {"Idempotency-Key": "k"}
    assert door.request("POST", "/v1/jobs", body, headers)[0] == 201
    other = '{ "expires_s": 6e2, "desk": "\\u0061", "lines": %s }' % json.dumps(SALE)
    for number in ("600", "6e2", "600.0"):
        status, _, job = door.request("POST", "/v1/jobs", raw=other.replace("6e2", number),
                                      headers=headers)
        assert (status, job["replayed"]) == (200, True)
    assert code(door.post(SALE + ["CLEAR"], "k", desk="a", expires_s=600)) == (422, "key_reused")
    assert door.post(SALE, "k", desk="b")[0] == 201


def test_a_refused_line_rejects_the_job_for_good(door):
    status, job = door.post(["VEND REP=1, PRE=1", "VEND REP=99, PRE=1", "CHIU"], "k")
    assert (status, job["state"]) == (422, "rejected")
    assert job["lines"][-1]["line"] == 2 and job["lines"][-1]["code"] == 1241
    assert job["lines"][-1]["text"] and job["lines"][-1]["explanation"]
    assert job["document"] is None
    status, again = door.post(["VEND REP=1, PRE=1", "VEND REP=99, PRE=1", "CHIU"], "k")
    assert (status, again["id"], again["replayed"]) == (422, job["id"], True)
    assert door.documents() == []


def test_a_line_that_is_not_understood_sends_nothing(door):
    status, job = door.post(["VEND REP=1, PRE=1", "VNED REP=1", "CHIU"], "k")
    assert (status, job["state"]) == (422, "rejected")
    assert [(line["line"], line["code"]) for line in job["lines"]] == [(2, 257)]
    assert [step["state"] for step in job["history"]] == ["queued", "rejected"]


def test_without_waiting_a_job_is_answered_at_once(door):
    status, job = door.post(SALE, "k", path="/v1/jobs?wait=0")
    assert (status, job["state"]) == (202, "queued")
    while job["state"] in ("queued", "running"):
        status, job = door.get(f"/v1/jobs/{job['id']}")
        assert status == 200
    assert job["state"] == "confirmed"
    assert door.get("/v1/jobs?key=k&desk=")[1]["id"] == job["id"]
    listed = door.get("/v1/jobs?state=confirmed&after=0&limit=10")[1]["jobs"]
    assert [one["id"] for one in listed] == [job["id"]]
    assert door.get(f"/v1/jobs?after={job['id']}")[1]["jobs"] == []


@pytest.mark.parametrize("lines, expected", [
    (["@lines.txt"], "line_not_allowed"),
    (["SETP DIR='/tmp'"], "line_not_allowed"),
    (["#48 #1='/tmp'"], "line_not_allowed"),
    (["REPORT"], "line_not_allowed"),
    (SALE + SALE, "two_documents"),
])
def test_what_a_job_may_not_hold(door, lines, expected):
    assert code(door.post(lines, "k")) == (422, expected)
    assert door.get("/v1/jobs?key=k&desk=")[0] == 404
    assert door.documents() == []


def test_no_line_brings_the_mark_of_a_job_that_is_not_over(doors, folder):
    door = doors(folder, faulty=True).start(fault="lose@line:1")
    job = door.post(["REPORT"], "r", desk="operator")[1]
    assert job["state"] == "needs_operator"
    with sqlite3.connect(f"file:{door.register}.door?mode=ro", uri=True) as log:
        (mark,) = log.execute("SELECT mark FROM job WHERE id = ?", (job["id"],)).fetchone()
    forged = ["VEND REP=1, PRE=1.20", f"CORT MSG='{mark}'", "CHIU"]
    status, problem = door.post(forged, "f")
    assert (status, problem["code"]) == (422, "line_not_allowed")
    assert problem["detail"] == "line 2 (CORT): it has the mark of a job that is not over, in MSG"
    receipt = {"kind": "receipt", "items": [{"department": 1, "price": "1.20", "description": mark}],
               "payments": [{"tender": "cash"}]}
    assert code(door.request("POST", "/v1/receipts", receipt,
                             {"Idempotency-Key": "f"})) == (422, "line_not_allowed")
    assert door.documents() == []
    body = {"outcome": "done", "reason": "x"}
    # A report makes no document, and what is not done neither.
    for outcome, told in (("done", (422, "no_document")), ("not_done", (400, "bad_field"))):
        named = {"outcome": outcome, "reason": "x", "document": {"closure": 1, "number": 1}}
        assert code(door.request("POST", f"/v1/jobs/{job['id']}/resolve", named)) == told
    assert door.request("POST", f"/v1/jobs/{job['id']}/resolve", body)[0] == 200
    assert door.post(forged, "f")[0] == 201


def test_an_operator_reports_and_closes_the_day(door):
    assert door.post(SALE, "s")[0] == 201
    assert door.post(["REPORT"], "r", desk="operator")[1]["state"] == "confirmed"
    assert code(door.post(["REPORT FILE='a'"], "f", desk="operator")) == (422, "line_not_allowed")
    headers = {"Idempotency-Key": "z1"}
    status, _, job = door.request("POST", "/v1/device/close-day", {}, headers)
    assert (status, job["state"]) == (201, "confirmed")
    assert job["document"]["closure"] == 1 and job["document"]["number"] is None
    assert job["document"]["total"] == "1.20"
    assert len(job["lines"]) == 1
    with sqlite3.connect(f"file:{door.register}.door?mode=ro", uri=True) as log:
        (sent,) = log.execute("SELECT lines FROM job WHERE id = ?", (job["id"],)).fetchone()
    assert json.loads(sent) == ["#27 #1=0"]
    assert door.request("POST", "/v1/device/close-day", {}, headers)[0] == 200
    assert code(door.request("POST", "/v1/device/reset", {}, headers)) == (422, "key_reused")
    assert door.request("POST", "/v1/device/reset", {}, {"Idempotency-Key": "z2"})[0] == 201
    assert door.post(SALE, "s2")[1]["document"]["closure"] == 2


@pytest.mark.parametrize("action", ["close-day", "reset"])
def test_closing_and_resetting_are_the_operators(door, action):
    for number, desk in enumerate(["cassa-1", ""]):
        reply = door.request("POST", f"/v1/device/{action}", {"desk": desk},
                             {"Idempotency-Key": f"k{number}"})
        assert code(reply) == (422, "line_not_allowed")
    assert door.get("/v1/jobs")[1]["jobs"] == []
    reply = door.request("POST", f"/v1/device/{action}", {"desk": "operator"}, {"Idempotency-Key": "k"})
    assert reply[0] == 201


@pytest.mark.parametrize("key, expected", [
    (None, "no_key"), ("", "bad_key"), ("a/b", "bad_key"), ("a\tb", "bad_key"), ("a b", "bad_key"), ("x" * 65, "bad_key"), ("è", "bad_key"),
])
def test_keys(door, key, expected):
    headers = {} if key is None else {"Idempotency-Key": key.encode("latin-1")}
    assert code(door.request("POST", "/v1/jobs", {"lines": SALE}, headers)) == (400, expected)


@pytest.mark.parametrize("raw, expected", [
    ("", (400, "bad_json")),
    ("{", (400, "bad_json")),
    ("[]", (400, "bad_json")),
    ('{"lines":["CHIU"],"lines":["CHIU"]}', (400, "bad_json")),
    ('{"lines":["CHIU"],"more":1}', (400, "unknown_field")),
    ('{"lines":[]}', (400, "bad_field")),
    ('{"lines":"CHIU"}', (400, "bad_field")),
    ('{"lines":[1]}', (400, "bad_field")),
    ('{"lines":["CHIU"],"expires_s":0}', (400, "bad_field")),
    ('{"lines":["CHIU"],"expires_s":1.5}', (400, "bad_field")),
    ('{"lines":["CHIU"],"expires_s":"600"}', (400, "bad_field")),
    ('{"lines":["CHIU"],"expires_s":1e300}', (400, "bad_field")),
    ('{"lines":["CHIU"],"expires_s":18446744073709551615}', (400, "bad_field")),
    ('{"lines":["CHIU"],"desk":"%s"}' % ("x" * 65), (400, "bad_field")),
    ('{"lines":["CHIU\\u0000"]}', (400, "control_character")),
    ('{"lines":["CHIU"],"reference":"\\u03a9\\u001b[31m"}', (400, "control_character")),
    ('{"lines":["CHIU\\nCHIU"]}', (400, "control_character")),
    ('{"lines":["CHIU","PRMSG MSG=\'\\u03a9\'"]}', (400, "not_in_code_page")),
    ('{"lines":["%s"]}' % ("x" * 2047), (413, "too_large")),
    ('{"lines":[%s]}' % ",".join(['"CLEAR"'] * 1001), (413, "too_large")),
])
def test_bodies_that_are_no_good(door, raw, expected):
    headers = {"Idempotency-Key": "k"}
    assert code(door.request("POST", "/v1/jobs", raw=raw, headers=headers)) == expected


def test_line_and_column_are_told(door):
    _, problem = door.post(["CHIU", "PRMSG MSG='\u03a9'"], "k")
    assert "line 2, column 12" in problem["detail"]


def test_a_body_that_is_too_long_is_not_read(door):
    with socket.create_connection(("127.0.0.1", door.port), timeout=60) as connection:
        connection.sendall((f"POST /v1/jobs HTTP/1.1\r\nHost: 127.0.0.1:{door.port}\r\n"
                            "Content-Type: application/json\r\nIdempotency-Key: k\r\n"
                            f"Content-Length: {1 << 30}\r\n\r\n").encode())
        assert b" 413 " in connection.recv(4096).split(b"\r\n")[0]


@pytest.mark.parametrize("headers, expected", [
    ({"Content-Type": "text/plain"}, (415, "not_json")),
    ({"Content-Type": None}, (415, "not_json")),
    ({"Origin": "http://example.org"}, (403, "foreign_origin")),
    ({"Origin": "null"}, (403, "foreign_origin")),
    ({"Host": "example.org"}, (403, "foreign_host")),
    ({"Host": "127.0.0.1"}, (403, "foreign_host")),
])
def test_foreign_pages_get_nowhere(door, headers, expected):
    headers = {"Idempotency-Key": "k", **headers}
    reply = door.request("POST", "/v1/jobs", {"lines": SALE}, headers)
    assert code(reply) == expected
    assert not any(name.lower().startswith("access-control") for name in reply[1])
    assert door.documents() == []


@pytest.mark.parametrize("header", ["Host: example.org", "Origin: http://example.org"])
def test_a_foreign_page_is_answered_ahead_of_its_body(door, header):
    host = "" if header.startswith("Host") else f"Host: 127.0.0.1:{door.port}\r\n"
    with socket.create_connection(("127.0.0.1", door.port), timeout=60) as connection:
        connection.sendall(f"POST /v1/jobs HTTP/1.1\r\n{host}{header}\r\nContent-Type: application/json\r\n"
                           "Idempotency-Key: k\r\nContent-Length: 100\r\n\r\n".encode())
        answer = connection.recv(4096)
    assert answer.startswith(b"HTTP/1.1 403 ") and b"access-control" not in answer.lower()


def test_addresses_and_methods(door):
    assert code(door.request("GET", "/")) == (404, "not_found")
    assert code(door.request("GET", "/v1/jobs/7")) == (404, "not_found")
    assert code(door.request("GET", "/v1/jobs/x")) == (404, "not_found")
    status, headers, body = door.request("PUT", "/v1/jobs", {})
    assert (status, body["code"], headers["Allow"]) == (405, "wrong_method", "POST, GET")
    # Without a content type, which would not help.
    status, headers, body = door.request("PUT", "/healthz", headers={"Content-Type": None})
    assert (status, body["code"], headers["Allow"]) == (405, "wrong_method", "GET")
    assert code(door.request("PUT", "/x", headers={"Content-Type": None})) == (404, "not_found")
    assert code(door.request("POST", "/v1/jobs", headers={"Content-Type": None})) == (415, "not_json")
    assert code(door.request("GET", "/v1/jobs?limit=0")) == (400, "bad_field")
    assert code(door.request("GET", "/v1/jobs?state=done")) == (400, "bad_field")
    assert code(door.request("GET", "/v1/jobs?x=1")) == (400, "unknown_field")
    for query in ("desk=a", "key=k&state=queued", "key=k&desk=a&limit=1", "desk=a&after=0"):
        assert code(door.request("GET", f"/v1/jobs?{query}")) == (400, "bad_field")
    assert code(door.request("GET", "/v1/jobs?state=%zz")) == (400, "bad_target")
    assert code(door.post(SALE, "k", path="/v1/jobs?wait=301")) == (400, "bad_field")


def test_problems_are_of_their_type_and_escape_what_came(door):
    _, headers, problem = door.request("POST", "/v1/jobs", raw='{"\\u001b[31m\\n":1,"lines":["CHIU"]}',
                                       headers={"Idempotency-Key": "k"})
    assert headers["Content-Type"] == "application/problem+json"
    assert (problem["status"], problem["code"]) == (400, "unknown_field")


def test_what_is_no_http_is_refused(door):
    with socket.create_connection(("127.0.0.1", door.port), timeout=60) as connection:
        connection.sendall(b"HELLO\r\n\r\n")
        assert connection.recv(4096).split(b"\r\n")[0].endswith(b"400 Bad Request")
    assert door.post(SALE, "k")[0] == 201


@pytest.mark.parametrize("name, value", [("Host", None), ("Idempotency-Key", "k")])
def test_a_header_that_is_given_twice_is_refused(door, name, value):
    value = value or f"127.0.0.1:{door.port}"
    head = {"Host": f"127.0.0.1:{door.port}", "Idempotency-Key": "k"}
    text = "".join(f"{one}: {its}\r\n" for one, its in [*head.items(), (name, value)])
    body = json.dumps({"lines": SALE})
    with socket.create_connection(("127.0.0.1", door.port), timeout=60) as connection:
        connection.sendall((f"POST /v1/jobs HTTP/1.1\r\n{text}Content-Type: application/json\r\n"
                            f"Content-Length: {len(body)}\r\n\r\n{body}").encode())
        assert connection.recv(4096).startswith(b"HTTP/1.1 400 ")
    assert door.get("/v1/jobs")[1]["jobs"] == []


def test_head_has_no_body(door):
    asked = f"HEAD /v1/device HTTP/1.1\r\nHost: 127.0.0.1:{door.port}\r\n"
    with socket.create_connection(("127.0.0.1", door.port), timeout=60) as connection:
        connection.sendall(f"{asked}\r\n{asked}Connection: close\r\n\r\n".encode())
        answer = b""
        while part := connection.recv(4096):
            answer += part
    first, second, rest = answer.split(b"\r\n\r\n")
    assert first.startswith(b"HTTP/1.1 405 ") and second.startswith(b"HTTP/1.1 405 ")
    assert rest == b""


def test_the_device_is_shown(door):
    status, device = door.get("/v1/device")
    assert status == 200
    shown = {"serial": "99LRM0000001VR", "ready": True, "trouble": None, "queued": 0, "unknown": 0,
             "needs_operator": 0}
    assert {name: device[name] for name in shown} == shown


def test_only_this_computer_is_listened_to(folder):
    for address in ("0.0.0.0:0", "192.168.1.1:80", "127.0.0.1", "127.0.0.1:x", "127.0.0.1:70000"):
        run = subprocess.run([os.environ["LORIMATD"], "--register", folder / "r", "--listen", address],
                             capture_output=True, text=True, check=False)
        assert run.returncode == 2 and run.stdout == "" and "--listen" in run.stderr


def test_an_address_that_is_taken_is_told(door, folder):
    address = f"127.0.0.1:{door.port}"
    for language, told in [("C", "Address already in use"), ("it", "Indirizzo già in uso")]:
        run = subprocess.run([os.environ["LORIMATD"], "--register", folder / "r", "--listen", address],
                             capture_output=True, text=True, check=False,
                             env=dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE=language))
        assert run.returncode == 2 and run.stdout == ""
        assert run.stderr == f"lorimatd: --listen {address}: {told}\n"


def test_a_disk_that_is_full_is_told_until_it_is_not(door):
    def shown():
        return door.get("/readyz")[0], door.get("/v1/device")[1]["ready"]

    def limit(size):
        most = resource.prlimit(door.process.pid, resource.RLIMIT_FSIZE)[1]
        resource.prlimit(door.process.pid, resource.RLIMIT_FSIZE, (size, most))

    assert shown() == (200, True)
    limit(1)
    for key in "ab":
        assert code(door.request("POST", "/v1/jobs", {"lines": SALE},
                                 {"Idempotency-Key": key})) == (503, "disk_full")
    assert shown() == (503, False)
    assert code(door.request("GET", "/readyz")) == (503, "disk_full")
    limit(resource.RLIM_INFINITY)
    deadline = time.monotonic() + 60
    while shown() != (200, True):
        assert time.monotonic() < deadline
        time.sleep(0.05)
    assert door.post(SALE, "a")[0] == 201
    assert door.stop() == 0
    told, = door.errors.splitlines()
    assert told.startswith(f"lorimatd: a job that came could not be written: {door.register}.door: ")
    assert told.endswith(": File too large")


def test_sigterm_ends_it_in_order(door):
    assert door.post(SALE, "k")[0] == 201
    assert door.stop() == 0
    assert door.errors == ""


def test_sigterm_finishes_the_job_at_work(door):
    lines = ["VEND REP=1, PRE=0.10"] * 300 + ["CHIU TEND=CONTANTI"]
    job = door.post(lines, "k", path="/v1/jobs?wait=0")[1]
    while job["state"] == "queued":
        job = door.get("/v1/jobs/1")[1]
    assert door.stop() == 0
    door.start()
    job = door.get("/v1/jobs/1")[1]
    assert [step["state"] for step in job["history"]] == ["queued", "running", "confirmed"]
    assert job["document"]["total"] == "30.00" and len(job["lines"]) == 301
    assert door.documents() == [(1, 1)]


def test_the_log_belongs_to_one_device(doors, folder):
    door = doors(folder).start()
    assert door.stop() == 0
    register = folder / "other.register"
    subprocess.run([os.environ["LORIMAT"], "init", register, "--serial", "99LRM0000009VR"],
                   check=True, capture_output=True)
    run = subprocess.run([os.environ["LORIMATD"], "--register", register, "--log",
                          f"{door.register}.door", "--listen", "127.0.0.1:0"],
                         capture_output=True, text=True, check=False)
    assert run.returncode == 2
    assert "99LRM0000001VR" in run.stderr and "99LRM0000009VR" in run.stderr


def test_what_another_device_cannot_tell_is_left_to_an_operator(doors, folder):
    door = doors(folder, faulty=True).start(fault="kill@behind-line:2", once=True)
    assert door.post(SALE, "k")[0] == 0
    door.wait()
    register = folder / "other.register"
    subprocess.run([os.environ["LORIMAT"], "init", register, "--serial", "99LRM0000009VR"],
                   check=True, capture_output=True)
    run = subprocess.run([os.environ["LORIMATD"], "--register", register, "--log",
                          f"{door.register}.door", "--listen", "127.0.0.1:0"],
                         capture_output=True, text=True, check=False)
    assert run.returncode == 2
    door.start()
    _, job = door.get("/v1/jobs/1")
    assert [step["state"] for step in job["history"]] == ["queued", "running", "unknown",
                                                          "needs_operator"]
    assert job["history"][-1]["why"] == "another device is there"


def test_a_second_door_is_refused(door):
    run = subprocess.run([os.environ["LORIMATD"], "--register", door.register, "--listen",
                          "127.0.0.1:0"], capture_output=True, text=True, check=False)
    assert run.returncode == 2 and "in use" in run.stderr


def test_a_device_that_is_further_on_is_told(doors, folder):
    door = doors(folder).start()
    assert door.post(SALE, "k")[0] == 201
    assert door.stop() == 0
    (folder / "sale.cmd").write_text("\n".join(SALE) + "\n")
    subprocess.run([os.environ["LORIMAT"], "run", folder / "sale.cmd", "--register", door.register],
                   check=True, capture_output=True)
    door.start()
    assert door.post(SALE, "k2")[1]["document"]["number"] == 3
    assert door.stop() == 0
    assert "document 2" in door.errors and "the log has seen 0, 1 and 0" in door.errors


def test_a_queued_job_can_be_taken_back(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    at_work = door.post(SALE, "k0", path="/v1/jobs?wait=0")[1]
    status, job = door.post(SALE, "k1", path="/v1/jobs?wait=0")
    assert (status, job["state"]) == (202, "queued")
    # Its outcome is not known yet.
    status, headers, again = door.request("POST", "/v1/jobs", {"lines": SALE},
                                          {"Idempotency-Key": "k1"})
    assert (status, again["id"]) == (409, job["id"]) and headers["Retry-After"]
    status, _, job = door.request("DELETE", f"/v1/jobs/{job['id']}")
    assert (status, job["state"]) == (200, "cancelled")
    assert code(door.request("DELETE", f"/v1/jobs/{job['id']}")) == (409, "wrong_state")
    assert door.post(SALE, "k1")[0] == 422
    while door.get(f"/v1/jobs/{at_work['id']}")[1]["state"] == "queued":
        pass
    assert code(door.request("DELETE", f"/v1/jobs/{at_work['id']}")) == (409, "wrong_state")


def test_a_thousand_jobs_wait_and_no_more(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    for number in range(1001):
        assert door.post(SALE, f"k{number}", path="/v1/jobs?wait=0")[0] == 202
        while number == 0 and door.get("/v1/device")[1]["queued"]:
            pass
    assert code(door.post(SALE, "one-more")) == (429, "queue_full")
    # What is known is answered all the same.
    assert door.post(SALE, "k7")[0] == 409


def test_a_hundred_wait_and_one_more_is_answered_at_once(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    body = json.dumps({"lines": SALE})
    waiting = []
    try:
        for number in range(101):
            waiting.append(socket.create_connection(("127.0.0.1", door.port), timeout=60))
            waiting[-1].sendall((f"POST /v1/jobs?wait=300 HTTP/1.1\r\nHost: 127.0.0.1:{door.port}\r\n"
                                 f"Content-Type: application/json\r\nIdempotency-Key: k{number}\r\n"
                                 f"Content-Length: {len(body)}\r\n\r\n{body}").encode())
        answered, _, _ = select.select(waiting, [], [], 60)
        assert [connection.recv(12) for connection in answered] == [b"HTTP/1.1 202"]
    finally:
        for connection in waiting:
            connection.close()


@pytest.mark.parametrize("language, expected", [("C", "Exit codes:"), ("it_IT.UTF-8", "Codici di uscita:")])
def test_the_help_is_its_own_in_both_languages(language, expected):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("LC_ALL", "LC_MESSAGES", "LANGUAGE")}
    run = subprocess.run([os.environ["LORIMATD"], "--help"], capture_output=True, text=True, check=True,
                         env=dict(environment, LANG=language))
    assert expected in run.stdout and "--device-timeout" in run.stdout
    assert "lorimat run" not in run.stdout


def test_the_pages_have_each_option():
    run = subprocess.run([os.environ["LORIMATD"], "--help"], capture_output=True, text=True, check=True)
    options = set(re.findall(r"--[a-z-]+", run.stdout))
    root = pathlib.Path(__file__).parents[2]
    for page in ("docs/man/lorimatd.1", "docs/man/it/lorimatd.1"):
        text = (root / page).read_text().replace("\\-", "-")
        assert options <= set(re.findall(r"--[a-z-]+", text)), page
    offered = subprocess.run(
        ["bash", "-c", f"source {root}/completion/lorimatd; COMP_WORDS=(lorimatd --) COMP_CWORD=1;"
         '_lorimatd; printf "%s\n" "${COMPREPLY[@]}"'], capture_output=True, text=True, check=True)
    assert set(offered.stdout.split()) == options
    known = options - {"--help", "--version"}
    assert known <= set(re.findall(r"--[a-z-]+", (root / "docs/door.md").read_text()))
