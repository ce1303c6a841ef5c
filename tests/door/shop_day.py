#!/usr/bin/python3
"""A shop's day: tills in several languages, each with a book of its own, sell through one door on one
register, over cables that are cut, while tills and door are killed and an operator resolves what asking
did not tell. In the end the paper, the journal, the door's jobs and the tills' own books agree: every
sale is there once, nothing is open, and the sums are those of the plan.

  shop_day.py [--receipts COUNT] [--seed NUMBER] [--browsers COUNT] [--mistakes]

With --browsers so many of the eight tills are pages in Chromium.
With --mistakes short days have a till each that does what none may do, and each has to be found out;
one without them has to pass.
LORIMATD_FAULTY is the door, LORIMAT the console, SHOP_TILL the till in C. Ends with 1 when something
does not hold; its folder stays then."""
import argparse
import collections
import os
import pathlib
import queue
import random
import re
import secrets
import shutil
import subprocess
import sys
import tempfile
import threading

from conftest import Door, NotStarted, make_token
from cutting_proxy import CuttingProxy
from shop_agreement import Wrong, check_day, printed
from shop_browser import ENDED, Browser, BrowserCable, has_browser
from shop_plan import A_SLIP, lines_of, sales_for
from shop_till import MISTAKES, lorimat
from test_matrix import STEPS

HERE = pathlib.Path(__file__).parent
# What each till is written in, and what it sends.
TILLS = ("python lines", "c", "python receipts", "c", "python lines", "c", "python receipts", "c")
CUT_IN_TEN = 3
# Of the door's first six lines, which are those of the operator's two slips.
MORNING = "lose@line:3 drop@line:5"
LOSSES = 4  # answers of lines in a life of the door
KILLED = -9
# Seconds: what takes so long has no end.
DEADLINE = 600
MISTAKE_RECEIPTS = 16
# What each mistake leads to in the book of a till that makes it, which are those in Python.
BOOK = r"/till-[1357]\.book "
FOUND = {
    "new-key": BOOK + "has no outcome of",
    "forgets": BOOK + "has no outcome of",
    "hopes": BOOK + r"(has a key that is no job|t\S+ is confirmed for|Told\()",
    "gives-up": BOOK + r"(has a key that is no job|t\S+ is rejected for)",
}
assert tuple(FOUND) == MISTAKES


class Tokens:
    """What tills and operator show the door."""

    def __init__(self, folder):
        self.file = folder / "shop.tokens"
        self.options = ["--tokens", self.file, "--require-token"]

    def make(self, name, role):
        return make_token(self.file, name, role)


class Till(threading.Thread):
    """A till's process, begun again when it was killed, behind a cable of its own. It is killed when so
    many things have happened on that."""

    def __init__(self, shop, number, kind, mistake):
        super().__init__(daemon=True)
        self.shop, self.number, self.kind, self.mistake = shop, number, kind, mistake
        self.book = shop.folder / f"till-{number}.book"
        self.token = shop.tokens.make(f"t{number}", "desk")
        chance = random.Random(f"{shop.seed}.till.{number}")
        kills = shop.sales if shop.is_rough else 1 + shop.sales // 12
        self.kill_at = sorted(chance.sample(range(1, 3 * shop.sales), kills))
        self.stages, self.kills, self.process, self.lock = 0, 0, None, threading.Lock()
        self.wrong = f"till {number} has no end"
        self.has_ended, self.errors = False, ""
        self.cable = self.make_cable(lambda: shop.door.port, f"{shop.seed}.cable.{number}",
                                     6 if shop.is_rough else CUT_IN_TEN, self.at_stage)

    def make_cable(self, *arguments):
        return CuttingProxy(*arguments)

    def at_stage(self):
        with self.lock:
            self.stages += 1
            if self.kill_at and self.stages >= self.kill_at[0] and self.process.poll() is None:
                self.kill_at.pop(0)
                self.process.kill()
        self.shop.at_stage()

    def command(self):
        if self.kind == "c":
            return [os.environ["SHOP_TILL"], str(self.cable.port), str(self.number), str(self.shop.sales), self.book,
                    self.token]
        mistake = ["--mistake", self.mistake] if self.mistake else []
        return [sys.executable, HERE / "shop_till.py", f"http://127.0.0.1:{self.cable.port}", str(self.number),
                str(self.shop.sales), self.book, self.kind.split()[1], "--token", self.token,
                *mistake]

    def run(self):
        try:
            while (code := self.live()) == KILLED:
                self.kills += 1
            self.wrong = f"till {self.number} has ended with {code}: {self.errors}" if code or self.errors else ""
        finally:
            self.shop.events.put("till")

    def live(self):
        """One process, from its start to its end."""
        with self.lock:
            self.process = subprocess.Popen(self.command(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        for line in self.process.stdout:
            if line.startswith("needs "):
                self.shop.operator.called.set()
        _, self.errors = self.process.communicate(timeout=DEADLINE)
        return self.process.returncode


class BrowserTill(Till):
    """A page in a browser, whose killing is that of all the browser's processes."""

    def make_cable(self, *arguments):
        return BrowserCable(*arguments, self.book, self.on_call)

    def on_call(self, path, text):
        if path == "/needs":
            self.shop.operator.called.set()
            return
        self.errors = text
        self.has_ended = True
        self.process.kill()

    def live(self):
        url = f"http://127.0.0.1:{self.cable.port}/?till={self.number}&sales={self.shop.sales}&token={self.token}"
        with self.lock:
            self.process = Browser(url, self.shop.folder / f"browser-{self.number}")
        self.process.wait()
        return ENDED if self.has_ended else KILLED


class Operator(threading.Thread):
    """Looks at the paper when called, and tells the door what became of a job; closes the day when all
    tills have sold."""

    def __init__(self, shop):
        super().__init__(daemon=True)
        self.shop, self.resolved = shop, {}  # by job: done or not
        self.called, self.is_evening, self.wrong = threading.Event(), False, "the operator has no end"
        self.cable = CuttingProxy(lambda: shop.door.port, f"{shop.seed}.cable.operator", CUT_IN_TEN)
        self.token = shop.tokens.make("operator", "operator")
        self.door = lorimat.Door(f"http://127.0.0.1:{self.cable.port}", self.token, "operator",
                                 pending=shop.folder / "operator.pending")

    def run(self):
        try:
            self.open_day()
            self.shop.events.put("morning")
            while not self.is_evening:
                self.called.wait()
                self.called.clear()
                self.look()
            self.close_day()
            self.wrong = ""
        except Exception as error:  # whatever it is, the day does not go on without
            self.wrong = f"operator: {type(error).__name__}: {error}"
        finally:
            self.shop.events.put("operator")

    def open_day(self):
        """Two slips, of which MORNING loses the one behind its effect and the other ahead of it."""
        for number, states in enumerate((["confirmed"], ["rejected"]), 1):
            key, state = f"t0-{number}-{secrets.token_hex(4)}", ""
            while state not in states:
                try:
                    state = self.door.sell(lines_of(0, A_SLIP, key), key).state
                except lorimat.JobFailed as error:
                    state = error.job.state
                except (lorimat.OutcomeUnknown, lorimat.DoorAway):
                    self.look()

    def look(self):
        try:
            for job in self.door.jobs("needs_operator"):
                self.resolve(job)
        except lorimat.DoorError:
            self.called.set()  # a cut, or no door: once more

    def resolve(self, job):
        found = [one for one in printed(self.shop.register) if job.key in one.keys and one.is_whole]
        # Ahead of telling it, for the answer may be lost.
        self.resolved[job.id] = bool(found)
        if not found:
            self.door.resolve(job.id, "not_done", "it is not on the paper")
        elif found[0].number:
            self.door.resolve(job.id, "done", "it is on the paper", found[0].closure, found[0].number)
        else:
            self.door.resolve(job.id, "done", "it is on the paper")

    def close_day(self):
        key = lorimat.new_key()
        while True:
            try:
                self.door.close_day(key)
                return
            except (lorimat.OutcomeUnknown, lorimat.DoorAway):
                self.look()


class Shop:
    def __init__(self, folder, receipts, seed, mistake=None, browsers=0, is_rough=False):
        self.folder, self.seed = pathlib.Path(folder), seed
        self.chance = random.Random(f"{seed}.shop")
        # Short, and a mistake is to have its chances.
        self.is_rough = is_rough
        self.sales = sales_for(-(-receipts // len(TILLS)))
        self.door, self.tokens = Door(folder, faulty=True), Tokens(self.folder)
        self.register = self.door.register
        self.lives = 1 + max(4, receipts // 25)
        self.kills, self.stages, self.kill_at, self.lock = 0, 0, None, threading.Lock()
        self.is_begun, self.events = False, queue.Queue()
        self.operator = Operator(self)
        kinds = TILLS[:len(TILLS) - browsers] + ("browser",) * browsers
        self.tills = [(BrowserTill if kind == "browser" else Till)(self, number, kind, mistake if "python" in kind else None)
                      for number, kind in enumerate(kinds, 1)]

    def at_stage(self):
        with self.lock:
            self.stages += 1
            if self.kill_at and self.stages >= self.kill_at and self.door.process.poll() is None:
                self.kill_at = None
                self.door.process.kill()

    def open_door(self):
        """The next life: some end by a step of a job, some by what happens on the cables; lines lose their
        answers in both."""
        jobs = max(1, len(TILLS) * self.sales // self.lives)
        is_last = self.kills + 1 >= self.lives
        faults = [] if self.is_begun else [MORNING]
        if self.kills % 2 == 0:
            self.kill_soon(jobs)
        elif not is_last:
            step, times = self.chance.choice(STEPS + [("before-asking", 1), ("behind-asking", 1)])
            often = 1 if "asking" in step else self.chance.randint(1, jobs * times // 2 or 1)
            faults.append(f"kill@{step}:{often}")
        if not is_last:
            faults += [f"lose@line:{self.chance.randint(7, 2 * jobs + 7)}" for _ in range(LOSSES)]
        try:
            self.door.start(*self.tokens.options, fault=" ".join(faults))
        except NotStarted:
            # A job of a life before was at work at once, and the fault struck there.
            self.door_ended()
            self.open_door()
            return
        process = self.door.process
        threading.Thread(target=lambda: self.events.put(process.wait() and "door"), daemon=True).start()

    def kill_soon(self, jobs):
        """Not in the morning, whose slips have troubles of their own."""
        with self.lock:
            is_last = self.kills + 1 >= self.lives
            self.kill_at = self.stages + self.chance.randint(1, 3 * jobs) if self.is_begun and not is_last else None

    def door_ended(self):
        code = self.door.process.returncode
        if code != KILLED:
            raise Wrong("the door has ended with", code)
        self.kills += 1

    def run(self):
        self.open_door()
        self.operator.start()
        open_tills = len(self.tills)
        while True:
            event = self.events.get(timeout=DEADLINE)
            if event == "door":
                self.door.wait()
                self.door_ended()
                self.open_door()
            elif event == "morning":
                self.is_begun = True
                self.kill_soon(self.sales)
                for till in self.tills:
                    till.start()
            elif event == "till":
                open_tills -= 1
                if open_tills == 0:
                    self.operator.is_evening = True
                    self.operator.called.set()
            elif event == "operator":
                break
        for one in [self.operator, *self.tills]:
            if one.wrong:
                raise Wrong(one.wrong)
        if len(set(self.operator.resolved.values())) < 2:
            raise Wrong("the operator has resolved", self.operator.resolved)
        self.door.process.kill()
        self.door.process.communicate()
        # Whoever looks the day after.
        self.door.start(*self.tokens.options)
        heads = {"Authorization": f"Bearer {self.operator.token}"}
        figures = check_day(self.door, [till.book for till in self.tills], self.sales, heads)
        if self.door.stop() != 0:
            raise Wrong("the door ends with", self.door.process.returncode)
        return figures

    def close(self):
        for till in self.tills:
            till.cable.close()
            if till.process and till.process.poll() is None:
                till.process.kill()
        self.operator.door.close()
        self.operator.cable.close()
        if self.door.process and self.door.process.poll() is None:
            self.door.process.kill()
            self.door.process.communicate()

    def cuts(self):
        seen = collections.Counter()
        for one in [*self.tills, self.operator]:
            seen.update(one.cable.seen)
        return seen


def run_day(receipts, seed, mistake=None, browsers=0, is_rough=False):
    """What has to hold, held: the shop, and its figures. Throws Wrong."""
    folder = tempfile.mkdtemp(prefix="shop-day-")
    shop = Shop(folder, receipts, seed, mistake, browsers, is_rough)
    try:
        figures = shop.run()
    except Wrong as wrong:
        if not mistake:
            raise Wrong(wrong, "- see", folder) from wrong
        shutil.rmtree(folder)
        raise
    finally:
        shop.close()
    shutil.rmtree(folder)
    return shop, figures


def find_mistakes(seed):
    """How many were not found, by what they lead to; a day as rough without one has to pass."""
    _, figures = run_day(MISTAKE_RECEIPTS, seed, is_rough=True)
    print(f"none: {figures}", flush=True)
    missed = 0
    for mistake, told in FOUND.items():
        try:
            run_day(MISTAKE_RECEIPTS, seed, mistake, is_rough=True)
            wrong = "the day has passed"
        except Wrong as error:
            wrong = str(error)
        is_found = re.search(told, wrong) is not None
        missed += not is_found
        print(f"{mistake if is_found else 'NOT FOUND: ' + mistake}: {wrong[:200]}", flush=True)
    return missed


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--receipts", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--browsers", type=int, default=0)
    parser.add_argument("--mistakes", action="store_true")
    options = parser.parse_args()
    if options.browsers and not has_browser():
        parser.error("there is no chromium, or no bindings/javascript/lorimat-door.js")
    try:
        if options.mistakes:
            return 1 if find_mistakes(options.seed) else 0
        shop, figures = run_day(options.receipts, options.seed, browsers=options.browsers)
    except Wrong as wrong:
        print(f"WRONG: {wrong}")
        return 1
    tills = sum(till.kills for till in shop.tills)
    cuts = shop.cuts()
    cuts.pop("whole")
    print(f"{figures}; {tills} kills of tills and {shop.kills} of the door; cuts: {dict(cuts)}; resolved as done "
          f"{sum(shop.operator.resolved.values())} of {len(shop.operator.resolved)}")
    print(f"\nCOUNT shop.receipts {figures.receipts} {options.receipts}")
    print(f"COUNT shop.kills {tills + shop.kills} {options.receipts // 10}")
    print(f"COUNT shop.cuts {sum(cuts.values())} {options.receipts // 4}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
