"""A door to a fiscal device (lorimatd) as a till uses it.

    import lorimat

    with lorimat.Door("http://127.0.0.1:8577", desk="cassa-1", pending="/var/lib/till") as door:
        for outcome in door.resume():            # what was asked before the till was killed
            print(outcome)
        job = door.sell(["VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"])
        print(job.document.number)

A request is sent again with the same key as often as it takes: it becomes one job. What comes back is
a job that is confirmed; everything else is raised (lorimat.DoorError and its classes).
"""

import json
import math
import os
import re
import threading
import time
import urllib.parse
import uuid
from types import TracebackType
from typing import Any, Dict, Iterator, List, Mapping, NamedTuple, Optional, Sequence, Type, Union

from ._exchange import Address, Answer, NoAnswer
from .door_errors import (DoorAway, DoorError, JobFailed, NeedsOperator, OutcomeUnknown,
                          RequestRefused)
from .pending import NoFolder, PendingFolder, Request, now

_FINAL = ("rejected", "expired", "cancelled")
_FIRST_PAUSE, _LONGEST_PAUSE = 0.1, 5.0  # seconds
_LONGEST_WAIT = 30  # seconds that one request waits for an outcome
# What the door answers ahead of taking a job, and which passes.
_NOT_NOW = ("queue_full", "too_many_requests", "document_open", "device_away",
            "device_busy")


class Document(NamedTuple):
    """What a job has registered."""

    closure: int
    number: Optional[int]  #: None of a day closing
    serial: str
    time: Optional[str]  #: ISO 8601; None where the device did not tell it
    total: Optional[str]
    kind: Optional[str]  #: "receipt", "invoice", "refund", "void"; None where it is not told


class Job(NamedTuple):
    """A job, as the door has it."""

    id: int
    key: str
    desk: str
    reference: str
    state: str
    document: Optional[Document]
    lines: List[Dict[str, Any]]  #: what the translator answered: line, code, text, explanation
    replayed: bool
    history: List[Dict[str, str]]  #: time, state and why


class Event(NamedTuple):
    """What the door tells of itself. After `reset` events are missing: ask for what matters."""

    id: Optional[int]
    name: str  #: "job", "document", "device", "warning", "reset"
    data: Any


class Outcome(NamedTuple):
    """What became of a request that was kept: a job that is confirmed, or an error. OSError: its file cannot be
    read, and `request` is None, or not removed. ValueError: no door takes its key."""

    request: Optional[Request]
    job: Optional[Job]
    error: Union[DoorError, OSError, ValueError, None]


def new_key() -> str:
    """A key that nobody else has."""
    return str(uuid.uuid4())


def _document(row: Optional[Mapping[str, Any]]) -> Optional[Document]:
    if row is None:
        return None
    return Document(row["closure"], row["number"], row["serial"], row["time"], row["total"],
                    row.get("kind"))


def _job(row: Any) -> Optional[Job]:
    """The job of an answer; None where it is none."""
    try:
        return Job(row["id"], row["key"], row["desk"], row["reference"], row["state"],
                   _document(row["document"]), row["lines"], row["replayed"], row["history"])
    except (KeyError, TypeError):
        return None


class Door:
    """A door at an address. Its methods may be called by several threads.

    Args:
      url: "http://127.0.0.1:8577", or https, whose certificate is looked at.
      token: "NAME.SECRET", where the door asks for one.
      desk: whose keys these are; without it the name of the token.
      cafile: certificates to trust, a PEM file, instead of the system's.
      pending: a folder that keeps what was asked until its outcome is known, so that a till that is
        killed can ask again by resume().
      patience: seconds for which a request is sent again while no door answers or takes it.
      timeout: seconds for one answer, beside what is waited for an outcome.
    """

    def __init__(self, url: str, token: Optional[str] = None, desk: Optional[str] = None,
                 cafile: Optional[str] = None, *,
                 pending: "Union[str, os.PathLike[str], None]" = None, patience: float = 60.0,
                 timeout: float = 20.0) -> None:
        self._address = Address(url, token, cafile, timeout)
        # What is kept has to tell whose it is, whoever asks again.
        self._own = token.rpartition(".")[0] or None if token is not None else None
        self._desk = self._own if desk is None else desk
        self._pending = NoFolder() if pending is None else PendingFolder(pending)
        self._patience = patience
        self._closed = threading.Event()

    def __enter__(self) -> "Door":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: Optional[BaseException],
                 trace: Optional[TracebackType]) -> None:
        self.close()

    def close(self) -> None:
        """Ends what still waits in other threads; what is kept stays."""
        self._closed.set()

    # Jobs.

    def sell(self, lines: Sequence[str], key: Optional[str] = None, *, reference: Optional[str] = None,
             expires_s: Optional[int] = None, wait: float = 60.0) -> Job:
        """Lines of the language as a job: a sale, or whatever a job may hold. Without a key it gets a
        new one; ValueError is raised of one that no door takes. `wait`: seconds for its outcome.

        Raises RequestRefused, JobFailed, DoorAway: nothing was done. OutcomeUnknown, NeedsOperator:
        it may have been; ask again with error.key. A key that is given counts as one that was used
        before: it is refused where the door says that it has no job of it, and no DoorAway.
        """
        return self._ask("/v1/jobs", {"lines": list(lines)}, key, reference, expires_s, wait)

    def receipt(self, receipt: Mapping[str, Any], key: Optional[str] = None, *,
                reference: Optional[str] = None, expires_s: Optional[int] = None,
                wait: float = 60.0) -> Job:
        """A document without the language, as docs/door.md has it; else as sell()."""
        return self._ask("/v1/receipts", dict(receipt), key, reference, expires_s, wait)

    def dry_run(self, receipt: Mapping[str, Any]) -> Dict[str, Any]:
        """The lines and sums of a receipt; nothing is sent."""
        return self._do("POST", "/v1/receipts?dry_run=true", dict(receipt))

    def close_day(self, key: Optional[str] = None, *, reference: Optional[str] = None,
                  expires_s: Optional[int] = None, wait: float = 120.0) -> Job:
        """Closes the day; an operator's. Else as sell()."""
        return self._ask("/v1/device/close-day", {}, key, reference, expires_s, wait)

    def reset(self, key: Optional[str] = None, *, reference: Optional[str] = None,
              expires_s: Optional[int] = None, wait: float = 60.0) -> Job:
        """Gives up what is open on the device; an operator's. Else as sell()."""
        return self._ask("/v1/device/reset", {}, key, reference, expires_s, wait)

    def copy(self, closure: int, number: int, key: Optional[str] = None, *, kind: Optional[str] = None,
             wait: float = 60.0) -> Job:
        """Prints a copy of a document, which is no sale; an operator's. `kind` where an invoice and
        another document have the same numbers. Else as sell()."""
        path = "/v1/documents/%d/%d/copy" % (closure, number)
        return self._ask(path, {}, key, None, None, wait, {} if kind is None else {"kind": kind})

    def resume(self, wait: float = 60.0) -> Iterator[Outcome]:
        """Asks again for all that is kept in the folder `pending`, the oldest first, and yields what
        became of each. What the door never took and whose time is over is not sent any more: its error
        is a DoorAway of the code "expired". What cannot be read (OSError) or
        sent (ValueError) is told likewise, and stays."""
        _check_wait(wait)
        requests, damaged = self._pending.read()
        for request in requests:
            try:
                if now() > request.expires and self._never_taken(request):
                    self._pending.forget(request)
                    raise DoorAway("its time was over before the door took it", "expired",
                                   key=request.key)
                yield Outcome(request, self._carry(request, wait, True), None)
            except (DoorError, OSError, ValueError) as error:
                yield Outcome(request, None, error)
        for unread in damaged:
            yield Outcome(None, None, unread)

    @property
    def pending(self) -> List[Request]:
        """What is kept: asked for, and the outcome not known."""
        return self._pending.read()[0]

    # Looking and resolving.

    def job(self, job_id: int) -> Job:
        """The job of a number. Raises DoorError, with the code "not_found" where there is none."""
        return _job(self._do("GET", "/v1/jobs/%d" % job_id))  # type: ignore[return-value]

    def find(self, key: str) -> Optional[Job]:
        """The job of a key of this desk; None where the door has none."""
        query = {"key": key}
        if self._desk is not None:
            query["desk"] = self._desk
        try:
            return _job(self._do("GET", "/v1/jobs?" + urllib.parse.urlencode(query)))
        except DoorError as error:
            if error.code == "not_found":
                return None
            raise

    def jobs(self, state: Optional[str] = None, after: int = 0) -> Iterator[Job]:
        """The jobs by number, of a state or of all."""
        while True:
            query: Dict[str, Any] = {"after": after, "limit": 100}
            if state is not None:
                query["state"] = state
            page = self._do("GET", "/v1/jobs?" + urllib.parse.urlencode(query))["jobs"]
            for row in page:
                after = row["id"]
                yield _job(row)  # type: ignore[misc]
            if not page:
                return

    def cancel(self, job_id: int) -> Job:
        """Takes a queued job back. Raises DoorError of the code "wrong_state" where it has begun."""
        return _job(self._do("DELETE", "/v1/jobs/%d" % job_id))  # type: ignore[return-value]

    def resolve(self, job_id: int, outcome: str, reason: str, closure: Optional[int] = None,
                number: Optional[int] = None) -> Job:
        """Tells what became of a job that needs an operator: "done" or "not_done", and why this is
        known; `closure` and `number` of its document, where they are."""
        body: Dict[str, Any] = {"outcome": outcome, "reason": reason}
        if closure is not None:
            body["document"] = {"closure": closure, "number": number}
        path = "/v1/jobs/%d/resolve" % job_id
        return _job(self._do("POST", path, body))  # type: ignore[return-value]

    def device(self) -> Dict[str, Any]:
        """What the door knows of its device: serial, ready, trouble, how many jobs wait, and more."""
        return self._do("GET", "/v1/device")

    def documents(self, since: Optional[str] = None, until: Optional[str] = None) -> Iterator[Document]:
        """What the device has registered, by ISO 8601 dates or times. Raises DoorError of the status
        501 where it does not tell."""
        query = {name: text for name, text in (("from", since), ("to", until)) if text is not None}
        while True:
            page = self._do("GET", "/v1/documents?" + urllib.parse.urlencode(query))
            for row in page["documents"]:
                yield _document(row)  # type: ignore[misc]
            if page["next"] is None:
                return
            query["after"] = page["next"]

    def document(self, closure: int, number: int, accept: str = "text/plain",
                 kind: Optional[str] = None) -> bytes:
        """A document as it was printed: "text/plain", "image/png", or "application/json". `kind` where
        an invoice and another document have the same numbers."""
        query = "" if kind is None else "?" + urllib.parse.urlencode({"kind": kind})
        return self._answer("GET", "/v1/documents/%d/%d%s" % (closure, number, query), None,
                            {"Accept": accept}).body

    def events(self, after: Optional[int] = None) -> Iterator[Event]:
        """Events as they come, without end, behind the number `after`; the connection is made again
        where it is cut. Raises DoorError where the door refuses."""
        from ._events import stream
        return stream(self._address, after, self._closed)

    # How it is done.

    def _ask(self, path: str, body: Dict[str, Any], key: Optional[str], reference: Optional[str],
             expires_s: Optional[int], wait: float, query: Mapping[str, str] = {}) -> Job:
        if query:
            path += "?" + urllib.parse.urlencode(query)
        for name, value in (("desk", self._desk), ("reference", reference), ("expires_s", expires_s)):
            if value is not None:
                body.setdefault(name, value)
        _check_wait(wait)
        body = json.loads(json.dumps(body))  # as it is kept
        request = Request(new_key() if key is None else _checked(key), body.get("desk"), path, body, now())
        kept = self._pending.find(request.key, request.desk)
        if kept is None:
            self._pending.keep(request)
        elif (kept.path, kept.body) != (path, body):
            raise OutcomeUnknown("the key is kept with another request, whose outcome is not known",
                                 "key_reused", key=request.key)
        try:
            # A key that is given may have been used before, by error.key or a book of the till's own.
            return self._carry(request, wait, kept is not None or key is not None)
        except OutcomeUnknown as error:
            # It is another request that became a job of the key; of this one there is none.
            if error.code == "key_reused" and kept is None:
                self._pending.forget(request)
            raise

    def _carry(self, request: Request, wait: float, is_old: bool) -> Job:
        """Sends a request until its outcome is known, and forgets it then. A request may have reached
        the door although no answer came: from then on only a final answer tells what became of it, or the
        door when it has no job of the key. So it is with an old one, which another life of the till
        may have sent."""
        _checked(request.key)
        body = json.dumps(request.body).encode()
        headers = {"Content-Type": "application/json", "Idempotency-Key": request.key}
        known = time.monotonic() + wait
        patience = time.monotonic() + max(self._patience, wait)
        pause, lost, last = _FIRST_PAUSE, is_old, None
        job: Optional[Job] = None
        while True:
            left = max(known - time.monotonic(), 0.0)
            waits = min(int(left), _LONGEST_WAIT)
            asked = None
            try:
                mark = "&" if "?" in request.path else "?"
                answer = self._address.exchange("POST", "%s%swait=%d" % (request.path, mark, waits), body,
                                                headers, self._address.timeout + waits)
                row = answer.json()
                job = _job(row)
                if job is not None:
                    lost = True
                    if job.state == "confirmed":
                        self._pending.forget(request)
                        return job
                    if job.state in _FINAL:
                        self._pending.forget(request)
                        raise JobFailed(_story(job), job.state, answer.status, None, request.key, job)
                    if job.state == "needs_operator":
                        raise NeedsOperator(_story(job), job.state, answer.status, None, request.key,
                                            job)
                else:
                    last = _error(DoorAway, answer, row, request.key)
                    if last.code not in _NOT_NOW and answer.status != 429:
                        if 400 <= answer.status < 500 or answer.status == 501:
                            if lost and not self._refused_before(request, answer.status):
                                raise _error(OutcomeUnknown, answer, row, request.key)
                            self._pending.forget(request)
                            raise _error(RequestRefused, answer, row, request.key)
                        # What failed may have done so behind the job's acceptance.
                        lost = True
                asked = answer.retry_after
            except NoAnswer as error:
                lost = lost or error.sent
                last = DoorAway(str(error), key=request.key)
            end = known if job is not None else patience
            if time.monotonic() >= end or self._closed.is_set():
                if lost:
                    told = _story(job) if job else str(last)
                    raise OutcomeUnknown(told, job.state if job else "", last.status if last else 0,
                                         None, request.key, job)
                self._pending.forget(request)
                raise last if last else DoorAway("closed", key=request.key)
            pause = min(pause * 2, _LONGEST_PAUSE)
            # What the door asks for counts, but no job is asked for behind its time.
            self._closed.wait(min(max(asked or 0.0, pause), max(end - time.monotonic(), 0.0)))

    def _refused_before(self, request: Request, status: int) -> bool:
        """Whether a request that was sent before has come to nothing too: it was refused for what it
        holds, which is the same whenever it is sent, and the door has no job of it. Who asks may have
        been somebody else then."""
        try:
            return status in (400, 413, 422) and self._never_taken(request)
        except DoorError:
            return False

    def _never_taken(self, request: Request) -> bool:
        """Whether the door has no job of it. Raises OutcomeUnknown where it does not tell."""
        query = {"key": request.key}
        if request.desk is not None:
            query["desk"] = request.desk
        try:
            self._do("GET", "/v1/jobs?" + urllib.parse.urlencode(query))
        except DoorError as error:
            if error.code == "not_found" and self._sees(request):
                return True
            raise OutcomeUnknown(str(error), error.code, error.status, error.problem, request.key) from error
        return False

    def _sees(self, request: Request) -> bool:
        """Whether "not found" means that it is not there: to a token the jobs of other desks are not
        found either, and what was asked without a desk may have become the operator's."""
        if self._own is not None:
            return request.desk == self._own
        return request.desk is not None or request.path in ("/v1/jobs", "/v1/receipts")

    def _do(self, method: str, path: str, body: Any = None) -> Any:
        data = None if method == "GET" else json.dumps(body).encode() if body is not None else b""
        answer = self._answer(method, path, data, {} if data is None else {
            "Content-Type": "application/json"})
        row = answer.json()
        if not isinstance(row, dict):
            raise DoorError("the answer is none of a door", status=answer.status)
        return row

    def _answer(self, method: str, path: str, body: Optional[bytes],
                headers: Mapping[str, str]) -> Answer:
        """Once, but what changes nothing again while no door answers. Raises DoorError."""
        end, pause = time.monotonic() + self._patience, _FIRST_PAUSE
        changes = method != "GET" and not path.endswith("?dry_run=true")
        while True:
            try:
                answer = self._address.exchange(method, path, body, headers)
                if answer.status < 400:
                    return answer
                error = _error(DoorError, answer, answer.json(), None)
                if changes and answer.status >= 500:
                    raise _error(OutcomeUnknown, answer, answer.json(), None)
                if answer.status not in (429, 503):
                    raise error
                asked = answer.retry_after or 0.0
            except NoAnswer as cut:
                error, asked = DoorAway(str(cut)), 0.0
                # What was to be done may have been done: the state tells.
                if changes and cut.sent:
                    raise OutcomeUnknown(str(cut)) from cut
            if time.monotonic() >= end or self._closed.is_set():
                raise error
            pause = min(pause * 2, _LONGEST_PAUSE)
            self._closed.wait(min(max(asked, pause), max(end - time.monotonic(), 0.0)))


def _checked(key: str) -> str:
    """The key. Raises ValueError where it is none that a door takes."""
    if not re.fullmatch(r"[A-Za-z0-9_.:-]{1,64}", key):
        raise ValueError("%r is no key of 1 to 64 of A-Z a-z 0-9 _ . : -" % key)
    return key


def _check_wait(wait: float) -> None:
    """Raises ValueError where it is no time, ahead of all that is kept or sent."""
    if not wait < math.inf:
        raise ValueError("wait: %r is no number of seconds" % wait)


def _story(job: Job) -> str:
    why = job.history[-1]["why"] if job.history else ""
    return "job %d is %s: %s" % (job.id, job.state, why)


def _error(kind: Type[DoorError], answer: Answer, row: Any, key: Optional[str]) -> DoorError:
    problem = row if isinstance(row, dict) else {}
    code = str(problem.get("code", ""))
    detail = str(problem.get("detail", "")) or "the answer has the status %d" % answer.status
    where = " (%s)" % problem["pointer"] if "pointer" in problem else ""
    return kind((code + ": " if code else "") + detail + where, code, answer.status, problem, key)
