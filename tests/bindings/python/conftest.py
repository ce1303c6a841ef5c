"""What the tests share: a register with a clock that stands, and a translator on it."""

import datetime

import lorimat
import pytest


def noon():
    return datetime.datetime(2026, 11, 20, 11, 3)


@pytest.fixture
def register():
    with lorimat.VirtualRegister(clock=noon) as device:
        yield device


@pytest.fixture
def translator(register):
    with lorimat.Translator(register) as t:
        yield t


class Till(lorimat.Client):
    """A device that sells and takes money, and keeps what it was told."""

    def __init__(self):
        self.open = False
        self.lines = []
        self.paid = 0
        self.raises = None

    def GetState(self):
        return lorimat.constants.RTF_S_IDLE

    def GetIntProperty(self, property):
        if property != lorimat.constants.RTF_PIDXFptr_PrinterState:
            raise lorimat.Refusal(lorimat.constants.RTF_E_ILLEGAL)
        return 2 if self.open else 1

    def GetDataInternal(self, item):
        return "0"

    def BeginFiscalReceipt(self, print_header):
        self.open = True

    def PrintRecItemEx(self, kind, description, price, quantity, vat, unit_price, unit, department,
                       now, code):
        if self.raises is not None:
            raise self.raises
        if department == 9:
            return lorimat.constants.RTF_EFPTR_BAD_VAT
        self.lines.append((description, quantity, unit_price))

    def PrintRecTotalEx(self, payment, tender, rest):
        self.paid += payment
        self.open = False


@pytest.fixture
def till():
    return Till()
