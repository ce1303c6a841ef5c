"""Each example of docs/door.md, run as it stands there, and its answer."""
import http.client
import os
import pathlib
import re
import resource
import shutil
import sqlite3
import subprocess

import pytest

from conftest import SALE, make_token
from page import PORT, answer_of, examples
from waiting import until

ROOT = pathlib.Path(__file__).parents[2]
PAGE = (ROOT / "docs/door.md").read_text()
EXAMPLES = examples(PAGE)


def fresh(doors, folder):
    return doors(folder).start()


def plugin(doors, folder):
    """A device from a file."""
    return doors(folder, plugin=True).start()


def busy(doors, folder):
    """One that does not come back from a job."""
    door = doors(folder, faulty=True, plugin=True).start(fault="hang@line:1")
    assert door.post(SALE, "k0", path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/device")[1]["queued"] == 0)
    return door


def hung(doors, folder):
    """A device that does not come back."""
    return doors(folder, faulty=True).start(fault="hang@line:1")


def guarded(doors, folder):
    """Nobody is heard without a token; the shell has two."""
    tokens = folder / "shop.tokens"
    for variable, name, role in (("DESK", "cassa-1", "desk"), ("OFFICE", "office", "operator")):
        os.environ[variable] = make_token(tokens, name, role)
    return doors(folder).start("--tokens", tokens, "--require-token")


def late(doors, folder):
    """A job was queued behind another one, and its time is over when the door comes again."""
    door = hung(doors, folder)
    for key in ("k1", "k2"):
        assert door.post(SALE, key, path="/v1/jobs?wait=0")[0] == 202
    door.process.kill()
    door.wait()
    with sqlite3.connect(f"{door.register}.door") as log:
        log.execute("UPDATE job SET expires = 1 WHERE key = 'k2'")
    log.close()
    door.start()
    until(lambda: door.get("/v1/jobs/2")[1]["state"] == "expired")
    return door


def lost(doors, folder):
    """The third line's answer gets lost."""
    return doors(folder, faulty=True).start(fault="lose@line:3")


def copied(doors, folder):
    """The log is a copy, in which one job was running and one was queued; the first one is over."""
    door = hung(doors, folder)
    for key in ("k1", "k2"):
        assert door.post(SALE, key, path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/jobs/1")[1]["state"] == "running")
    log, copy = pathlib.Path(f"{door.register}.door"), folder / "copy.door"
    subprocess.run([os.environ["LORIMAT"], "door", "backup", log, copy], check=True, capture_output=True)
    door.process.kill()
    door.wait()
    for end in ("-wal", "-shm"):
        log.with_name(log.name + end).unlink()
    copy.rename(log)
    door.start()
    until(lambda: door.get("/v1/jobs/1")[1]["state"] == "confirmed")
    return door


def opened(doors, folder):
    """Somebody has left a document open."""
    door = doors(folder, faulty=True).start(fault="open@start:1")
    until(lambda: door.get("/v1/device")[1]["trouble"])
    return door


def away(doors, folder):
    """The device is there no more when the first job begins."""
    door = doors(folder, faulty=True).start(fault="away@reset:1")
    assert door.post(SALE, "k0", path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/device")[1]["trouble"])
    return door


def full(doors, folder):
    """No file may grow."""
    door = doors(folder).start()
    resource.prlimit(door.process.pid, resource.RLIMIT_FSIZE, (0, resource.RLIM_INFINITY))
    return door


def crowded(doors, folder):
    """A thousand jobs wait behind one that hangs."""
    door = hung(doors, folder)
    assert door.post(SALE, "k0", path="/v1/jobs?wait=0")[0] == 202
    until(lambda: door.get("/v1/device")[1]["queued"] == 0)
    for number in range(1000):
        assert door.post(SALE, f"k{number + 1}", path="/v1/jobs?wait=0")[0] == 202
    return door


def followed(doors, folder):
    """As many clients follow the events as may."""
    door = doors(folder).start()
    door.readers = [open_events(door) for _ in range(32)]
    return door


def open_events(door):
    """A connection that follows, behind the head of its answer."""
    reader = http.client.HTTPConnection("127.0.0.1", door.port, timeout=60)
    reader.request("GET", "/v1/events")
    reply = reader.getresponse()
    assert reply.status == 200
    # It has the connection by now.
    return reply


DOORS = {"fresh": fresh, "guarded": guarded, "plugin": plugin, "busy": busy, "hung": hung, "late": late,
         "lost": lost, "copied": copied, "open": opened, "away": away, "full": full, "crowded": crowded, "followed": followed}


def run(door, command):
    """What a shell makes of it, with this door's port."""
    shell = subprocess.run(["bash", "-c", command.replace(PORT, f"127.0.0.1:{door.port}")],
                           capture_output=True, text=True, check=True)
    return shell.stdout


@pytest.mark.parametrize("name", DOORS)
def test_the_answers_are_those_of_the_page(doors, folder, name):
    assert shutil.which("curl"), "Debian: curl"
    mine = [(command, answer) for door, command, answer in EXAMPLES if door == name]
    assert mine
    door = DOORS[name](doors, folder)
    for command, answer in mine:
        status, headers, body = answer_of(run(door, command))
        expected_status, expected_headers, expected_body = answer_of(answer)
        assert (status, body) == (expected_status, expected_body), command
        assert expected_headers.items() <= headers.items(), command


def test_each_example_is_run():
    assert {door for door, _, _ in EXAMPLES} == set(DOORS)
    assert PAGE.count("\n    $ ") == len(EXAMPLES)


def test_each_answer_has_an_example():
    answers = [answer_of(answer) for _, _, answer in EXAMPLES]
    shown = {(status, body.get("code"), body.get("state"))
             for status, _, body in answers if isinstance(body, dict)}
    codes = {(status, code) for status, code, _ in shown if code}
    rows = re.findall(r"^\| (\d{3}) \| (`.*?`) \| ", PAGE, re.M)
    table = {(int(status), code) for status, codes in rows for code in re.findall(r"`(\w+)`", codes)}
    # Without memory nobody can say what is answered; the other one is of other words.
    assert table - codes == {(500, "failed"), (501, "no_such_line")}
    assert codes <= table
    sources = "".join(path.read_text() for path in (ROOT / "door/http").glob("*.cpp"))
    told = set(re.findall(r'(?:Problem|Refuse)\(\d{3}, "(\w+)"', sources))
    assert told and told <= {code for _, code in table}
    # A state that passes has no answer of its own.
    states = {state for _, _, state in shown if state}
    assert states == {"queued", "confirmed", "rejected", "needs_operator", "expired", "cancelled"}
    assert {status for status, code, state in shown if state and not code} == {200, 201, 202, 409, 422}
