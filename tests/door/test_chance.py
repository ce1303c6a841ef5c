"""Lives of a door by chance: jobs of a few keys, sent again and with other bodies; a fault, a full
disk or a kill in each life. In the end the register has the confirmed jobs, each once, and nobody was
told anything else."""
import collections
import random
import resource

import pytest

from conftest import SALE, NotStarted
from test_matrix import STEPS

BODIES = [SALE, ["VEND REP=1, PRE=5.00", "SCONTO IMP=1.00", "CHIU TEND=CARTA"],
          ["VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1.00", "CHIU"], ["VEND REP=2, PRE=3.00"],
          ["VEND REP=1, PRE=2.00", "CHIU TEND=CARTA, IMP=1.00", "CHIU"], ["AZZGIO"]]
KEYS, LIVES, REQUESTS = 8, 4, 8
LINE_FAULTS = ("lose", "fail", "drop", "hang")
# What is refused leaves no job and no promise.
NO_JOB = {"key_reused", "disk_full", "device_away", "document_open", "too_many_requests"}


class Trial:
    """A register, its log, and what clients were told of each key."""

    def __init__(self, door, seed):
        self.door, self.chance = door, random.Random(seed)
        self.told = {}  # by key: the state that is final
        self.seen = collections.Counter()

    def fault(self):
        kind = self.chance.randrange(4)
        if kind == 0:
            step, times = self.chance.choice(STEPS)
            return f"kill@{step}:{self.chance.randint(1, 2 * times)}"
        if kind == 1:
            return f"{self.chance.choice(LINE_FAULTS)}@line:{self.chance.randint(1, 6)}"
        return None

    def live(self):
        """One process, from its start to its end."""
        fault = self.fault()
        try:
            self.door.start("--device-timeout", "1", fault=fault)
        except NotStarted:
            # A job of a life before was at work at once, and the fault struck there.
            self.note_end(self.door.process.returncode)
            return
        full_at = self.chance.randrange(3 * REQUESTS)
        for number in range(REQUESTS):
            if number == full_at:
                self.seen["full disks"] += 1
                resource.prlimit(self.door.process.pid, resource.RLIMIT_FSIZE,
                                 (self.chance.choice((0, 50_000, 200_000)), resource.RLIM_INFINITY))
            if not self.send():
                break
        if self.door.process.poll() is None and self.chance.random() < 0.5:
            self.door.process.kill()
        else:
            self.door.process.terminate()
        self.note_end(self.door.wait())
        if fault and not fault.startswith("kill"):
            self.seen["lives with a line that goes wrong"] += 1

    def note_end(self, code):
        assert code in (0, -9, 75), (code, self.door.errors)
        self.seen[{0: "ends in order", -9: "kills", 75: "hangs"}[code]] += 1

    def send(self):
        """Whether the door is still there."""
        key, body = f"k{self.chance.randrange(KEYS)}", self.chance.choice(BODIES)
        wait = self.chance.choice((0, 0, 1))
        status, reply = self.door.post(body, key, path=f"/v1/jobs?wait={wait}", desk="operator")
        self.seen["requests"] += 1
        if status == 0:
            return False
        if "code" in reply:
            assert reply["code"] in NO_JOB, reply
        elif status in (200, 201, 422):
            self.hold(key, reply["state"])
        else:
            assert status in (202, 409), (status, reply)
        return True

    def hold(self, key, state):
        """What was told once does not change."""
        assert self.told.setdefault(key, state) == state, key

    def end(self):
        """No trouble any more: each job comes to its end."""
        self.door.start()
        jobs = None
        while jobs is None or any(job["state"] in ("queued", "running", "unknown") for job in jobs):
            jobs = self.door.get("/v1/jobs?limit=100")[1]["jobs"]
        self.seen["jobs"] += len(jobs)
        for job in jobs:
            assert job["state"] in ("confirmed", "rejected"), job
            self.hold(job["key"], job["state"])
            self.seen[job["state"]] += 1
            self.seen["unknown on the way"] += any(s["state"] == "unknown" for s in job["history"])
        # A client that was told of a job finds it in the log.
        assert set(self.told) == {job["key"] for job in jobs}
        documents = [job["document"] for job in jobs if job["state"] == "confirmed"]
        sales = [(one["closure"], one["number"]) for one in documents if one["number"] is not None]
        closings = [one["closure"] for one in documents if one["number"] is None]
        assert sorted(sales) == self.door.documents()
        assert sorted(closings) == list(range(1, len(closings) + 1))
        assert self.door.stop() == 0


def run_trial(doors, folder, seed):
    """What has to hold, held; and what was there of trouble."""
    trial = Trial(doors(folder, faulty=True), seed)
    for _ in range(LIVES):
        trial.live()
    trial.end()
    return trial.seen


@pytest.mark.parametrize("seed", range(1, 13))
def test_lives_by_chance(doors, folder, seed):
    seen = run_trial(doors, folder, seed)
    assert seen["requests"] >= LIVES and seen["jobs"] > 0
