"""What of a shop's day has to agree: the paper and the journal of the register, the documents that it has
stored, the door's jobs and the tills' own books, each read by itself."""
import collections
import os
import re
import sqlite3
import subprocess
from typing import List, NamedTuple

from shop_plan import kind_of, money, read_book, total_of

KEY = re.compile(r"\bt[0-9]+-[0-9]+-[0-9a-f]{8}\b")
CUT = re.compile(r"^-{42}$", re.MULTILINE)
NUMBER = re.compile(r"DOCUMENTO N\. ([0-9]{4})-([0-9]{4})")
TOTAL = re.compile(r"^TOTALE COMPLESSIVO +([0-9.]+),([0-9]{2})$", re.MULTILINE)
CLOSING = re.compile(r"^TOTALE GIORNALIERO +([0-9.]+),([0-9]{2})$", re.MULTILINE)
# The last lines of a slip that has been ended say once more what it is.
SLIP, CLOSED, VOID = "DOCUMENTO GESTIONALE", "CHIUSURA GIORNALIERA", "ANNULLATO"


class Wrong(Exception):
    """Something does not agree."""


def require(holds, *what):
    if not holds:
        raise Wrong(" ".join(str(part) for part in what))


class Paper(NamedTuple):
    """A document as it was printed."""

    keys: List[str]
    closure: int
    number: int  # 0 of what has none
    cents: int
    is_whole: bool  # a receipt that is registered, or a slip that was ended
    is_closing: bool


def cents_in(found):
    return int(found.group(1).replace(".", "")) * 100 + int(found.group(2)) if found else 0


def read_paper(text):
    number, total = NUMBER.search(text), TOTAL.search(text)
    is_slip = text.count(SLIP) == 2 and VOID not in text
    is_closing = CLOSED in text
    return Paper(KEY.findall(text), int(number.group(1)) if number else 0, int(number.group(2)) if number else 0,
                 cents_in(CLOSING.search(text) if is_closing else total), number is not None or is_slip, is_closing)


def printed(register):
    """The register's journal, also while it is at work."""
    with sqlite3.connect(f"file:{register}?mode=ro", uri=True) as database:
        rows = database.execute("SELECT lines FROM journal ORDER BY place").fetchall()
    database.close()
    return [read_paper(text) for (text,) in rows]


def on_the_roll(register):
    text = subprocess.run([os.environ["LORIMAT"], "paper", "--register", register], capture_output=True,
                          encoding="utf-8", check=True).stdout
    return [read_paper(part) for part in CUT.split(text) if part.strip()]


def stored(register):
    with sqlite3.connect(f"file:{register}?mode=ro", uri=True) as database:
        rows = database.execute("SELECT closure, number, total / 100 FROM document ORDER BY id").fetchall()
    database.close()
    return rows


def all_jobs(door, heads):
    jobs, after = [], 0
    while page := door.request("GET", f"/v1/jobs?after={after}&limit=100", headers=heads)[2]["jobs"]:
        jobs, after = jobs + page, page[-1]["id"]
    return jobs


class Figures(NamedTuple):
    receipts: int
    slips: int
    refused: int
    jobs: int
    unknown: int
    sum: str

    def __str__(self):
        return (f"{self.receipts} receipts of {self.sum}, {self.slips} slips and {self.refused} refusals; {self.jobs} "
                f"jobs, {self.unknown} of them unknown on the way")


def check_paper(register):
    """Journal, roll and stored documents say the same; what is on them."""
    journal = printed(register)
    # Of a long day the roll has the end, which may begin in the midst of a document.
    roll = on_the_roll(register)
    roll = roll if len(roll) == len(journal) else roll[1:]
    require(roll and journal[-len(roll):] == roll, "the roll is not what the journal has")
    verify = subprocess.run([os.environ["LORIMAT"], "journal", "verify", "--register", register],
                            capture_output=True, text=True)
    require(verify.returncode == 0, "journal verify:", verify.stdout, verify.stderr)
    receipts = [one for one in journal if one.number]
    require([(one.closure, one.number, one.cents) for one in receipts] == stored(register),
            "the documents are not those of the journal")
    require([one.number for one in receipts] == list(range(1, len(receipts) + 1)), "numbers are missing")
    closings = [one.cents for one in journal if one.is_closing]
    require(closings == [sum(one.cents for one in receipts)], "the closing has", closings)
    return [one for one in journal if one.is_whole]


def by_key(papers):
    """Closure, number and cents of each key, which is on one document alone."""
    found = {}
    for one in papers:
        require(len(one.keys) == 1, "a document has the keys", one.keys)
        require(one.keys[0] not in found, one.keys[0], "is on two documents")
        found[one.keys[0]] = (one.closure, one.number, one.cents) if one.number else None
    return found


def effect_of(job):
    document = job["document"]
    if document is None or document["number"] is None:
        return None
    total = document["total"]
    return document["closure"], document["number"], total and int(total.replace(".", ""))


def check_jobs(door, paper, heads):
    """Each confirmed job is on the paper, with its own document, and no other one; all are over."""
    device = door.request("GET", "/v1/device", headers=heads)[2]
    require((device["queued"], device["unknown"], device["needs_operator"]) == (0, 0, 0), device)
    jobs = {(job["desk"], job["key"]): job for job in all_jobs(door, heads)}
    for job in jobs.values():
        require(job["state"] in ("confirmed", "rejected", "expired"), job)
    confirmed = {key: effect_of(job) for (desk, key), job in jobs.items()
                 if job["state"] == "confirmed" and KEY.fullmatch(key)}
    require(confirmed.keys() == paper.keys(), "jobs and paper differ by", confirmed.keys() ^ paper.keys())
    for key, effect in confirmed.items():
        # An operator tells of a document without the device's word on its total.
        told = effect[:2] + paper[key][2:] if effect and paper[key] and effect[2] is None else effect
        require(told == paper[key], key, "is told as", effect, "and printed as", paper[key])
    return jobs


def check_book(till, name, jobs, paper):
    """The till knows what became of each key, and it is what the door has."""
    book = read_book(name)
    known = {key: job for (desk, key), job in jobs.items() if desk == f"t{till}"}
    for key, told in book.items():
        require(told.state != "asked", name, "has no outcome of", key)
        if told.state == "refused":
            require(key not in known, name, "has as refused", key)
            continue
        require(key in known, name, "has a key that is no job", key)
        require(told.state == known[key]["state"], name, key, "is", told.state, "for", known[key]["state"])
        if told.state == "confirmed" and paper[key]:
            closure, number, cents = paper[key]
            totals = (money(cents), "-") if known[key]["document"]["total"] is None else (money(cents),)
            require((told.closure, told.number) == (str(closure), str(number)) and told.total in totals, name, told)
    require(known.keys() <= book.keys(), name, "lacks", known.keys() - book.keys())
    return book


def check_sales(till, book, paper, sales):
    """Every sale of the plan once, as it was planned; no other one. The sum in cents."""
    of_sale = collections.Counter(int(key.split("-")[1]) for key in paper if key.startswith(f"t{till}-"))
    expected = {sale: 1 for sale in range(1, sales + 1) if kind_of(sale) != "refused"}
    require(of_sale == expected, "till", till, "has sold", dict(of_sale - collections.Counter(expected)),
            "too often and lacks", dict(collections.Counter(expected) - of_sale))
    sums = collections.Counter()
    for key, told in book.items():
        if told.state == "confirmed" and kind_of(told.sale) == "receipt":
            require(paper[key][2] == total_of(till, told.sale), key, paper[key], "for", total_of(till, told.sale))
            sums["paper"] += paper[key][2]
            sums["book"] += int(told.total.replace(".", "")) if told.total != "-" else paper[key][2]
            sums["plan"] += total_of(till, told.sale)
    require(len(set(sums.values())) == 1, "till", till, "has the sums", sums)
    return sums["book"]


def check_day(door, books, sales, heads):
    """`heads`: what an operator's requests have. Throws Wrong where something does not agree."""
    whole = check_paper(door.register)
    paper = by_key([one for one in whole if not one.is_closing])
    jobs = check_jobs(door, paper, heads)
    total = 0
    for till, name in enumerate(books, 1):
        total += check_sales(till, check_book(till, name, jobs, paper), paper, sales)
    require(total == sum(effect[2] for effect in paper.values() if effect), "the sum of the tills is", total)
    kinds = collections.Counter("receipt" if effect else "slip" for effect in paper.values())
    refused = len(books) * sum(kind_of(sale) == "refused" for sale in range(1, sales + 1))
    unknown = sum(any(step["state"] == "unknown" for step in job["history"]) for job in jobs.values())
    return Figures(kinds["receipt"], kinds["slip"], refused, len(jobs), unknown, money(total))
