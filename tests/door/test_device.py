"""A device from a file: refused where it does not tell enough, opened again where it went away."""
import os
import re
import subprocess

import pytest

from conftest import SALE
from test_matrix import final_job
from waiting import until


@pytest.fixture
def shop(doors, folder):
    """A door on the plug-in, which is not begun."""
    door = doors(folder, faulty=True, plugin=True)
    door.device += ["--device-option", f"unplugged={folder}/unplugged"]
    return door


def run(*arguments):
    environment = dict(os.environ, LC_ALL="C")
    done = subprocess.run([os.environ["LORIMATD"], *arguments], env=environment, timeout=60,
                          capture_output=True, text=True, check=False)
    assert done.stdout == ""
    return done.returncode, done.stderr


def plugin(folder, *options):
    words = ["--device", os.environ["LORIMATD_PLUGIN"], "--listen", "127.0.0.1:0"]
    for option in (f"file={folder}/shop.register", *options):
        words += ["--device-option", option]
    return words


def test_a_device_that_does_not_tell_the_baseline_is_refused(folder):
    log = ["--log", f"{folder}/log"]
    for item, name in ((92, "serial number"), (394, "last day closing"), (89, "total of the day"),
                       (371, "status line")):
        code, errors = run(*plugin(folder, f"lacks={item}"), *log)
        assert code == 2 and f"{name} (data item {item})" in errors
    assert not (folder / "log").exists()


def test_a_device_that_hangs_at_the_start_ends_the_program(folder):
    for item in (92, 371):
        code, errors = run(*plugin(folder, f"hangs={item}"), "--log", f"{folder}/log",
                           "--device-timeout", "1")
        assert code == 75
        assert re.fullmatch(r"lorimatd: the device 'register plug-in' did not come back from "
                            r"GetDataInternal within \d+ seconds, and is given up\n", errors)
    assert not (folder / "log").exists()


@pytest.mark.parametrize("call, text", [
    ("trial", r"the device is not opened: \S+ did not come back from lorimat_device_open within "
              r"\d+ seconds"),
    ("opening", r"the device '\S+' did not come back from lorimat_device_open within \d+ seconds, "
                r"and is given up")])
def test_an_opening_that_hangs_at_the_start_ends_the_program(folder, call, text):
    (folder / "hangs").touch()
    code, errors = run(*plugin(folder, f"{call}={folder}/hangs"), "--log", f"{folder}/log",
                       "--device-timeout", "1")
    assert code == 75
    assert re.fullmatch(f"lorimatd: {text}\n", errors)


def test_a_device_that_is_another_than_in_its_trial_is_closed_again(folder):
    (folder / "other").touch()
    code, errors = run(*plugin(folder, f"other={folder}/other", f"closed={folder}/closed"), "--log",
                       f"{folder}/log")
    assert code == 2
    assert "the device says something else of itself than a moment ago" in errors
    assert (folder / "closed").exists()


def test_a_device_that_hangs_as_it_is_refused_ends_the_program(folder):
    (folder / "there").touch()
    code, errors = run(*plugin(folder, f"other={folder}/there", f"closing={folder}/there"), "--log",
                       f"{folder}/log", "--device-timeout", "1")
    assert code == 75
    assert "did not come back from lorimat_device_close" in errors
    assert "the device says something else of itself than a moment ago" in errors


@pytest.mark.parametrize("call", ["opening", "closing"])
def test_a_device_that_hangs_as_it_is_opened_again_ends_the_program(shop, folder, call):
    shop.device += ["--device-option", f"{call}={folder}/hangs"]
    shop.start("--device-timeout", "1")
    (folder / "hangs").touch()
    (folder / "unplugged").touch()
    assert shop.wait() == 75
    names = {"opening": "open", "closing": "close"}
    assert re.search(f"lorimatd: .*did not come back from lorimat_device_{names[call]}", shop.errors)
    assert "lorimat: " not in shop.errors
    (folder / "hangs").unlink()
    (folder / "unplugged").unlink()
    shop.start()
    assert shop.post(SALE, "k")[0] == 201


def test_a_device_from_a_file_needs_a_log(folder):
    code, errors = run(*plugin(folder))
    assert code == 2 and "--log" in errors
    code, errors = run("--device", f"{folder}/none.so", "--log", f"{folder}/log")
    assert code == 2 and "none.so" in errors
    code, errors = run(*plugin(folder, "nonsense"), "--log", f"{folder}/log")
    assert code == 2 and "nonsense" in errors


def test_a_sale_on_a_device_from_a_file(shop):
    shop.start()
    status, job = shop.post(SALE, "k")
    assert status == 201
    document = job["document"]
    assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:00[+-]\d\d:\d\d", document.pop("time"))
    assert document == {"closure": 1, "number": 1, "kind": "receipt", "serial": "99LRM0000001VR",
                        "total": "1.20"}
    status, job = shop.post(["AZZGIO"], "z", desk="operator")
    assert (status, job["document"]["closure"], job["document"]["total"]) == (201, 1, "1.20")
    assert shop.documents() == [(1, 1)]
    assert shop.stop() == 0


@pytest.mark.parametrize("is_plugin", [False, True])
@pytest.mark.parametrize("trouble", ["lose@line:3", "kill@behind-line:3"])
def test_a_void_by_itself_is_found_by_its_sale(doors, folder, is_plugin, trouble):
    door = doors(folder, faulty=True, plugin=is_plugin).start(fault=trouble, once=True)
    assert door.post(SALE, "s")[0] == 201
    status, job = door.post(["DOCANNULLO AUTO"], "v")
    if trouble.startswith("kill"):
        assert door.wait() == -9
        door.start()
        job = final_job(door, "v")
    assert job["state"] == "confirmed" and "unknown" in [step["state"] for step in job["history"]]
    assert (job["document"]["number"], job["document"]["total"]) == (2, "1.20")
    assert door.documents() == [(1, 1), (1, 2)]
    assert door.stop() == 0


def test_a_device_that_went_away_is_opened_again(shop, folder):
    shop.start()
    assert shop.post(SALE, "k1")[0] == 201
    (folder / "unplugged").touch()
    until(lambda: shop.get("/v1/device")[1]["trouble"] == "device_away")
    status, problem = shop.post(SALE, "k2")
    assert (status, problem["code"]) == (503, "device_away")
    assert shop.get("/v1/jobs?key=k2&desk=")[0] == 404
    (folder / "unplugged").unlink()
    until(lambda: shop.get("/v1/device")[1]["ready"])
    assert shop.post(SALE, "k2")[0] == 201
    assert shop.documents() == [(1, 1), (1, 2)]
    assert shop.stop() == 0
    assert "the device does not answer" in shop.errors


@pytest.mark.parametrize("how", ["unplugged", "mute"])
def test_a_device_that_is_away_at_the_start_is_opened_when_it_comes(shop, folder, how):
    # What the translator learns from a device as it is begun: here that 120 is 1.20.
    shop.device += ["--device-option", f"mute={folder}/mute", "--device-option", "fixed=1"]
    sale = ["VEND REP=1, PRE=120", "CHIU TEND=CONTANTI"]
    shop.start(fault="kill@before-line:4")
    assert shop.post(sale, "k1")[1]["document"]["total"] == "1.20"
    assert shop.post(sale, "k2")[0] == 0
    assert shop.wait() == -9
    (folder / how).touch()
    shop.start()
    status, problem = shop.post(sale, "k3")
    assert (status, problem["code"]) == (503, "device_away")
    assert shop.request("GET", "/readyz")[0] == 503
    # What the log has is told: what is over, and what waits for the device.
    assert shop.post(sale, "k1")[0] == 200
    assert shop.post(sale, "k2", path="/v1/jobs?wait=0")[0] == 409
    (folder / how).unlink()
    until(lambda: shop.get("/v1/device")[1]["ready"])
    job = final_job(shop, "k2")
    assert (job["state"], job["document"]["total"]) == ("confirmed", "1.20")
    assert shop.post(sale, "k3")[1]["document"]["total"] == "1.20"
    assert shop.documents() == [(1, 1), (1, 2), (1, 3)]
    assert shop.stop() == 0
    assert "the device does not answer" in shop.errors


@pytest.mark.parametrize("how", ["unplugged", "mute"])
def test_a_new_log_needs_its_device(folder, how):
    (folder / how).touch()
    code, errors = run(*plugin(folder, f"{how}={folder}/{how}"), "--log", f"{folder}/log")
    assert code == 2
    told = {"unplugged": "the device cannot be opened: there is nothing at the other end",
            "mute": "the device does not tell what the outcome of a job is known by: serial number"}
    assert told[how] in errors
    assert not (folder / "log").exists()


def test_what_an_opening_throws_is_a_device_that_cannot_be_opened(shop, folder):
    shop.device += ["--device-option", f"throws={folder}/throws"]
    shop.start()
    (folder / "unplugged").touch()
    until(lambda: shop.get("/v1/device")[1]["trouble"] == "device_away")
    (folder / "throws").touch()
    until(lambda: not (folder / "throws").exists())
    (folder / "unplugged").unlink()
    until(lambda: shop.get("/v1/device")[1]["ready"])
    assert shop.post(SALE, "k")[0] == 201
    assert shop.stop() == 0
    assert "it does not say why" in shop.errors


def test_a_device_that_comes_back_has_to_be_the_same(shop, folder):
    shop.start()
    assert shop.post(SALE, "k1")[0] == 201
    (folder / "unplugged").touch()
    until(lambda: shop.get("/v1/device")[1]["trouble"] == "device_away")
    ours, other = folder / "shop.register", folder / "ours"
    until(lambda: not (folder / "shop.register-wal").exists())
    ours.rename(other)
    subprocess.run([os.environ["LORIMAT"], "init", ours, "--serial", "99LRM0000002VR"],
                   check=True, capture_output=True)
    (folder / "unplugged").unlink()
    # It is there, and is another one.
    until(lambda: "is not the one" in shop.post(SALE, "k2")[1]["detail"])
    assert shop.post(SALE, "k2")[1]["code"] == "device_away"
    (folder / "unplugged").touch()
    until(lambda: not (folder / "shop.register-wal").exists())
    ours.unlink()
    other.rename(ours)
    (folder / "unplugged").unlink()
    until(lambda: shop.get("/v1/device")[1]["ready"])
    assert shop.post(SALE, "k2")[0] == 201
    assert shop.documents() == [(1, 1), (1, 2)]
    assert shop.stop() == 0
    assert "is not the one that the log belongs to" in shop.errors


def test_a_device_that_hangs_ends_the_program_and_is_asked_by_the_next_one(shop):
    shop.start("--device-timeout", "1", fault="hang@before-line:2", once=True)
    assert shop.post(SALE, "k")[0] == 0
    assert shop.wait() == 75
    shop.start()
    job = final_job(shop, "k")
    assert job["state"] == "confirmed"
    assert "did not come back" in " ".join(step["why"] for step in job["history"])
    assert shop.documents() == [(1, 1)]
