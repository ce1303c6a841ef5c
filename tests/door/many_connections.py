#!/usr/bin/python3
"""Thousands of connections at once at a door with its limits, and a till that sells meanwhile.

usage: many_connections.py [--connections N] [--sales N]

Strangers say nothing, or half a head, and whoever the door closes comes again at once. The till opens a
connection for each sale, and sends a sale again, with its key, that was not answered. Each sale has to be in
the books once. LORIMATD is the door's program; 10,000 connections and 200 sales where nothing is said.
"""
import argparse
import contextlib
import multiprocessing
import pathlib
import resource
import select
import socket
import statistics
import sys
import tempfile
import time

from conftest import SALE, Door
from waiting import until

# Beside the connections: what the programs need themselves.
MORE_DESCRIPTORS = 100
# Of those that were closed, so many come again together.
AT_ONCE = 100
HALF_A_HEAD = b"GET /v1/device HTTP/1.1\r\nHost: 127.0.0.1"


class Strangers:
    """A process that holds so many connections; those that the door has closed are opened again."""

    def __init__(self, port, connections):
        self.port, self.connections = port, connections
        self.held, self.opened = (multiprocessing.Value("q", 0) for _ in range(2))
        self.is_over = multiprocessing.Event()
        self.process = multiprocessing.Process(target=self.run, daemon=True)

    def __enter__(self):
        self.process.start()
        # All of them are there, on this side at least.
        until(lambda: self.held.value == self.connections or not self.process.is_alive())
        assert self.process.is_alive()
        return self

    def __exit__(self, *_):
        self.is_over.set()
        self.process.join()

    def open_one(self, poll, held):
        client = socket.socket(socket.AF_INET, socket.SOCK_STREAM | socket.SOCK_NONBLOCK)
        # One address has too few ports for all that come again.
        client.setsockopt(socket.IPPROTO_IP, 24, 1)  # IP_BIND_ADDRESS_NO_PORT
        client.bind((f"127.0.0.{2 + self.opened.value % 200}", 0))
        client.connect_ex(("127.0.0.1", self.port))
        self.opened.value += 1
        if self.opened.value % 2:
            with contextlib.suppress(OSError):
                client.send(HALF_A_HEAD)
        held[client.fileno()] = client
        poll.register(client, select.EPOLLRDHUP)

    def run(self):
        poll, held = select.epoll(), {}
        while len(held) < self.connections:
            self.open_one(poll, held)
        self.held.value = len(held)
        while not self.is_over.is_set():
            for descriptor, _ in poll.poll(0.01, AT_ONCE):
                held.pop(descriptor).close()
                self.open_one(poll, held)


def sell(door, key):
    """Seconds until the sale is confirmed, and how often it was sent."""
    begin, sent = time.monotonic(), 0
    while True:
        sent += 1
        assert time.monotonic() - begin < 240
        with contextlib.suppress(OSError):
            status, _ = door.post(SALE, key)
            if status in (200, 201):
                return time.monotonic() - begin, sent


def try_connections(folder, connections, sales):
    """What came of it, as a line."""
    limit, most = resource.getrlimit(resource.RLIMIT_NOFILE)
    if most < connections + MORE_DESCRIPTORS:
        sys.exit(f"many_connections.py: no more than {most} descriptors may be open (ulimit -Hn)")
    resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
    door = Door(folder).start()
    try:
        with Strangers(door.port, connections) as strangers:
            sold = [sell(door, f"k{number}") for number in range(sales)]
            descriptors = len(list(pathlib.Path(f"/proc/{door.process.pid}/fd").iterdir()))
            opened = strangers.opened.value
        # 200 connections, those that are being closed, and the program's own.
        assert descriptors < 300
        assert door.stop() == 0
        assert len(door.documents()) == sales
    finally:
        resource.setrlimit(resource.RLIMIT_NOFILE, (limit, most))
        if door.process.poll() is None:
            door.process.kill()
            door.process.communicate()
    times = [1000 * one[0] for one in sold]
    return (f"{connections} connections at once, {opened} in all; {sales} sales, sent {sum(one[1] for one in sold)} "
            f"times: median {statistics.median(times):.0f} ms, longest {max(times):.0f} ms; the door has {descriptors} "
            "descriptors")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--connections", type=int, default=10000)
    parser.add_argument("--sales", type=int, default=200)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="lorimat-connections-") as folder:
        print(try_connections(folder, arguments.connections, arguments.sales))


if __name__ == "__main__":
    main()
