"""A way to a door on which connections are cut by chance: refused, cut in the request, behind it, or in
the answer."""
import random
import socket
import threading

WAYS = ["whole", "refused", "request cut", "answer lost", "answer cut"]


class CuttingProxy:
    """Listens at `port`; each connection is one of WAYS, which are counted in `seen`. `at_stage` is
    called when a request has come, when its answer has, and when that has been passed on."""

    def __init__(self, target, seed, cut_in_ten=5, at_stage=lambda: None):
        self.target, self.cut_in_ten, self.at_stage = target, cut_in_ten, at_stage
        self.chance, self.seen, self.lock = random.Random(seed), dict.fromkeys(WAYS, 0), threading.Lock()
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.thread = threading.Thread(target=self.take, daemon=True)
        self.thread.start()

    def take(self):
        while True:
            try:
                client, _ = self.listener.accept()
            except OSError:
                return
            with self.lock:
                cut = self.chance.randrange(10) < self.cut_in_ten
                way = self.chance.choice(WAYS[1:]) if cut else "whole"
                at = self.chance.randrange(1, 400)
                self.seen[way] += 1
            threading.Thread(target=self.serve, args=(client, way, at), daemon=True).start()

    def serve(self, client, way, at):
        with client:
            if way == "refused":
                return
            try:
                request = whole_message(client)
                self.at_stage()
                with socket.create_connection(("127.0.0.1", self.target()), timeout=60) as door:
                    door.sendall(self.changed(request)[:at if way == "request cut" else None])
                    if way == "request cut":
                        return
                    answer = whole_message(door)
                    self.at_stage()
                    if way != "answer lost":
                        client.sendall(answer[:at] if way == "answer cut" else answer)
                self.at_stage()
            except OSError:
                pass

    def changed(self, request):
        return with_host(request, self.target())

    def close(self):
        self.listener.close()


def whole_message(connection):
    """Head and body; less where the connection ends."""
    text = b""
    while b"\r\n\r\n" not in text:
        more = connection.recv(65536)
        if not more:
            return text
        text += more
    head, _, body = text.partition(b"\r\n\r\n")
    length = 0
    for line in head.split(b"\r\n")[1:]:
        name, _, value = line.partition(b":")
        if name.lower() == b"content-length":
            length = int(value)
    while len(body) < length:
        more = connection.recv(65536)
        if not more:
            break
        body += more
    return head + b"\r\n\r\n" + body


def with_host(request, port):
    """With the door's own name, as a proxy in front of it would."""
    head, separator, body = request.partition(b"\r\n\r\n")
    lines = [b"Host: 127.0.0.1:%d" % port if line.lower().startswith(b"host:") else line
             for line in head.split(b"\r\n")]
    return b"\r\n".join(lines) + separator + body
