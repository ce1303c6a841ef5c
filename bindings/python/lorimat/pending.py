"""What a till has asked a door for and whose outcome it does not know yet, in a folder that outlives it."""

import hashlib
import json
import os
import tempfile
import time
from typing import Any, Dict, List, NamedTuple, Optional, Tuple


class Request(NamedTuple):
    """What becomes one job, however often it is sent."""

    key: str
    desk: Optional[str]
    path: str
    body: Dict[str, Any]
    made: float  #: seconds since 1970, by the till's clock

    @property
    def expires(self) -> float:
        """When it is not to begin any more, by the till's clock."""
        return self.made + self.body.get("expires_s", 600)


class PendingFolder:
    """One file for each request; it is on the disk before the request is sent, and goes when its
    outcome is known. Several tills may share a folder."""

    def __init__(self, folder: "os.PathLike[str] | str") -> None:
        self.folder = os.fspath(folder)
        os.makedirs(self.folder, exist_ok=True)

    def _file(self, key: str, desk: Optional[str]) -> str:
        name = hashlib.sha256(("%s\0%s" % (desk or "", key)).encode()).hexdigest()
        return os.path.join(self.folder, name + ".json")

    def find(self, key: str, desk: Optional[str]) -> Optional[Request]:
        return self._read(self._file(key, desk))

    def keep(self, request: Request) -> None:
        """Raises OSError; then nothing may be sent."""
        text = json.dumps(request._asdict())
        handle, part = tempfile.mkstemp(dir=self.folder, suffix=".part")
        try:
            with os.fdopen(handle, "w", encoding="utf-8") as file:
                file.write(text)
                file.flush()
                os.fsync(file.fileno())
            os.replace(part, self._file(request.key, request.desk))
        except BaseException:
            _remove(part)
            raise
        self._sync()

    def forget(self, request: Request) -> None:
        _remove(self._file(request.key, request.desk))

    def read(self) -> Tuple[List[Request], List[OSError]]:
        """All of it, the oldest first, and what cannot be read. What a killed till had not written whole
        was not sent either."""
        found, damaged = [], []
        for name in sorted(os.listdir(self.folder)):
            if name.endswith(".json"):
                try:
                    found.append(self._read(os.path.join(self.folder, name)))
                except OSError as error:
                    damaged.append(error)
        return sorted((one for one in found if one is not None), key=lambda one: one.made), damaged

    @staticmethod
    def _read(name: str) -> Optional[Request]:
        try:
            with open(name, encoding="utf-8") as file:
                request = Request(**json.load(file))
            _check(request)
            return request
        except FileNotFoundError:
            return None
        except (ValueError, TypeError, RecursionError) as error:
            raise OSError("%s: is not what a till has kept: %s" % (name, error)) from error

    def _sync(self) -> None:
        # Windows syncs no folders.
        if hasattr(os, "O_DIRECTORY"):
            handle = os.open(self.folder, os.O_RDONLY | os.O_DIRECTORY)
            try:
                os.fsync(handle)
            finally:
                os.close(handle)


class NoFolder:
    """Where nothing outlives the till."""

    def find(self, key: str, desk: Optional[str]) -> Optional[Request]:
        return None

    def keep(self, request: Request) -> None:
        pass

    def forget(self, request: Request) -> None:
        pass

    def read(self) -> Tuple[List[Request], List[OSError]]:
        return [], []


def _check(request: Request) -> None:
    """Raises TypeError where a field is not of its kind."""
    kinds = ((request.key, str), (request.desk, (str, type(None))), (request.path, str), (request.body, dict),
             (request.made, (int, float)), (request.body.get("expires_s", 0) if isinstance(request.body, dict)
                                            else None, (int, float)))
    for value, kind in kinds:
        if not isinstance(value, kind):  # type: ignore[arg-type]
            raise TypeError("%r is of another kind" % (value,))


def _remove(name: str) -> None:
    try:
        os.unlink(name)
    except FileNotFoundError:
        pass


def now() -> float:
    return time.time()
