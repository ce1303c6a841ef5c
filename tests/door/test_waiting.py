"""Clients that wait for a job and go: what they held is others'."""
import http.client
import json
import os
import re
import socket
import ssl

import pytest

from conftest import SALE
from test_access import Secure, bearer
from waiting import until

CLIENTS = 100


class Shop:
    """A door whose device hangs, plain or by TLS, and connections to it."""

    def __init__(self, doors, folder, is_secure):
        if is_secure:
            self.secure = Secure(folder, os.environ["LORIMATD_FAULTY"], LORIMATD_FAULT="hang@line:1").start()
            self.port, self.headers = self.secure.port, bearer(self.secure.office)
            self.context = ssl.create_default_context(cafile=self.secure.certificate)
        else:
            self.port = doors(folder, faulty=True).start(fault="hang@line:1").port
            self.headers, self.context = {}, None

    def connect(self):
        plain = socket.create_connection(("127.0.0.1", self.port), 60)
        return self.context.wrap_socket(plain, server_hostname="127.0.0.1") if self.context else plain

    def sell(self, connection, key, wait=300):
        body = json.dumps({"lines": SALE})
        headers = {"Host": f"127.0.0.1:{self.port}", "Content-Type": "application/json", "Idempotency-Key": key,
                   "Content-Length": len(body), **self.headers}
        lines = "".join(f"{name}: {value}\r\n" for name, value in headers.items())
        connection.sendall(f"POST /v1/jobs?wait={wait} HTTP/1.1\r\n{lines}\r\n{body}".encode())

    def waiting(self):
        """How many wait, as the door knows; nothing where it has no place to say so."""
        kind = http.client.HTTPSConnection if self.context else http.client.HTTPConnection
        more = {"context": self.context} if self.context else {}
        connection = kind("127.0.0.1", self.port, timeout=60, **more)
        try:
            connection.request("GET", "/metrics", headers=self.headers)
            text = connection.getresponse().read().decode()
            return re.search(r"^lorimatd_waiting_requests (\d+)$", text, re.M)[1]
        except (ConnectionError, http.client.HTTPException, ssl.SSLError):
            return None
        finally:
            connection.close()


@pytest.fixture(params=["plain", "tls"])
def shop(doors, folder, request):
    made = Shop(doors, folder, request.param == "tls")
    yield made
    if request.param == "tls":
        made.secure.process.kill()
        made.secure.process.communicate()


def test_who_has_gone_waits_in_nobodys_place(shop):
    for begin in (0, CLIENTS):
        waiting = [shop.connect() for _ in range(CLIENTS)]
        for number, connection in enumerate(waiting, begin):
            shop.sell(connection, f"k{number}")
        # Each of them has a place.
        until(lambda: shop.waiting() == str(CLIENTS))
        for connection in waiting:
            connection.close()
        until(lambda: shop.waiting() == "0")


def test_who_waits_may_ask_the_next_thing_meanwhile(shop):
    connection = shop.connect()
    shop.sell(connection, "k0", wait=1)
    shop.sell(connection, "k1", wait=1)
    shop.sell(connection, "k2", wait=0)
    answers = connection.makefile("rb")
    for number in range(3):
        assert answers.readline() == b"HTTP/1.1 202 Accepted\r\n"
        head = dict(line.decode().split(": ", 1) for line in iter(answers.readline, b"\r\n"))
        assert json.loads(answers.read(int(head["Content-Length"])))["key"] == f"k{number}"
    answers.close()
    connection.close()
