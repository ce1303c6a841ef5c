#!/usr/bin/python3
"""Every step of a day's jobs with everything that may go wrong there, on the register and on a
plug-in over it: behind each trouble the register has each confirmed job exactly once and no other
one, and the log knows every outcome.

  matrix.py [--cells COUNT] [--seed NUMBER] [--jobs COUNT] [--only TEXT] [--list]

A cell is a device, a fault at a step (faults.cpp), whether the program is begun anew behind it, and
whether the client sends its jobs again or only asks. So many cells are tried, a spread of all by the
seed; 0 is all. LORIMATD_FAULTY is the program, LORIMATD_PLUGIN the plug-in. Ends with 1 when a cell
has failed."""
import argparse
import collections
import concurrent.futures
import dataclasses
import pathlib
import random
import resource
import sqlite3
import sys
import tempfile
import time

from conftest import Door

# What the desk asks for. Each document has a total of its own, by which it is found in the register:
# the door itself never goes by it.
DAY = {"sale": ["VEND REP=1, PRE=1.01", "CHIU TEND=CONTANTI"],
       "refused": ["VEND REP=1, PRE=1.02", "VEND REP=99, PRE=1.00", "CHIU"],
       "invoice": ["FATTURA TIPO=2, RIGA1='ROSSI'", "VEND REP=1, PRE=1.03", "CHIU TEND=CARTA"],
       "closing": None,
       "next": ["VEND REP=1, PRE=1.05", "SCONTO IMP=0.01", "CHIU TEND=CONTANTI"]}
TOTALS = {"sale": 10100, "refused": 10200, "invoice": 10300, "next": 10400}

DEVICES = ("register", "plug-in")
ACTIONS = ("kill", "lose", "lose2", "fail", "fail2", "hang", "hang2", "gone", "full", "nomem",
           "nomem4", "nomem20", "nosql", "nosql9")
# What lets the device be asked what became of a job: an answer that is lost, and a kill.
ASKED = ("lose@before-line:2", "lose@before-line:1", "lose@before-line:7", "kill@behind-line:2")
# Without memory the library of JSON may end the program, in a destructor: as a kill does.
ABORTED = -6
HUNG = 75
# What ends the program by itself, and with which code.
ENDS = {"kill": -9, "hang": HUNG, "hang2": HUNG}
MOST_ROUNDS = 4000
PAUSE = 0.005  # seconds


@dataclasses.dataclass(frozen=True)
class Cell:
    device: str
    fault: str  # one, or two of which the second strikes while the device is asked
    restart: bool
    retries: bool

    def __str__(self):
        return (f"{self.device} {self.fault} {'restart' if self.restart else 'goes-on'} "
                f"{'retries' if self.retries else 'asks'}")

    @property
    def actions(self):
        return [fault.split("@")[0] for fault in self.fault.split()]


class Failed(Exception):
    """What does not hold in a cell."""


def require(holds, *what):
    if not holds:
        raise Failed(" ".join(str(part) for part in what))


class Desk:
    """A client of a door that has one trouble, and whoever looks after the program."""

    def __init__(self, folder, cell, trace=None):
        self.cell = cell
        self.door = Door(folder, faulty=True, plugin=cell.device == "plug-in")
        self.struck = [pathlib.Path(folder) / f"struck{number or ''}"
                       for number in range(len(cell.actions))]
        self.seen = [False] * len(self.struck)
        self.trace = trace
        self.full_for = 0
        self.hangs = any("hang" in action for action in cell.actions)
        self.ends = 0  # that came by themselves
        self.start()

    def start(self):
        # A short limit only where a call is to hang: a machine may be slow.
        limit = ("--device-timeout", "1") if self.hangs else ()
        self.door.start(*limit, fault=self.cell.fault, once=True, trace=self.trace)

    def look_after(self):
        """Begins the program anew where it has ended, and makes room on its disk."""
        for number, action in enumerate(self.cell.actions):
            if self.seen[number] or not self.struck[number].exists():
                continue
            if action in ENDS:
                # On its way to its end, or there.
                if self.door.process.poll() is None:
                    continue
                require(self.door.wait() == ENDS[action], "ended with", self.door.process.returncode)
                self.start()
            elif self.cell.restart:
                require(self.door.stop() in self.orderly(), "ended with",
                        self.door.process.returncode)
                self.start()
            elif action == "full":
                self.full_for += 1
                if self.full_for < 5:
                    continue
                free = (resource.RLIM_INFINITY, resource.RLIM_INFINITY)
                resource.prlimit(self.door.process.pid, resource.RLIMIT_FSIZE, free)
            self.seen[number] = True
        ended = self.door.process.poll()
        if ended and ended in self.orderly() and self.ends < 20:
            self.ends += 1
            self.door.wait()
            self.start()
        elif ended is not None and self.is_quiet():
            raise Failed("ended with", self.door.wait(), self.door.errors)

    def orderly(self):
        """The codes with which it may end whenever it likes, and 0."""
        memory = any("nomem" in action for action in self.cell.actions)
        return (0,) + ((ABORTED,) if memory else ()) + ((HUNG,) if self.hangs else ())

    def is_quiet(self):
        """Whether no trouble is on its way."""
        return all(seen or not file.exists() for seen, file in zip(self.seen, self.struck))

    def get(self, path):
        """From a program that may end, and be begun anew, at any time."""
        status = 0
        while status == 0:
            self.look_after()
            status, reply = self.door.get(path)
        return status, reply

    def send(self, key, lines):
        if lines is None:
            headers = {"Idempotency-Key": key}
            status, _, job = self.door.request("POST", "/v1/device/close-day?wait=0", {}, headers)
        else:
            status, job = self.door.post(lines, key, path="/v1/jobs?wait=0")
        require(status in (0, 200, 201, 202, 409, 422, 503), key, status, job)
        return status, job

    def ask(self, key, lines):
        desk = "operator" if lines is None else ""
        return self.door.get(f"/v1/jobs?key={key}&desk={desk}")

    def deliver(self, key, lines):
        """Until the job is over: what has become of it."""
        taken = False
        for _ in range(MOST_ROUNDS):
            self.look_after()
            if taken and not self.cell.retries:
                status, job = self.ask(key, lines)
                # One whose answer said so has to be there; any other is sent again.
                taken = status != 404
            else:
                status, job = self.send(key, lines)
                taken = taken or status in (0, 503) or (job is not None and "state" in job)
            if job is not None and job.get("state") in ("confirmed", "rejected", "expired",
                                                        "cancelled", "needs_operator"):
                return job
            time.sleep(PAUSE)
        raise Failed(f"{key} has no end: {status} {job}")


def check_register(desk, jobs):
    """The register has what was confirmed, each once, under the numbers that were told."""
    with sqlite3.connect(f"file:{desk.door.register}?mode=ro", uri=True) as database:
        documents = database.execute("SELECT total, closure, number FROM document").fetchall()
        closings = database.execute("SELECT number FROM closure").fetchall()
    expected, closed = [], []
    for name, job in jobs.items():
        if job["state"] != "confirmed":
            continue
        told = job["document"]
        require(told is not None, name, "has no document")
        if name == "closing":
            closed.append((told["closure"],))
        else:
            expected.append((TOTALS[name], told["closure"], told["number"]))
            require(told["total"] == f"{TOTALS[name] / 10000:.2f}", name, told)
    require(sorted(documents) == sorted(expected), "the register has", documents, "for", expected)
    require(closings == closed, "the register has the closings", closings, "for", closed)


def run_cell(cell, trace=None):
    """Throws Failed, or answers the states that were seen."""
    with tempfile.TemporaryDirectory(prefix="door-matrix-") as folder:
        desk = Desk(folder, cell, trace)
        try:
            jobs, seen = {}, collections.Counter()
            for name, lines in DAY.items():
                job = desk.deliver(name, lines)
                # A refusal behind which something was done all the same is final: a new key.
                if job["state"] == "rejected" and name != "refused":
                    require("fail" in cell.fault, name, job)
                    seen["rejected"] += 1
                    job = desk.deliver(name + "-again", lines)
                require(job["state"] == ("rejected" if name == "refused" else "confirmed"), job)
                seen.update({step["state"] for step in job["history"]})
                jobs[name] = job
            status, device = desk.get("/v1/device")
            require(status == 200 and (device["queued"], device["unknown"],
                                       device["needs_operator"]) == (0, 0, 0), status, device)
            keys = [(job["desk"], job["key"]) for job in desk.get("/v1/jobs?limit=100")[1]["jobs"]]
            require(len(set(keys)) == len(keys), keys)
            check_register(desk, jobs)
            ended = desk.door.stop()
            # What strikes behind the last answer.
            late = not desk.is_quiet() and desk.cell.actions[-1] == "kill"
            require(ended in desk.orderly() or late, "ended with", ended, desk.door.errors)
            seen["struck"] += sum(file.exists() for file in desk.struck)
            return seen
        finally:
            if desk.door.process.poll() is None:
                desk.door.process.kill()
            desk.door.process.communicate()


def steps_of(fault):
    """Each step of the day, with the number of its coming, as a door without other trouble has it."""
    with tempfile.NamedTemporaryFile(prefix="door-trace-") as trace:
        run_cell(Cell("register", fault, False, True), trace.name)
        counts = collections.Counter(trace.read().decode().split())
    return [(step, number) for step, times in counts.items() for number in range(1, times + 1)]


def all_cells():
    faults = [f"{action}@{step}:{number}" for step, number in steps_of("none@never:1")
              for action in ACTIONS]
    for base in ASKED:
        for step, number in steps_of(base):
            if step in ("before-asking", "behind-asking"):
                faults += [f"{base} {action}@{step}:{number}" for action in ACTIONS]
    cells = []
    for device in DEVICES:
        for fault in faults:
            ends = fault.split()[-1].split("@")[0] in ENDS
            for restart in (False,) if ends else (False, True):
                cells += [Cell(device, fault, restart, retries) for retries in (False, True)]
    return cells


def spread(cells, count, seed):
    chance = random.Random(seed)
    chance.shuffle(cells)
    return cells[:count] if count else cells


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cells", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=4)
    parser.add_argument("--only", default="")
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()
    every = [cell for cell in all_cells() if options.only in str(cell)]
    cells = spread(every, options.cells, options.seed)
    if options.list:
        print("\n".join(str(cell) for cell in cells))
        return 0

    failed, seen = [], collections.Counter()

    def try_one(cell):
        try:
            return cell, run_cell(cell), None
        except Exception as error:  # whatever it is, the others are to be tried
            return cell, {}, f"{type(error).__name__}: {error}"

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for cell, states, error in pool.map(try_one, cells):
            seen.update(states)
            if error:
                failed.append(cell)
                print(f"FAILED {cell}: {error[:2000]}", flush=True)
    print(f"{len(cells)} of {len(every)} cells, {len(failed)} failed; faults that struck: "
          f"{seen['struck']}; unknown and then confirmed: {seen['unknown']}; rejected: "
          f"{seen['rejected']}")
    return 1 if failed or seen["struck"] < len(cells) // 2 else 0


if __name__ == "__main__":
    sys.exit(main())
