"""A till of a shop's day on lorimat.Door: sells what shop_plan.py says, with a book of its own.

  shop_till.py URL TILL SALES BOOK lines|receipts [--token T] [--mistake NAME]

An asking is in the book, on the disk, before its key is used, and the outcome when it is known; killed and
begun again it goes on where the book ends. "needs KEY" on standard output calls the operator. The mistakes
are what a shop's day has to find."""
import argparse
import json
import os
import pathlib
import secrets
import sys
import time

from shop_plan import kind_of, lines_of, read_book, receipt_of

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "bindings/python"))
import lorimat  # noqa: E402  behind the path that has it
import lorimat.door  # noqa: E402
from lorimat._exchange import NoAnswer  # noqa: E402

PAUSE = 0.05  # seconds, ahead of asking again
MISTAKES = ("new-key", "forgets", "hopes", "gives-up")


class Book:
    def __init__(self, name):
        self.rows = read_book(name)
        self.file = open(name, "r+b" if os.path.exists(name) else "w+b", buffering=0)
        text = self.file.read()
        # What a kill has cut goes.
        self.file.truncate(text.rfind(b"\n") + 1)
        self.file.seek(0, os.SEEK_END)

    def write(self, *words):
        self.file.write(" ".join(str(word) for word in words).encode() + b"\n")
        os.fsync(self.file.fileno())


class Till:
    def __init__(self, options):
        self.number, self.mistake = options.till, options.mistake
        self.style, self.book = options.style, Book(options.book)
        self.door = lorimat.Door(options.url, options.token, f"t{options.till}",
                                 pending=options.book + ".pending")

    def run(self, sales):
        for outcome in self.door.resume() if self.mistake != "forgets" else ():
            if outcome.job and outcome.job.key in self.book.rows:
                self.tell(self.book.rows[outcome.job.key].sale, outcome.job)
        for sale in range(1, sales + 1):
            self.sell(sale)

    def sell(self, sale):
        wanted = "refused" if kind_of(sale) == "refused" else "done"
        rows = [row for row in self.book.rows.values() if row.sale == sale]
        if self.mistake == "forgets":
            rows = [row for row in rows if row.state != "asked"]
        came = ""
        while came != wanted:
            if rows:
                row = rows.pop()
                key, state = row.key, row.state
            else:
                key, state = f"t{self.number}-{sale}-{secrets.token_hex(4)}", ""
                self.book.write("ask", sale, key)
            came = self.outcome(sale, key) if state in ("", "asked") else \
                "done" if state == "confirmed" else "refused"
            if came == "refused" and wanted == "done":
                rows = []

    def ask(self, sale, key):
        """Once in a mistaken till, which then makes of it what none may."""
        is_receipt = self.style == "receipts" and kind_of(sale) != "slip"
        body = receipt_of(self.number, sale, key) if is_receipt else lines_of(self.number, sale, key)
        if not self.mistake or self.mistake == "forgets":
            return (self.door.receipt if is_receipt else self.door.sell)(body, key)
        path = "/v1/receipts?wait=30" if is_receipt else "/v1/jobs?wait=30"
        body = body if is_receipt else {"lines": body}
        body["desk"] = f"t{self.number}"
        heads = {"Content-Type": "application/json", "Idempotency-Key": key}
        try:
            job = lorimat.door._job(self.door._address.exchange("POST", path, json.dumps(body).encode(), heads).json())
        except NoAnswer as error:
            raise lorimat.OutcomeUnknown(str(error)) from error
        if job is None:
            raise lorimat.RequestRefused("no job")
        if job.state == "rejected":
            raise lorimat.JobFailed("rejected", job=job)
        if job.state != "confirmed":
            raise lorimat.OutcomeUnknown(job.state)
        return job

    def outcome(self, sale, key):
        """"done" or "refused", as often as it has to be asked; "" by a mistake."""
        while True:
            try:
                self.tell(sale, self.ask(sale, key))
                return "done"
            except lorimat.JobFailed as error:
                self.tell(sale, error.job)
                return "refused"
            except lorimat.RequestRefused:
                self.book.write("told", sale, key, "refused", "-", "-", "-")
                return "refused"
            except lorimat.NeedsOperator:
                print("needs", key, flush=True)
            except (lorimat.OutcomeUnknown, lorimat.DoorAway):
                if self.mistake == "new-key":
                    return ""
                if self.mistake == "hopes":
                    self.book.write("told", sale, key, "confirmed", "-", "-", "-")
                    return "done"
                if self.mistake == "gives-up":
                    self.book.write("told", sale, key, "rejected", "-", "-", "-")
                    return "refused"
            time.sleep(PAUSE)

    def tell(self, sale, job):
        document = job.document
        words = (document.closure, document.number, document.total) if document else ("-", "-", "-")
        known = self.book.rows.get(job.key)
        if known is None or known.state == "asked":
            self.book.write("told", sale, job.key, job.state, *words)
            if known:
                self.book.rows[job.key] = known._replace(state=job.state)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("url")
    parser.add_argument("till", type=int)
    parser.add_argument("sales", type=int)
    parser.add_argument("book")
    parser.add_argument("style", choices=("lines", "receipts"))
    parser.add_argument("--token")
    parser.add_argument("--mistake", choices=MISTAKES)
    options = parser.parse_args()
    # A shop's day is not to take a day.
    lorimat.door._LONGEST_PAUSE = PAUSE
    Till(options).run(options.sales)


if __name__ == "__main__":
    main()
