"""Devices of one's own."""

import inspect
import threading

import lorimat
import pytest
from conftest import Till
from lorimat import constants
from lorimat._operations import OPERATIONS


def test_a_device_gets_what_is_sold(till):
    with lorimat.Translator(till) as t:
        t("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFÈ'")
        t("CHIU TEND=CONTANTI, IMP=5.00")
    assert till.lines == [("CAFFÈ", 2000, 12000)]
    assert till.paid == 50000


def test_a_code_that_it_returns_is_the_lines(till):
    with lorimat.Translator(till) as t:
        with pytest.raises(lorimat.LorimatError) as caught:
            t("VEND REP=9, PRE=1.20")
        assert caught.value.code == constants.RTF_EFPTR_BAD_VAT | 0x400
        assert caught.value.__cause__ is None
        till.raises = lorimat.Refusal(constants.RTF_EFPTR_REC_EMPTY)
        with pytest.raises(lorimat.LorimatError) as caught:
            t("VEND REP=1, PRE=1.20")
        assert caught.value.code == constants.RTF_EFPTR_REC_EMPTY | 0x400
        assert caught.value.__cause__ is None


def test_an_exception_is_the_cause(till):
    till.raises = KeyError("the drawer is gone")
    with lorimat.Translator(till) as t:
        with pytest.raises(lorimat.LorimatError) as caught:
            t("VEND REP=1, PRE=1.20")
        assert caught.value.code == constants.RTF_E_FAILURE | 0x200
        assert caught.value.__cause__ is till.raises
        till.raises = None
        t("VEND REP=1, PRE=1.20")


def test_an_interrupt_goes_its_way(till):
    till.raises = KeyboardInterrupt()
    with lorimat.Translator(till) as t:
        with pytest.raises(KeyboardInterrupt):
            t("VEND REP=1, PRE=1.20")
        till.raises = None
        t("VEND REP=1, PRE=1.20")


def test_an_exception_in_a_line_that_ran_is_reported(till, monkeypatch):
    seen = []
    monkeypatch.setattr("sys.unraisablehook", seen.append)

    class Logging(Till):
        noisy = False

        def LogTrace(self, line):
            if self.noisy:
                raise KeyError("no log")

    logging = Logging()
    with lorimat.Translator(logging) as t:
        logging.noisy = True
        assert t("VEND REP=1, PRE=1.20").code == 0
        logging.noisy = False
    assert [type(one.exc_value) for one in seen] == [KeyError]


def test_an_operation_that_it_has_not_is_not_supported(till):
    with lorimat.Translator(till) as t:
        with pytest.raises(lorimat.LorimatError) as caught:
            t("AZZGIO")
        assert caught.value.code == constants.RTF_E_ILLEGAL | 0x200
    with pytest.raises(lorimat.Refusal):
        till.PrintZReport()


@pytest.mark.parametrize("answer", [1.5, "0", True, 2**40, -1, b"", (0,)])
def test_an_answer_that_is_none_is_named(till, answer, monkeypatch):
    monkeypatch.setattr(Till, "BeginFiscalReceipt", lambda self, print_header: answer)
    with lorimat.Translator(till) as t:
        with pytest.raises(lorimat.LorimatError) as caught:
            t("VEND REP=1, PRE=1.20")
        assert isinstance(caught.value.__cause__, (TypeError, OverflowError, ValueError))


@pytest.mark.parametrize("answer", ["x" * 50, "a\0b", "→", None, 3, ("1", "2"), ()])
def test_a_text_that_does_not_fit_is_named_and_not_written(till, answer, monkeypatch):
    monkeypatch.setattr(Till, "GetDataInternal",
                        lambda self, item: answer if item == 98 else "0")
    with lorimat.Translator(till) as t:
        with pytest.raises(lorimat.LorimatError) as caught:
            t("INFO TIPO=19")
        assert isinstance(caught.value.__cause__, (TypeError, ValueError))


def test_a_device_that_fails_at_the_start_fails_the_translator(till, monkeypatch):
    def fail(self, item):
        raise OSError("unplugged")

    with monkeypatch.context() as patch:
        patch.setattr(Till, "GetDataInternal", fail)
        with pytest.raises(lorimat.LorimatError, match="at the start") as caught:
            lorimat.Translator(till)
        assert isinstance(caught.value.__cause__, OSError)
    lorimat.Translator(till).close()


def test_a_line_from_inside_of_a_device_raises(till, monkeypatch):
    caught = []

    def begin(self, print_header):
        for use in (lambda: t("CHIU"), t.close, lambda: t.version, t.__enter__):
            with pytest.raises(lorimat.LorimatError, match="from inside of a callback") as info:
                use()
            caught.append(info)

    monkeypatch.setattr(Till, "BeginFiscalReceipt", begin)
    with lorimat.Translator(till) as t:
        t("VEND REP=1, PRE=1.20")
    assert len(caught) == 4


def test_another_thread_waits_for_the_line(till, monkeypatch):
    inside, go = threading.Event(), threading.Event()

    def begin(self, print_header):
        inside.set()
        go.wait()

    monkeypatch.setattr(Till, "BeginFiscalReceipt", begin)
    order = []
    with lorimat.Translator(till) as t:
        first = threading.Thread(target=lambda: (t("VEND REP=1, PRE=1.20"), order.append("first")))
        first.start()
        inside.wait()
        till.open = True
        second = threading.Thread(target=lambda: (t("VEND REP=1, PRE=1.20"), order.append("second")))
        second.start()
        assert order == []
        go.set()
        first.join()
        second.join()
    assert sorted(order) == ["first", "second"]
    assert len(till.lines) == 2


def test_records_go_both_ways(till, monkeypatch):
    kept = {}

    def config(self, write, dep_id, *record):
        if write:
            kept[dep_id] = record
            return None
        return kept.get(dep_id, ("BAR", 15000, 0, 0, 1, 0, False, True, False))

    monkeypatch.setattr(Till, "ConfigDepartment", config, raising=False)
    with lorimat.Translator(till) as t:
        t("PREP REP=2, DES='CAFFE', PRE=1.20, IVA=3")
        t("PREP REP=3, DES='PANE'")
    assert kept[2] == ("CAFFE", 12000, 0, 0, 3, 0, False, True, False)
    # What was read first comes back in what is written.
    assert kept[3] == ("PANE", 15000, 0, 0, 1, 0, False, True, False)


def test_a_method_with_the_name_slightly_wrong_is_named():
    class Wrong(lorimat.Client):
        def open_drawer(self):
            pass

    with pytest.raises(TypeError, match="open_drawer; the operation is called OpenDrawer"):
        lorimat.Translator(Wrong())


def test_a_client_without_its_own_init_works():
    class Bare(lorimat.Client):
        def __init__(self):
            pass  # does not call that of the base

    with lorimat.Translator(Bare()) as t:
        with pytest.raises(lorimat.LorimatError):
            t("VEND REP=1, PRE=1")


def test_every_operation_has_a_method_and_an_entry():
    assert len(OPERATIONS) > 100
    for name, _, parameters in OPERATIONS:
        method = getattr(lorimat.Client, name)
        assert "return" in method.__annotations__
        with pytest.raises(lorimat.Refusal):
            method(lorimat.Client(), *[0] * (len(inspect.signature(method).parameters) - 1))


def test_texts_travel_in_the_code_page_of_the_device(till):
    with lorimat.Translator(till, encoding="cp1253") as t:
        t("VEND REP=1, PRE=1.20, DES='ΚΑΦΕΣ'")
        with pytest.raises(lorimat.TextError, match="'è' in place .* cp1253"):
            t("VEND REP=1, PRE=1.20, DES='caffè'")
    # What reads as UTF-8 too is not taken for it.
    with lorimat.Translator(till) as t:
        t("VEND REP=1, PRE=1.20, DES='Ã¨'")
    assert [line[0] for line in till.lines] == ["ΚΑΦΕΣ", "Ã¨"]
    with pytest.raises(LookupError):
        lorimat.Translator(till, encoding="klingon")


def test_a_question_that_is_refused_is_answered_with_no():
    from lorimat import client

    class Device(lorimat.Client):
        def GetClaimed(self):
            raise lorimat.Refusal(106)

    handle = client.ClientHandle(Device())
    assert handle._table.GetClaimed(None) is False
    assert handle.take_error() is None
    handle.free()
