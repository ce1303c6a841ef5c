"""The virtual register."""

import datetime
import gc
import os
import re
import subprocess
import sys
from decimal import Decimal

import lorimat
import pytest
from conftest import noon
from lorimat import constants


def sell(register):
    with lorimat.Translator(register) as t:
        t("VEND REP=2, QTA=2, PRE=1.20")
        t("CHIU TEND=CONTANTI, IMP=5.00")


def test_it_counts_what_it_sells(register):
    sell(register)
    totals = register.totals
    assert totals.receipts_number == totals.sales == 1
    assert totals.net_amount == totals.grand_amount == Decimal("2.40")
    assert totals.tenders == {"0": Decimal("2.40")}
    state = register.state
    assert state.printer_state == constants.RTF_FPTR_PS_MONITOR
    assert state.day_open is True and state.documents == 1


def test_its_paper_comes_as_pictures(register):
    sell(register)
    assert register.png().startswith(b"\x89PNG")
    assert register.pdf().startswith(b"%PDF")


@pytest.mark.skipif("asan" in os.environ.get("LD_PRELOAD", ""),
                    reason="AddressSanitizer itself ends a process without memory")
@pytest.mark.parametrize("kind", ["png", "pdf"])
def test_without_memory_to_draw_it_is_an_error(kind):
    done = subprocess.run(
        [sys.executable, "-c",
         "import lorimat, resource, sys\n"
         "with lorimat.VirtualRegister() as register:\n"
         "    pages = int(open('/proc/self/statm').read().split()[0])\n"
         "    room = pages * resource.getpagesize() + 32 * 2**20\n"
         "    resource.setrlimit(resource.RLIMIT_AS, (room, resource.RLIM_INFINITY))\n"
         "    try:\n"
         "        getattr(register, sys.argv[1])()\n"
         "    except lorimat.LorimatError as error:\n"
         "        print(error)\n", kind], capture_output=True, text=True)
    assert (done.stdout, done.stderr, done.returncode) == ("there is no memory\n", "", 0)


def test_it_lives_in_a_file(tmp_path):
    for place in (str(tmp_path / "a.register"), tmp_path / "b.register",
                  bytes(tmp_path / "caffè.register")):
        with lorimat.VirtualRegister(place, clock=noon) as register:
            sell(register)
            with pytest.raises(lorimat.LorimatError, match="register"):
                lorimat.VirtualRegister(place)
        with lorimat.VirtualRegister(place, clock=noon) as register:
            assert register.totals.sales == 1
            assert "DOCUMENTO N. 0001-0001" in register.paper
            assert register.start_notice == ""


@pytest.mark.parametrize("translator_goes_first", [False, True])
def test_it_is_switched_off_with_its_translator_as_garbage(tmp_path, translator_goes_first):
    def sell_and_forget():
        register = lorimat.VirtualRegister(tmp_path / "shop.register")
        translator = lorimat.Translator(register)
        translator("VEND REP=1, PRE=1.20")
        translator("CHIU TEND=CONTANTI")
        if translator_goes_first:
            translator.__del__()

    sell_and_forget()
    gc.collect()
    with lorimat.VirtualRegister(tmp_path / "shop.register") as register:
        assert register.start_notice == ""
        sell(register)
        assert register.totals.receipts_number == 2


def test_it_is_switched_off_when_nobody_has_it(tmp_path):
    gc.disable()
    try:
        register = lorimat.VirtualRegister(tmp_path / "shop.register", clock=noon)
        del register
        lorimat.VirtualRegister(tmp_path / "shop.register", clock=noon).close()
    finally:
        gc.enable()


def test_it_has_the_identity_that_it_is_given():
    with lorimat.VirtualRegister(serial_number="99LRM0000077VR", header_lines=["BAR SPORT", "Caffè"],
                                 last_closure=41, clock=noon) as register:
        sell(register)
        for part in ("BAR SPORT", "Caffè", "99LRM0000077VR", "0042-0001"):
            assert part in register.paper


def test_it_has_the_table_of_vat_and_the_rounding_that_it_is_given():
    with lorimat.VirtualRegister(vat=["22", "N2"], round_cash=True, clock=noon) as register:
        with lorimat.Translator(register) as t:
            t("VEND REP=2, PRE=1.03")
            t("CHIU TEND=CONTANTI")
        assert "NS* = N2 non soggetto\n" in register.paper
        assert re.search(r"Arrotondamento per eccesso +-0,02\n", register.paper)


@pytest.mark.parametrize("wrong, error", [
    (dict(vat="22"), TypeError), (dict(vat=[None]), TypeError), (dict(vat=[22]), TypeError),
    (dict(vat=[]), lorimat.LorimatError), (dict(vat=["N7"]), lorimat.LorimatError),
    (dict(serial_number=7), TypeError), (dict(serial_number="a\0b"), lorimat.TextError),
    (dict(serial_number="x" * 33), lorimat.LorimatError),
    (dict(serial_number="\ud800"), lorimat.TextError),
    (dict(header_lines="BAR"), TypeError), (dict(header_lines=[None]), TypeError),
    (dict(header_lines=["x"] * 7), lorimat.LorimatError),
    (dict(header_lines=["x" * 51]), lorimat.LorimatError), (dict(header_lines=3), TypeError),
    (dict(last_closure=-1), lorimat.LorimatError), (dict(last_closure=2**40), OverflowError),
    (dict(last_closure=True), TypeError), (dict(last_invoice="7"), TypeError),
    (dict(file=3.5), TypeError), (dict(file=""), lorimat.LorimatError), (dict(file="a\0b"), lorimat.TextError),
    (dict(file="/nowhere/at/all/shop.register"), lorimat.LorimatError),
    (dict(file="x" * 5000), lorimat.LorimatError),
    (dict(clock=noon()), TypeError), (dict(colour="red"), TypeError),
])
def test_what_it_cannot_be_made_with_is_named(wrong, error):
    with pytest.raises(error):
        lorimat.VirtualRegister(**wrong)


def test_a_fault_strikes(register, translator):
    register.fault("paper-end")
    assert register.state.waiting_faults == 1
    with pytest.raises(lorimat.LorimatError) as caught:
        translator("VEND REP=1, PRE=1.20")
    assert caught.value.code == constants.RTF_EFPTR_REC_EMPTY | 0x400
    register.fault("code", 777, operation="PrintRecItemEx", when="every")
    register.clear_faults()
    translator("VEND REP=1, PRE=1.20")


@pytest.mark.parametrize("arguments, error", [
    (("fire",), lorimat.LorimatError), ((None,), TypeError), ((3,), TypeError),
    (("code", "x"), TypeError), (("code", 2**31), OverflowError), (("code", 0), lorimat.LorimatError),
])
def test_a_fault_that_cannot_be_is_named(register, arguments, error):
    with pytest.raises(error):
        register.fault(*arguments)
    with pytest.raises(lorimat.LorimatError, match="sometimes"):
        register.fault("busy", when="sometimes")
    with pytest.raises(TypeError, match="when has to be a str, not list"):
        register.fault("busy", when=[])
    with pytest.raises(lorimat.LorimatError, match="Sing"):
        register.fault("busy", operation="Sing")
    assert register.state.waiting_faults == 0


def test_a_clock_that_fails_is_the_cause():
    answers = [noon()]

    def clock():
        if not answers:
            raise OSError("no battery")
        return answers[0]

    with lorimat.VirtualRegister(clock=clock) as register, lorimat.Translator(register) as t:
        t("VEND REP=1, PRE=1.20")
        answers.clear()
        with pytest.raises(lorimat.LorimatError) as caught:
            t("CHIU TEND=CONTANTI")
        assert isinstance(caught.value.__cause__, OSError)
        answers.append(noon())
        t("CHIU TEND=CONTANTI")
    with pytest.raises(lorimat.LorimatError) as caught:
        lorimat.VirtualRegister(clock=lambda: "noon")
    assert isinstance(caught.value.__cause__, TypeError)


def test_a_clock_cannot_use_its_register():
    caught = []

    def clock():
        try:
            register.paper
        except lorimat.LorimatError as error:
            caught.append(str(error))
        return noon()

    register = None
    with lorimat.VirtualRegister(clock=noon) as first:
        sell(first)
    register = lorimat.VirtualRegister(clock=lambda: clock() if register is not None else noon())
    sell(register)
    register.close()
    assert caught and all("from inside of a callback" in one for one in caught)
