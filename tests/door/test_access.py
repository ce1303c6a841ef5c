"""Who may what: tokens, roles, TLS, other pages, and more connections than there are places."""
import http.client
import json
import os
import pathlib
import re
import resource
import socket
import ssl
import subprocess

import pytest

import many_connections
from conftest import SALE, make_token
from waiting import until


def certify(folder, name="door", days="2"):
    """A certificate for 127.0.0.1 with its key, of so many days."""
    certificate, key = folder / f"{name}.pem", folder / f"{name}.key"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                    "ec_paramgen_curve:prime256v1", "-nodes", "-subj", f"/CN={name}", "-addext",
                    "subjectAltName=IP:127.0.0.1", "-days", days, "-keyout", key, "-out",
                    certificate], check=True, capture_output=True)
    key.chmod(0o600)
    return certificate, key


class Secure:
    """A door with TLS and tokens, its clients, and what it told on standard error so far."""

    def __init__(self, folder, program=None, **more):
        self.folder = folder
        self.program = program or os.environ["LORIMATD"]
        self.environment = dict(os.environ, LC_ALL="C", **more)
        self.tokens = folder / "shop.tokens"
        self.office = make_token(self.tokens, "office", "operator")
        self.certificate, self.key = certify(folder)
        self.process = None

    def run(self, *more, listen="127.0.0.1:0"):
        return subprocess.Popen(
            [self.program, "--register", self.folder / "shop.register", "--listen", listen,
             "--tls-cert", self.certificate, "--tls-key", self.key, "--tokens",
             self.tokens, *more], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env=self.environment)

    def start(self, *more, listen="127.0.0.1:0"):
        self.process = self.run(*more, listen=listen)
        line = self.process.stdout.readline()
        assert line.startswith("lorimatd: listening on https://"), self.process.communicate()
        self.port = int(line.rsplit(":", 1)[1])
        return self

    def shown(self, **limits):
        """The certificate that a client is shown, and the protocol."""
        context = ssl.create_default_context()
        context.check_hostname, context.verify_mode = False, ssl.CERT_NONE
        context.set_ciphers("DEFAULT:@SECLEVEL=0")
        for name, value in limits.items():
            setattr(context, name, value)
        with socket.create_connection(("127.0.0.1", self.port), 60) as plain:
            with context.wrap_socket(plain) as secure:
                return secure.getpeercert(True), secure.version()

    def ask(self, method, path, token, body=None, read=json.loads):
        context = ssl.create_default_context(cafile=self.certificate)
        client = http.client.HTTPSConnection("127.0.0.1", self.port, timeout=60, context=context)
        headers = {"Content-Type": "application/json", "Idempotency-Key": "k1"}
        if token:
            headers["Authorization"] = f"Bearer {token}"
        client.request(method, path, body and json.dumps(body), headers)
        reply = client.getresponse()
        answer = reply.status, read(reply.read())
        client.close()
        return answer


@pytest.fixture
def secure(tmp_path):
    made = Secure(tmp_path)
    yield made
    if made.process and made.process.poll() is None:
        made.process.kill()
        made.process.communicate()


def bearer(token, **more):
    return {"Authorization": f"Bearer {token}", **more}


def test_a_desk_reaches_its_own_jobs_alone(doors, folder):
    tokens = folder / "shop.tokens"
    first, second, office = (make_token(tokens, name, role) for name, role in
                             (("c1", "desk"), ("c2", "desk"), ("office", "operator")))
    door = doors(folder).start("--tokens", tokens, "--require-token")

    def ask(method, path, token, body=None, key="k1"):
        return door.request(method, path, body, bearer(token, **{"Idempotency-Key": key}))[::2]

    # A key is the desk's: the same one of another desk is another job.
    for number, token, name in ((1, first, "c1"), (2, second, "c2"), (3, office, "office")):
        status, job = ask("POST", "/v1/jobs", token, {"lines": SALE})
        assert (status, job["id"], job["desk"]) == (201, number, name)
    assert ask("GET", "/v1/jobs?key=k1", first)[1]["id"] == 1
    assert ask("GET", "/v1/jobs/1", first)[0] == 200
    for path in ("/v1/jobs/2", "/v1/jobs/99", "/v1/jobs?key=k1&desk=c2"):
        assert ask("GET", path, first)[0] == 404
    assert ask("DELETE", "/v1/jobs/2", first)[0] == 404
    assert [job["id"] for job in ask("GET", "/v1/jobs", first)[1]["jobs"]] == [1]
    assert [job["id"] for job in ask("GET", "/v1/jobs", office)[1]["jobs"]] == [1, 2, 3]
    for path in ("/v1/jobs", "/v1/receipts"):
        body = {"desk": "c2"}
        body.update({"lines": SALE} if path == "/v1/jobs" else
                    {"kind": "receipt", "items": [{"department": 1, "price": "1.20"}],
                     "payments": [{"tender": "cash"}]})
        status, problem = ask("POST", path, first, body, key="k2")
        assert (status, problem["code"]) == (403, "foreign_desk")
    # What a name of a desk allows without tokens, it does not with them.
    report = {"lines": ["REPORT TIPO=1"], "desk": "operator"}
    assert ask("POST", "/v1/jobs", first, report, key="k3")[1]["code"] == "foreign_desk"
    report.pop("desk")
    assert ask("POST", "/v1/jobs", first, report, key="k3")[1]["code"] == "line_not_allowed"
    assert ask("POST", "/v1/jobs", office, report, key="k3")[0] == 201
    for path in ("/v1/device/close-day", "/v1/device/reset", "/v1/jobs/1/resolve"):
        assert ask("POST", path, first, {})[1]["code"] == "not_allowed"
    assert ask("POST", "/v1/device/close-day", office, {}, key="z1")[0] == 201
    assert ask("POST", "/v1/jobs/1/resolve", office,
               {"outcome": "done", "reason": "r"})[1]["code"] == "wrong_state"


@pytest.mark.parametrize("value", [
    None, "Bearer", "Bearer ", "Bearer c1", "Bearer c1.", "Bearer .", "Basic YTpi", "Bearer c2.{}",
    "Bearer c1.{}x", "Bearer  c1 .{}", "Bearer c1.{}{}{}{}{}{}", "{}", "Bearer \xff.{}"])
def test_without_a_token_nobody_is_heard(doors, folder, value):
    tokens = folder / "shop.tokens"
    token = make_token(tokens, "c1", "desk")
    door = doors(folder).start("--tokens", tokens, "--require-token")
    secret = token.split(".")[1]
    sent = {} if value is None else {"Authorization": value.replace("{}", secret)}
    status, headers, problem = door.request("GET", "/v1/device", headers=sent)
    assert (status, problem["code"], headers["WWW-Authenticate"]) == (401, "no_token", "Bearer")
    for good in (f"Bearer {token}", f"bearer   {token}"):
        assert door.request("GET", "/v1/device", headers={"Authorization": good})[0] == 200


def test_on_this_computer_a_token_may_be_left_out_and_a_false_one_not(doors, folder):
    tokens = folder / "shop.tokens"
    make_token(tokens, "c1", "desk")
    door = doors(folder).start("--tokens", tokens)
    assert door.post(SALE, "k1")[0] == 201
    assert door.request("GET", "/v1/device", headers=bearer("c1.false"))[0] == 401


def test_tokens_are_read_again_and_bad_ones_leave_the_old(doors, folder):
    tokens = folder / "shop.tokens"
    first = make_token(tokens, "c1", "desk")
    door = doors(folder).start("--tokens", tokens, "--require-token")
    second = make_token(tokens, "c2", "desk")
    assert door.request("GET", "/v1/device", headers=bearer(second))[0] == 401
    door.process.send_signal(1)
    until(lambda: door.request("GET", "/v1/device", headers=bearer(second))[0] == 200)
    good = tokens.read_text()
    for text, mode, told in ((good + "c2 desk 00 00\n", 0o600, "line 3: salt and digest of c2"),
                             (good + good, 0o600, "line 3: c1 has a token already"),
                             (good + "c.3 desk\n", 0o600, "line 3: c.3 is no name"),
                             (good, 0o640, "may be read or written by others")):
        tokens.write_text(text)
        tokens.chmod(mode)
        door.process.send_signal(1)
        line = door.process.stderr.readline()
        assert told in line and str(tokens) in line and "counts on" in line
        assert door.request("GET", "/v1/device", headers=bearer(first))[0] == 200


@pytest.mark.parametrize("output", ["full", "closed", "nobody"])
def test_a_token_that_nobody_could_read_is_not_kept(tmp_path, output):
    tokens = tmp_path / "shop.tokens"
    make_token(tokens, "c1", "desk")
    before = tokens.read_text()
    reads, writes = os.pipe()
    os.close(reads)
    to = {"full": "> /dev/full", "closed": ">&-", "nobody": ""}[output]
    add = subprocess.run(
        ["sh", "-c", f'exec "$@" {to}', "sh", os.environ["LORIMAT"], "token", "add", "c2", "--role",
         "desk", "--tokens", tokens], stdout=writes, stderr=subprocess.PIPE, text=True, timeout=60,
        env=dict(os.environ, LC_ALL="C"))
    os.close(writes)
    assert add.returncode != 0 and "has a token" not in add.stderr
    assert tokens.read_text() == before
    assert make_token(tokens, "c2", "desk").startswith("c2.")


def follow(door, token):
    """A connection that is told of events, behind the head of the answer."""
    client = socket.create_connection(("127.0.0.1", door.port), 60)
    client.sendall(f"GET /v1/events HTTP/1.1\r\nHost: 127.0.0.1:{door.port}\r\n"
                   f"Authorization: Bearer {token}\r\n\r\n".encode())
    told = client.makefile("rb")
    assert told.readline() == b"HTTP/1.1 200 OK\r\n"
    while told.readline() != b"\r\n":
        pass
    client.close()
    return told


def test_events_end_with_the_right_to_them(doors, folder):
    tokens = folder / "shop.tokens"
    stays, goes = (make_token(tokens, name, "desk") for name in ("c1", "c2"))
    office = make_token(tokens, "office", "operator")
    door = doors(folder).start("--tokens", tokens, "--require-token")
    with follow(door, stays) as kept, follow(door, goes) as gone, follow(door, office) as changed:
        lines = [line for line in tokens.read_text().splitlines(True)
                 if not line.startswith("c2 ")]
        tokens.write_text("".join(lines).replace("office operator", "office desk"))
        door.process.send_signal(1)
        for one in (gone, changed):
            assert one.read(1) == b""
        sale = door.request("POST", "/v1/jobs", {"lines": SALE},
                            bearer(stays, **{"Idempotency-Key": "k1"}))
        assert sale[0] == 201
        assert kept.readline().startswith(b"id: ")


@pytest.mark.parametrize("more, told", [
    (["--require-token"], "no tokens without --tokens"),
    (["--tokens", "missing"], "missing: cannot be opened: No such file"),
    (["--tokens", "/dev/null"], "is no file of tokens"),
    (["--tokens", "open.tokens"], "open.tokens: may be read or written by others"),
    (["--tls-cert", "door.pem"], "one without the other"),
    (["--tls-cert", "door.key", "--tls-key", "door.key"], "door.key: is no certificate"),
    (["--tls-cert", "door.pem", "--tls-key", "door.pem"], "may be read or written by everybody"),
    (["--tls-cert", "door.pem", "--tls-key", "other.key"], "other.key: the key is not that of"),
    (["--listen", "0.0.0.0:0"], "beyond this computer"),
    (["--listen", "[::]:0", "--tls-cert", "door.pem", "--tls-key", "door.key"],
     "beyond this computer"),
    (["--listen", "[::1:0"], "is no address with a port"),
    (["--listen", "127.0.0.1:70000"], "is no address with a port"),
    (["--host", "a b"], "is no name of a host"),
    (["--allow-origin", "null"], "is no origin"),
    (["--allow-origin", "https://till.example/"], "is no origin"),
    (["--allow-origin", "*"], "is no origin")])
def test_what_cannot_be_is_refused_by_name(tmp_path, more, told):
    certify(tmp_path)
    if "other.key" in more:
        certify(tmp_path, "other")
    (tmp_path / "open.tokens").touch(0o644)
    (tmp_path / "door.pem").chmod(0o644)
    run = subprocess.run([os.environ["LORIMATD"], "--register", "shop.register", *more],
                         capture_output=True, text=True, cwd=tmp_path, timeout=60,
                         env=dict(os.environ, LC_ALL="C"))
    assert run.returncode == 2 and told in run.stderr and run.stdout == ""
    assert not (tmp_path / "shop.register").exists()


def test_tls_and_tokens_open_the_door_to_others(secure):
    secure.start("--host", "till.example", listen="0.0.0.0:0")
    body = {"lines": SALE}
    assert secure.ask("POST", "/v1/jobs", None, body)[1]["code"] == "no_token"
    assert secure.ask("POST", "/v1/jobs", secure.office, body)[0] == 201
    assert secure.ask("GET", "/v1/jobs/1", secure.office)[1]["state"] == "confirmed"
    assert secure.shown()[1] == "TLSv1.3"
    assert secure.shown(maximum_version=ssl.TLSVersion.TLSv1_2)[1] == "TLSv1.2"
    # It is the door that refuses.
    with pytest.warns(DeprecationWarning), pytest.raises(ssl.SSLError, match="ALERT_PROTOCOL"):
        secure.shown(minimum_version=ssl.TLSVersion.TLSv1_1,
                     maximum_version=ssl.TLSVersion.TLSv1_1)
    # Plain HTTP, half a handshake and none keep nobody else away.
    for sent in (b"GET /v1/device HTTP/1.1\r\n\r\n", b"\x16\x03\x01\x02", b""):
        with socket.create_connection(("127.0.0.1", secure.port), 60) as client:
            client.sendall(sent)
            if sent.startswith(b"GET"):
                assert b"HTTP" not in client.recv(1000)
            assert secure.ask("GET", "/v1/device", secure.office)[0] == 200
    # It runs out within 30 days.
    secure.process.terminate()
    assert "the certificate runs out on" in secure.process.communicate(timeout=60)[1]


def test_a_new_certificate_is_read_and_a_bad_one_leaves_the_old(secure):
    secure.start()
    first = secure.shown()[0]
    secure.process.stderr.readline()
    for name, text in ((secure.key, "no key"), (secure.certificate, "no certificate")):
        kept = name.read_bytes()
        name.write_text(text)
        secure.process.send_signal(1)
        assert str(name) in secure.process.stderr.readline()
        assert secure.shown()[0] == first
        name.write_bytes(kept)

    def end():
        text = secure.ask("GET", "/metrics", secure.office, read=bytes.decode)[1]
        return int(re.search(r"^lorimatd_certificate_end_seconds (\d+)$", text, re.MULTILINE)[1])

    before = end()
    certify(secure.folder, days="60")
    secure.process.send_signal(1)
    until(lambda: secure.shown()[0] != first)
    until(lambda: end() - before > 10 * 86400)


def test_pages_of_an_allowed_origin_alone_may_ask(doors, folder):
    door = doors(folder).start("--allow-origin", "https://till.example", "--host", "till.shop")
    asks = {"Access-Control-Request-Method": "POST", "Content-Type": None,
            "Access-Control-Request-Private-Network": "true"}

    def preflight(origin):
        return door.request("OPTIONS", "/v1/jobs", headers={"Origin": origin, **asks})

    status, headers, body = preflight("https://till.example")
    assert (status, body) == (204, None)
    assert headers["Access-Control-Allow-Origin"] == "https://till.example"
    assert headers["Access-Control-Allow-Private-Network"] == "true"
    assert "Idempotency-Key" in headers["Access-Control-Allow-Headers"]
    status, headers, _ = door.request("POST", "/v1/jobs", {"lines": []},
                                      {"Origin": "https://till.example"})
    assert status == 400 and headers["Access-Control-Allow-Origin"] == "https://till.example"
    assert headers["Vary"] == "Origin" and "Retry-After" in headers["Access-Control-Expose-Headers"]
    for origin in ("http://till.example", "https://till.example:444", "https://till.example.org",
                   "null", "https://TILL.example", "https://till.example/"):
        status, headers, body = preflight(origin)
        assert (status, body["code"]) == (403, "foreign_origin")
        assert not any(name.startswith("Access-Control") for name in headers)
    named = {"Host": f"till.shop:{door.port}"}
    assert door.request("GET", "/v1/device", headers=named)[0] == 200
    assert door.request("GET", "/v1/device", headers={"Host": "till.shop"})[0] == 403


def test_the_page_names_the_headers_that_a_preflight_allows(doors, folder):
    origin = "https://till.example"
    door = doors(folder).start("--allow-origin", origin)
    told = (pathlib.Path(__file__).parents[2] / "docs/door.md").read_text()
    told = " ".join(told[told.index("the preflight is answered 204"):].split("\n\n")[0].split())
    headers = door.request("OPTIONS", "/v1/jobs", headers={
        "Origin": origin, "Access-Control-Request-Method": "POST"})[1]
    allowed = re.search("with (.*), for ten minutes", told)[1]
    assert re.findall("`(.*?)`", allowed) == headers["Access-Control-Allow-Headers"].split(", ")
    readable = re.search("ten minutes, and (.*) may be read", told)[1]
    exposed = headers["Access-Control-Expose-Headers"].split(", ")
    assert set(re.findall("`(.*?)`", readable)) <= set(exposed)


def test_without_tokens_anybody_resolves(doors, folder):
    door = doors(folder).start()
    assert door.post(SALE, "k", desk="c1")[0] == 201
    assert door.request("POST", "/v1/jobs/1/resolve", {"outcome": "done", "reason": "r"})[2][
        "code"] == "wrong_state"


def test_a_page_is_no_program_of_this_computer(doors, folder):
    tokens = folder / "shop.tokens"
    token = make_token(tokens, "c1", "desk")
    door = doors(folder).start("--tokens", tokens, "--allow-origin", "https://till.example")
    page = {"Origin": "https://till.example"}
    status, headers, body = door.request("GET", "/v1/device", headers=page)
    assert (status, body["code"]) == (401, "no_token")
    assert headers["Access-Control-Allow-Origin"] == "https://till.example"
    assert door.request("GET", "/v1/device", headers=bearer(token, **page))[0] == 200


def test_thousands_of_connections_leave_the_door_open(folder):
    most = resource.getrlimit(resource.RLIMIT_NOFILE)[1] - many_connections.MORE_DESCRIPTORS
    print(many_connections.try_connections(folder, min(2000, most), 10))


# The sanitizers open a pipe to look at memory, and take what they cannot look at for no object.
@pytest.mark.skipif("LORIMAT_SANITIZE" in os.environ, reason="the sanitizers need descriptors themselves")
def test_a_door_without_descriptors_goes_on_when_there_are_some(doors, folder):
    door = doors(folder).start()
    used = len(list(pathlib.Path(f"/proc/{door.process.pid}/fd").iterdir()))
    resource.prlimit(door.process.pid, resource.RLIMIT_NOFILE, (used + 5, used + 5))
    held = [socket.create_connection(("127.0.0.1", door.port), 60) for _ in range(20)]
    for client in held:
        client.close()
    until(lambda: door.request("GET", "/v1/device")[0] == 200)
