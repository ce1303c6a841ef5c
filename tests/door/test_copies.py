"""A copy of a document that goes wrong: no number tells whether it was printed, and nobody guesses."""
import os
import subprocess

import pytest

from conftest import SALE
from test_documents import copy
from waiting import until

RECEIPT = "1/1/copy?kind=receipt"


def sell(door, key):
    status, job = door.post(SALE, key)
    assert (status, job["state"]) == (201, "confirmed")


def settled(door):
    """The copy, once it is over or an operator's."""
    job = door.get("/v1/jobs?key=c&desk=operator")[1]
    return job if job["state"] not in ("queued", "running", "unknown") else None


def printed(door):
    """How many copies of the one receipt are on the paper of a door that has ended."""
    assert door.stop() == 0
    paper = subprocess.run([os.environ["LORIMAT"], "paper", "--register", door.register], check=True,
                           capture_output=True, text=True).stdout
    count = paper.count("ESTRATTO DEL GIORNALE")
    assert paper.count("DOCUMENTO N. 0001-0001") == 1 + count
    return count


def end_by_operator(door, job, outcome, count):
    """Sent again it is one job, also for another process, and the tills go on; in the end so many are printed."""
    assert (job["state"], job["document"]) == ("needs_operator", None)
    for _ in range(2):
        status, again = copy(door, RECEIPT, "c")
        assert (status, again["id"], again["state"]) == (409, job["id"], "needs_operator")
        assert door.stop() == 0
        door.start()
    sell(door, "b")
    status, _, resolved = door.request("POST", f"/v1/jobs/{job['id']}/resolve", {"outcome": outcome, "reason": "seen"})
    state = {"done": "confirmed", "not_done": "rejected"}[outcome]
    assert (status, resolved["state"]) == (200, state)
    assert copy(door, RECEIPT, "c")[1]["state"] == state
    assert len(door.documents()) == 2
    assert printed(door) == count


# The copy is the third line that the device gets.
@pytest.mark.parametrize("plugin, outcome", [(False, "done"), (True, "not_done")])
@pytest.mark.parametrize("fault, count", [
    ("lose@line:3", 1), ("lose@before-line:3", 1), ("drop@line:3", 0), ("gone@before-line:3", 0),
    ("gone@behind-line:3", 1)])
def test_what_nobody_knows_is_for_an_operator(doors, folder, fault, count, plugin, outcome):
    door = doors(folder, faulty=True, plugin=plugin).start(fault=fault)
    sell(door, "a")
    copy(door, RECEIPT, "c")
    end_by_operator(door, until(lambda: settled(door)), outcome, count)


@pytest.mark.parametrize("fault, count, code", [
    ("kill@before-line:3", 0, -9), ("kill@behind-line:3", 1, -9), ("kill@before-outcome:2", 1, -9),
    ("hang@before-line:3", 0, 75)])
def test_what_a_door_has_left_is_for_an_operator(doors, folder, fault, count, code):
    door = doors(folder, faulty=True).start("--device-timeout", "1", fault=fault)
    sell(door, "a")
    assert copy(door, RECEIPT, "c")[0] == 0
    assert door.wait() == code
    door.start()
    end_by_operator(door, until(lambda: settled(door)), "done", count)


def test_what_is_refused_is_not_tried_again(doors, folder):
    door = doors(folder, plugin=True).start()
    sell(door, "a")
    for is_again in (False, True):
        status, job = copy(door, "1/7/copy", "c")
        assert (status, job["state"], job["replayed"]) == (422, "rejected", is_again)
    # A new try takes a new key.
    assert copy(door, RECEIPT, "d")[1]["state"] == "confirmed"
    assert len(door.documents()) == 1
    assert printed(door) == 1


def test_from_a_device_that_is_away_nothing_is_asked(doors, folder):
    unplugged = folder / "unplugged"
    door = doors(folder, plugin=True)
    door.device += ["--device-option", f"unplugged={unplugged}"]
    door.start()
    sell(door, "a")
    unplugged.touch()
    until(lambda: door.get("/v1/device")[1]["trouble"] == "device_away")
    assert copy(door, RECEIPT, "c")[1]["code"] == "device_away"
    unplugged.unlink()
    until(lambda: door.get("/v1/device")[1]["ready"])
    assert copy(door, RECEIPT, "c")[1]["state"] == "confirmed"
    assert printed(door) == 1
