#!/usr/bin/env python3
"""Log, device and clients of the door as a small state machine, searched at random.

usage: model.py [--steps N] [--seed N] [--mistake NAME] [--mistakes]

Each step is one that the program takes between two places where it may die: what the log has is
on the disk, what the device has is in its books, all else is gone with the process. The invariants
are looked at behind every step, and at the end of each life, when no trouble comes any more:

  once      no job has more than one document, and none that is rejected, expired or cancelled has one
  honest    a job that is confirmed has its document; who was told so sent its body
  known     in the end no job is queued, running or unknown
  operator  a job needs an operator only where somebody else was at the device, or at the log: an old
            one that is put back has jobs in its queue that have run since

With --mistake one of the rules is broken, and the search has to find it (exit status 1); --mistakes
looks whether it finds each of them.
"""
import argparse
import copy
import random
import sys

MISTAKES = {
    "late-baseline": "the baseline is taken behind the first line",
    "retry-before-asking": "an unknown job is queued again without asking",
    "amount-as-proof": "a document of the same amount counts as the job's",
    "answer-is-truth": "a refusal of the payment rejects the job without asking",
    "no-void": "what an unknown job has open is left open",
    "key-not-kept": "a key is forgotten with its job's end",
    "told-too-early": "a client is told ahead of the commit",
    "attempts-forever": "a job is tried behind its time",
    "body-not-compared": "another body under a key is answered as the first one",
    "cancel-at-work": "a job that has begun is cancelled",
    "place-as-proof": "a failed job is confirmed by whatever document stands in its place",
    "serial-not-asked": "another device is asked as if it were the job's own",
    "queue-of-old-log": "what is queued in a log that was put back runs",
    "seen-too-early": "what the device is counts as seen while the queue has not been looked at",
    "old-log-expires-first": "what is queued there expires before the device is looked at",
}
ATTEMPTS = 3


class Broken(Exception):
    """An invariant does not hold."""


class Device:
    """Numbers, what is open, and the documents with their marks."""

    def __init__(self):
        self.documents = []  # (mark, amount)
        self.open = None     # [mark or None, amount]
        self.serial = 1

    def number(self):
        return len(self.documents)


class Job:
    def __init__(self, key, amount):
        self.key, self.amount = key, amount
        self.mark = None
        self.state = "queued"
        self.baseline = self.serial = None
        self.attempts = 0
        self.expired = False
        self.quick = False  # its first line has the whole effect, as a day closing has


class World:
    def __init__(self, chance, mistake):
        self.chance, self.mistake = chance, mistake
        self.device = Device()
        self.log = []            # jobs, on the disk
        self.told = {}           # by mark: the last final state that a client was told
        self.at = None           # the job at work in the process, with what it knows of it
        self.strangers = 0       # documents of somebody else, and devices in place of this one
        self.elsewhere = []      # documents of a device that was taken away
        self.replayed = []       # (mark, amount) that a client was told of as confirmed
        # On the disk with the log: the device's serial and number as a job ended.
        self.seen = (self.device.serial, 0)
        self.kept = None         # a copy of log and seen
        self.marks = 0           # that were ever given
        self.begins()

    def begins(self):
        """A process: those that wait are looked at ahead of all else."""
        self.waited = [job for job in self.log if job.state == "queued"]
        self.known = next(((job.serial, job.baseline) for job in self.log if job.baseline is not None
                           and job.state in ("running", "unknown")), self.seen)

    # --- what clients and others do
    def client_sends(self):
        key, amount = self.chance.randrange(6), self.chance.choice((120, 500))
        for job in self.log:
            if job.key != key or self.mistake == "key-not-kept" and job.state == "confirmed":
                continue
            if job.amount == amount or self.mistake == "body-not-compared":
                if job.state == "confirmed":
                    self.replayed.append((job.mark, amount))
            return
        job = Job(key, amount)
        job.mark = f"R{self.marks}"
        self.marks += 1
        job.sale = key
        job.quick = self.chance.random() < 0.3
        self.log.append(job)

    def client_cancels(self):
        # What is taken back ahead of that look is cancelled whatever became of it.
        if self.waited:
            return
        for job in self.log:
            begun = job.state != "queued" and self.mistake != "cancel-at-work"
            if not begun and job.state in ("queued", "running") and self.chance.random() < 0.3:
                job.state = "cancelled"
                if self.at and self.at["job"] is job:
                    self.at = None

    def other_device(self):
        # Somebody puts another one in its place, while nothing is sent.
        if self.at is None:
            self.elsewhere += self.device.documents
            self.device, self.strangers = Device(), self.strangers + 1
            self.device.serial = self.strangers + 1
            # As many documents as the first one had, or fewer.
            for _ in range(self.chance.randrange(3)):
                self.device.documents.append((None, 120))

    def time_passes(self):
        for job in self.log:
            if self.chance.random() < 0.3:
                job.expired = True

    def stranger_sells(self):
        # At the device itself, whenever nothing is open there: also between two lines of a job.
        if self.device.open is None:
            self.device.documents.append((None, self.chance.choice((120, 500))))
            self.strangers += 1

    def dies(self):
        self.at = None
        self.begins()

    def log_is_copied(self):
        self.kept = copy.deepcopy((self.log, self.seen))

    def log_is_put_back(self):
        """What was told of jobs that it does not know, or knew otherwise, is the tills' affair."""
        if self.kept is None:
            return
        self.log, self.seen = copy.deepcopy(self.kept)
        for job in self.log:
            job.expired = job.expired or self.chance.random() < 0.5
        self.strangers += 1
        self.told.clear()
        self.replayed.clear()
        self.dies()

    # --- what the program does, a step at a time
    def works(self):
        if self.at:
            return self.goes_on()
        for state in ("running", "unknown"):
            for job in self.log:
                if job.state == state:
                    if state == "running":
                        job.state = "unknown"
                        return None
                    return self.resolves(job)
        if self.waited:
            self.looks_at_waited()
            return None
        for job in self.log:
            if job.state == "queued":
                if job.expired and self.mistake != "attempts-forever":
                    job.state = "expired"
                elif self.device.open is None:
                    if self.mistake == "late-baseline":
                        job.state, job.baseline = "running", None
                    else:
                        job.state, job.baseline = "running", self.device.number()
                    job.serial = self.device.serial
                    job.attempts += 1
                    if job.expired:
                        raise Broken("known: a job began behind its time")
                    self.at = {"job": job, "step": "open", "answers": []}
                else:
                    self.device.open = None  # an operator resets
                return None
        return None

    def looks_at_waited(self):
        """A step for each: the process may die between."""
        job = self.waited.pop()
        if job.state != "queued" or self.mistake == "queue-of-old-log":
            return
        if job.expired and self.mistake == "old-log-expires-first":
            job.state = "expired"
            return
        serial, number = self.known
        since = self.device.documents[number:]
        # Its own device never comes back here.
        if serial != self.device.serial or job.mark in [mark for mark, _ in since]:
            job.state = "needs_operator"

    def goes_on(self):
        at, device = self.at, self.device
        job = at["job"]
        lost = self.chance.random()
        if at["step"] == "open":
            if lost < 0.9 and job.quick:
                device.documents.append((job.mark, job.amount))
            elif lost < 0.9:
                device.open = [None, job.amount]
            at["unclear"] = lost > 0.8
            at["paid"] = job.quick and not at["unclear"]
            at["step"] = "end" if at["unclear"] or job.quick else "mark"
            if self.mistake == "late-baseline" and job.baseline is None:
                at["step"] = "baseline"
        elif at["step"] == "baseline":
            job.baseline = device.number() - (1 if job.quick else 0)
            at["step"] = "end" if at["unclear"] or job.quick else "mark"
        elif at["step"] == "mark":
            device.open[0] = job.mark
            at["step"] = "pay"
        elif at["step"] == "pay":
            if self.mistake == "told-too-early":
                self.told[job.mark] = "confirmed"
            refused = lost < 0.1
            if not refused and lost < 0.9:
                device.documents.append(tuple(device.open))
                device.open = None
            # Carried out, and answered with a refusal, or not answered.
            at["false"] = not refused and lost < 0.2
            at["unclear"] = lost > 0.8
            at["failed"] = refused or at["false"]
            at["paid"] = not at["failed"] and not at["unclear"]
            at["step"] = "end"
        else:
            self.concludes(job, at)
        return None

    def concludes(self, job, at):
        device = self.device
        if self.mistake == "answer-is-truth" and at.get("failed"):
            job.state = "rejected"
        elif at["unclear"]:
            job.state = "unknown"
            device.open = None if self.mistake != "no-void" else device.open
        else:
            if device.open is not None:
                device.open = None
                return  # somebody may sell ahead of the numbers
            trusts = at["paid"] or self.mistake == "place-as-proof"
            if device.number() == job.baseline:
                job.state = "rejected"
            elif device.number() == job.baseline + 1 and (trusts or self.is_ours(job)):
                job.state = "confirmed"
            else:
                job.state = "unknown"
        if job.state in ("confirmed", "rejected"):
            self.told[job.mark] = job.state
            self.seen = (device.serial, device.number())
        self.at = None

    def resolves(self, job):
        device = self.device
        if self.mistake == "retry-before-asking":
            job.state = "queued"
            return None
        if job.serial != device.serial and self.mistake != "serial-not-asked":
            job.state = "needs_operator"
            return None
        if device.open is not None:
            if self.mistake == "no-void":
                device.documents.append(tuple(device.open))  # the next payment ends it
            device.open = None
            return None  # one may die between
        baseline = job.baseline
        if baseline is None:
            job.state = "needs_operator" if self.mistake != "late-baseline" else "queued"
        elif device.number() == baseline:
            if job.attempts >= ATTEMPTS:
                job.state = "rejected"
            elif job.expired and self.mistake != "attempts-forever":
                job.state = "expired"
            else:
                job.state = "queued"
        elif device.number() == baseline + 1 and self.is_ours(job):
            job.state = "confirmed"
        else:
            job.state = "needs_operator"
        now = (device.serial, device.number())
        if job.state != "needs_operator":
            self.seen = self.known = now
        elif not self.waited or self.mistake == "seen-too-early":
            self.seen = now
        return None

    def is_ours(self, job):
        if not self.device.documents:
            return False
        mark, amount = self.device.documents[-1]
        if self.mistake == "amount-as-proof":
            return amount == job.amount
        return mark == job.mark

    # --- what has to hold
    def check(self):
        documents = self.elsewhere + self.device.documents
        marks = [mark for mark, _ in documents if mark is not None]
        for job in self.log:
            count = marks.count(job.mark)
            if count > 1:
                raise Broken(f"once: {job.mark} has {count} documents")
            if job.state in ("rejected", "expired", "cancelled") and count:
                raise Broken(f"once: {job.mark} is {job.state} and has a document")
            if job.state == "confirmed" and count != 1:
                raise Broken(f"honest: {job.mark} is confirmed and has no document")
            if job.state == "needs_operator" and not self.strangers:
                raise Broken(f"operator: {job.mark} could have been resolved")
            if self.told.get(job.mark) == "confirmed" and count != 1 and \
                    not (self.at and self.at["job"] is job):
                raise Broken(f"honest: a client was told that {job.mark} is confirmed")
        for told in self.replayed:
            if told not in documents:
                raise Broken(f"honest: a client was told of {told} that it is confirmed")
        sales = [job.sale for job in self.log if job.state == "confirmed"]
        if len(sales) != len(set(sales)):
            raise Broken("once: a key was sold twice")

    def ends(self):
        for _ in range(1000):
            if not self.at and all(job.state not in ("queued", "running", "unknown")
                                   for job in self.log):
                return
            self.works()
            self.check()
        raise Broken("known: a job has no end")


def live(chance, mistake):
    """One life; how many steps it had."""
    world = World(chance, mistake)
    length = chance.randrange(10, 120)
    with_strangers, with_copies = chance.random() < 0.3, chance.random() < 0.3
    for _ in range(length):
        what = chance.random()
        if what < 0.15:
            world.client_sends()
        elif what < 0.25:
            world.dies()
        elif what < 0.28:
            world.time_passes()
        elif what < 0.31 and with_strangers:
            world.stranger_sells()
        elif what < 0.315 and with_strangers:
            world.other_device()
        elif what < 0.33:
            world.client_cancels()
        elif what < 0.34:
            world.log_is_copied()
        elif what < 0.36 and with_copies:
            world.log_is_put_back()
        else:
            world.works()
        world.check()
    world.ends()
    return length


def search(steps, seed, mistake):
    """The steps of whole lives, and what is broken with the life's seed; nothing when all holds."""
    taken, life = 0, 0
    while taken < steps:
        life += 1
        try:
            taken += live(random.Random(f"{seed}.{life}"), mistake)
        except Broken as broken:
            return taken, f"{broken} (life {seed}.{life})"
    return taken, None


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("--steps", type=int, default=300_000)
    arguments.add_argument("--seed", type=int, default=1)
    arguments.add_argument("--mistake", choices=MISTAKES)
    arguments.add_argument("--mistakes", action="store_true")
    options = arguments.parse_args()
    if not options.mistakes:
        taken, broken = search(options.steps, options.seed, options.mistake)
        print(broken or f"{taken} steps: all holds")
        return 1 if broken else 0
    missed = 0
    for name, text in MISTAKES.items():
        taken, broken = search(options.steps, options.seed, name)
        print(f"{name} ({text}): " + (f"found: {broken}" if broken else "NOT FOUND"))
        missed += not broken
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
