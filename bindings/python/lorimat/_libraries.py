"""The shared libraries: where they are, what they declare, and copies of the translator."""

import contextlib
import ctypes
import glob
import os
import shutil
import sys
import tempfile
import threading
from ctypes import (CFUNCTYPE, POINTER, Structure, c_bool, c_char, c_char_p, c_int, c_int64, c_long,
                    c_size_t, c_uint32, c_void_p)
from typing import Iterator, List, Optional

from ._operations import OPERATIONS
from .errors import LorimatError

ABI = 1

Clock = CFUNCTYPE(c_bool, c_void_p, c_void_p)
EcrIo = CFUNCTYPE(c_long, c_long, c_long, c_void_p, c_long, c_void_p, c_void_p, c_void_p)
GET_CLIENT = -112

# The type of each entry of the table of a device.
ENTRY_TYPES = {name: CFUNCTYPE(result, c_void_p, *(kind for _, kind, _ in parameters))
               for name, result, parameters in OPERATIONS}


class Device(Structure):
    _fields_ = [("size", c_size_t), ("abi", c_uint32), ("user_data", c_void_p)] + list(
        ENTRY_TYPES.items())


class Time(Structure):
    _fields_ = [(name, c_int) for name in ("year", "month", "day", "hour", "minute", "second")]


class Settings(Structure):
    _fields_ = [("size", c_size_t), ("abi", c_uint32), ("not_in_service", c_bool),
                ("file", c_char_p), ("serial_number", c_char_p), ("firmware_version", c_char_p),
                ("vat_number", c_char_p), ("outbox", c_char_p),
                ("header_lines", POINTER(c_char_p)), ("header_line_count", c_size_t),
                ("last_closure", c_int), ("last_invoice", c_int), ("clock", Clock),
                ("user_data", c_void_p), ("round_cash", c_bool), ("vat", POINTER(c_char_p)),
                ("vat_count", c_size_t)]


class Bytes(Structure):
    _fields_ = [("data", c_void_p), ("size", c_size_t)]


class State(Structure):
    _fields_ = [("size", c_size_t), ("abi", c_uint32), ("printer_state", c_int),
                ("key_position", c_int), ("training", c_bool), ("day_open", c_bool),
                ("drawer_openings", c_int), ("last_closure", c_int), ("next_invoice", c_int),
                ("pending_summaries", c_int), ("waiting_faults", c_int), ("documents", c_int64),
                ("journal_entries", c_int64)]


class Totals(Structure):
    _fields_ = [("size", c_size_t), ("abi", c_uint32)] + [
        (name, c_int) for name in ("receipts_number", "sales", "invoices", "refunds", "cancels",
                                   "abandoned", "non_fiscal")] + [
        (name + "_amount", c_int64) for name in ("receipts", "invoices", "refunds", "cancels",
                                                 "not_paid", "discounts", "surcharges", "net",
                                                 "grand")]


class TenderTotal(Structure):
    _fields_ = [("tender", c_char * 8), ("amount", c_int64)]


C_FUNCTIONS = {
    "lorimat_abi": (c_uint32, []),
    "lorimat_error": (c_char_p, []),
    "lorimat_client_new": (c_int, [POINTER(Device), POINTER(c_void_p)]),
    "lorimat_client_free": (None, [c_void_p]),
    "lorimat_client_interface": (c_void_p, [c_void_p]),
    "lorimat_explain": (c_char_p, [c_long, c_char_p]),
}
REGISTER_FUNCTIONS = {
    "lorimat_register_open": (c_int, [POINTER(Settings), POINTER(c_void_p)]),
    "lorimat_register_close": (None, [c_void_p]),
    "lorimat_register_interface": (c_void_p, [c_void_p]),
    "lorimat_register_error": (c_char_p, []),
    "lorimat_bytes_free": (None, [POINTER(Bytes)]),
    "lorimat_register_paper": (c_int, [c_void_p, POINTER(Bytes)]),
    "lorimat_register_png": (c_int, [c_void_p, POINTER(Bytes)]),
    "lorimat_register_pdf": (c_int, [c_void_p, POINTER(Bytes)]),
    "lorimat_register_start_notice": (c_int, [c_void_p, POINTER(Bytes)]),
    "lorimat_register_failure": (c_int, [c_void_p, POINTER(Bytes)]),
    "lorimat_register_add_fault": (c_int, [c_void_p, c_char_p, c_int, c_char_p, c_int, c_int]),
    "lorimat_register_clear_faults": (c_int, [c_void_p]),
    "lorimat_register_get_state": (c_int, [c_void_p, POINTER(State)]),
    "lorimat_register_get_totals": (c_int, [c_void_p, POINTER(Totals)]),
    "lorimat_register_get_tenders": (c_int, [c_void_p, POINTER(TenderTotal), c_size_t,
                                             POINTER(c_size_t)]),
}
TRANSLATOR_FUNCTIONS = {
    "TradInit": (c_int, [c_char_p, c_int, c_void_p, EcrIo]),
    "TradClose": (c_int, []),
    "EcrCmd": (c_long, [c_char_p, c_char_p]),
    "GetEcrConfVal": (c_long, [c_long]),
}


def _folders() -> Iterator[str]:
    """Where the libraries may lie, ahead of where the system looks."""
    if os.environ.get("LORIMAT_LIBRARY_DIR"):
        yield os.environ["LORIMAT_LIBRARY_DIR"]
    here = os.path.dirname(os.path.abspath(__file__))
    yield here
    # PREFIX/lib/python3/dist-packages/lorimat
    lib = os.path.normpath(os.path.join(here, "..", "..", ".."))
    yield lib
    yield from sorted(glob.glob(os.path.join(glob.escape(lib), "*-linux-gnu*")))


def _names(name: str, version: int) -> List[str]:
    if sys.platform == "win32":
        return ["lib%s.dll" % name]
    return ["lib%s.so.%d" % (name, version), "lib%s.so" % name]


def _find(name: str, version: int) -> str:
    names = _names(name, version)
    for folder in _folders():
        for one in names:
            if os.path.isfile(os.path.join(folder, one)):
                return os.path.join(folder, one)
    return names[-1] if name == "lorimatrt" else names[0]


def _declare(library: ctypes.CDLL, functions: dict) -> ctypes.CDLL:
    for name, (result, arguments) in functions.items():
        try:
            function = getattr(library, name)
        except AttributeError:
            raise LorimatError("%s has no function %s" % (library._name, name)) from None
        function.restype = result
        function.argtypes = arguments
    return library


def _open(path: str) -> ctypes.CDLL:
    try:
        return ctypes.CDLL(path)
    except OSError as error:
        raise LorimatError("the library cannot be loaded: %s; LORIMAT_LIBRARY_DIR names its folder"
                           % error) from error


_loaded: dict = {}
# A collection of garbage closes translators, also in a thread that is loading one.
_loading = threading.RLock()


def _load(name: str, functions: dict) -> ctypes.CDLL:
    with _loading:
        if name not in _loaded:
            _loaded[name] = _declare(_open(_find(name, 1)), functions)
        return _loaded[name]


def c_face() -> ctypes.CDLL:
    """liblorimat-c, loaded once."""
    library = _load("lorimat-c", C_FUNCTIONS)
    if library.lorimat_abi() != ABI:
        raise LorimatError("liblorimat-c is of another abi: %d" % library.lorimat_abi())
    return library


def register_face() -> ctypes.CDLL:
    """liblorimat-register-c, loaded once."""
    return _load("lorimat-register-c", REGISTER_FUNCTIONS)


# What the library says when it is loaded and when it goes.
_NOTICES = (b"Load working...\n", b"Unload working...\n", b"library destroy\n")


class _NoNotices:
    """Keeps the lines off the standard streams that the library writes as it comes and goes.

    Both streams are a file meanwhile: what others write comes behind the notices, and what a child
    writes that is started then is lost.
    """

    def __enter__(self) -> None:
        _loading.acquire()
        self._kept: list = []  # (stream, what it was, the file that it is meanwhile)
        for number, stream in ((1, sys.stdout), (2, sys.stderr)):
            try:
                if stream is not None:
                    stream.flush()
                file = tempfile.TemporaryFile()
                before = os.dup(number)
                os.dup2(file.fileno(), number)
                self._kept.append((number, before, file))
            except (OSError, ValueError, RuntimeError):
                pass  # there is no such stream, no room to keep it in, or it is being written

    def __exit__(self, *_: object) -> None:
        for number, before, file in self._kept:
            try:
                os.dup2(before, number)
                os.close(before)
                with file:
                    file.seek(0)
                    rest = file.read()
                for notice in _NOTICES:
                    rest = rest.replace(notice, b"")
                while rest:
                    rest = rest[os.write(number, rest):]
            except OSError:
                pass
        _loading.release()


class TranslatorLibrary:
    """A copy of liblorimatrt: the one of the process, or one of its own."""

    _shared_is_taken = threading.Lock()
    # After a fork the loaded one goes on holding the device of the parent.
    _shared_is_the_parents = False

    def __init__(self, isolated: bool, quiet: bool = False) -> None:
        self.isolated = isolated
        self._notices = _NoNotices if quiet else contextlib.nullcontext
        if not isolated and not self._shared_is_taken.acquire(blocking=False):
            raise LorimatError("there is a translator already: close it first, or make this one with "
                               "isolated=True")
        folder = None
        try:
            path = _find("lorimatrt", 3)
            if isolated or self._shared_is_the_parents:
                if not os.path.isabs(path):
                    with self._notices():
                        path = _path_of_loaded(path)
                folder = tempfile.mkdtemp(prefix="lorimat-")
                path = shutil.copy(path, os.path.join(folder, os.path.basename(path)))
            with self._notices():
                self.calls = _declare(_open(path), TRANSLATOR_FUNCTIONS)
        except BaseException as error:
            if not isolated:
                self._shared_is_taken.release()
            if isinstance(error, OSError):
                raise LorimatError("the library cannot be copied: %s" % error) from error
            raise
        finally:
            if folder is not None and sys.platform != "win32":
                shutil.rmtree(folder, ignore_errors=True)
        self._folder = folder

    def unload(self) -> None:
        import _ctypes
        with self._notices():
            if sys.platform == "win32":
                _ctypes.FreeLibrary(self.calls._handle)
            else:
                _ctypes.dlclose(self.calls._handle)
        if not self.isolated:
            self._shared_is_taken.release()
        elif sys.platform == "win32":
            shutil.rmtree(self._folder, ignore_errors=True)

    @classmethod
    def forked(cls) -> None:
        """In the child, where no other thread lives that would give a lock back."""
        global _loading  # pylint: disable=global-statement
        _loading = threading.RLock()
        if cls._shared_is_taken.locked():
            cls._shared_is_taken = threading.Lock()
            cls._shared_is_the_parents = True


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=TranslatorLibrary.forked)


def _path_of_loaded(name: str) -> str:
    """The file that the system's loader takes for a name."""
    library = _open(name)
    try:
        with open("/proc/self/maps", encoding="utf-8", errors="surrogateescape") as maps:
            for line in maps:
                path = line.split(None, 5)[-1].rstrip("\n")
                # A copy that is loaded has no file any more.
                if os.path.basename(path).startswith("liblorimatrt.so") and os.path.isfile(path):
                    return path
    finally:
        import _ctypes
        _ctypes.dlclose(library._handle)
    raise LorimatError("%s: its file is not found" % name)


def installed_definition() -> Optional[str]:
    """The definition file that is installed; None without one."""
    folders = [os.environ.get("LORIMAT_DEFINITION_DIR") or ""]
    for folder in _folders():
        folders += [folder, os.path.join(folder, "..", "share", "lorimat"),
                    os.path.join(folder, "..", "..", "share", "lorimat")]
    folders += ["/usr/local/share/lorimat", "/usr/share/lorimat"]
    for folder in folders:
        path = os.path.join(folder, "merkelin.ini")
        if folder and os.path.isfile(path):
            return os.path.normpath(path)
    return None
