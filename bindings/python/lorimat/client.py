"""A device of one's own: a class with a method for each operation that it has."""

import ctypes
import inspect
import sys
from typing import Any, Callable, List, Optional, Tuple

from . import _libraries, constants
from ._client_methods import Operations
from ._operations import OPERATIONS
from ._text import ENCODING, decoded, encoded
from ._turn import Unpicklable
from .errors import LorimatError, Refusal


class Client(Unpicklable, Operations):
    """A device client. Derive from it and write the operations that the device has; the others
    answer that they are not supported.

        class Drawer(lorimat.Client):
            def OpenDrawer(self):
                kick()

    What an operation does is told in rtfclientinterface.h: amounts in ten-thousandths of the
    currency, quantities in thousandths. A method gets what the translator sends (texts as str, a
    null one as ""; macros as bytes) and

    - returns None or 0 for success, or a result code (lorimat.constants.RTF_...),
    - or, where the operation reads something, what it reads: a number, a text, or a tuple of them in
      the order of the interface. The Config operations, DirectIO, GetData and ZupEcrCmd get these
      as arguments too, and may return None where they only take.

    ``raise lorimat.Refusal(code)`` answers a code from anywhere. Any other exception counts as a
    failure of the device and is the cause of the LorimatError that the line raises. Methods run on
    the thread that sent the line, and must not send another.
    """


_READ_TOO = ("DirectIO", "GetData", "ZupEcrCmd")
_NAMES = [name for name, _, _ in OPERATIONS]


def _is_read_too(name: str) -> bool:
    return name.startswith("Config") or name in _READ_TOO


def _number(value: Any, kind: Any, what: str) -> Any:
    """A number that fits a type of C, or a truth."""
    if kind is ctypes.c_bool:
        if not isinstance(value, bool):
            raise TypeError("%s has to be a bool, not %s" % (what, type(value).__name__))
        return value
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError("%s has to be an int, not %s" % (what, type(value).__name__))
    if kind(value).value != value:
        raise OverflowError("%s: %d is out of range" % (what, value))
    return value


class ClientHandle:
    """A Client as the library has it. Made and freed by a Translator, used under its turn."""

    def __init__(self, client: Client, encoding: str = ENCODING) -> None:
        self.client = client
        self.error: Optional[BaseException] = None  # what a method has raised since the last look
        self._encoding = encoding
        self._face = _libraries.c_face()
        self._table = _libraries.Device()
        self._table.size = ctypes.sizeof(self._table)
        self._table.abi = _libraries.ABI
        for name, result, parameters in OPERATIONS:
            if getattr(type(client), name) is not getattr(Client, name):
                setattr(self._table, name,
                        _libraries.ENTRY_TYPES[name](self._entry(name, result, parameters)))
        self._handle = ctypes.c_void_p()
        if self._face.lorimat_client_new(ctypes.byref(self._table), ctypes.byref(self._handle)):
            raise LorimatError(decoded(self._face.lorimat_error()))

    def interface(self) -> int:
        return self._face.lorimat_client_interface(self._handle)

    def free(self) -> None:
        if self._handle:
            self._face.lorimat_client_free(self._handle)
            self._handle = ctypes.c_void_p()

    def take_error(self) -> Optional[BaseException]:
        error, self.error = self.error, None
        return error

    def _entry(self, name: str, result: Any, parameters: Tuple) -> Callable:
        """The function of C for a method: no exception leaves it."""
        method = getattr(self.client, name)
        is_state = name == "GetState"

        def entry(_: Any, *arguments: Any) -> Any:
            try:
                given, filled = self._take(name, parameters, arguments)
                answer = method(*given)
                if result is None:
                    return None
                if result is ctypes.c_bool:
                    return _number(answer, result, name)
                if filled and not (answer is None and _is_read_too(name)):
                    self._fill(name, filled, answer)
                    return constants.RTF_SUCCESS
                if answer is None and not is_state:
                    return constants.RTF_SUCCESS
                return self._code(_number(answer, result, name))
            except Refusal as refusal:
                try:
                    code = self._code(_number(refusal.code, ctypes.c_int, "a refusal"))
                    if result is ctypes.c_int:
                        return code
                except (TypeError, OverflowError, ValueError) as error:
                    self.error = self.error or error
            except BaseException as error:  # pylint: disable=broad-except
                # The first one is what went wrong; an interrupt is not lost behind it.
                if self.error is None or not isinstance(error, Exception):
                    self.error = error
            if result is None:
                return None
            return False if result is ctypes.c_bool else constants.RTF_E_FAILURE

        return entry

    @staticmethod
    def _code(code: int) -> int:
        if code == -1:
            raise ValueError("a device cannot answer -1, which means that there is none")
        return code

    def _take(self, name: str, parameters: Tuple, arguments: Tuple) -> Tuple[List, List]:
        """What the method gets, and what it fills: (parameter, type, place, room)."""
        read_too = _is_read_too(name)
        given: List[Any] = []
        filled: List[Tuple] = []
        for index, (own, kind, part) in enumerate(parameters):
            value = arguments[index]
            if part == "room" or (part == "in" and kind is ctypes.c_void_p):
                continue
            if part == "in":
                if kind is ctypes.c_char_p:
                    value = "" if value is None else decoded(value, self._encoding)
                given.append(value)
                continue
            room = arguments[index + 1] if part == "text" else 0
            if not value:
                raise ValueError("%s: there is no room for %s" % (name, own))
            filled.append((own, kind, value, room))
            if not read_too:
                continue
            if part == "out":
                given.append(value[0])
            elif own == "macro":
                count = min(arguments[index + 2][0], room) if arguments[index + 2] else 0
                given.append(ctypes.string_at(value, count))
            else:
                text = ctypes.string_at(value, room).split(b"\0", 1)[0]
                given.append(decoded(text, self._encoding))
        return given, filled

    def _fill(self, name: str, filled: List[Tuple], answer: Any) -> None:
        answers = answer if isinstance(answer, tuple) else (answer,)
        if len(answers) != len(filled):
            raise TypeError("%s has to return %d values, not %d" %
                            (name, len(filled), len(answers)))
        ready = []
        for (own, kind, place, room), value in zip(filled, answers):
            what = "%s of %s" % (own, name)
            if kind is not ctypes.c_void_p:
                # The type that the pointer leads to.
                ready.append((place, _number(value, kind._type_, what)))
                continue
            is_macro = own == "macro"
            if is_macro and isinstance(value, (bytes, bytearray)):
                data = bytes(value)
            else:
                data = encoded(value, what, self._encoding)
            if len(data) >= room:
                raise ValueError("%s: %d bytes, and there is room for %d" %
                                 (what, len(data), room - 1))
            ready.append((place, data + b"\0"))
        # Nothing is written before all is known to be good.
        for place, value in ready:
            if isinstance(value, bytes):
                ctypes.memmove(place, value, len(value))
            else:
                place[0] = value


def check_methods(client: Client) -> None:
    """A method that looks like an operation and is none is a slip that nobody would notice."""
    known = {name.lower(): name for name in _NAMES}
    for name, _ in inspect.getmembers(type(client), inspect.isfunction):
        right = known.get(name.lower().replace("_", ""))
        if right is not None and right != name and name not in _NAMES:
            raise TypeError("%s has a method %s; the operation is called %s" %
                            (type(client).__name__, name, right))


def report_lost(error: BaseException, client: Client) -> None:
    """An exception of a method in a line that ran all the same."""
    sys.unraisablehook(_Lost(type(error), error, error.__traceback__,
                             "Exception ignored in a device, whose line ran", client))


class _Lost:
    def __init__(self, exc_type: Any, exc_value: Any, exc_traceback: Any, err_msg: Any,
                 object: Any) -> None:
        self.exc_type = exc_type
        self.exc_value = exc_value
        self.exc_traceback = exc_traceback
        self.err_msg = err_msg
        self.object = object
