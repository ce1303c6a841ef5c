"""The events of a door: a stream of texts (text/event-stream), read as it comes."""

import http.client
import json
import threading
from typing import Iterator, Optional

from ._exchange import Address, Answer
from .door import Event
from .door_errors import DoorError

_SILENCE = 45.0  # seconds: three times what the door lets pass without a sign
_FIRST_PAUSE, _LONGEST_PAUSE = 0.1, 5.0  # seconds
_MOST_LINE = 16 << 20  # bytes


def stream(address: Address, after: Optional[int], closed: threading.Event) -> Iterator[Event]:
    """Events behind `after`, until `closed`; a connection that is cut is made again behind the last."""
    pause = _FIRST_PAUSE
    while not closed.is_set():
        try:
            connection = address.connection(_SILENCE)
            try:
                more = {"Accept": "text/event-stream"}
                if after is not None:
                    more["Last-Event-ID"] = str(after)
                connection.request("GET", address.prefix + "/v1/events", None, address.headers(more))
                reply = connection.getresponse()
                if reply.status != 200 and reply.status not in (429, 503):
                    raise _refusal(reply)
                while reply.status == 200 and not closed.is_set():
                    event = _next(reply)
                    if event is None:
                        break
                    pause = _FIRST_PAUSE
                    if event.id is not None:
                        after = event.id
                    yield event
            finally:
                connection.close()
        except (OSError, http.client.HTTPException):
            pass
        pause = min(pause * 2, _LONGEST_PAUSE)
        closed.wait(pause)


def _next(reply: http.client.HTTPResponse) -> Optional[Event]:
    """The next event that is whole; None at the end of the stream."""
    number, name, data = None, "message", []
    while True:
        line = reply.readline(_MOST_LINE)
        if not line.endswith(b"\n"):
            return None
        field, _, value = line.decode("utf-8", "replace").rstrip("\r\n").partition(":")
        value = value[1:] if value.startswith(" ") else value
        if field == "id" and value.isascii() and value.isdigit():
            number = int(value)
        elif field == "event":
            name = value
        elif field == "data":
            data.append(value)
        elif not field and not value and line.strip() == b"" and data:
            try:
                return Event(number, name, json.loads("\n".join(data)))
            except ValueError:
                return None


def _refusal(reply: http.client.HTTPResponse) -> DoorError:
    from .door import _error
    answer = Answer(reply.status, reply.getheader("Content-Type", ""), None, reply.read(1 << 20))
    return _error(DoorError, answer, answer.json(), None)
