"""The process killed, a call hung, an answer lost, at every step of a sale: behind each the register
has each confirmed job once and no other one, and the log knows every outcome."""
import os
import subprocess

import pytest

from conftest import SALE

# As often as two sales of two lines come to them.
STEPS = [("before-reset", 2), ("before-baseline", 2), ("before-first-line", 2), ("before-mark", 2),
         ("before-line", 4), ("behind-line", 4), ("before-outcome", 2), ("behind-outcome", 2)]
KILLS = [f"kill@{step}:{number}" for step, times in STEPS for number in range(1, times + 1)]
LOSSES = [f"{action}@line:{number}" for action in ("lose", "fail", "drop") for number in (1, 2)]


class Counter:
    """Asks a door, and begins it anew where its fault has ended it."""

    def __init__(self, door, fault):
        self.door, self.fault, self.was_struck = door, fault, False

    def revive(self):
        if not self.was_struck and (self.door.folder / "struck").exists():
            assert self.door.wait() == -9
            self.was_struck = True
            self.door.start(fault=self.fault, once=True)

    def get(self, path):
        for _ in range(3):
            self.revive()
            status, reply = self.door.get(path)
            if status:
                return status, reply
        raise AssertionError(f"{path}: nobody answers")

    def stop(self):
        struck_last = not self.was_struck and (self.door.folder / "struck").exists()
        code = self.door.stop()
        # Ended behind the last answer.
        assert code == 0 or code == -9 and (struck_last or not self.was_struck)


def final_job(counter, key, desk=""):
    """By asking, as a client does that has lost its answer, for as long as the disk takes; ctest ends
    what has no end."""
    while True:
        status, job = counter.get(f"/v1/jobs?key={key}&desk={desk}")
        if status == 404:
            return None
        assert status == 200, job
        if job["state"] not in ("queued", "running", "unknown"):
            return job


def check(counter, keys):
    """What holds behind every trouble; closure and number of what was confirmed."""
    confirmed = []
    for key in keys:
        job = final_job(counter, key)
        assert job["state"] in ("confirmed", "rejected"), job
        if job["state"] == "confirmed":
            confirmed.append((job["document"]["closure"], job["document"]["number"]))
    register = counter.door if hasattr(counter, "door") else counter
    assert sorted(confirmed) == register.documents()
    assert len(set(confirmed)) == len(confirmed)
    assert counter.get("/v1/device")[1]["unknown"] == 0
    return confirmed


@pytest.mark.parametrize("retries", [False, True])
@pytest.mark.parametrize("fault", KILLS)
def test_a_kill(doors, folder, fault, retries):
    counter = Counter(doors(folder, faulty=True).start(fault=fault, once=True), fault)
    for key in ("k1", "k2"):
        counter.revive()
        status, _ = counter.door.post(SALE, key)
        assert status in (0, 201)
        # Who asks and finds nothing has met a door that was ending, and sends again.
        if status == 0 and (retries or final_job(counter, key) is None):
            counter.revive()
            assert counter.door.post(SALE, key)[0] in (200, 201, 409)
        assert final_job(counter, key)["state"] == "confirmed"
    assert check(counter, ["k1", "k2"]) == [(1, 1), (1, 2)]
    counter.stop()
    assert (folder / "struck").exists()


@pytest.mark.parametrize("fault", LOSSES)
def test_an_answer_that_is_lost(doors, folder, fault):
    door = doors(folder, faulty=True).start(fault=fault)
    status, job = door.post(SALE, "k1")
    # A refusal of a first line is a refusal, whatever the device did: nothing is registered.
    refused = fault == "fail@line:1"
    assert (status, job["state"]) == ((422, "rejected") if refused else (201, "confirmed"))
    states = [step["state"] for step in job["history"]]
    assert ("unknown" in states) == (not fault.startswith("fail"))
    assert door.post(SALE, "k2")[0] == 201
    assert len(check(door, ["k1", "k2"])) == (1 if refused else 2)


@pytest.mark.parametrize("number", [1, 2])
def test_a_call_that_hangs_ends_the_program(doors, folder, number):
    door = doors(folder, faulty=True).start("--device-timeout", "1", fault=f"hang@line:{number}",
                                            once=True)
    assert door.post(SALE, "k1")[0] == 0
    assert door.wait() == 75
    door.start()
    job = final_job(door, "k1")
    assert job["state"] == "confirmed"
    assert "unknown" in [step["state"] for step in job["history"]]
    assert check(door, ["k1"]) == [(1, 1)]


def test_an_operator_resolves_what_asking_does_not_tell(doors, folder):
    door = doors(folder, faulty=True).start(fault="lose@line:1")
    status, job = door.post(["REPORT"], "r", desk="operator")
    assert (status, job["state"]) == (202, "needs_operator")
    assert door.post(["REPORT"], "r", desk="operator")[0] == 409
    path = f"/v1/jobs/{job['id']}/resolve"
    assert door.request("POST", path, {"outcome": "perhaps", "reason": "x"})[2]["code"] == "bad_field"
    assert door.request("POST", path, {"outcome": "done"})[2]["code"] == "bad_field"
    status, _, job = door.request("POST", path, {"outcome": "done", "reason": "it lies there"})
    assert (status, job["state"]) == (200, "confirmed")
    assert "it lies there" in job["history"][-1]["why"]
    body = {"outcome": "done", "reason": "x"}
    assert door.request("POST", path, body)[2]["code"] == "wrong_state"
    assert door.post(["REPORT"], "r", desk="operator")[0] == 200


def test_an_operator_tells_the_number_of_a_closing(doors, folder):
    door = doors(folder, faulty=True).start()
    assert door.post(["AZZGIO"], "z", desk="operator")[0] == 201
    assert door.post(SALE, "s")[0] == 201
    assert door.stop() == 0
    # Behind a loss two others have closed, or so it seems: the second one is no job's.
    door.start(fault="kill@behind-line:1", once=True)
    assert door.post(["AZZGIO"], "z2", desk="operator")[0] == 0
    assert door.wait() == -9
    lines = folder / "close.cmd"
    lines.write_text("VEND REP=1, PRE=1.00\nCHIU\nAZZGIO\n", encoding="ascii")
    subprocess.run([os.environ["LORIMAT"], "run", lines, "--register", door.register], check=True,
                   capture_output=True)
    door.start()
    job = final_job(door, "z2", "operator")
    assert job["state"] == "needs_operator"
    path = f"/v1/jobs/{job['id']}/resolve"

    def resolve(document):
        body = {"outcome": "done", "reason": "x", "document": document}
        status, _, reply = door.request("POST", path, body)
        return status, reply

    for document in ({"closure": 2, "number": 1}, {"number": 1}, {"closure": 0}, {"closure": 2, "n": 1}):
        status, reply = resolve(document)
        assert (status, reply["code"]) == (400, "bad_field")
    status, reply = resolve({"closure": 1})
    assert (status, reply["code"]) == (409, "document_taken")
    status, job = resolve({"closure": 2, "number": None})
    assert (status, job["state"]) == (200, "confirmed")
    assert job["document"] == {"closure": 2, "number": None, "kind": None,
                               "serial": "99LRM0000001VR", "time": None, "total": None}


@pytest.mark.parametrize("size", range(100_000, 700_000, 40_000))
def test_a_disk_that_is_full(doors, folder, size):
    """Neither log nor register grows beyond a size; later there is room again."""
    door = doors(folder).start()
    assert door.stop() == 0
    door.start(most_bytes=size)
    keys = [f"k{number}" for number in range(8)]
    answers = {key: door.post(SALE, key, path="/v1/jobs?wait=2")[0] for key in keys}
    assert set(answers.values()) <= {201, 202, 422, 503}
    door.process.kill()
    door.wait()
    door.start()
    taken = [key for key in keys if door.get(f"/v1/jobs?key={key}&desk=")[0] == 200]
    confirmed = check(door, taken)
    assert len(confirmed) >= sum(answer == 201 for answer in answers.values())
    # A client that tries again sells what is missing, with a new key where the old one is over.
    for key in keys:
        if door.post(SALE, key)[0] == 422:
            key += "-again"
            door.post(SALE, key)
        assert final_job(door, key)["state"] == "confirmed"
    assert len(door.documents()) == len(keys)
    assert door.stop() == 0
