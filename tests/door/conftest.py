"""A door in a folder of its own, and a client of it."""
import http.client
import json
import os
import pathlib
import re
import resource
import signal
import sqlite3
import subprocess

import pytest

SALE = ["VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"]


def make_token(file, name, role):
    """A new token of the file, as its holder gets it."""
    made = subprocess.run([os.environ["LORIMAT"], "token", "add", name, "--role", role, "--tokens",
                           file], capture_output=True, text=True, check=True)
    return made.stdout.strip()


class NotStarted(AssertionError):
    """It has ended ahead of its line; door.process tells how."""


class Door:
    """A process of lorimatd on a register; it may be killed and begun again."""

    def __init__(self, folder, faulty=False, plugin=False):
        self.folder = pathlib.Path(folder)
        self.register = self.folder / "shop.register"
        self.program = os.environ["LORIMATD_FAULTY" if faulty else "LORIMATD"]
        self.process = None
        self.port = None
        self.device = ["--register", self.register]
        if plugin:
            self.device = ["--device", os.environ["LORIMATD_PLUGIN"], "--device-option",
                           f"file={self.register}", "--log", f"{self.register}.door"]

    def start(self, *options, fault=None, once=False, most_bytes=None, trace=None,
              more=None):
        environment = dict(os.environ, LC_ALL="C", **(more or {}))
        if fault:
            environment["LORIMATD_FAULT"] = fault
        if once:
            environment["LORIMATD_FAULT_ONCE"] = str(self.folder / "struck")

        if trace:
            environment["LORIMATD_FAULT_TRACE"] = trace

        def limit():
            # A file that is to grow beyond is an error for the program, like a full disk.
            resource.setrlimit(resource.RLIMIT_FSIZE, (most_bytes, most_bytes))

        self.process = subprocess.Popen(
            [self.program, *self.device, "--listen", "127.0.0.1:0", *options],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment,
            preexec_fn=limit if most_bytes else None)
        line = self.process.stdout.readline()
        found = re.fullmatch(r"lorimatd: listening on http://127\.0\.0\.1:(\d+)\n", line)
        if not found:
            self.errors = self.process.communicate()[1]
            raise NotStarted(line + self.errors)
        self.port = int(found.group(1))
        return self

    def wait(self):
        """Until it has ended; its exit code."""
        output, self.errors = self.process.communicate(timeout=60)
        assert output == ""
        return self.process.returncode

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        return self.wait()

    def request(self, *arguments, **more):
        """Status, headers and body; of a connection that has gone, 0. Goes on where it has asked too
        often."""
        while True:
            status, headers, body = self.request_once(*arguments, **more)
            if status != 429 or body["code"] != "too_many_requests":
                return status, headers, body

    def request_once(self, method, path, body=None, headers=None, raw=None, timeout=60):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)
        send = {"Content-Type": "application/json"} if method != "GET" else {}
        send.update(headers or {})
        data = raw if raw is not None else (json.dumps(body) if body is not None else None)
        try:
            connection.request(method, path, data, {k: v for k, v in send.items() if v is not None})
            reply = connection.getresponse()
            text = reply.read().decode()
        except (ConnectionError, http.client.HTTPException):
            return 0, {}, None
        finally:
            connection.close()
        return reply.status, dict(reply.getheaders()), json.loads(text) if text else None

    def post(self, lines, key, path="/v1/jobs", **more):
        headers = {"Idempotency-Key": key}
        status, _, body = self.request("POST", path, {"lines": lines, **more}, headers)
        return status, body

    def get(self, path):
        status, _, body = self.request("GET", path)
        return status, body

    def documents(self):
        """Closure and number of what the register has registered, with the marks on the paper."""
        with sqlite3.connect(f"file:{self.register}?mode=ro", uri=True) as database:
            return database.execute("SELECT closure, number FROM document ORDER BY id").fetchall()


@pytest.fixture
def folder(tmp_path):
    return tmp_path


@pytest.fixture
def doors():
    """Makes doors, and ends them."""
    made = []

    def make(folder, **options):
        made.append(Door(folder, **options))
        return made[-1]

    yield make
    for door in made:
        if door.process and door.process.poll() is None:
            door.process.kill()
            door.process.communicate()


@pytest.fixture
def door(doors, folder):
    return doors(folder).start()
