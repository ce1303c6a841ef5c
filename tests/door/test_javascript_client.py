"""bindings/javascript against a door: javascript_client.mjs, where there is a Node that has fetch."""
import os
import pathlib
import shutil
import subprocess

import pytest

from cutting_proxy import WAYS, CuttingProxy

NODE = shutil.which("node") or shutil.which("nodejs")


@pytest.mark.skipif(NODE is None, reason="Debian: nodejs")
def test_the_javascript_client(door):
    way = CuttingProxy(lambda: door.port, 5)
    environment = dict(os.environ, DOOR_URL=f"http://127.0.0.1:{door.port}",
                       DOOR_CUT_URL=f"http://127.0.0.1:{way.port}")
    for name in ("http_proxy", "HTTP_PROXY", "NODE_OPTIONS"):
        environment.pop(name, None)
    run = subprocess.run([NODE, "--test", "--test-reporter=tap", pathlib.Path(__file__).parent / "javascript_client.mjs"],
                         env=environment, capture_output=True, text=True, timeout=300, check=False)
    way.close()
    assert run.returncode == 0, run.stdout + run.stderr
    jobs = [job for job in door.get("/v1/jobs?limit=100")[1]["jobs"] if job["state"] == "confirmed"]
    assert sorted((job["document"]["closure"], job["document"]["number"]) for job in jobs) == door.documents()
    assert len([job for job in jobs if job["desk"] == "cut"]) == 6
    assert way.seen["answer lost"] and way.seen["answer cut"]
    assert set(way.seen) == set(WAYS)
