"""Lines of the language, run on a device."""

import atexit
import ctypes
import os
import sys
import weakref
from typing import Any, NamedTuple, Optional, Union

from . import _libraries
from ._text import ENCODING, decoded, encoded
from ._turn import Turn, Unpicklable
from .client import Client, ClientHandle, check_methods, report_lost
from .errors import LorimatError, TextError
from .register import VirtualRegister

# The library asks for 512 at least.
_ANSWER_ROOM = 4096
_NOT_READ = 2
# Of a definition file.
_LONGEST_NAME = 80


class Answer(NamedTuple):
    """What a line was answered."""

    code: int  #: 0: of a line that failed a LorimatError has it
    text: str  #: "OK.", or what the line asked for
    explanation: str  #: what the code means and what causes it


def explain(code: int, language: str = "en") -> str:
    """What a result code means and what causes it, in "en" or "it"; "" for no result code."""
    if isinstance(code, bool) or not isinstance(code, int):
        raise TypeError("code has to be an int, not %s" % type(code).__name__)
    if not isinstance(language, str):
        raise TypeError("language has to be a str, not %s" % type(language).__name__)
    if not -2**31 <= code < 2**31:
        return ""
    face = _libraries.c_face()
    text = face.lorimat_explain(code, encoded(language, "language", "utf-8"))
    if text is None:
        raise LorimatError("%s: %s" % (language, decoded(face.lorimat_error())))
    return decoded(text)


class Translator(Unpicklable):
    """Runs lines on a device, a VirtualRegister or a Client.

        with lorimat.Translator(device) as t:
            t("VEND REP=1, PRE=1.20")

    There is one translator for each copy of the library that is loaded: a second one raises until
    the first is closed. ``isolated=True`` loads a copy of its own, so that several devices can be
    served at once. A process that is forked off has one of its own again. Calls take turns; one from
    inside of the device raises.

    Args:
      device: stays open when the translator is closed.
      definition: the definition file; None takes the one that is installed.
      isolated: loads a copy of the library of its own.
      quiet: keeps the lines off standard output and error that the library writes when it is loaded
        and unloaded ("Load working..."). Its price: both streams of the whole process lead into a
        file for that moment, and what a child process writes that another thread starts just then
        is lost.
      encoding: the code page of the device, in which texts are sent.
      language: of the explanations, "en" or "it".
    """

    def __init__(self, device: Union[VirtualRegister, Client],
                 definition: Union[str, os.PathLike, None] = None, *, isolated: bool = False,
                 quiet: bool = False, encoding: str = ENCODING, language: str = "en") -> None:
        self._library: Optional[_libraries.TranslatorLibrary] = None
        self._turn = Turn("translator")
        self._encoding = encoding
        self._language = language
        self._hold = _Hold()
        explain(0, language)
        encoded("", "", encoding)
        path = self._definition(definition)
        _close_left()
        self.device = device
        if isinstance(device, VirtualRegister):
            with device._turn.taken():
                if device._hold is not None:
                    raise LorimatError("the register is in use by another Translator")
                device._check_open()
                device._hold = self._hold
            self._client: Any = device
        elif isinstance(device, Client):
            check_methods(device)
            self._client = ClientHandle(device, encoding)
        else:
            raise TypeError("device has to be a VirtualRegister or a Client, not %s" %
                            type(device).__name__)
        try:
            self._library = _libraries.TranslatorLibrary(isolated, quiet)
            with self._turn.taken():
                self._start(path)
        except BaseException:
            self._end()
            raise
        _open_translators.add(self)

    def _definition(self, definition: Union[str, os.PathLike, None]) -> bytes:
        if definition is None:
            definition = _libraries.installed_definition()
            if definition is None:
                raise LorimatError("no definition file is installed: name one", _NOT_READ)
        path = os.fsencode(definition)
        if b"\0" in path:
            raise TextError("definition holds a NUL")
        # The library would look for another one where this cannot be read.
        try:
            with open(path, "rb"):
                pass
        except OSError as error:
            raise LorimatError("%s: cannot be opened: %s" % (os.fsdecode(path), error.strerror),
                               _NOT_READ) from error
        return path

    def _start(self, path: bytes) -> None:
        interface = self._client.interface()

        def give(code: int, *arguments: Any) -> int:
            if code != _libraries.GET_CLIENT or not arguments[-1]:
                return -1
            ctypes.c_void_p.from_address(arguments[-1]).value = interface
            return 0

        self._callback = _libraries.EcrIo(give)
        # Under its own name or, where the library would cut that, under one of the system's.
        with open(path, "rb") as file:
            name = path
            if len(path) > _LONGEST_NAME:
                name = b"/proc/self/fd/%d" % file.fileno()
                if not os.path.exists(name):
                    raise LorimatError("%s: the library takes names of %d bytes at most" %
                                       (os.fsdecode(path), _LONGEST_NAME), _NOT_READ)
            with self._device_turn():
                code = self._library.calls.TradInit(ctypes.create_string_buffer(name), 0, None,
                                                    self._callback)
                error = self._client.take_error()
        if error is not None and not isinstance(error, Exception):
            raise error
        if code != 0 or error is not None:
            text = ("%s: the library cannot read this definition file" % os.fsdecode(path)
                    if code != 0 else "the device failed at the start")
            raise LorimatError(text, code, "", explain(code, self._language)) from error

    def _device_turn(self) -> Any:
        """A register is looked at by others too; a Client is used by its translator alone."""
        if isinstance(self.device, VirtualRegister):
            return self.device._turn.taken()
        return _NoTurn()

    def __call__(self, line: Union[str, bytes]) -> Answer:
        """Runs a line, or the file of lines that an "@" line names.

        Raises LorimatError, with code, text and explanation, when it fails; TextError when it holds
        what cannot be sent, of which nothing is.
        """
        self._turn.check()
        command = ctypes.create_string_buffer(encoded(line, "the line", self._encoding))
        result = ctypes.create_string_buffer(_ANSWER_ROOM)
        with self._turn.taken():
            self._check_open()
            with self._device_turn():
                code = self._library.calls.EcrCmd(command, result)
                error = self._client.take_error()
        # What comes from a register is mixed.
        page = None if isinstance(self.device, VirtualRegister) else self._encoding
        text = decoded(result.value, page)
        explanation = explain(code, self._language)
        if error is not None and not isinstance(error, Exception):
            raise error  # an interrupt
        if code != 0:
            shown = line if isinstance(line, str) else decoded(bytes(line))
            message = "code %d: %s" % (code, text)
            if explanation:
                message += "\n" + explanation
            raise LorimatError(message, code, text, explanation, shown) from error
        if error is not None:
            report_lost(error, self.device)
        return Answer(code, text, explanation)

    @property
    def version(self) -> str:
        """The version of the library."""
        with self._turn.taken():
            self._check_open()
            number = self._library.calls.GetEcrConfVal(0)
        return "%d.%d.%d" % (number // 1000000, number // 1000 % 1000, number % 1000)

    def close(self) -> None:
        """Lets the device go and unloads the library's copy. A second time is nothing."""
        if not self._turn.mine:
            return  # the parent's
        with self._turn.taken():
            if self._library is not None:
                with self._device_turn():
                    self._library.calls.TradClose()
                    error = self._client.take_error()
                self._end()
                if error is not None:
                    report_lost(error, self.device)

    def _end(self) -> None:
        if self._library is not None:
            self._library.unload()
            self._library = None
        if isinstance(self._client, ClientHandle):
            self._client.free()
        elif self._client is not None and self._client._hold is self._hold:
            self._client._let_go()
        self._hold.left = None
        _open_translators.discard(self)

    def _check_open(self) -> None:
        if self._library is None:
            raise LorimatError("the translator is closed")

    def __enter__(self) -> "Translator":
        self._turn.check()
        self._check_open()
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        if getattr(self, "_library", None) is not None:
            try:
                self.close()
            except Exception:  # pylint: disable=broad-except
                # The program ends, or garbage is collected while the device is at work.
                if not sys.is_finalizing():
                    self._hold.left = self
                    _open_translators.add(self)


class _Hold:
    """What a register has of its translator: that there is one, and not the translator itself, which
    closes when its program has let it go."""

    left: Optional[Translator] = None  # one that could not be closed then, and has to be still


class _NoTurn:
    def __enter__(self) -> None:
        pass

    def __exit__(self, *_: object) -> None:
        pass


_open_translators: "weakref.WeakSet[Translator]" = weakref.WeakSet()


def _close_left() -> None:
    for translator in list(_open_translators):
        if translator._hold.left is not None:
            try:
                translator.close()
            except LorimatError:
                pass  # its device is still at work


@atexit.register
def _close_all() -> None:
    for translator in list(_open_translators):
        try:
            translator.close()
        except LorimatError:
            pass  # it is at work in a thread that goes with the program
