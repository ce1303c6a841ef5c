"""bindings/javascript against a door: javascript_client.mjs, where there is a Node that has fetch."""
import json
import os
import pathlib
import re
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
    # All but a copy have a document.
    assert [job["document"] for job in jobs].count(None) == 1
    assert sorted((job["document"]["closure"], job["document"]["number"]) for job in jobs if job["document"]) == door.documents()
    assert len([job for job in jobs if job["desk"] == "cut"]) == 6
    assert way.seen["answer lost"] and way.seen["answer cut"]
    assert set(way.seen) == set(WAYS)


def test_the_package_has_the_version_of_the_project():
    root = pathlib.Path(__file__).parents[2]
    package = json.loads((root / "bindings/javascript/package.json").read_text())
    (version,) = re.findall(r"project\(lorimatrt VERSION ([0-9.]+)", (root / "CMakeLists.txt").read_text())
    assert package["version"] == version
    assert {path.name for path in (root / "bindings/javascript").glob("*.?s")} <= set(package["files"])


def test_each_method_has_its_types():
    """What the module gives and what its types name are the same."""
    folder = pathlib.Path(__file__).parents[2] / "bindings/javascript"
    code, types = (folder / "lorimat-door.js").read_text(), (folder / "index.d.ts").read_text()
    body = code[code.index("export class Door {"):]
    methods = set(re.findall(r"^  (?:static |async \*?|get )*(\w+)\(", body, re.M)) - {"constructor"}
    declared = types[types.index("export class Door {"):]
    assert methods == set(re.findall(r"^  (?:static |readonly )*(\w+)[(:]", declared, re.M)) - {"constructor"}
