#!/usr/bin/env python3
"""What tries the door, in rounds, for hours or by count; script/soak runs it.

usage: soak.py (--hours H | --rounds N) [--seed N]

A round is steps of the model, cases of the properties, each fault of the matrix with and without a
client that tries again, lives by chance, desks at once and a shop's day; each has a seed of its own,
"SEED.ROUND".
The first thing that does not hold ends the run with 1, and its folder stays.
"""
import argparse
import collections
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import traceback

import model
import shop_day
import test_chance
import test_clients
import test_matrix
from conftest import Door
from shop_browser import has_browser

MODEL_STEPS = 1_000_000
# So many that chance brings all that each property asks of it, whatever the seed.
PROPERTY_CASES = 120
TRIALS = 40
SHOP_RECEIPTS = 1000
TITLES = {"steps": "steps of the model", "mistakes": "mistakes of the model found",
          "cases": "cases of each property", "faults": "faults of the matrix",
          "shop": "receipts of shops' days",
          "trials": "lives of a door by chance, four of each log", "desks": "runs of five desks at once",
          "requests": "requests in lives by chance", "jobs": "jobs in lives by chance",
          "confirmed": "of these confirmed", "rejected": "of these rejected",
          "unknown on the way": "of these unknown on the way", "kills": "kills in lives by chance",
          "hangs": "ends by a hang", "ends in order": "ends in order",
          "full disks": "full disks", "lives with a line that goes wrong": "lives with a line that goes wrong"}


class Wrong(Exception):
    """Something does not hold."""


class Soak:
    def __init__(self, seed):
        self.seed, self.done, self.began = seed, collections.Counter(), time.monotonic()
        self.said = 0

    def say(self, text, always=False):
        """Not more than a line in some seconds, but for what matters."""
        now = time.monotonic()
        if always or now - self.said >= 10:
            self.said = now
            print(f"{now - self.began:8.0f} s  {text}", flush=True)

    def in_folder(self, run, *arguments):
        """A test as pytest would call it, with doors in a folder of their own."""
        folder, made = pathlib.Path(tempfile.mkdtemp(prefix="lorimat-soak-")), []

        def doors(place, **options):
            made.append(Door(place, **options))
            return made[-1]

        try:
            result = run(doors, folder, *arguments)
        except BaseException:
            print(f"wrong: {run.__name__}{arguments} in {folder}", file=sys.stderr)
            raise
        finally:
            for door in made:
                if door.process and door.process.poll() is None:
                    door.process.kill()
                    door.process.communicate()
        shutil.rmtree(folder)
        return result

    def run_model(self, number):
        steps, broken = model.search(MODEL_STEPS, f"{self.seed}.{number}", None)
        if broken:
            raise Wrong(broken)
        self.done["steps"] += steps
        for mistake in model.MISTAKES:
            if model.search(MODEL_STEPS, f"{self.seed}.{number}", mistake)[1] is None:
                raise Wrong(f"the model does not find {mistake}")
            self.done["mistakes"] += 1

    def run_properties(self, number):
        environment = dict(os.environ, LORIMAT_PROPERTY_COUNT=str(PROPERTY_CASES),
                           LORIMAT_PROPERTY_SEED=str(1000 * self.seed + number))
        run = subprocess.run([os.environ["DOOR_TESTS"], "--gtest_brief=1", "--gtest_filter=*Property.*"],
                             env=environment, capture_output=True, text=True, check=False)
        if run.returncode != 0:
            raise Wrong(run.stdout + run.stderr)
        self.done["cases"] += PROPERTY_CASES

    def run_matrix(self):
        for fault in test_matrix.KILLS:
            for retries in (False, True):
                self.in_folder(test_matrix.test_a_kill, fault, retries)
                self.done["faults"] += 1
        for fault in test_matrix.LOSSES:
            self.in_folder(test_matrix.test_an_answer_that_is_lost, fault)
            self.done["faults"] += 1
        for number in (1, 2):
            self.in_folder(test_matrix.test_a_call_that_hangs_ends_the_program, number)
            self.done["faults"] += 1

    def run_round(self, number):
        for part in (lambda: self.run_model(number), lambda: self.run_properties(number),
                     self.run_matrix):
            part()
            self.say(f"round {number}: {self.done['faults']} faults")
        for trial in range(TRIALS):
            self.done += self.in_folder(test_chance.run_trial, f"{self.seed}.{number}.{trial}")
            self.done["trials"] += 1
            self.say(f"round {number}: {self.done['trials']} logs, {self.done['jobs']} jobs")
        self.in_folder(test_clients.test_desks_at_once, f"{self.seed}.{number}")
        self.done["desks"] += 1
        _, figures = shop_day.run_day(SHOP_RECEIPTS, f"{self.seed}.{number}", browsers=2 * has_browser())
        self.done["shop"] += figures.receipts

    def tell(self):
        print()
        for name, title in TITLES.items():
            print(f"{title:48} {self.done[name]:>12,}")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("--hours", type=float, default=0)
    arguments.add_argument("--rounds", type=int, default=0)
    arguments.add_argument("--seed", type=int, default=1)
    options = arguments.parse_args()
    soak, number = Soak(options.seed), 0
    end = soak.began + 3600 * options.hours
    try:
        while number < options.rounds or time.monotonic() < end:
            number += 1
            soak.run_round(number)
            soak.say(f"round {number} is done", always=True)
    except KeyboardInterrupt:
        print("stopped", file=sys.stderr)
    except Exception:  # whatever it is, what was done is told
        traceback.print_exc()
        soak.tell()
        return 1
    soak.tell()
    print(f"\n{number} rounds in {time.monotonic() - soak.began:.0f} s: all holds")
    return 0


if __name__ == "__main__":
    sys.exit(main())
