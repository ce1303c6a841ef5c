"""`lorimat send` and `lorimat jobs` against a door: outcomes, exit codes, cut connections, certificates."""
import json
import os
import re
import shutil
import signal
import ssl
import subprocess

import pytest

from conftest import SALE
from cutting_proxy import CuttingProxy
from test_python_client import lorimat, scripted  # noqa: F401  a fixture
from waiting import until


def console(*arguments, lines=None, environment=None):
    clean = {name: value for name, value in os.environ.items() if not name.startswith("LORIMAT_TOKEN")}
    return subprocess.run([os.environ["LORIMAT"], *map(str, arguments)], capture_output=True, text=True,
                          input="\n".join(lines) if lines is not None else "",
                          env={**clean, "LC_ALL": "C", **(environment or {})}, timeout=120, check=False)


def url_of(port):
    return f"http://127.0.0.1:{port}"


def send(port, key, lines=SALE, *more, **settings):
    return console("send", "-", "--to", url_of(port), "--key", key, *more, lines=lines, **settings)


def test_a_sale_is_confirmed_and_sent_again_is_the_same(door, folder):
    (folder / "sale.cmd").write_bytes(b"\xef\xbb\xbf" + "\r\n\r\n".join(SALE).encode() + b"\r\n")
    for _ in range(2):
        run = console("send", folder / "sale.cmd", "--to", url_of(door.port), "--key", "k1", "--desk", "cassa-1",
                      "--reference", "order 4711", "--expires", "60")
        assert (run.returncode, run.stdout) == (0, "job 1: confirmed, document 0001-0001, total 1.20\n")
    job = door.get("/v1/jobs/1")[1]
    assert (job["desk"], job["reference"], len(job["lines"])) == ("cassa-1", "order 4711", 2)
    told = json.loads(send(door.port, "k2", SALE, "--json").stdout)
    assert (told["outcome"], told["key"], told["job"]["document"]["number"]) == ("confirmed", "k2", 2)


@pytest.mark.parametrize("key, lines, code, outcome, text", [
    ("k1", ["VEND REP=99, PRE=1"], 1, "failed", "line 1: 1241: "),
    ("k1", ["SETP ABORT=1"], 2, "refused", "line_not_allowed: line 1 (SETP)"),
])
def test_what_was_not_done(door, key, lines, code, outcome, text):
    run = send(door.port, key, lines)
    assert run.returncode == code and text in run.stderr and "nothing was done" in run.stderr
    # Only what the job itself has told is for good.
    assert ("new key" in run.stderr) == (outcome == "failed")
    assert ("still unknown" in run.stderr) == (outcome != "failed")
    assert json.loads(send(door.port, key, lines, "--json").stdout)["outcome"] == outcome
    assert door.documents() == []


def test_a_key_of_an_earlier_call_is_as_open_as_it_was(scripted, door):  # noqa: F811
    def answer(status, code):
        return status, {}, json.dumps({"status": status, "code": code, "detail": "x"}).encode()
    port = scripted.server_port
    for first in [(202, {}, b'{"id": 1, "state": "running"}'), answer(503, "disk_full")]:
        scripted.answers["/v1/jobs"] = [first]
        assert send(port, "k1", SALE, "--wait", "0").returncode == 3
        for later in [answer(401, "no_token"), answer(403, "not_allowed"), answer(503, "queue_full"),
                      answer(400, "bad_field")]:
            scripted.answers["/v1/jobs"] = [later]
            run = send(port, "k1", SALE, "--wait", "0")
            assert run.returncode == 2 and "by this call" in run.stderr and "still unknown" in run.stderr
            assert "new key" not in run.stderr
        run = send(1, "k1", SALE, "--wait", "0")
        assert run.returncode == 2 and "by this call" in run.stderr and "new key" not in run.stderr
    # With other lines, the key's job is another one, which may be confirmed.
    assert send(door.port, "k2").returncode == 0
    run = send(door.port, "k2", ["CLEAR"])
    assert run.returncode == 3 and "key_reused" in run.stderr and "nothing was done" not in run.stderr
    assert json.loads(send(door.port, "k2", ["CLEAR"], "--json").stdout)["outcome"] == "unknown"


@pytest.mark.parametrize("text, told", [
    (b"", "there is no line in it"), (b"\n \n", "there is no line in it"),
    (b"CLEAR\nPRMSG MSG=\xe8\n", ":2: byte 11 is not UTF-8"), (b"\xff\xfeC\0", "is not UTF-8"),
    (b"x" * 2047, "at most 2046 bytes"), (b"CLEAR\n" * 1001, "at most 1000 lines"),
])
def test_lines_that_are_none(folder, text, told):
    (folder / "a.cmd").write_bytes(text)
    run = console("send", folder / "a.cmd", "--to", url_of(1), "--key", "k")
    assert run.returncode == 2 and told in run.stderr


def test_a_line_without_an_end_is_refused(folder):
    (folder / "token").symlink_to("/dev/zero")
    to = ["--to", url_of(1), "--key", "k"]
    run = console("send", "/dev/zero", *to)
    assert run.returncode == 2 and "/dev/zero:1: a line has at most 2046 bytes" in run.stderr
    # Of blanks, too, behind a good one.
    endless = "(echo CLEAR; tr '\\0' ' ' </dev/zero) | exec \"$LORIMAT\" send - --to \"$0\" --key k"
    run = subprocess.run(["sh", "-c", endless, url_of(1)], capture_output=True, text=True, timeout=120,
                         env={**os.environ, "LC_ALL": "C"}, check=False)
    assert run.returncode == 2 and "standard input:2: a line has at most 2046 bytes" in run.stderr
    run = console("send", "-", *to, "--token", folder / "token", lines=SALE)
    assert run.returncode == 2 and "holds no token" in run.stderr


@pytest.mark.parametrize("key", ["no key", "k\r\nX: 1", "k\n", "k\x7f", "k\u00e8", "x" * 65])
def test_a_key_that_is_none_is_not_sent(scripted, key):  # noqa: F811
    scripted.answers["/v1/jobs"] = [(200, {}, b"{}")]
    run = send(scripted.server_port, key, SALE, "--wait", "0")
    assert run.returncode == 2 and "--key: " in run.stderr
    assert scripted.asked == []


def test_all_that_may_be_in_a_key(door):
    assert send(door.port, "azAZ09._:-" + "x" * 54).returncode == 0


def test_without_a_door_nothing_was_done(folder):
    run = send(1, "k", SALE, "--wait", "0")
    assert run.returncode == 2 and "nothing was done" in run.stderr
    assert json.loads(send(1, "k", SALE, "--wait", "0", "--json").stdout)["outcome"] == "away"
    for url in ("ftp://x", "127.0.0.1:1", "http://a:b@127.0.0.1", "http://"):
        assert console("jobs", "--to", url).returncode == 2


@pytest.mark.parametrize("seed", [4, 6])
def test_cut_connections_make_one_document_for_each_key(door, seed):
    way = CuttingProxy(lambda: door.port, seed, cut_in_ten=6)
    runs = [send(way.port, f"k{number}", SALE) for number in range(6)]
    way.close()
    assert [run.returncode for run in runs] == [0] * 6
    assert sorted(re.findall(r"document (\d+)-(\d+)", "".join(run.stdout for run in runs))) == \
        [("0001", f"{number:04}") for number in range(1, 7)]
    assert door.documents() == [(1, number) for number in range(1, 7)]
    assert way.seen["answer lost"] + way.seen["answer cut"] and way.seen["request cut"]


def test_what_fails_within_the_door_is_not_known(scripted):  # noqa: F811
    def problem(code):
        return 503, {}, json.dumps({"status": 503, "code": code, "detail": "x"}).encode()
    scripted.answers["/v1/jobs"] = [problem("disk_full"), problem("device_away")]
    run = send(scripted.server_port, "k1", SALE, "--wait", "1", environment={"LORIMAT_TOKEN": "till.x"})
    assert run.returncode == 3 and "same key" in run.stderr
    run = send(scripted.server_port, "k1", SALE, "--wait", "0")
    assert run.returncode == 2 and "device_away: x" in run.stderr
    assert {head["Idempotency-Key"] for _, head in scripted.asked} == {"k1"}
    assert [head.get("Authorization") for _, head in scripted.asked][-2:] == ["Bearer till.x", None]


def scripted_curl(answers, refuses=""):
    return {"LD_LIBRARY_PATH": os.environ["LORIMAT_SCRIPTED_CURL"], "SCRIPTED_CURL": answers,
            "SCRIPTED_CURL_REFUSES": refuses}


# As libcurl has them.
COULD_NOT_CONNECT, NO_MEMORY, TIMED_OUT, BAD_CERTIFICATE = 7, 27, 28, 60


@pytest.mark.parametrize("answers, code, asked, text", [
    (f"{BAD_CERTIFICATE}/0", 2, 1, "scripted 60"),
    (f"{COULD_NOT_CONNECT}/0 {BAD_CERTIFICATE}/0", 2, 2, "scripted 60"),
    (f"{TIMED_OUT}/90 {BAD_CERTIFICATE}/0", 3, 2, "same key: .*scripted 60"),
    (f"{NO_MEMORY}/90 {BAD_CERTIFICATE}/0", 3, 2, "same key: .*scripted 60"),
    (f"{NO_MEMORY}/0 {BAD_CERTIFICATE}/0", 2, 2, "scripted 60"),
])
def test_a_failure_behind_a_request_that_left_is_not_known(answers, code, asked, text):
    run = send(1, "k1", environment=scripted_curl(answers))
    assert run.returncode == code and re.search(text, run.stderr)
    assert run.stderr.count("asked\n") == asked
    assert "nothing was done" not in run.stderr


@pytest.mark.parametrize("more", [[], ["--json"]])
def test_an_outcome_that_cannot_be_told_has_its_code(door, more):
    def to_full(key, lines):
        with open("/dev/full", "wb") as full:
            return subprocess.run([os.environ["LORIMAT"], "send", "-", "--to", url_of(door.port), "--key", key, *more],
                                  input="\n".join(lines).encode(), stdout=full, stderr=subprocess.PIPE,
                                  env={**os.environ, "LC_ALL": "C"}, timeout=120, check=False)
    run = to_full("k1", SALE)
    assert run.returncode == 0 and b"No space left" in run.stderr
    assert to_full("k2", ["VEND REP=99, PRE=1"]).returncode == 1
    assert door.documents() == [(1, 1)]


def test_a_token_comes_from_a_file(scripted, folder):  # noqa: F811
    scripted.answers["/v1/jobs"] = [(200, {}, b'{"jobs": []}')]
    (folder / "token").write_text("till.y\n")
    arguments = ["jobs", "--to", url_of(scripted.server_port), "--token"]
    assert console(*arguments, folder / "token").returncode == 0
    assert scripted.asked[0][1]["Authorization"] == "Bearer till.y"
    for text in ("", "a b\n", "a\x01\n", "a" * 5000):
        (folder / "token").write_bytes(text.encode())
        assert console(*arguments, folder / "token").returncode == 2
    assert console(*arguments[:-1], environment={"LORIMAT_TOKEN": "a\nb"}).returncode == 2
    assert len(scripted.asked) == 1


def test_an_operator_lists_and_resolves(doors, folder):
    door = doors(folder, faulty=True).start(fault="lose@line:3")
    to = ["--to", url_of(door.port)]
    assert send(door.port, "k1").returncode == 0
    run = send(door.port, "r1", ["REPORT"], "--desk", "operator")
    assert run.returncode == 3 and "needs an operator" in run.stderr
    listed = console("jobs", *to, "--state", "needs_operator")
    assert listed.returncode == 0 and re.search(r"^2 +needs_operator +operator  r1$", listed.stdout, re.M)
    assert len(json.loads(console("jobs", *to, "--json").stdout)["jobs"]) == 2
    shown = console("jobs", *to, 2)
    assert "the device has no number that would tell of it" in shown.stdout
    wrong = ["jobs", "resolve", 2, *to, "--outcome", "done", "--reason", "it is printed", "--document"]
    for document in ("0/1", "1/", "1/2/3", "x", "10000/1"):
        assert console(*wrong, document).returncode == 2
    run = console(*wrong, "1/1")
    assert run.returncode == 1 and "no_document" in run.stderr
    assert console(*wrong[:-1]).returncode == 0
    assert door.get("/v1/jobs/2")[1]["state"] == "confirmed"
    run = console("jobs", "cancel", 2, *to)
    assert run.returncode == 1 and "wrong_state" in run.stderr
    assert console("jobs", 3, *to).returncode == 1
    # Sent again, it is known by now.
    assert send(door.port, "r1", ["REPORT"], "--desk", "operator").returncode == 0


def test_a_queued_job_is_taken_back_and_a_wait_is_stopped(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    assert send(door.port, "k0", SALE, "--wait", "0").returncode == 3
    waiting = subprocess.Popen([os.environ["LORIMAT"], "send", "-", "--to", url_of(door.port), "--key", "k1"],
                               stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                               env={**os.environ, "LC_ALL": "C"})
    waiting.stdin.write("\n".join(SALE))
    waiting.stdin.close()
    waiting.stdin = None
    until(lambda: door.get("/v1/jobs?key=k1&desk=")[0] == 200)
    waiting.send_signal(signal.SIGINT)
    _, errors = waiting.communicate(timeout=60)
    assert waiting.returncode == 130 and "same key" in errors
    run = console("jobs", "cancel", 2, "--to", url_of(door.port))
    assert run.returncode == 0 and "cancelled" in run.stdout
    assert send(door.port, "k1").returncode == 1


@pytest.fixture
def secure(scripted, folder):  # noqa: F811
    """The scripted answers behind TLS, with a certificate for 127.0.0.1 that nobody has signed."""
    if shutil.which("openssl") is None:
        pytest.skip("Debian: openssl")
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
                    "-subj", "/CN=till", "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", folder / "key.pem",
                    "-out", folder / "cert.pem"], check=True, capture_output=True)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "cert.pem", folder / "key.pem")
    plain = scripted.get_request

    def with_tls():
        connection, address = plain()
        # The handshake is the thread's that serves it.
        return context.wrap_socket(connection, server_side=True, do_handshake_on_connect=False), address
    scripted.get_request = with_tls
    scripted.handle_error = lambda *_: None
    scripted.answers["/v1/device"] = [(200, {}, b'{"ready": true}')]
    scripted.answers["/v1/jobs"] = [(200, {}, b'{"jobs": []}')]
    return scripted


def test_certificates_of_a_file_are_the_only_ones(folder):
    def listed(*more, **script):
        return console("jobs", "--to", "https://127.0.0.1:1", *more, environment=scripted_curl("60/0", **script))
    (folder / "ca.pem").touch()
    run = listed("--cacert", folder / "ca.pem")
    assert f"CAINFO={folder}/ca.pem\n" in run.stderr and "CAPATH=none\n" in run.stderr
    # Without, libcurl has those of the system.
    assert "CAINFO" not in (run := listed()).stderr + run.stdout and "CAPATH" not in run.stderr
    # What it does not know, such as CURLOPT_CAPATH, is not left out.
    run = listed("--cacert", folder / "ca.pem", refuses="10097")
    assert run.returncode == 2 and "scripted 48" in run.stderr and "asked" not in run.stderr


def test_a_certificate_is_looked_at(secure, folder):
    to = ["--to", f"https://127.0.0.1:{secure.server_port}"]
    run = console("jobs", *to)
    assert run.returncode == 2 and "certificate" in run.stderr
    assert console("jobs", *to, "--cacert", folder / "none.pem").returncode == 2
    assert console("jobs", "--to", f"https://localhost:{secure.server_port}", "--cacert",
                   folder / "cert.pem").returncode == 2
    assert secure.asked == []
    assert console("jobs", *to, "--cacert", folder / "cert.pem").returncode == 0
    with lorimat.Door(f"https://127.0.0.1:{secure.server_port}", patience=0) as client:
        with pytest.raises(lorimat.DoorAway):
            client.device()
    with lorimat.Door(f"https://127.0.0.1:{secure.server_port}", cafile=str(folder / "cert.pem")) as client:
        assert client.device() == {"ready": True}
    assert len(secure.asked) == 2
