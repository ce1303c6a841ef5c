#!/usr/bin/env python3
"""clang-tidy over src/, register/, recording/, bindings/, language/ and console/, by the checks of .clang-tidy.

usage: script/check-tidy.py [BUILD-FOLDER]    (build/release)

The build folder has been configured by CMake: its compile_commands.json says how each file is
compiled. Nothing of it has to be built. Prints each finding once; then the exit status is 1.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOMS = ("src", "register", "recording", "bindings", "language", "console")
# What g++ knows and clang does not, and what is ours to judge and not the compiler's. A precompiled
# header was made by g++.
DROPPED = re.compile(r" (-fno-gnu-unique|-Winvalid-pch|-W[^ ]*|-include [^ ]*cmake_pch\.hxx)(?= )")
INCLUDED = re.compile(r'^#include "(/[^"]+)"$', re.MULTILINE)
FINDING = re.compile(r"^(/[^:]+):(\d+):(\d+): (?:warning|error): (.*)$")
METHOD = re.compile(r"^invalid case style for method '(\w+)'")
NAMED_LIKE_A_VALUE = re.compile(r"^[a-z][a-z0-9_]*$")


def files_of(command):
    """The file that a command compiles; of one that CMake made of several, these."""
    file = pathlib.Path(command["directory"], command["file"]).resolve()
    if file.parent.name == "Unity":
        return [pathlib.Path(name) for name in INCLUDED.findall(file.read_text())]
    return [file]


def commands_of_rooms(build, root):
    """One command for each file of the rooms, as clang-tidy reads it."""
    commands = {}
    for command in json.loads((build / "compile_commands.json").read_text()):
        for file in files_of(command):
            if file.suffix != ".cpp" or file in commands:
                continue
            if not file.is_relative_to(root) or file.relative_to(root).parts[0] not in ROOMS:
                continue
            words = DROPPED.sub("", command["command"]).replace(command["file"], str(file))
            commands[file] = {"directory": command["directory"], "file": str(file), "command": words}
    return commands


def is_named_like_its_value(file, line, name):
    """Whether the method takes nothing and gives a value: then it may be named like the value."""
    if not NAMED_LIKE_A_VALUE.match(name):
        return False
    lines = pathlib.Path(file).read_text(errors="replace").splitlines()
    # The type may stand on the line before.
    text = " ".join(lines[max(line - 2, 0):line])
    types = re.findall(r"([\w>&*\]]+)[ &*]+(?:\w+::)*" + name + r"\(\)", text)
    return any(type_name not in ("void", "return") for type_name in types)


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release").resolve()
    root = pathlib.Path(__file__).resolve().parent.parent
    if not (build / "compile_commands.json").is_file():
        sys.exit(f"{build} has no compile_commands.json: configure it first")
    commands = commands_of_rooms(build, root)
    if not commands:
        sys.exit(f"{build} compiles no file of {', '.join(ROOMS)}")
    findings, failures = {}, []

    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "compile_commands.json").write_text(
            json.dumps(list(commands.values())))

        def look_at(file):
            return file, subprocess.run(["clang-tidy", "-p", folder, "--quiet", str(file)],
                                        stdin=subprocess.DEVNULL, capture_output=True, text=True)

        workers = len(os.sched_getaffinity(0))
        with concurrent.futures.ThreadPoolExecutor(workers) as pool:
            for file, run in pool.map(look_at, sorted(commands)):
                # It ends well with warnings, and does not where it could not read the file.
                if run.returncode != 0:
                    failures.append(f"{file}: {run.stdout}{run.stderr}")
                for line in run.stdout.splitlines():
                    found = FINDING.match(line)
                    if not found:
                        continue
                    place, message = (found[1], int(found[2]), int(found[3])), found[4]
                    method = METHOD.match(message)
                    if method and is_named_like_its_value(place[0], place[1], method[1]):
                        continue
                    findings[(*place, message)] = None

    for failure in failures:
        print(failure)
    for file, line, column, message in sorted(findings):
        print(f"{os.path.relpath(file, root)}:{line}:{column}: {message}")
    print(f"{len(commands)} files, {len(findings)} findings")
    return 1 if findings or failures else 0


if __name__ == "__main__":
    sys.exit(main())
