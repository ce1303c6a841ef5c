"""Taking turns: one call at a time, in the process that made the object, never from inside."""

import os
import threading
from typing import Any

from .errors import LorimatError


class Turn:
    """Serialises the calls of an object. One from inside of another of the same thread raises."""

    def __init__(self, what: str) -> None:
        self._what = what
        self._lock = threading.RLock()
        self._process = os.getpid()

    @property
    def mine(self) -> bool:
        """False in a process that was forked off: what is open there belongs to its parent."""
        return self._process == os.getpid()

    def check(self) -> None:
        if not self.mine:
            raise LorimatError("the %s belongs to the process that made it, and this one was forked "
                               "off" % self._what)
        if self._lock._is_owned():  # type: ignore[attr-defined]
            raise LorimatError("the %s is at work: it cannot be used from inside of a callback"
                               % self._what)

    def taken(self) -> Any:
        """For `with`. The lock itself, which an interrupt (Ctrl-C) finds taken for the block or not at
        all: between methods of Python's own it could stay taken for good."""
        self.check()
        return self._lock


class Unpicklable:
    """What holds a device or a library stays in its process."""

    def __reduce_ex__(self, _: object):
        raise TypeError("a %s cannot be pickled or copied" % type(self).__name__)
