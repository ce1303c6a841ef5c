"""Receipts without the language: from a body of JSON to a document, by the program."""
import json
import os
import pathlib
import re
import sqlite3
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]

COFFEE = {"kind": "receipt", "items": [{"department": 1, "price": "1.20"}],
          "payments": [{"tender": "cash"}]}


def post(door, body, key="k", path="/v1/receipts", raw=None):
    headers = {"Idempotency-Key": key} if key else {}
    status, _, answer = door.request("POST", path, body, headers, raw=raw)
    return status, answer


def dry(door, body):
    return post(door, body, None, "/v1/receipts?dry_run=true")


def rows(door, query):
    with sqlite3.connect(f"file:{door.register}?mode=ro", uri=True) as database:
        database.text_factory = lambda text: text.decode("cp1252")
        return database.execute(query).fetchall()


def test_a_receipt_is_a_job_as_its_lines_would_be(door):
    body = {**COFFEE, "desk": "cassa-1", "reference": "order 4711", "expires_s": 600}
    status, job = post(door, body)
    assert (status, job["state"], job["desk"], job["reference"]) == \
        (201, "confirmed", "cassa-1", "order 4711")
    assert job["document"]["total"] == "1.20"
    assert [(line["line"], line["code"]) for line in job["lines"]] == [(1, 0), (2, 0)]
    # The same value in other bytes is the same job; another value, or another address, is not.
    other = json.dumps(dict(reversed(body.items())), indent=1)
    status, again = post(door, None, raw=other)
    assert (status, again["replayed"], again["id"]) == (200, True, job["id"])
    for changed in ({**body, "items": [{"department": 1, "price": "1.21"}]},
                    {**body, "expires_s": 601}):
        status, problem = post(door, changed)
        assert (status, problem["code"]) == (422, "key_reused")
    assert door.documents() == [(1, 1)]
    assert door.get("/v1/jobs?key=k&desk=cassa-1")[1]["id"] == job["id"]


def test_a_document_has_what_was_meant(door):
    body = {"kind": "invoice", "customer": ["ROSSI SRL", "VIA DELL'ORSO 1", "20100 MILANO"],
            "items": [{"department": 1, "description": "CAFF\u00c8 '; #4=0.01, @x", "price": "1.20",
                       "quantity": "2"},
                      {"department": 2, "price": "10", "discount": {"percent": "10"}}],
            "subtotal_discount": {"amount": "1.40"},
            "payments": [{"tender": "card", "amount": "5.00"}, {"tender": "cash", "amount": "6"}],
            "trailer": ["GRAZIE; A PRESTO", "l'ultima riga"]}
    status, plan = dry(door, body)
    assert status == 200
    # 2 x 1.20, and 10.00 less 10 %, less 1.40.
    assert plan["sums"]["items"] == ["2.40", "9.00"]
    assert (plan["sums"]["subtotal"], plan["sums"]["total"]) == ("11.40", "10.00")
    assert (plan["sums"]["paid"], plan["sums"]["change"]) == ("11.00", "1.00")
    assert door.documents() == []
    status, job = post(door, body)
    assert (status, job["state"], job["document"]["total"]) == (201, "confirmed", "10.00")
    assert len(job["lines"]) == len(plan["lines"])
    assert rows(door, "SELECT total, change FROM document") == [(100000, 10000)]
    paper = "\n".join(lines for (lines,) in rows(door, "SELECT lines FROM journal"))
    for text in ("ROSSI SRL", "VIA DELL'ORSO 1", "GRAZIE; A PRESTO", "l'ultima riga",
                 "CAFF\u00c8 '; #4=0.01, @x"):
        assert text in paper


def test_a_dry_run_sends_nothing_and_needs_no_key(door):
    status, plan = dry(door, COFFEE)
    assert (status, plan["kind"]) == (200, "receipt")
    assert plan["lines"] == ["#10 #1=1, #4=1.20", "#11 #1=1"]
    assert plan["sums"]["by_vat"] == [{"vat": 1, "rate": "22%", "amount": "1.20"}]
    assert plan["sums"]["by_department"] == [{"department": 1, "amount": "1.20"}]
    assert plan["sums"]["payments"] == [{"name": "Pagamento contante", "amount": "1.20"}]
    assert door.documents() == [] and door.get("/v1/jobs")[1]["jobs"] == []
    assert post(door, COFFEE, None)[1]["code"] == "no_key"
    assert post(door, COFFEE, None, "/v1/receipts?dry_run=yes")[1]["code"] == "bad_field"
    assert post(door, COFFEE, path="/v1/receipts?dry_run=false")[0] == 201


@pytest.mark.parametrize("change, expected", [
    ({"payments": [{"tender": "cash", "amount": "1.19"}]}, (422, "too_little_paid", "/payments")),
    ({"payments": [{"tender": "cash"}, {"tender": "card"}]},
     (422, "nothing_left_to_pay", "/payments/1")),
    ({"payments": [{"tender": "card", "amount": "2"}]}, (422, "refused", "/payments/0")),
    ({"items": [{"department": 41, "price": "1"}]}, (422, "refused", "/items/0")),
    ({"items": [{"department": 1, "price": 1.2}]}, (400, "number_not_text", "/items/0/price")),
    ({"items": [{"department": 1, "price": "1e2"}]}, (400, "bad_number", "/items/0/price")),
    ({"items": [{"department": 1, "description": "\n"}]},
     (400, "control_character", "/items/0/description")),
    ({"items": [{"department": 1, "description": "\u4f60"}]},
     (400, "not_in_code_page", "/items/0/description")),
    ({"items": COFFEE["items"] * 10000}, (413, "too_large", "/items")),
    ({"items": COFFEE["items"] * 1000}, (413, "too_large", "/items")),
    ({"colour": "red"}, (400, "unknown_field", "/colour")),
    ({"desk": 7}, (400, "bad_field", "/desk")),
    ({"desk": "x" * 65}, (400, "bad_field", "/desk")),
    ({"reference": "a\u0007"}, (400, "control_character", "/reference")),
    ({"reference": "x" * 257}, (400, "bad_field", "/reference")),
    ({"expires_s": 0}, (400, "bad_field", "/expires_s")),
    ({"expires_s": "60"}, (400, "bad_field", "/expires_s")),
])
def test_what_is_no_good_is_told_with_its_place_and_sends_nothing(door, change, expected):
    for path in ("/v1/receipts", "/v1/receipts?dry_run=true"):
        status, problem = post(door, {**COFFEE, **change}, path=path)
        assert (status, problem["code"], problem["pointer"]) == expected
        assert problem["detail"]
    assert door.get("/v1/jobs")[1]["jobs"] == [] and door.documents() == []


def test_json_that_is_none(door):
    for raw in ("{", "[]", '{"kind": "receipt", "kind": "void"}', "[" * 100000, '{"a": 1e999}'):
        assert post(door, None, raw=raw)[1]["code"] == "bad_json"


def test_a_sale_goes_back_and_another_is_made_void(door):
    for key in "ab":
        assert post(door, COFFEE, key)[0] == 201
    # Of the day on which the door's clock is.
    day = door.get("/v1/jobs?key=a&desk=")[1]["document"]["time"][:10]
    first = {"closure": 1, "number": 1, "date": day}
    status, job = post(door, {**COFFEE, "kind": "refund", "refers_to": first}, "c")
    assert (status, job["state"]) == (201, "confirmed")
    status, job = post(door, {**COFFEE, "kind": "refund", "refers_to": first}, "d")
    assert (status, job["state"]) == (422, "rejected")
    second = {"closure": 1, "number": 2, "date": day}
    status, plan = dry(door, {"kind": "void", "refers_to": second})
    assert (status, plan["sums"], len(plan["lines"])) == (200, None, 1)
    status, job = post(door, {"kind": "void", "refers_to": second}, "e")
    assert (status, job["state"], job["document"]["total"]) == (201, "confirmed", "1.20")
    # Two sales, a credit note and a void.
    assert rows(door, "SELECT kind FROM document ORDER BY id") == [(0,), (0,), (2,), (3,)]
    assert rows(door, "SELECT referred_number FROM document ORDER BY id") == [(0,), (0,), (1,), (2,)]


def test_codes_of_the_customer(door):
    body = {**COFFEE, "payments": [{"tender": "card"}], "lottery_code": "abcd1234"}
    assert post(door, body, "a")[0] == 201
    assert rows(door, "SELECT lottery_code FROM document") == [("ABCD1234",)]
    assert post(door, {**COFFEE, "tax_code": "RSSMRA80A01H501U"}, "b")[0] == 201


def test_what_was_programmed_counts_for_the_next_receipt(door):
    body = {**COFFEE, "items": [{"department": 3}]}
    assert dry(door, body)[1]["code"] == "refused"
    status, job = door.post(["PREP REP=3, DES='CORNETTI', PRE=1.50, IVA=2"], "p", desk="operator")
    assert (status, job["state"]) == (201, "confirmed")
    status, plan = dry(door, body)
    assert (status, plan["sums"]["total"]) == (200, "1.50")
    assert plan["sums"]["by_vat"] == [{"vat": 2, "rate": "10%", "amount": "1.50"}]
    assert post(door, body)[1]["document"]["total"] == "1.50"



def test_an_article_is_sold_by_its_code(doors, folder):
    door = doors(folder)
    (folder / "rows").write_bytes(b"'8001','LATTE',2,1.50\r\n")
    (folder / "lines.txt").write_text("EMLINK CMD='UA', FILE='rows'\n")
    subprocess.run([os.environ["LORIMAT"], "run", "--register", door.register, "lines.txt"], check=True,
                   capture_output=True, cwd=folder)
    door.start()
    body = {**COFFEE, "items": [{"article": "8001"}, {"article": "8001", "quantity": "0.5", "price": "3.00"}]}
    status, plan = dry(door, body)
    assert (status, plan["sums"]["items"], plan["sums"]["total"]) == (200, ["1.50", "1.50"], "3.00")
    status, job = post(door, body)
    assert (status, job["state"], job["document"]["total"]) == (201, "confirmed", "3.00")
    assert rows(door, "SELECT article, department, amount FROM document_line") == [("8001", 2, 15000)] * 2
    status, problem = dry(door, {**COFFEE, "items": [{"article": "8002"}]})
    assert (status, problem["code"], problem["pointer"]) == (422, "refused", "/items/0")


def test_a_device_that_does_not_tell_its_tables_takes_receipts(doors, folder):
    door = doors(folder, plugin=True).start()
    body = {"kind": "receipt",
            "items": [{"department": 1, "description": "CAFF\u00c8 '; #4=0.01", "price": "1.205", "quantity": "3"},
                      {"department": 2, "price": "10", "discount": {"percent": "10"}}],
            "subtotal_discount": {"amount": "0.62"},
            "payments": [{"tender": "card", "amount": "2.00"}, {"tender": "cash", "amount": "11.00"}]}
    status, plan = dry(door, body)
    # 3 x 1.205, and 10.00 less 10 %, less 0.62; the change is cash.
    assert (status, plan["sums"]) == (200, {
        "items": ["3.62", "9.00"], "subtotal": "12.62", "total": "12.00", "paid": "13.00", "change": "1.00",
        "by_vat": None, "by_department": [{"department": 1, "amount": "3.62"}, {"department": 2, "amount": "9.00"}],
        "payments": None})
    assert door.documents() == [] and door.get("/v1/jobs")[1]["jobs"] == []
    status, job = post(door, body, "a")
    assert (status, job["state"], job["document"]["total"]) == (201, "confirmed", "12.00")
    assert len(job["lines"]) == len(plan["lines"])
    assert rows(door, "SELECT total, change FROM document") == [(120000, 10000)]
    assert "CAFF\u00c8 '; #4=0.01" in rows(door, "SELECT lines FROM journal")[0][0]
    # What is wrong for certain sends nothing; what only the device knows, it says.
    for change, expected in (
            ({"items": [{"department": 1}]}, (422, "no_price", "/items/0/price")),
            ({"items": [{"article": "8001"}]}, (422, "no_price", "/items/0/price")),
            ({"payments": [{"tender": "card", "amount": "11.99"}]}, (422, "too_little_paid", "/payments"))):
        for path in ("/v1/receipts", "/v1/receipts?dry_run=true"):
            status, problem = post(door, {**body, **change}, "b", path)
            assert (status, problem["code"], problem["pointer"]) == expected
    assert len(door.get("/v1/jobs")[1]["jobs"]) == 1
    for key, item in (("c", {"department": 41}), ("d", {"article": "8001"})):
        status, job = post(door, {**COFFEE, "items": [{**item, "price": "1.00"}]}, key)
        assert (status, job["state"]) == (422, "rejected")
    assert len(door.documents()) == 1


def test_a_device_that_does_not_tell_its_tables_takes_sales_back(doors, folder):
    door = doors(folder, plugin=True).start()
    for key in "ab":
        status, job = post(door, COFFEE, key)
        assert status == 201
    day = job["document"]["time"][:10]
    first, second = ({"closure": 1, "number": number, "date": day} for number in (1, 2))
    status, job = post(door, {**COFFEE, "kind": "refund", "refers_to": first}, "c")
    assert (status, job["state"], job["document"]["kind"], job["document"]["total"]) == \
        (201, "confirmed", "refund", "1.20")
    status, job = post(door, {**COFFEE, "kind": "refund", "refers_to": first}, "d")
    assert (status, job["state"]) == (422, "rejected")
    assert dry(door, {"kind": "void", "refers_to": second})[1]["sums"] is None
    status, job = post(door, {"kind": "void", "refers_to": second}, "e")
    assert (status, job["state"], job["document"]["kind"]) == (201, "confirmed", "void")
    assert rows(door, "SELECT kind, referred_number FROM document ORDER BY id") == [(0, 0), (0, 0), (2, 1), (3, 2)]


def test_other_words_change_nothing(doors, folder):
    shipped = ROOT / "language" / "merkelin.ini"
    words = folder / "words.ini"
    text = shipped.read_text(encoding="latin-1")
    for old, new in (("10=VEND", "10=SELL"), ("11=CHIU", "11=VEND"), ("21=ALLEG", "21=CHIU")):
        assert f"\n{old}\n" in text
        text = text.replace(f"\n{old}\n", f"\n{new}\n")
    words.write_text(text, encoding="latin-1")
    door = doors(folder).start("--language", str(words))
    status, job = post(door, {**COFFEE, "trailer": ["GRAZIE"]})
    assert (status, job["state"], job["document"]["total"]) == (201, "confirmed", "1.20")


def test_the_page_says_what_a_receipt_becomes(door):
    page = (ROOT / "docs" / "door.md").read_text(encoding="utf-8")
    begin = page.index("## Receipts without the language")
    section = page[begin:page.index("\n## ", begin)]
    blocks = re.findall(r"(?:^    .*\n|^\n)+", section, re.MULTILINE)
    body, plan = ([json.loads(block[block.index("{"):]) for block in blocks if "{" in block])[:2]
    assert dry(door, body) == (200, plan)
    assert post(door, body)[1]["document"]["total"] == plan["sums"]["total"]
