"""A till of a shop's day in a browser: a cable that also brings the page and keeps its book, so that page
and door have one origin, as behind a proxy of a shop. What goes to the door is cut, the rest is not."""
import json
import os
import pathlib
import shutil
import socket
import subprocess
import threading

from cutting_proxy import CuttingProxy, whole_message, with_host
from shop_plan import read_book

HERE = pathlib.Path(__file__).parent
CLIENT = HERE.parents[1] / "bindings/javascript"
MODULES = {path.name: path.read_bytes() for path in CLIENT.glob("*.js")}
CHROMIUM = shutil.which("chromium")
ENDED = 0


def has_browser():
    return CHROMIUM is not None and "lorimat-door.js" in MODULES


class BrowserCable(CuttingProxy):
    """As CuttingProxy, with the page and its book on the same port. `book` is a file, and `on_call` is
    told when the page needs the operator ("/needs"), has ended ("/end") or failed ("/wrong")."""

    def __init__(self, target, seed, cut_in_ten, at_stage, book, on_call):
        self.book, self.on_call, self.writing = book, on_call, threading.Lock()
        super().__init__(target, seed, cut_in_ten, at_stage)

    def serve(self, client, way, at):
        try:
            begin = client.recv(64, socket.MSG_PEEK)
            if not begin or b" /v1/" in begin:
                super().serve(client, way, at)
                return
            with client:
                head, _, body = whole_message(client).partition(b"\r\n\r\n")
                kind, text = self.answer(head.split(b" ")[1].decode().split("?")[0], head[:4] == b"POST", body)
                client.sendall(b"HTTP/1.1 %s\r\nContent-Type: %s\r\nContent-Length: %d\r\nConnection: close\r\n\r\n%s"
                               % (b"200 OK" if kind else b"404 Not Found", kind or b"text/plain", len(text), text))
        except OSError:
            client.close()

    def answer(self, path, is_post, body):
        if path == "/":
            return b"text/html", (HERE / "shop_till.html").read_bytes()
        if path[1:] in MODULES:
            return b"text/javascript", MODULES[path[1:]]
        if path == "/book" and is_post:
            with self.writing, open(self.book, "ab", buffering=0) as file:
                file.write(body)
                os.fsync(file.fileno())
            return b"text/plain", b""
        if path == "/book":
            last = {row.sale: {"key": row.key, "state": row.state} for row in read_book(self.book).values()}
            # A receipt that was refused for its form is no job, one that was rejected is.
            return b"application/json", json.dumps(last).encode()
        if is_post:
            self.on_call(path, body.decode())
            return b"text/plain", b""
        return None, b""

    def changed(self, request):
        """To the door it has one origin."""
        lines = with_host(request, self.target()).split(b"\r\n")
        origin = b"Origin: http://127.0.0.1:%d" % self.target()
        return b"\r\n".join(origin if line.lower().startswith(b"origin:") else line for line in lines)


class Browser:
    """A process of Chromium with the page, which has ended when the page says so; as subprocess.Popen."""

    def __init__(self, url, folder):
        self.said, self.returncode, self.errors = threading.Event(), None, ""
        self.process = subprocess.Popen(
            [CHROMIUM, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", f"--user-data-dir={folder}", url],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)

    def poll(self):
        return self.process.poll()

    def kill(self):
        """All of its processes."""
        if self.process.poll() is None:
            os.killpg(self.process.pid, 9)

    def wait(self):
        return self.process.wait()
