"""Several desks at once, keys that are sent again and with other bodies, and a door that is killed:
in the end the register has the confirmed jobs, each once."""
import random
import threading

import pytest

BODIES = [["VEND REP=1, PRE=1.20", "CHIU"],
          ["VEND REP=1, PRE=5.00", "SCONTO IMP=1.00", "CHIU TEND=CARTA"],
          ["VEND REP=1, PRE=1.20", "VEND REP=99, PRE=1.00", "CHIU"]]
DESKS, KEYS, ANSWERS = 5, 12, 30


class Desk(threading.Thread):
    """Sends jobs of a few keys until it has so many answers; goes on where the door comes again."""

    def __init__(self, door, number, seed, answered):
        super().__init__(daemon=True)
        self.door, self.name, self.answered = door, f"desk-{number}", answered
        self.chance = random.Random(f"{seed}.{number}")
        self.sent, self.wrong = {}, []

    def run(self):
        for _ in range(ANSWERS):
            key, body = f"k{self.chance.randrange(KEYS)}", self.chance.randrange(len(BODIES))
            status = 0
            while status == 0:
                self.answered.wait_for_door()
                status, reply = self.door.post(BODIES[body], key, desk=self.name)
            # The first body that was taken is the key's; one whose answer was lost may have been.
            first = self.sent.setdefault(key, body)
            if first == body and status not in (200, 201, 202, 409, 422):
                self.wrong.append((key, status, reply))
            if first != body and (status, reply.get("code")) != (422, "key_reused"):
                self.wrong.append((key, status, reply))
            self.answered.count_one()


class Answered:
    """Counts answers, and keeps the desks waiting while there is no door."""

    def __init__(self):
        self.count, self.is_open, self.change = 0, True, threading.Condition()

    def wait_for_door(self):
        with self.change:
            assert self.change.wait_for(lambda: self.is_open, timeout=120)

    def count_one(self):
        with self.change:
            self.count += 1
            self.change.notify_all()

    def wait_for(self, count):
        with self.change:
            # A desk that has ended in its midst counts no more.
            assert self.change.wait_for(lambda: self.count >= count, timeout=120)
            self.is_open = False

    def open(self):
        with self.change:
            self.is_open = True
            self.change.notify_all()


def all_jobs(door):
    jobs, after = [], 0
    while page := door.get(f"/v1/jobs?after={after}&limit=100")[1]["jobs"]:
        jobs, after = jobs + page, page[-1]["id"]
    return jobs


@pytest.mark.parametrize("seed", [1, 2, 3])
def test_desks_at_once(doors, folder, seed):
    door, answered = doors(folder).start(), Answered()
    desks = [Desk(door, number, seed, answered) for number in range(DESKS)]
    for desk in desks:
        desk.start()
    chance = random.Random(seed)
    # The last kill comes while some are at work.
    for count in sorted(chance.sample(range(5, DESKS * ANSWERS - DESKS), 4)):
        answered.wait_for(count)
        door.process.kill()
        assert door.wait() == -9
        door.start()
        answered.open()
    for desk in desks:
        desk.join()
    assert [desk.wrong for desk in desks] == [[]] * DESKS

    # A key whose job had not ended was an answer too.
    jobs = all_jobs(door)
    while any(job["state"] in ("queued", "running", "unknown") for job in jobs):
        jobs = all_jobs(door)
    assert len({(job["desk"], job["key"]) for job in jobs}) == len(jobs) == \
        sum(len(desk.sent) for desk in desks)
    assert {job["state"] for job in jobs} == {"confirmed", "rejected"}
    sold = sorted((job["document"]["closure"], job["document"]["number"])
                  for job in jobs if job["state"] == "confirmed")
    assert sold == door.documents()
    assert door.stop() == 0
