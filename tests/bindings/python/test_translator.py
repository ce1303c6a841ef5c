"""Lines on a register: answers, errors, turns, and the copies of the library."""

import _ctypes
import ctypes
import gc
import multiprocessing
import os
import pathlib
import pickle
import subprocess
import sys
import threading

import lorimat
import pytest
from conftest import Till, noon
from lorimat import _libraries


def sell(t):
    t("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'")
    t("CHIU TEND=CONTANTI, IMP=5.00")


def test_a_sale_prints_what_the_host_in_c_prints(register, translator):
    sell(translator)
    for part in ("CAFFE", "2 x 1,20", "TOTALE COMPLESSIVO                    2,40", "20/11/2026 11:03",
                 "DOCUMENTO N. 0001-0001"):
        assert part in register.paper


def test_an_answer_has_code_text_and_explanation(translator):
    answer = translator("VEND REP=1, PRE=1.20")
    assert answer == (0, "OK.", "The line ran, or held nothing to run.")
    assert translator("INFO TIPO=MATRICOLA").text == "99LRM0000001VR"


def test_a_line_that_fails_raises_with_what_it_means(translator):
    with pytest.raises(lorimat.LorimatError) as caught:
        translator("VNED REP=2")
    assert caught.value.code == 257
    assert caught.value.text == "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"
    assert "No command of the definition file has the name" in caught.value.explanation
    assert caught.value.line == "VNED REP=2"
    with pytest.raises(lorimat.LorimatError) as caught:
        translator(b"VEND REP=99, PRE=1.50")
    assert caught.value.code == 1241
    assert caught.value.line == "VEND REP=99, PRE=1.50"
    translator("VEND REP=1, PRE=1.20")


def test_explanations_come_in_italian(register):
    with lorimat.Translator(register, language="it_IT.UTF-8") as t:
        with pytest.raises(lorimat.LorimatError, match="classe 1"):
            t("VNED")
    assert "classe 4" in lorimat.explain(1241, "it")
    assert lorimat.explain(2**70) == ""
    with pytest.raises(lorimat.LorimatError, match="de"):
        lorimat.explain(1241, "de")
    with pytest.raises(lorimat.LorimatError, match="tlh"):
        lorimat.Translator(register, language="tlh")
    lorimat.Translator(register).close()


@pytest.mark.parametrize("line", [None, 1, 1.5, ["VEND"], object()])
def test_a_line_of_another_type_is_refused(translator, line):
    with pytest.raises(TypeError, match="the line has to be a str or bytes"):
        translator(line)


@pytest.mark.parametrize("line", ["VEND\0", b"\0", "VEND REP=1, DES='caff\0'"])
def test_a_nul_is_named_and_nothing_is_sent(register, translator, line):
    paper = register.paper
    with pytest.raises(lorimat.TextError, match="NUL in place"):
        translator(line)
    assert register.paper == paper


def test_a_text_outside_the_code_page_is_named_and_nothing_is_sent(register, translator):
    with pytest.raises(lorimat.TextError, match="'→' in place 25 is not in the code page cp1252"):
        translator("VEND PRE=1, REP=1, DES='→'")
    with pytest.raises(ValueError, match="half|not in the code page"):
        translator("VEND DES='\ud800'")
    assert register.paper == ""
    translator("VEND PRE=1, REP=1, DES='Caffè €'")
    assert "Caffè €" in register.paper


def test_lines_of_any_length_and_bytes_are_answered(translator):
    for line in ("", " ", "A" * 5000, "VEND DES='" + "x" * 3000, b"\xff\xfe\x01", "'" * 2046):
        try:
            translator(line)
        except lorimat.LorimatError as error:
            assert error.code > 0


def test_there_is_one_translator_until_it_is_closed(register, translator):
    with lorimat.VirtualRegister() as other:
        with pytest.raises(lorimat.LorimatError, match="isolated=True"):
            lorimat.Translator(other)
        translator.close()
        with lorimat.Translator(other) as second:
            sell(second)
        assert "CAFFE" in other.paper
    assert register.paper == ""


def test_isolated_ones_serve_two_devices_at_once(register, translator):
    with lorimat.VirtualRegister(clock=noon) as other:
        with lorimat.Translator(other, isolated=True) as second:
            translator("VEND REP=1, PRE=1.00, DES='UNO'")
            second("VEND REP=1, PRE=2.00, DES='DUE'")
            translator("CHIU TEND=CONTANTI")
            second("CHIU TEND=CONTANTI")
        assert "DUE" in other.paper and "UNO" not in other.paper
    assert "UNO" in register.paper and "DUE" not in register.paper


def test_a_register_has_one_translator(register, translator):
    with pytest.raises(lorimat.LorimatError, match="in use by another"):
        lorimat.Translator(register, isolated=True)
    with pytest.raises(lorimat.LorimatError, match="close its Translator first"):
        register.close()
    sell(translator)


def test_it_is_closed_when_nobody_has_it(register):
    gc.disable()
    try:
        sell(lorimat.Translator(register))
        with lorimat.Translator(register) as t:
            sell(t)
        assert register.totals.sales == 2
    finally:
        gc.enable()


@pytest.mark.parametrize("then", [lambda register: lorimat.Translator(register).close(),
                                  lambda register: register.close()])
def test_garbage_may_be_collected_while_its_register_is_at_work(monkeypatch, then):
    def collect_and_read(*arguments):
        gc.collect()
        return read(*arguments)

    with lorimat.VirtualRegister() as register:
        garbage = lorimat.Translator(register)
        garbage.own = garbage
        del garbage
        read = ctypes.string_at
        monkeypatch.setattr(ctypes, "string_at", collect_and_read)
        assert register.paper == ""
        monkeypatch.undo()
        assert _libraries.TranslatorLibrary._shared_is_taken.locked()
        then(register)
        assert not _libraries.TranslatorLibrary._shared_is_taken.locked()


def test_what_is_closed_raises(register):
    t = lorimat.Translator(register)
    t.close()
    t.close()
    for use in (lambda: t("CHIU"), lambda: t.version, t.__enter__):
        with pytest.raises(lorimat.LorimatError, match="the translator is closed"):
            use()
    register.close()
    register.close()
    for use in (lambda: register.paper, register.png, lambda: register.totals, register.clear_faults,
                lambda: register.fault("busy"), register.__enter__,
                lambda: lorimat.Translator(register)):
        with pytest.raises(lorimat.LorimatError, match="the register is closed"):
            use()


def test_a_definition_that_is_not_there_is_named(register, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "merkelin.ini").write_text("")  # the library would take this one instead
    with pytest.raises(lorimat.LorimatError, match="nowhere.ini: cannot be opened"):
        lorimat.Translator(register, tmp_path / "nowhere.ini")
    (tmp_path / "wrong.ini").write_text("[EcrCommands\n=\n" * 3)
    with pytest.raises(lorimat.TextError):
        lorimat.Translator(register, "a\0b")
    with pytest.raises(TypeError):
        lorimat.Translator(register, 3)
    lorimat.Translator(register).close()


def test_a_definition_may_have_a_long_name(register, tmp_path):
    shipped = pathlib.Path(_libraries.installed_definition())
    folder = tmp_path / ("x" * 150)
    folder.mkdir()
    long = folder / "merkelin.ini"
    long.write_bytes(shipped.read_bytes())
    # A name that is cut would be this one's.
    (tmp_path / "merkelin.ini").write_text("")
    with lorimat.Translator(register, long) as t:
        sell(t)
    assert "CAFFE" in register.paper


@pytest.mark.parametrize("device", [None, "register", lorimat.VirtualRegister, Till, object()])
def test_a_device_of_another_type_is_refused(device):
    with pytest.raises(TypeError, match="VirtualRegister or a Client"):
        lorimat.Translator(device)


def test_nothing_is_pickled_or_copied(register, translator, till):
    import copy
    for one in (register, translator, till):
        with pytest.raises(TypeError, match="cannot be pickled or copied"):
            pickle.dumps(one)
        with pytest.raises(TypeError, match="cannot be pickled or copied"):
            copy.copy(one)
    error = lorimat.LorimatError("said", 257, "ERROR", "why", "VNED")
    again = pickle.loads(pickle.dumps(error))
    assert (again.args, again.code, again.text, again.explanation, again.line) == (
        ("said",), 257, "ERROR", "why", "VNED")


def test_threads_take_turns(register, translator):
    def sell_one():
        for _ in range(25):
            try:
                translator("VEND REP=1, PRE=1.00")
            except lorimat.LorimatError as error:
                errors.append(error)
            register.totals

    errors = []
    threads = [threading.Thread(target=sell_one) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not errors
    translator("CHIU TEND=CONTANTI")
    assert register.totals.net_amount == 100


def test_a_child_that_is_forked_off_cannot_use_them(register, translator):
    translator("VEND REP=1, PRE=1.00")
    read, write = os.pipe()
    child = os.fork()
    if child == 0:
        said = []
        for use in (lambda: translator("CHIU"), lambda: register.paper, translator.__enter__):
            try:
                use()
                said.append("nothing")
            except lorimat.LorimatError as error:
                said.append("forked" if "forked off" in str(error) else str(error))
        translator.close()
        register.close()
        os.write(write, " ".join(said).encode())
        os._exit(0)
    os.close(write)
    with os.fdopen(read, "rb") as pipe:
        assert pipe.read() == b"forked forked forked"
    assert os.waitpid(child, 0)[1] == 0
    translator("CHIU TEND=CONTANTI")
    assert register.totals.receipts_number == 1


def run(code, *arguments):
    return subprocess.run([sys.executable, "-c", code, *arguments], capture_output=True, text=True)


def test_a_child_that_is_forked_off_has_one_of_its_own(register, translator):
    def sell_in_the_child(end):
        with lorimat.VirtualRegister() as own, lorimat.Translator(own) as t:
            with pytest.raises(lorimat.LorimatError, match="there is a translator already"):
                lorimat.Translator(lorimat.VirtualRegister())
            t("VEND REP=1, PRE=3.00")
            t("CHIU TEND=CONTANTI")
            with lorimat.VirtualRegister() as last:
                t.close()
                lorimat.Translator(last).close()
            end.send(own.totals.net_amount)

    translator("VEND REP=1, PRE=1.00")
    fork = multiprocessing.get_context("fork")
    here, there = fork.Pipe()
    child = fork.Process(target=sell_in_the_child, args=(there,))
    child.start()
    there.close()
    child.join()
    assert (child.exitcode, here.poll()) == (0, True)
    assert here.recv() == 3
    translator("CHIU TEND=CONTANTI")
    assert register.totals.net_amount == 1


def test_the_streams_stay_where_they_are_while_a_library_comes_and_goes(register, monkeypatch):
    def streams():
        return [(os.fstat(number).st_dev, os.fstat(number).st_ino) for number in (1, 2)]

    def looking(function):
        def look(*arguments):
            seen.append(streams())
            return function(*arguments)
        return look

    seen = []
    monkeypatch.setattr(_libraries, "_open", looking(_libraries._open))
    monkeypatch.setattr(_ctypes, "dlclose", looking(_ctypes.dlclose))
    for isolated in (False, True):
        lorimat.Translator(register, isolated=isolated).close()
    assert seen == [streams()] * 4
    lorimat.Translator(register, quiet=True).close()
    assert streams() not in seen[4:] and len(seen) == 6


@pytest.mark.parametrize("quiet", [False, True])
def test_garbage_may_be_collected_while_a_library_is_loaded(quiet):
    done = run("import gc, sys, lorimat\n"
               "from lorimat import _libraries\n"
               "quiet = sys.argv[1] == 'True'\n"
               "gc.disable()\n"
               "garbage = lorimat.Translator(lorimat.VirtualRegister(), isolated=True, quiet=quiet)\n"
               "garbage.own = garbage\n"
               "del garbage\n"
               "load = _libraries._open\n"
               "def collect_and_load(path):\n"
               "    gc.collect()\n"
               "    return load(path)\n"
               "_libraries._open = collect_and_load\n"
               "with lorimat.VirtualRegister() as r:\n"
               "    with lorimat.Translator(r, isolated=True, quiet=quiet) as t:\n"
               "        print(t('VEND REP=1, PRE=1.20').text)\n", str(quiet))
    assert (done.stderr, done.returncode) == ("" if quiet else "library destroy\n" * 2, 0)
    assert done.stdout.count("OK.\n") == 1
    assert done.stdout.count("Unload working...\n") == (0 if quiet else 2)


def test_a_program_prints_what_it_prints_and_nothing_else():
    done = run("import lorimat\n"
               "print('before')\n"
               "with lorimat.VirtualRegister() as r, lorimat.Translator(r, quiet=True) as t:\n"
               "    print(t('VEND REP=1, PRE=1.20').text)\n"
               "print('behind')")
    assert (done.stdout, done.stderr, done.returncode) == ("before\nOK.\nbehind\n", "", 0)


def test_a_program_may_end_without_closing_anything(tmp_path):
    done = run("import lorimat, sys\n"
               "r = lorimat.VirtualRegister(sys.argv[1])\n"
               "t = lorimat.Translator(r, quiet=True)\n"
               "t('VEND REP=1, PRE=1.20')\n"
               "t('CHIU TEND=CONTANTI')", str(tmp_path / "shop.register"))
    assert (done.stdout, done.stderr, done.returncode) == ("", "", 0)
    with lorimat.VirtualRegister(tmp_path / "shop.register") as register:
        assert register.totals.receipts_number == 1


def test_without_standard_streams_it_works(tmp_path):
    done = run("import os, sys\n"
               "os.close(1); os.close(2)\n"
               "import lorimat\n"
               "r = lorimat.VirtualRegister()\n"
               "t = lorimat.Translator(r, quiet=True)\n"
               "t('VEND REP=1, PRE=1.20')\n"
               "open(sys.argv[1], 'w').write(str('REPARTO' in r.paper))\n"
               "t.close(); r.close()", str(tmp_path / "said"))
    assert (tmp_path / "said").read_text() == "True", done


def test_it_names_a_library_that_cannot_be_loaded(tmp_path):
    (tmp_path / "liblorimat-c.so.1").write_text("no library")
    environment = dict(os.environ, LORIMAT_LIBRARY_DIR=str(tmp_path))
    done = subprocess.run([sys.executable, "-c", "import lorimat; lorimat.explain(1)"],
                          capture_output=True, text=True, env=environment)
    assert "LorimatError: the library cannot be loaded" in done.stderr
    assert str(tmp_path) in done.stderr


def test_the_package_has_the_version_of_the_library(translator):
    assert lorimat.__version__ == translator.version
