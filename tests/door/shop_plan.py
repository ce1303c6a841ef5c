"""What the tills of a shop's day sell, by numbers alone, so that tills in any language sell the same
and whoever looks at the paper knows what has to be on it.

Sale N of till T, both from 1 on, is a receipt, a slip without a number (N % 10 == 7) or one that the
device refuses (N % 10 == 3). A receipt has one item of CENTS - behind a discount of ten cents where N is
odd - whose text is the key. A till tries a sale again, with a new key, when the door has told that it was
not done."""
from typing import NamedTuple

DISCOUNT = 10  # cents
A_SLIP = 7  # a sale that is one


def kind_of(sale):
    return {A_SLIP: "slip", 3: "refused"}.get(sale % 10, "receipt")


def cents_of(till, sale):
    """What the item costs."""
    return 100 + (till * 37 + sale * 11) % 900


def total_of(till, sale):
    """What the receipt comes to, in cents."""
    return cents_of(till, sale) - (DISCOUNT if sale % 2 else 0)


def money(cents):
    return f"{cents // 100}.{cents % 100:02}"


def lines_of(till, sale, key):
    if kind_of(sale) == "slip":
        return ["NOFIS INIZIO", f"NOFIS MSG='{key}'", "NOFIS FINE"]
    lines = [f"VEND REP=1, PRE={money(cents_of(till, sale))}, DES='{key}'"]
    if sale % 2:
        lines.append(f"SCONTO IMP={money(DISCOUNT)}")
    if kind_of(sale) == "refused":
        lines.append("VEND REP=99, PRE=1.00")
    return lines + ["CHIU TEND=CONTANTI"]


def receipt_of(till, sale, key):
    """The same without the language."""
    item = {"department": 1, "description": key, "price": money(cents_of(till, sale))}
    if sale % 2:
        item["discount"] = {"amount": money(DISCOUNT)}
    items = [item]
    if kind_of(sale) == "refused":
        items.append({"department": 99, "price": "1.00"})
    return {"kind": "receipt", "items": items, "payments": [{"tender": "cash"}]}


def sales_for(receipts):
    """How many sales of a till have so many receipts among them."""
    sales = 0
    while receipts > 0:
        sales += 1
        receipts -= kind_of(sales) == "receipt"
    return sales


class Told(NamedTuple):
    """What a till has written down of a key."""

    sale: int
    key: str
    state: str  # "asked" until it knows
    closure: str
    number: str
    total: str


def read_book(name):
    """By key. A line that a kill has cut is none: nothing was sent behind an asking that is not whole,
    and what was told is told again."""
    book = {}
    try:
        with open(name, encoding="ascii") as file:
            lines = file.read().split("\n")[:-1]
    except FileNotFoundError:
        return book
    for line in lines:
        word, sale, key, *more = line.split(" ")
        if word == "ask":
            assert key not in book, line
            book[key] = Told(int(sale), key, "asked", "-", "-", "-")
        else:
            told = Told(int(sale), key, *more)
            assert word == "told" and book[key] in (told, book[key]._replace(state="asked")), line
            book[key] = told
    return book
