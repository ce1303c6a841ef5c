"""The virtual register: a device in memory or in a file, which prints on virtual paper."""

import ctypes
import datetime
import os
import weakref
from decimal import Decimal
from typing import Any, Callable, Dict, NamedTuple, Optional, Sequence, Tuple, Union

from . import _libraries
from ._text import decoded
from ._turn import Turn, Unpicklable
from .errors import LorimatError, TextError

_WHEN = {"next": 0, "nth": 1, "every": 2, "times": 3}


class State(NamedTuple):
    """What a register is at a moment."""

    printer_state: int  #: one of lorimat.constants.RTF_FPTR_PS_...
    key_position: int  #: 1 registering, 2 reading, 3 closing, 4 programming
    training: bool
    day_open: bool
    drawer_openings: int
    last_closure: int
    next_invoice: int
    pending_summaries: int
    waiting_faults: int
    documents: int
    journal_entries: int


class Totals(NamedTuple):
    """The day that is open, in the currency."""

    receipts_number: int  #: of the last receipt, credit note or void
    sales: int
    invoices: int
    refunds: int
    cancels: int
    abandoned: int
    non_fiscal: int
    receipts_amount: Decimal  #: sales and invoices
    invoices_amount: Decimal
    refunds_amount: Decimal
    cancels_amount: Decimal
    not_paid_amount: Decimal
    discounts_amount: Decimal
    surcharges_amount: Decimal
    net_amount: Decimal  #: receipts less refunds and cancels
    grand_amount: Decimal  #: since the register began
    tenders: Dict[str, Decimal]  #: by the identifier of the tender; "0" is cash


def _text(value: Any, what: str) -> Optional[bytes]:
    if value is None:
        return None
    if not isinstance(value, str):
        raise TypeError("%s has to be a str, not %s" % (what, type(value).__name__))
    try:
        data = value.encode("utf-8")
    except UnicodeEncodeError as error:
        raise TextError("%s holds half a character in place %d" %
                        (what, error.start + 1)) from None
    if b"\0" in data:
        raise TextError("%s holds a NUL in place %d" % (what, data.index(b"\0") + 1))
    return data


def _path(value: Union[str, bytes, os.PathLike, None], what: str) -> Optional[bytes]:
    if value is None:
        return None
    data = os.fsencode(value)
    if b"\0" in data:
        raise TextError("%s holds a NUL" % what)
    return data


def _texts(values: Optional[Sequence[str]], what: str, one: str) -> Tuple[Any, int]:
    """As an array and its length; nothing of None."""
    if values is None:
        return None, 0
    if isinstance(values, (str, bytes)):
        raise TypeError("%s has to be a sequence of str" % what)
    texts = [_text(value, one) for value in values]
    if None in texts:
        raise TypeError("%s has to be a str, not None" % one)
    return (ctypes.c_char_p * (len(texts) + 1))(*texts), len(texts)


def _int(value: Any, what: str) -> int:
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError("%s has to be an int, not %s" % (what, type(value).__name__))
    if not -2**31 <= value < 2**31:
        raise OverflowError("%s: %d is out of range" % (what, value))
    return value


def _amount(number: int) -> Decimal:
    """Of ten-thousandths; with two decimals where there are no more."""
    amount = Decimal(number).scaleb(-4)
    return amount.quantize(Decimal("0.01")) if number % 100 == 0 else amount


class VirtualRegister(Unpicklable):
    """A fiscal register with virtual paper, to be given to a Translator.

        with lorimat.VirtualRegister("shop.register") as register, lorimat.Translator(register) as t:
            t("VEND REP=1, PRE=1.20")

    Args:
      file: where it is kept, made when it is not there; None keeps it in memory. What a file holds
        goes before the other arguments but outbox and clock.
      serial_number, firmware_version, vat_number, header_lines, in_service, last_closure,
        last_invoice: its identity; what is left out is that of a test shop.
      outbox: the folder that summaries are put into when they are sent.
      round_cash: what is paid wholly in cash comes to five cents.
      vat: the table of VAT, entry 1 first, as `lorimat set` takes it: rates ("22", "5.5"), or the
        nature of sales without tax ("N1" to "N6"); None is 22, 10, 5, 4 and exempt.
      clock: gives the device's time, as datetime.now does, which None stands for.
    """

    def __init__(self, file: Union[str, bytes, os.PathLike, None] = None, *,
                 serial_number: Optional[str] = None, firmware_version: Optional[str] = None,
                 vat_number: Optional[str] = None, header_lines: Optional[Sequence[str]] = None,
                 outbox: Union[str, bytes, os.PathLike, None] = None, in_service: bool = True,
                 last_closure: int = 0, last_invoice: int = 0, round_cash: bool = False,
                 vat: Optional[Sequence[str]] = None,
                 clock: Optional[Callable[[], datetime.datetime]] = None) -> None:
        self._handle = ctypes.c_void_p()
        self._hold: Any = None  # that of the translator that has it
        self._forgotten = False  # the program has neither it nor its translator any more
        self._turn = Turn("register")
        self.error: Optional[BaseException] = None  # what the clock has raised since the last look
        settings = _libraries.Settings()
        settings.size = ctypes.sizeof(settings)
        settings.abi = _libraries.ABI
        settings.file = _path(file, "file")
        settings.outbox = _path(outbox, "outbox")
        settings.serial_number = _text(serial_number, "serial_number")
        settings.firmware_version = _text(firmware_version, "firmware_version")
        settings.vat_number = _text(vat_number, "vat_number")
        settings.header_lines, settings.header_line_count = _texts(
            header_lines, "header_lines", "a header line")
        settings.vat, settings.vat_count = _texts(vat, "vat", "an entry of vat")
        settings.round_cash = bool(round_cash)
        settings.not_in_service = not in_service
        settings.last_closure = _int(last_closure, "last_closure")
        settings.last_invoice = _int(last_invoice, "last_invoice")
        if clock is not None:
            if not callable(clock):
                raise TypeError("clock has to be callable")
            self._clock = _libraries.Clock(self._ask(clock, weakref.ref(self)))
            settings.clock = self._clock
        self._face = _libraries.register_face()
        with self._turn.taken():
            result = self._face.lorimat_register_open(ctypes.byref(settings),
                                                      ctypes.byref(self._handle))
            self._check(result)

    @staticmethod
    def _ask(clock: Callable[[], datetime.datetime],
             register: "weakref.ref[VirtualRegister]") -> Callable:
        """Knows the register weakly, for that has it."""

        def ask(_: Any, place: int) -> bool:
            try:
                now = clock()
                if not isinstance(now, datetime.datetime):
                    raise TypeError("the clock has to give a datetime, not %s" %
                                    type(now).__name__)
                time = _libraries.Time.from_address(place)
                time.year, time.month, time.day = now.year, now.month, now.day
                time.hour, time.minute, time.second = now.hour, now.minute, now.second
                return True
            except BaseException as error:  # pylint: disable=broad-except
                own = register()
                if own is not None:
                    own.error = own.error or error
                return False

        return ask

    # --- What a Translator asks of its device

    def interface(self) -> int:
        self._check_open()
        return self._face.lorimat_register_interface(self._handle)

    def take_error(self) -> Optional[BaseException]:
        error, self.error = self.error, None
        return error

    # --- What it shows

    @property
    def paper(self) -> str:
        """All that it has printed, a line feed behind each line."""
        return decoded(self._bytes(self._face.lorimat_register_paper))

    def png(self) -> bytes:
        """The paper as a PNG file."""
        return self._bytes(self._face.lorimat_register_png)

    def pdf(self) -> bytes:
        """The paper as a PDF file."""
        return self._bytes(self._face.lorimat_register_pdf)

    @property
    def start_notice(self) -> str:
        """What is to be known of the start, as a document that had been cut off; "" if nothing."""
        return decoded(self._bytes(self._face.lorimat_register_start_notice))

    @property
    def failure(self) -> str:
        """Why the last operation that failed could not be stored; "" if none has."""
        return decoded(self._bytes(self._face.lorimat_register_failure))

    @property
    def state(self) -> State:
        """What it is now."""
        state = self._struct(_libraries.State(), self._face.lorimat_register_get_state)
        return State(*(getattr(state, name) for name in State._fields))

    @property
    def totals(self) -> Totals:
        """The sums and counts of the day."""
        totals = self._struct(_libraries.Totals(), self._face.lorimat_register_get_totals)
        values = [getattr(totals, name) for name in Totals._fields[:-1]]
        values = [_amount(value) if name.endswith("_amount") else value
                  for name, value in zip(Totals._fields, values)]
        rows = (_libraries.TenderTotal * 64)()
        count = ctypes.c_size_t()
        with self._turn.taken():
            self._check_open()
            self._check(self._face.lorimat_register_get_tenders(
                self._handle, rows, len(rows), ctypes.byref(count)))
        tenders = {row.tender.decode("ascii", "replace"): _amount(row.amount)
                   for row in rows[:min(count.value, len(rows))]}
        return Totals(*values, tenders)

    # --- Faults

    def fault(self, name: str, code: int = 0, *, operation: Optional[str] = None,
              when: str = "next", count: int = 1) -> None:
        """Lets a fault wait: "paper-end", "cover-open", "off-line" ..., or "code" with a code that
        is answered.

        Args:
          operation: the one that it strikes ("PrintRecItemEx"); None: all that it can.
          when: "next", "nth" and "times", which take a count, or "every".
        """
        if not isinstance(when, str):
            raise TypeError("when has to be a str, not %s" % type(when).__name__)
        if when not in _WHEN:
            raise LorimatError("there is no such time for a fault: %r" % (when,))
        kind = _text(name, "name")
        if kind is None:
            raise TypeError("name has to be a str, not None")
        where = _text(operation, "operation")
        number, times = _int(code, "code"), _int(count, "count")
        with self._turn.taken():
            self._check_open()
            self._check(self._face.lorimat_register_add_fault(self._handle, kind, number, where,
                                                              _WHEN[when], times))

    def clear_faults(self) -> None:
        """Takes all of them away."""
        with self._turn.taken():
            self._check_open()
            self._check(self._face.lorimat_register_clear_faults(self._handle))

    # --- The end

    def close(self) -> None:
        """Switches it off. A second time is nothing; a Translator that has it is closed first."""
        if not self._turn.mine:
            return  # its file is open in the process that made it
        self._turn.check()
        self._close_left()
        with self._turn.taken():
            if self._hold is not None:
                raise LorimatError("the register is in use: close its Translator first")
            if self._handle:
                self._face.lorimat_register_close(self._handle)
                self._handle = ctypes.c_void_p()

    def __enter__(self) -> "VirtualRegister":
        self._turn.check()
        self._check_open()
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        self._forgotten = True
        if getattr(self, "_hold", None) is not None:
            self._close_left()
        if getattr(self, "_handle", None) and self._turn.mine and self._hold is None:
            self._face.lorimat_register_close(self._handle)
            self._handle = ctypes.c_void_p()

    def _close_left(self) -> None:
        """The translator that the program let go while this one was at work."""
        if self._hold is not None and self._hold.left is not None:
            self._hold.left.close()

    def _let_go(self) -> None:
        """Its translator has ended. Garbage is finalised in any order: this one may have gone first."""
        self._hold = None
        if self._forgotten:
            self.close()

    # --- Inside

    def _check_open(self) -> None:
        if not self._handle:
            raise LorimatError("the register is closed")

    def _check(self, result: int) -> None:
        if result == 0:
            error = self.take_error()
            if error is not None and not isinstance(error, Exception):
                raise error
            return
        raise LorimatError(decoded(self._face.lorimat_register_error())) from self.take_error()

    def _bytes(self, make: Callable) -> bytes:
        with self._turn.taken():
            self._check_open()
            made = _libraries.Bytes()
            self._check(make(self._handle, ctypes.byref(made)))
            try:
                return ctypes.string_at(made.data, made.size)
            finally:
                self._face.lorimat_bytes_free(ctypes.byref(made))

    def _struct(self, struct: Any, fill: Callable) -> Any:
        struct.size = ctypes.sizeof(struct)
        struct.abi = _libraries.ABI
        with self._turn.taken():
            self._check_open()
            self._check(fill(self._handle, ctypes.byref(struct)))
        return struct
