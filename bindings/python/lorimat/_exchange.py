"""One request to a door and its answer, over a connection of its own."""

import http.client
import json
import ssl
import urllib.parse
from typing import Any, Dict, Mapping, NamedTuple, Optional

MOST_ANSWER = 64 << 20  # bytes; a hundred jobs of a thousand lines each stay below


class NoAnswer(Exception):
    """None came, or none that can be read. Whether the request did is not known, but where `sent` is
    false: then no byte of it left."""

    def __init__(self, cause: BaseException, sent: bool) -> None:
        super().__init__(str(cause) or type(cause).__name__)
        self.sent = sent


class Answer(NamedTuple):
    status: int
    content_type: str
    retry_after: Optional[float]  #: seconds
    body: bytes

    def json(self) -> Any:
        """The body; None where it is no JSON."""
        try:
            return json.loads(self.body)
        except (ValueError, RecursionError):
            return None


class Address:
    """Where a door is, and how to speak with it."""

    def __init__(self, url: str, token: Optional[str], cafile: Optional[str], timeout: float) -> None:
        parts = urllib.parse.urlsplit(url)
        if parts.scheme not in ("http", "https") or not parts.hostname or parts.query or parts.fragment:
            raise ValueError("%r is no address such as http://127.0.0.1:8577" % url)
        if parts.username is not None:
            raise ValueError("a token stands beside the address, not in it")
        if token is not None and not (token.isascii() and token.isprintable() and " " not in token):
            raise ValueError("the token has a character that no token has")
        self.host, self.port = parts.hostname, parts.port
        self.prefix = parts.path.rstrip("/")
        self.token, self.timeout = token, timeout
        # Certificate and name are looked at, by the system's authorities or those of the file.
        self.tls = ssl.create_default_context(cafile=cafile) if parts.scheme == "https" else None

    def connection(self, timeout: Optional[float] = None) -> http.client.HTTPConnection:
        timeout = self.timeout if timeout is None else timeout
        if self.tls is not None:
            return http.client.HTTPSConnection(self.host, self.port, timeout=timeout, context=self.tls)
        return http.client.HTTPConnection(self.host, self.port, timeout=timeout)

    def headers(self, more: Mapping[str, str]) -> Dict[str, str]:
        bearer = {"Authorization": "Bearer " + self.token} if self.token is not None else {}
        return {"Accept": "application/json", **bearer, **more}

    def exchange(self, method: str, path: str, body: Optional[bytes] = None,
                 headers: Mapping[str, str] = {}, timeout: Optional[float] = None) -> Answer:
        """Raises NoAnswer."""
        connection = self.connection(timeout)
        sent = False
        try:
            connection.connect()
            sent = True
            connection.request(method, self.prefix + path, body, self.headers(headers))
            reply = connection.getresponse()
            # A head that is cut looks like one without a length.
            if reply.length is None and not reply.chunked:
                raise http.client.IncompleteRead(b"")
            text = reply.read(MOST_ANSWER)
            if reply.length:
                raise http.client.IncompleteRead(text)
        except (OSError, http.client.HTTPException) as error:
            raise NoAnswer(error, sent) from error
        finally:
            connection.close()
        return Answer(reply.status, reply.getheader("Content-Type", ""),
                      _seconds(reply.getheader("Retry-After")), text)


def _seconds(text: Optional[str]) -> Optional[float]:
    return float(text) if text and text.isascii() and text.isdigit() and len(text) < 6 else None
