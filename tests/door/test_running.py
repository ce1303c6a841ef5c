"""The door as those see it who keep it running: events, metrics, and a service manager that this
test plays."""
import http.client
import json
import math
import os
import pathlib
import random
import re
import shutil
import signal
import socket
import subprocess
import threading

import pytest

from conftest import SALE
from waiting import until

ROOT = pathlib.Path(__file__).parents[2]
UNITS = ROOT / "door/systemd"


# --- Events

class Reader(threading.Thread):
    """Follows the events, again behind the last one whenever it is cut, until it is told to end."""

    def __init__(self, door):
        super().__init__(daemon=True)
        self.door, self.last, self.seen, self.cuts = door, 0, [], 0
        self.change, self.port, self.is_over = threading.Condition(), door.port, False

    def run(self):
        while not self.is_over:
            with self.change:
                port = self.port
            try:
                self.follow(port)
            except (OSError, http.client.HTTPException):
                pass
            self.cuts += 1

    def follow(self, port):
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
        try:
            connection.request("GET", "/v1/events?after=0", headers={"Last-Event-ID": str(self.last)})
            reply = connection.getresponse()
            event = {}
            while line := reply.readline():
                line = line.decode()
                if line == "\n" and event:
                    self.take(event)
                    event = {}
                elif not line.startswith(":") and line.endswith("\n"):
                    name, _, value = line.rstrip("\n").partition(": ")
                    event[name] = value
        finally:
            connection.close()

    def take(self, event):
        with self.change:
            self.last = int(event["id"])
            self.seen.append((self.last, event["event"], json.loads(event["data"])))
            self.change.notify_all()

    def wait_for(self, holds):
        with self.change:
            assert self.change.wait_for(lambda: holds(self), timeout=120)


def test_a_reader_sees_each_move_across_kills(doors, folder):
    door = doors(folder).start()
    reader = Reader(door)
    reader.start()
    chance = random.Random(1)
    jobs = 0
    for _ in range(4):
        for _ in range(chance.randrange(1, 6)):
            jobs += 1
            door.post(SALE if jobs % 3 else ["VEND REP=99, PRE=1.00"], f"k{jobs}",
                      path=f"/v1/jobs?wait={chance.choice((0, 30))}")
        door.process.kill()
        door.wait()
        door.start()
        with reader.change:
            reader.port = door.port
    for number in range(1, jobs + 1):
        door.post(SALE if number % 3 else ["VEND REP=99, PRE=1.00"], f"k{number}")
    final = ("confirmed", "rejected")
    until(lambda: all(job["state"] in final for job in door.get("/v1/jobs?limit=100")[1]["jobs"]))
    listed = door.get("/v1/jobs?limit=100")[1]["jobs"]
    moves = sum(len(job["history"]) for job in listed)
    documents = [job for job in listed if job["document"]]
    reader.wait_for(lambda it: sum(kind == "job" for _, kind, _ in it.seen) >= moves and
                    sum(kind == "document" for _, kind, _ in it.seen) >= len(documents))
    reader.is_over = True
    door.stop()
    reader.join()
    assert [number for number, _, _ in reader.seen] == list(range(1, len(reader.seen) + 1))
    assert reader.cuts >= 5
    for job in listed:
        told = [data for _, kind, data in reader.seen if kind == "job" and data["id"] == job["id"]]
        assert [(one["state"], one["why"], one["time"]) for one in told] == \
               [(step["state"], step["why"], step["time"]) for step in job["history"]]
        assert {name: told[-1][name] for name in ("key", "desk", "reference", "state", "document")} \
            == {name: job[name] for name in ("key", "desk", "reference", "state", "document")}
    assert [data["document"] for _, kind, data in reader.seen if kind == "document"] == \
           [job["document"] for job in documents]


def events(door, after=0):
    """What there is behind that number."""
    connection = http.client.HTTPConnection("127.0.0.1", door.port, timeout=60)
    connection.request("GET", f"/v1/events?after={after}&follow=false")
    text = connection.getresponse().read().decode()
    connection.close()
    return re.findall(r"id: (\d+)\nevent: (\w+)\ndata: (.*)\n\n", text)


def test_a_device_that_goes_and_comes_is_told(doors, folder):
    door = doors(folder, faulty=True).start(fault="open@start:1")
    until(lambda: events(door))
    (_, kind, data), = events(door)
    assert kind == "device" and json.loads(data)["trouble"] == "document_open"
    assert door.request("GET", "/readyz")[0] == 503
    assert door.post([], "r", path="/v1/device/reset")[0] in (201, 400)
    status, _, _ = door.request("POST", "/v1/device/reset", {"desk": "operator"},
                                {"Idempotency-Key": "r2"})
    assert status == 201
    until(lambda: [1 for _, kind, data in events(door)
                   if kind == "device" and json.loads(data)["ready"]])
    assert door.request("GET", "/readyz")[0] == 200


# --- Metrics

def parsed(text):
    """Samples by name and labels; the format is held to as its page has it."""
    name = r"[a-zA-Z_:][a-zA-Z0-9_:]*"
    label = r'[a-zA-Z_][a-zA-Z0-9_]*="(?:[^"\\\n]|\\[\\"n])*"'
    samples, types, helped = {}, {}, set()
    assert text.endswith("\n")
    for line in text.splitlines():
        if found := re.fullmatch(rf"# HELP ({name}) \S.*", line):
            assert found.group(1) not in helped
            helped.add(found.group(1))
            continue
        if found := re.fullmatch(rf"# TYPE ({name}) (counter|gauge|histogram)", line):
            assert found.group(1) in helped and found.group(1) not in types
            types[found.group(1)] = found.group(2)
            continue
        found = re.fullmatch(rf"({name})(?:\{{({label}(?:,{label})*)\}})? (\S+)", line)
        assert found, line
        family = re.sub(r"_(bucket|sum|count)$", "", found.group(1))
        family = family if types.get(family) == "histogram" else found.group(1)
        assert family in types, line
        # A family stands in one piece.
        assert family == list(types)[-1], line
        assert types[family] != "counter" or family.endswith("_total")
        key = found.group(1), found.group(2) or ""
        assert key not in samples
        samples[key] = float(found.group(3))
    return samples, types


def check_histograms(samples, types):
    for family in (name for name, kind in types.items() if kind == "histogram"):
        series = {}
        for (name, labels), value in samples.items():
            if name == f"{family}_bucket":
                rest, _, bound = labels.rpartition("le=")
                series.setdefault(rest.rstrip(","), []).append((float(bound.strip('"')), value))
        assert series
        for labels, buckets in series.items():
            assert buckets == sorted(buckets) and buckets[-1][0] == math.inf
            assert [count for _, count in buckets] == sorted(count for _, count in buckets)
            assert buckets[-1][1] == samples[f"{family}_count", labels]
            assert samples[f"{family}_sum", labels] >= 0


def metrics(door):
    connection = http.client.HTTPConnection("127.0.0.1", door.port, timeout=60)
    connection.request("GET", "/metrics")
    reply = connection.getresponse()
    text = reply.read().decode()
    connection.close()
    assert reply.status == 200
    assert reply.getheader("Content-Type") == "text/plain; version=0.0.4; charset=utf-8"
    samples, types = parsed(text)
    check_histograms(samples, types)
    return samples


def test_metrics_count_what_was_done(door):
    before = metrics(door)
    assert before["lorimatd_ready", ""] == 1
    for number in range(3):
        assert door.post(SALE, f"k{number}")[0] == 201
    assert door.post(["VEND REP=99, PRE=1.00"], "bad")[0] == 422
    after = metrics(door)
    assert after["lorimatd_jobs", 'state="confirmed"'] == 3
    assert after["lorimatd_jobs", 'state="rejected"'] == 1
    assert after["lorimatd_jobs", 'state="queued"'] == 0
    assert after["lorimatd_jobs_entered_total", 'state="running"'] == 4
    assert after["lorimatd_job_state_seconds_count", 'state="queued"'] == 4
    assert after["lorimatd_events_total", ""] == 4 * 3 + 3
    assert after["lorimatd_log_commit_seconds_count", ""] == 4 * 3
    assert after["lorimatd_device_call_seconds_count", ""] >= 3 * 2 + 1
    assert after["lorimatd_device_lines_failed_total", ""] == 1
    assert after["lorimatd_connections", ""] >= 1
    assert after["lorimatd_disk_free_bytes", ""] > 0 and after["lorimatd_log_bytes", ""] > 0
    names = {name for name, _ in after}
    page = (ROOT / "docs/door.md").read_text()
    told = set(re.findall(r"`(lorimatd_\w+)", page))
    # Of TLS, which this door does not speak.
    told.remove("lorimatd_certificate_end_seconds")
    assert {re.sub(r"_(bucket|sum|count)$", "", name) for name in names} == told


# --- A service manager

class Manager:
    """Takes what the program tells it."""

    def __init__(self, folder):
        self.file = str(pathlib.Path(folder) / "notify")
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind(self.file)
        self.socket.settimeout(60)

    def until(self, line):
        while True:
            lines = self.socket.recv(4096).decode().splitlines()
            if line in lines:
                return lines


@pytest.fixture
def manager(folder):
    made = Manager(folder)
    yield made
    made.socket.close()


def test_the_manager_is_told(doors, folder, manager):
    door = doors(folder).start(more={"NOTIFY_SOCKET": manager.file, "WATCHDOG_USEC": "400000"})
    assert f"STATUS=listening on http://127.0.0.1:{door.port}" in manager.until("READY=1")
    for _ in range(3):
        manager.until("WATCHDOG=1")
    door.process.send_signal(signal.SIGTERM)
    manager.until("STOPPING=1")
    assert door.wait() == 0


def test_a_call_that_takes_long_is_no_deadlock(doors, folder, manager):
    door = doors(folder, faulty=True).start(
        fault="hang@line:1", more={"NOTIFY_SOCKET": manager.file, "WATCHDOG_USEC": "100000"})
    assert door.post(SALE, "k", path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/jobs/1")[1]["state"] == "running")
    for _ in range(8):
        manager.until("WATCHDOG=1")


def passing(listening, options, count=1):
    """The program with what a manager passes to it."""
    def pass_on():
        os.dup2(listening.fileno(), 3)

    line = f'LISTEN_PID=$$ LISTEN_FDS={count} exec "$@"'
    return subprocess.Popen(["sh", "-c", line, "sh", os.environ["LORIMATD"], *options],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                            env=dict(os.environ, LC_ALL="C"), preexec_fn=pass_on, pass_fds=(3,))


def has_ipv6():
    try:
        socket.create_server(("::1", 0), family=socket.AF_INET6).close()
    except OSError:
        return False
    return True


@pytest.mark.parametrize("address", ["127.0.0.1", "::1"])
def test_a_socket_that_is_passed_is_listened_on(doors, folder, address):
    door = doors(folder)
    family = socket.AF_INET6 if ":" in address else socket.AF_INET
    if family == socket.AF_INET6 and not has_ipv6():
        pytest.skip("this computer has no [::1]")
    with socket.create_server((address, 0), family=family) as listening:
        door.port = listening.getsockname()[1]
        # Whoever comes ahead of the program waits.
        client = http.client.HTTPConnection(address, door.port, timeout=60)
        client.request("GET", "/healthz")
        door.process = passing(listening, ["--register", str(door.register)])
        named = f"[{address}]" if ":" in address else address
        assert door.process.stdout.readline() == \
            f"lorimatd: listening on http://{named}:{door.port}\n"
        reply = client.getresponse()
        assert (reply.status, reply.read() != b"") == (200, True)
        client.request("POST", "/v1/jobs", json.dumps({"lines": SALE}),
                       {"Content-Type": "application/json", "Idempotency-Key": "k"})
        assert client.getresponse().status == 201
        client.close()
    assert door.stop() == 0


@pytest.mark.parametrize("kind", ["udp", "not-listening", "two", "foreign", "foreign6", "local"])
def test_a_socket_that_cannot_be_used_is_refused(folder, kind):
    address = {"foreign": "0.0.0.0", "foreign6": "::", "local": str(folder / "s")}.get(kind, "127.0.0.1")
    family = {"foreign6": socket.AF_INET6, "local": socket.AF_UNIX}.get(kind, socket.AF_INET)
    if family == socket.AF_INET6 and not has_ipv6():
        pytest.skip("this computer has no [::1]")
    made = socket.socket(family, socket.SOCK_DGRAM if kind == "udp" else socket.SOCK_STREAM)
    with made:
        made.bind(address if kind == "local" else (address, 0))
        if kind in ("two", "foreign", "foreign6", "local"):
            made.listen()
        process = passing(made, ["--register", str(folder / "shop.register")],
                          count=2 if kind == "two" else 1)
        output, errors = process.communicate(timeout=60)
    assert (process.returncode, output) == (2, "")
    told = {"foreign": "--listen 0.0.0.0:", "foreign6": "--listen [::]:"}
    assert errors.startswith(
        "lorimatd: " + told.get(kind, "what LISTEN_FDS tells of is not one TCP"))


def test_what_is_told_on_standard_error(doors, folder):
    door = doors(folder).start("--tell", "jobs")
    assert door.post(SALE, "secret-key", desk="till", reference="secret")[0] == 201
    assert door.stop() == 0
    assert door.errors == ("lorimatd: job 1: queued: accepted\n"
                           "lorimatd: job 1: running: its lines are sent\n"
                           "lorimatd: job 1: confirmed: all its lines were answered\n")
    door.start()
    assert door.post(SALE, "k2")[0] == 201
    assert door.stop() == 0
    assert door.errors == ""


def test_the_units_leave_this_computer_both_its_addresses():
    def settings(name):
        lines = (UNITS / name).read_text().splitlines()
        return [line for line in lines if line.startswith(("IPAddress", "RestrictAddress"))]

    # A socket that is passed has the bounds of its own unit, not those of the service.
    bounds = ["IPAddressDeny=any", "IPAddressAllow=localhost"]
    assert settings("lorimatd@.socket") == bounds
    assert settings("lorimatd@.service.in") == [
        *bounds, "RestrictAddressFamilies=AF_INET AF_INET6 AF_UNIX"]


@pytest.mark.skipif(not shutil.which("systemd-analyze"), reason="Debian: systemd")
def test_the_units_are_good_and_as_closed_as_the_page_says(folder):
    unit = (UNITS / "lorimatd@.service.in").read_text()
    unit = unit.replace("@CMAKE_INSTALL_FULL_BINDIR@/lorimatd", os.environ["LORIMATD"])
    unit = unit.replace("@CMAKE_INSTALL_FULL_SYSCONFDIR@", "/etc")
    assert "@CMAKE" not in unit
    for name, text in (("lorimatd@till.service", unit),
                       ("lorimatd@till.socket", (UNITS / "lorimatd@.socket").read_text())):
        (folder / name).write_text(text)
    units = [str(folder / name) for name in ("lorimatd@till.service", "lorimatd@till.socket")]
    checked = subprocess.run(["systemd-analyze", "verify", "--man=no", *units], text=True,
                             capture_output=True, timeout=120)
    assert (checked.returncode, checked.stderr) == (0, "")
    judged = subprocess.run(["systemd-analyze", "security", "--offline=true", "--no-pager", units[0]],
                            text=True, capture_output=True, timeout=120)
    exposure = float(re.search(r"exposure level for \S+: ([\d.]+)", judged.stdout).group(1))
    told = re.search(r"`systemd-analyze security` gives it ([\d.]+)", (ROOT / "docs/door.md").read_text())
    assert exposure <= float(told.group(1))


# --- Backups

def backup(door, to, *, file=None):
    return subprocess.run([os.environ["LORIMAT"], "door", "backup", file or f"{door.register}.door",
                           str(to)], text=True, capture_output=True, timeout=120,
                          env=dict(os.environ, LC_ALL="C"))


def test_a_backup_is_of_one_moment_while_jobs_run(doors, folder):
    door = doors(folder).start()
    assert door.post(SALE, "first")[0] == 201
    stop = threading.Event()
    sold = []

    def sell():
        while not stop.is_set():
            sold.append(door.post(SALE, f"k{len(sold)}")[0])

    seller = threading.Thread(target=sell)
    seller.start()
    until(lambda: sold)
    made = backup(door, folder / "copy.door")
    count = len(sold)
    until(lambda: len(sold) > count)
    stop.set()
    seller.join()
    assert set(sold) == {201}
    found = re.fullmatch(rf"{folder}/copy.door: copy of {door.register}.door, the log of "
                         r"99LRM0000001VR: (\d+) jobs?\n", made.stdout)
    assert (made.returncode, made.stderr) == (0, "") and found
    assert not list(folder.glob("copy.door-*"))
    # What was taken then is there, as it was; and a door takes it on.
    door.stop()
    (folder / "copy.door").rename(f"{door.register}.door")
    for beside in folder.glob("shop.register.door-*"):
        beside.unlink()
    door.start()
    listed = door.get("/v1/jobs?limit=100")[1]["jobs"]
    assert [job["id"] for job in listed] == list(range(1, len(listed) + 1))
    assert int(found.group(1)) >= len(listed) and listed[0]["key"] == "first"
    assert door.post(SALE, "first")[0] == 200


def test_what_waited_in_a_backup_does_not_run_again(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    for key in ("a", "b", "c"):
        assert door.post(SALE, key, path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/jobs/1")[1]["state"] == "running")
    assert backup(door, folder / "copy.door").returncode == 0
    door.process.kill()
    door.wait()
    # The log goes on, and sells all three.
    door.start()
    until(lambda: len(door.documents()) == 3)
    until(lambda: door.get("/v1/jobs?state=confirmed")[1]["jobs"][2:])
    door.stop()
    (folder / "copy.door").rename(f"{door.register}.door")
    for beside in folder.glob("shop.register.door-*"):
        beside.unlink()
    door.start()
    # What was running is asked for, and what was queued is not begun.
    until(lambda: all(job["state"] in ("confirmed", "needs_operator")
                      for job in door.get("/v1/jobs")[1]["jobs"]))
    assert len(door.get("/v1/jobs?state=needs_operator")[1]["jobs"]) == 3
    assert door.post(SALE, "b")[1]["state"] == "needs_operator"
    assert len(door.documents()) == 3
    door.stop()
    assert "the log is a copy; 2 of its jobs were queued" in door.errors


def test_what_waited_in_a_snapshot_of_the_files_does_not_run_again(doors, folder):
    door = doors(folder, faulty=True).start(fault="hang@line:1")
    for key in ("a", "b", "c"):
        assert door.post(SALE, key, path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/jobs/1")[1]["state"] == "running")
    door.process.kill()
    door.wait()
    files = sorted(folder.glob("shop.register.door*"))
    kept = [file.read_bytes() for file in files]
    door.start()
    assert door.request("DELETE", "/v1/jobs/3")[0] in (200, 409)
    until(lambda: not door.get("/v1/device")[1]["queued"] and not door.get("/v1/device")[1]["unknown"])
    until(lambda: all(job["state"] in ("confirmed", "cancelled")
                      for job in door.get("/v1/jobs")[1]["jobs"]))
    sold = len(door.documents())
    assert sold >= 2
    door.stop()
    for file in folder.glob("shop.register.door*"):
        file.unlink()
    for file, content in zip(files, kept):
        file.write_bytes(content)
    door.start()
    until(lambda: all(job["state"] in ("confirmed", "needs_operator")
                      for job in door.get("/v1/jobs")[1]["jobs"]))
    # The third one is sold here where it had been taken back before.
    jobs = door.get("/v1/jobs")[1]["jobs"]
    assert [job["state"] for job in jobs[:2]] == ["needs_operator"] * 2
    assert jobs[2]["state"] == ("needs_operator" if sold == 3 else "confirmed")
    assert len(door.documents()) == 3
    assert jobs[1]["history"][-1]["why"] == \
        "the device is further on than the log, and it may have run since"
    assert door.stop() == 0


def test_a_backup_that_cannot_be_made_leaves_nothing(doors, folder):
    door = doors(folder).start()
    taken = folder / "taken"
    taken.write_text("mine")
    assert backup(door, taken).returncode == 2 and taken.read_text() == "mine"
    to = folder / "none/copy.door"
    assert backup(door, to).returncode == 2 and not to.exists()
    # The register is no log, nor is a file of something else.
    for other in (str(door.register), str(taken), str(folder / "missing")):
        made = backup(door, folder / "copy.door", file=other)
        assert made.returncode == 2 and made.stderr.startswith(f"lorimat: {other}: ")
        assert not (folder / "copy.door").exists()
