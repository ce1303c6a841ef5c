"""The door holds to door/openapi.json: whatever is asked, the answer is one that the file allows, and
what the file forbids is refused. LORIMAT_CONTRACT is how many requests of each operation are tried."""
import http.client
import json
import os
import re
import shlex

import pytest

hypothesis = pytest.importorskip("hypothesis", reason="Debian: python3-hypothesis")
jsonschema = pytest.importorskip("jsonschema", reason="Debian: python3-jsonschema")

from hypothesis import HealthCheck, given, settings

from conftest import Door, make_token
from contract import API, OPERATIONS, Asked, operation_of, requests, resolved
from page import PORT, answer_of, examples
from test_page import PAGE

COUNT = int(os.environ.get("LORIMAT_CONTRACT", "60"))
SETTINGS = settings(max_examples=COUNT, deadline=None, derandomize=COUNT == 60, database=None,
                    suppress_health_check=list(HealthCheck), print_blob=False)


# What the register and the jobs of these requests never come to: it hangs never, nothing stays queued or
# needs an operator, and a copy is asked for with the keys of other jobs, or of no document.
NEVER_DONE = {"cancelJob", "resolveJob", "resetDevice", "copyDocument"}


# Where fields hang together, are days, or are texts of which a schema does not tell.
BEYOND_THE_FILE = {("GET", "/v1/jobs"), ("GET", "/v1/documents"), ("POST", "/v1/receipts"),
                   ("POST", "/v1/jobs/{id}/resolve")}


class Line:
    """A connection that is kept, and made anew where the door has closed it."""

    def __init__(self, port):
        self.port, self.connection = port, None

    def ask(self, asked):
        for is_last in (False, False, True):
            if self.connection is None:
                self.connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
            try:
                self.connection.request(asked.operation.method, asked.target, asked.raw or None,
                                        asked.headers)
                reply = self.connection.getresponse()
                text = reply.read()
                body = json.loads(text) if "json" in reply.getheader("Content-Type") else text.decode("latin-1")
            except (http.client.HTTPException, ConnectionError):
                # One that was kept may have gone; one that is new has no reason to.
                if is_last:
                    raise
                self.connection.close()
                self.connection = None
                continue
            if reply.getheader("Connection") == "close":
                self.connection.close()
                self.connection = None
            if reply.status != 429 or body.get("code") != "too_many_requests":
                return reply, body
        raise AssertionError("too many requests")


@pytest.fixture(scope="module")
def line(tmp_path_factory):
    door = Door(tmp_path_factory.mktemp("contract")).start()
    yield Line(door.port)
    assert door.stop() == 0
    assert "Sanitizer" not in door.errors


@pytest.mark.parametrize("operation", OPERATIONS, ids=repr)
def test_each_answer_is_one_of_the_file(line, operation):
    seen = {True: 0, False: 0}
    done = []

    @SETTINGS
    @given(requests(operation))
    def holds(asked):
        reply, body = line.ask(asked)
        hypothesis.note(f"{reply.status} {body}")
        seen[asked.is_allowed] += 1
        assert reply.status != 500
        done.extend([reply.status] if reply.status < 300 else [])
        assert operation.allows(reply.status, reply.getheader("Content-Type"), body) is None
        # What the file does not allow has no effect, and is told.
        is_problem = reply.getheader("Content-Type") == "application/problem+json"
        if not asked.is_allowed:
            assert 400 <= reply.status < 500 and is_problem
        elif is_problem:
            assert body["code"] not in ("bad_json", "unknown_field", "missing_field", "bad_key",
                                        "number_not_text", "not_json")
            if (operation.method, operation.path) not in BEYOND_THE_FILE:
                assert body["code"] not in ("bad_field", "control_character")
            # A receipt that is not to be sent needs none.
            assert body["code"] != "no_key" or operation.path == "/v1/receipts"

    holds()
    assert seen[True]
    # A door that refuses everything holds to nothing.
    assert done or operation.row["operationId"] in NEVER_DONE
    # Where there is something to be wrong.
    assert seen[False] or not (operation.parameters or operation.body)


# What an operator alone may do.
OPERATORS_OWN = {"resolveJob", "closeDay", "resetDevice", "copyDocument"}
CALLERS = ("nobody", "wrong", "desk", "operator")


@pytest.fixture(scope="module")
def guarded(tmp_path_factory):
    """A door that wants tokens, a connection to it, and what each caller sends."""
    folder = tmp_path_factory.mktemp("guarded")
    tokens = folder / "shop.tokens"
    made = {role: make_token(tokens, name, role) for name, role in (("cassa-1", "desk"), ("office", "operator"))}
    door = Door(folder).start("--tokens", tokens, "--require-token", "--operator", "cassa-1")
    sent = {"nobody": {}, "wrong": {"Authorization": f"Bearer {made['desk']}0"},
            **{role: {"Authorization": f"Bearer {token}"} for role, token in made.items()}}
    line = Line(door.port)
    # Jobs of somebody else are there as well.
    for number, role in enumerate(("operator", "desk", "operator")):
        asked = Asked(operation_of("POST", "/v1/jobs"), "/v1/jobs?wait=30",
                      {"Content-Type": "application/json", "Idempotency-Key": f"of-{number}", **sent[role]},
                      b'{"lines": ["VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"]}', True)
        assert line.ask(asked)[0].status == 201
    yield line, sent
    assert door.stop() == 0
    assert "Sanitizer" not in door.errors


def has_no_fault(asked):
    """Whether the file allows it, and its path leads to the operation."""
    path = asked.target.split("?")[0]
    return (asked.is_allowed and operation_of(asked.operation.method, path) is asked.operation
            and not re.search("[0-9]{19}", path))


@pytest.mark.parametrize("operation", OPERATIONS, ids=repr)
@pytest.mark.parametrize("caller", CALLERS)
def test_each_caller_gets_what_the_file_allows_him(guarded, caller, operation):
    line, sent = guarded
    is_open = operation.row.get("security") == []
    is_others = caller == "desk" and operation.row["operationId"] in OPERATORS_OWN
    asks = requests(operation).filter(has_no_fault) if is_others else requests(operation)

    # More of those that name a job, some of which there are.
    @settings(SETTINGS, max_examples=max(COUNT // (3 if "{id}" in operation.path else 10), 1))
    @given(asks)
    def holds(asked):
        asked.headers.update(sent[caller])
        reply, body = line.ask(asked)
        hypothesis.note(f"{reply.status} {body}")
        code = body["code"] if reply.status >= 400 and "code" in body else None
        assert reply.status != 500
        assert operation.allows(reply.status, reply.getheader("Content-Type"), body) is None
        # Ahead of all else that is wrong with it.
        is_stranger = caller == "wrong" or caller == "nobody" and not is_open
        assert (reply.status == 401) == (code == "no_token") == is_stranger
        assert (reply.getheader("WWW-Authenticate") == "Bearer") == is_stranger
        # Of another desk there is nothing, whatever was asked.
        if caller == "desk" and reply.status < 300 and "json" in reply.getheader("Content-Type"):
            jobs = body.get("jobs", [body] if "state" in body else [])
            assert {job["desk"] for job in jobs} <= {"cassa-1"}
        assert (code == "not_allowed") == is_others and (not is_others or reply.status == 403)
        assert code != "foreign_desk" or caller == "desk"

    holds()


@pytest.mark.parametrize("path", API["paths"])
def test_other_methods_are_refused_by_name(line, path):
    mine = {one.method for one in OPERATIONS if one.path == path}
    for method in {"GET", "POST", "PUT", "DELETE", "PATCH"} - mine:
        (known, *_) = [one for one in OPERATIONS if one.path == path]
        asked = Asked(known, re.sub(r"\{\w+\}", "1", path), {"Content-Type": "application/json"}, b"", True)
        asked.operation = type(known)(path, method.lower(), known.row)
        reply, body = line.ask(asked)
        assert known.allows(reply.status, reply.getheader("Content-Type"), body) is None
        assert (reply.status, body["code"]) == (405, "wrong_method")
        assert set(reply.getheader("Allow").split(", ")) == mine


def test_the_door_serves_the_file(line):
    assert line.ask(Asked(operation_of("GET", "/openapi.json"), "/openapi.json", {}, b"", True))[1] == API


def test_the_file_is_whole():
    """Each reference leads somewhere, each schema is one, and nothing is left over."""
    text = json.dumps(API)
    used = set(re.findall(r'"\$ref": "#/components/(\w+/\w+)"', text))
    assert used == {f"{kind}/{name}" for kind, rows in API["components"].items() for name in rows
                    if kind != "securitySchemes"}
    for schema in API["components"]["schemas"].values():
        jsonschema.Draft202012Validator.check_schema(schema)
    for operation in OPERATIONS:
        for reply in operation.row["responses"].values():
            for content in resolved(reply)["content"].values():
                jsonschema.Draft202012Validator.check_schema(content.get("schema", {}))
    names = [operation.row["operationId"] for operation in OPERATIONS]
    assert len(set(names)) == len(names)


def request_of(command):
    """Method and path of a curl of the page; nothing of one that asks several times."""
    words = shlex.split(command.replace("\\\n", " "))
    addresses = [word for word in words if PORT in word]
    if "|" in words or len(addresses) != 1:
        return None
    method = "POST" if "--json" in words or "-d" in words else "GET"
    if "-X" in words:
        method = words[words.index("-X") + 1]
    return method, addresses[0].split(PORT, 1)[1].split("?")[0]


def test_the_answers_of_the_page_are_allowed():
    looked = 0
    for _, command, answer in examples(PAGE):
        operation = operation_of(*(request_of(command) or ("", "")))
        if operation is None:
            continue
        status, headers, body = answer_of(answer)
        is_problem = isinstance(body, dict) and "code" in body
        shown = headers.get("content-type", f"application/{'problem+' if is_problem else ''}json")
        fault = operation.allows(status, shown,
                                 json.loads(json.dumps(body).replace("TIME", "2026-11-22T18:03:07+01:00")))
        assert fault is None, command
        looked += 1
    assert looked > 40
