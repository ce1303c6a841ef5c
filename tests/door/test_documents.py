"""The device and its documents as clients read them."""
import http.client
import json
import os
import re
import sqlite3
import struct
import subprocess

import pytest

from conftest import SALE
from waiting import until

COFFEE = {"kind": "receipt", "items": [{"department": 1, "price": "1.20"}],
          "payments": [{"tender": "cash"}]}


def sell(door, key, **more):
    status, _, job = door.request("POST", "/v1/receipts", {**COFFEE, **more}, {"Idempotency-Key": key})
    assert (status, job["state"]) == (201, "confirmed"), job
    return job["document"]


def copy(door, path, key, body=None):
    status, _, job = door.request("POST", f"/v1/documents/{path}", body or {}, {"Idempotency-Key": key})
    return status, job


def raw(door, path, accept=None):
    """Status, content type and the body as it comes."""
    connection = http.client.HTTPConnection("127.0.0.1", door.port, timeout=60)
    connection.request("GET", path, headers={} if accept is None else {"Accept": accept})
    reply = connection.getresponse()
    body = reply.read()
    connection.close()
    return reply.status, reply.getheader("Content-Type"), body


def listed(door, query="", limit=None):
    """All of a list, part by part."""
    documents, after = [], None
    while True:
        parts = [part for part in (query, limit and f"limit={limit}", after and f"after={after}") if part]
        status, body = door.get("/v1/documents" + ("?" + "&".join(parts) if parts else ""))
        assert status == 200, body
        documents += body["documents"]
        after = body["next"]
        if after is None:
            return documents
        assert len(body["documents"]) == (limit or 50)


def test_the_day_of_the_device(door):
    status, device = door.get("/v1/device")
    assert (status, device["open"], device["last_document"], device["warnings"]) == (200, None, None, [])
    assert device["totals"] == {"total": "0.00", "documents": 0, "rates": [], "tenders": []}
    sell(door, "a")
    last = sell(door, "b", items=[{"department": 2, "price": "11.00"}], payments=[{"tender": "card"}])
    device = door.get("/v1/device")[1]
    assert device["last_document"] == last
    assert device["totals"] == {
        "total": "12.20", "documents": 2,
        "rates": [{"rate": "22%", "total": "1.20", "vat": "0.22"},
                  {"rate": "10%", "total": "11.00", "vat": "1.00"}],
        "tenders": [{"tender": "Pagamento contante", "total": "1.20"},
                    {"tender": "Pagamento elettronico", "total": "11.00"}]}
    # A closing begins the day anew; the last document stays.
    door.request("POST", "/v1/device/close-day", {}, {"Idempotency-Key": "z"})
    device = door.get("/v1/device")[1]
    assert (device["totals"]["total"], device["last_document"]) == ("0.00", last)


def test_what_the_paper_and_an_open_document_say(doors, folder):
    door = doors(folder, faulty=True).start(fault="open@start:1")
    until(lambda: door.get("/v1/device")[1]["trouble"])
    assert door.get("/v1/device")[1]["open"] == "fiscal"
    door.request("POST", "/v1/device/reset", {}, {"Idempotency-Key": "r"})
    assert door.get("/v1/device")[1]["open"] is None
    door.stop()
    subprocess.run([os.environ["LORIMAT"], "fault", "--register", door.register, "paper-near-end", "--every"],
                   check=True)
    door.start()
    assert door.get("/v1/device")[1]["warnings"] == ["paper_near_end"]


def test_a_list_has_what_was_sold(door):
    sold = [sell(door, str(number), kind="invoice" if number % 3 == 0 else "receipt")
            for number in range(7)]
    assert door.post(["VEND REP=99, PRE=1"], "refused")[0] == 422
    assert door.post(["REPORT"], "report", desk="operator")[0] == 201
    for limit in (1, 2, 7, 100, None):
        assert listed(door, limit=limit) == sold
    day = sold[0]["time"][:10]
    for query in (f"from={day}", f"to={day}", f"from={day}&to={day}", f"from={sold[0]['time']}",
                  f"to={sold[-1]['time']}", "from=1970-01-01"):
        assert listed(door, query, 3) == sold, query
    for query in ("from=2099-01-01", "to=2000-01-01", "to=2000-01-01T10:00Z"):
        assert listed(door, query) == [], query
    jobs = door.get("/v1/jobs?state=confirmed&limit=100")[1]["jobs"]
    assert [job["document"] for job in jobs if job["document"]] == sold
    # Behind the last one, and behind one that there is not.
    for after in (7, 8, 10**17):
        assert door.get(f"/v1/documents?after={after}")[1] == {"documents": [], "next": None}


@pytest.mark.parametrize("query", [
    "from=2026-11-23&to=2026-11-22", "from=2026-11-22T10:01&to=2026-11-22T10:00", "from=", "to=",
    "from=yesterday", "from=2026-02-30", "to=22.11.2026", "from=2026-11-22T10:00:00%2B1:00", "limit=0",
    "limit=101", "limit=-1", "limit=1e1", "limit=", "limit=99999999999999999999", "after=x",
    "after=", "after=-1", "from=%00", "from=2026-11-22%0A"])
def test_a_list_that_is_asked_for_wrongly(door, query):
    status, problem = door.get(f"/v1/documents?{query}")
    assert (status, problem["code"]) == (400, "bad_field")
    assert problem["detail"].split(":")[0].split(" ")[0] in query


def test_fields_that_there_are_not(door):
    for path in ("/v1/documents?kind=receipt", "/v1/documents?From=2026-11-22", "/v1/documents/1/1?from=x",
                 "/v1/documents/1/1?format=json"):
        assert door.get(path)[1]["code"] == "unknown_field", path
    for path in ("/v1/documents?from=2026-11-22&from=2026-11-22", "/v1/documents?a=%zz"):
        assert door.get(path)[1]["code"] == "bad_target", path
    for kind in ("", "invoices", "RECEIPT", "%00"):
        assert door.get(f"/v1/documents/1/1?kind={kind}")[1]["code"] == "bad_field"


def test_numbers_of_every_size(door):
    sell(door, "a")
    for path in ("0/1", "1/0", "0/0", "1/2", "2/1", "10000/1", "1/10000", "2147483649/1", "4294967297/1",
                 "1/4294967297", "999999999999999999/1", "9999999999999999999999/1", "-1/1", "1/-1",
                 "1.0/1", "a/1", "1/a", "%31/x", "/1", "1/"):
        status, problem = door.get(f"/v1/documents/{path}")
        assert (status, problem["code"]) == (404, "not_found"), path
        status, problem = copy(door, f"{path}/copy", "k")
        assert (status, problem["code"]) == (404, "not_found"), path
    assert door.get("/v1/documents/0001/01")[0] == 200
    assert door.request("DELETE", "/v1/documents/1/1", {})[2]["code"] == "wrong_method"


def test_a_document_in_each_form(door):
    # In the code page of the device, with what is no JSON and no UTF-8 there.
    made = sell(door, "a", items=[{"department": 1, "description": "CAFF\u00c8 \u20ac \"'\\", "price": "1.2345",
                                   "quantity": "1.5", "discount": {"amount": "0.10"}}],
                payments=[{"tender": "cash", "amount": "5.00"}])
    path = "/v1/documents/1/1"
    for accept in (None, "*/*", "application/json", "text/plain;q=0.1, application/*"):
        status, content_type, body = raw(door, path, accept)
        assert (status, content_type) == (200, "application/json")
    document = json.loads(body)
    assert {name: document[name] for name in made} == made
    assert document["items"][0] == {
        "kind": "sale", "description": "CAFF\u00c8 \u20ac \"'\\", "article": None, "department": 1, "vat": 1,
        "quantity": "1.5", "price": "1.2345", "amount": "1.85", "taken_back": "0.00"}
    assert (document["items"][1]["kind"], document["items"][1]["amount"]) == ("adjustment", "-0.10")
    assert [payment["amount"] for payment in document["payments"]] == ["5.00"]
    assert (document["change"], document["voided"], document["refers_to"]) == ("3.25", False, None)
    status, content_type, body = raw(door, path, "text/plain")
    assert (status, content_type) == (200, "text/plain; charset=utf-8")
    assert "CAFF\u00c8 \u20ac \"'\\" in body.decode() and "DOCUMENTO N. 0001-0001" in body.decode()
    status, content_type, body = raw(door, path, "image/png")
    assert (status, content_type) == (200, "image/png")
    assert body.startswith(b"\x89PNG\r\n\x1a\n") and struct.unpack(">I", body[16:20]) == (640,)
    for accept in ("text/html", "*/*;q=0", "image/jpeg, text/plain;q=0"):
        assert raw(door, path, accept)[0] == 406
    # What made it void is told, and what it refers to.
    sell(door, "v", kind="void", refers_to={"closure": 1, "number": 1, "date": made["time"][:10]},
         items=[{"department": 1, "price": made["total"]}])
    assert door.get(path)[1]["voided"] is True
    void = door.get("/v1/documents/1/2")[1]
    assert void["refers_to"] == {"closure": 1, "number": 1}
    # The kind tells that it goes back, and no sign does.
    assert void["total"] == made["total"] == void["payments"][0]["amount"] == void["items"][0]["amount"]


def test_what_goes_back_has_no_sign(door):
    sold = sell(door, "a", items=[{"department": 1, "price": "5.00"},
                                  {"department": 1, "price": "2.00", "refund": True}])
    items = door.get("/v1/documents/1/1")[1]["items"]
    assert [(item["kind"], item["amount"]) for item in items] == [("sale", "5.00"), ("refund", "2.00")]
    sell(door, "b", kind="refund", items=[{"department": 1, "price": "1.00"}],
         refers_to={"closure": 1, "number": 1, "date": sold["time"][:10]})
    refund = door.get("/v1/documents/1/2")[1]
    assert [item["amount"] for item in refund["items"]] == [refund["total"]] == ["1.00"]
    assert [payment["amount"] for payment in refund["payments"]] == ["1.00"]


def test_a_picture_that_would_be_too_long(door):
    body = {**COFFEE, "items": COFFEE["items"] * 995}
    assert door.request("POST", "/v1/receipts", body, {"Idempotency-Key": "a"})[0] == 201
    assert raw(door, "/v1/documents/1/1", "image/png")[0] == 200
    body = {"lines": ["VEND REP=1, PRE=1.20, QTA=2, DES='" + "X" * 50 + "'"] * 990 + ["CHIU"]}
    assert door.request("POST", "/v1/jobs", body, {"Idempotency-Key": "b"})[0] == 201
    status, _, problem = raw(door, "/v1/documents/1/2", "image/png")
    assert status == 406 and "too many for a picture" in json.loads(problem)["detail"]
    assert raw(door, "/v1/documents/1/2", "text/plain")[0] == 200


def test_a_receipt_and_an_invoice_of_one_number(door):
    receipt = sell(door, "a")
    invoice = sell(door, "b", kind="invoice")
    assert (receipt["number"], invoice["number"]) == (1, 1)
    path = "/v1/documents/1/1"
    assert door.get(path)[1]["code"] == "ambiguous_document"
    for kind, made in (("receipt", receipt), ("invoice", invoice)):
        status, document = door.get(f"{path}?kind={kind}")
        assert (status, document["kind"], document["total"]) == (200, kind, made["total"])
    assert door.get(f"{path}?kind=void")[0] == 404
    assert copy(door, "1/1/copy", "c")[1]["code"] == "ambiguous_document"
    # Nothing goes back that was not meant.
    reference = {"closure": 1, "number": 1, "date": receipt["time"][:10]}
    for kind in ("refund", "void"):
        for path in ("/v1/receipts", "/v1/receipts?dry_run=true"):
            status, _, problem = door.request("POST", path, {**COFFEE, "kind": kind, "refers_to": reference},
                                              {"Idempotency-Key": "r"})
            assert (status, problem["code"], problem["pointer"]) == (422, "ambiguous_document", "/refers_to")
    own = receipt["serial"]
    for more, expected in (({"kind": "invoice"}, (400, "bad_field", "/refers_to/kind")),
                           ({"kind": "invoice", "serial": own}, (400, "bad_field", "/refers_to/kind")),
                           ({"kind": "invoice", "serial": own.lower()}, (400, "bad_field", "/refers_to/kind")),
                           ({"serial": own.lower()}, (422, "ambiguous_document", "/refers_to"))):
        status, _, problem = door.request(
            "POST", "/v1/receipts", {**COFFEE, "kind": "refund", "refers_to": {**reference, **more}},
            {"Idempotency-Key": "r"})
        assert (status, problem["code"], problem["pointer"]) == expected
    assert len(listed(door)) == 2
    # That of another register is none of these.
    sell(door, "o", kind="refund", refers_to={**reference, "kind": "invoice", "serial": "99IEB012345"})
    assert sell(door, "r", kind="refund", refers_to={**reference, "kind": "receipt"})["kind"] == "refund"


def test_a_copy_sells_nothing(door):
    sell(door, "a")
    invoice = sell(door, "b", kind="invoice", items=[{"department": 1, "price": "77.70"}])
    before = door.get("/v1/device")[1]["totals"]
    status, job = copy(door, "1/1/copy?kind=invoice", "c", {"reference": "for the customer"})
    assert (status, job["state"], job["document"], job["desk"]) == (201, "confirmed", None, "operator")
    # The same once more is the same job; another document, or another desk, is not.
    status, again = copy(door, "1/1/copy?kind=invoice", "c", {"reference": "for the customer"})
    assert (status, again["id"], again["replayed"]) == (200, job["id"], True)
    assert copy(door, "1/1/copy?kind=receipt", "c", {"reference": "for the customer"})[1]["code"] == "key_reused"
    assert copy(door, "1/1/copy?kind=receipt", "d", {"desk": "till"})[1]["code"] == "line_not_allowed"
    assert copy(door, "1/1/copy?kind=receipt", "e", {"lines": []})[1]["code"] == "unknown_field"
    assert door.request("POST", "/v1/documents/1/1/copy?kind=receipt", {})[2]["code"] == "no_key"
    assert door.get("/v1/device")[1]["totals"] == before
    assert len(listed(door)) == 2
    door.stop()
    paper = subprocess.run([os.environ["LORIMAT"], "paper", "--register", door.register], check=True,
                           capture_output=True, text=True).stdout
    # On the paper it is twice, and the receipt once.
    assert paper.count(f"FATTURA N. {invoice['number']}") == 2
    assert paper.count("DOCUMENTO N. 0001-0001") == 1
    assert "ESTRATTO DEL GIORNALE" in paper


def test_a_device_from_a_file(doors, folder):
    door = doors(folder, plugin=True).start()
    assert door.post(SALE, "a")[0] == 201
    assert door.post(["FATTURA TIPO=2", *SALE], "b")[1]["document"]["kind"] == "invoice"
    assert door.post(SALE, "c")[0] == 201
    device = door.get("/v1/device")[1]
    assert device["totals"] == {"total": "3.60", "documents": None, "rates": None, "tenders": None}
    assert device["last_document"] == {"closure": 1, "number": 2, "kind": None, "serial": "99LRM0000001VR",
                                       "time": None, "total": None}
    assert door.get("/v1/documents")[1]["code"] == "not_kept"
    assert raw(door, "/v1/documents/1/1", "application/json")[0] == 406
    assert raw(door, "/v1/documents/1/1")[0] == 409
    for kind, text in (("receipt", "DOCUMENTO N. 0001-0001"), ("invoice", "FATTURA N. 1")):
        status, content_type, body = raw(door, f"/v1/documents/1/1?kind={kind}")
        assert (status, content_type) == (200, "text/plain; charset=utf-8")
        assert len(re.findall("(?:DOCUMENTO|FATTURA) N\\.", body.decode())) == 1 and text in body.decode()
    assert raw(door, "/v1/documents/1/2", "image/png")[2].startswith(b"\x89PNG")
    assert raw(door, "/v1/documents/1/3")[0] == 404
    for kind, status in (("receipt", 200), ("refund", 404), ("void", 404), ("invoice", 404)):
        assert raw(door, f"/v1/documents/1/2?kind={kind}")[0] == status
    assert copy(door, "1/1/copy?kind=invoice", "k")[0] == 201
    assert copy(door, "1/7/copy", "l")[1]["state"] == "rejected"


def test_logs_from_before_have_no_kinds(doors, folder):
    door = doors(folder).start()
    sell(door, "a")
    door.stop()
    with sqlite3.connect(f"{door.register}.door") as log:
        log.execute("UPDATE job SET document = json_remove(document, '$.kind')")
    log.close()
    door.start()
    assert door.get("/v1/jobs/1")[1]["document"]["kind"] is None
    assert door.get("/v1/documents/1/1")[1]["kind"] == "receipt"
