#!/usr/bin/env python3
"""clang-tidy over src/, register/, recording/, bindings/, language/, console/ and door/, by .clang-tidy.

usage: script/check-tidy.py [BUILD-FOLDER]    (build/release)

The build folder has been configured by CMake: its compile_commands.json says how each file is
compiled, and what is compiled as one is looked at so too. Nothing of it has to be built. Prints each
finding once; then the exit status is 1.
"""
import concurrent.futures
import functools
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOMS = ("src", "register", "recording", "bindings", "language", "console", "door")
# What g++ knows and clang does not, and what is ours to judge and not the compiler's. A precompiled
# header was made by g++.
DROPPED = re.compile(r" (-fno-gnu-unique|-Winvalid-pch|-W[^ ]*|-include [^ ]*cmake_pch\.hxx)(?= )")
INCLUDED = re.compile(r'^#include "(/[^"]+)"$', re.MULTILINE)
FINDING = re.compile(r"^(/[^:]+):(\d+):(\d+): (?:warning|error): (.*)$")
METHOD = re.compile(r"^invalid case style for method '(\w+)'")
NAMED_LIKE_A_VALUE = re.compile(r"^[a-z][a-z0-9_]*$")


class Code:
    """What is looked at at once: a file, or the texts of several in a row, for what is included is to
    some checks a header."""

    def __init__(self, command, files, name):
        self.files = files
        self.name = name
        words = DROPPED.sub("", command["command"]).replace(command["file"], name)
        self.command = {"directory": command["directory"], "file": name, "command": words}

    def place(self, file, line):
        """The file and the line of it that stand at a line of what was looked at."""
        if file != self.name or len(self.files) == 1:
            return file, line
        for own in self.files:
            count = len(lines_of(own))
            if line <= count:
                return str(own), line
            line -= count
        raise ValueError(f"{file} has no line {line}")


@functools.cache
def lines_of(file):
    return pathlib.Path(file).read_text(errors="replace").split("\n")


def files_of(command):
    """The file that a command compiles; of one that CMake made of several, these."""
    file = pathlib.Path(command["directory"], command["file"]).resolve()
    if file.parent.name == "Unity":
        return [pathlib.Path(name) for name in INCLUDED.findall(file.read_text())]
    return [file]


def codes_of_rooms(build, root, folder):
    """All files of the rooms, each once; those that are compiled as one are one file in the folder."""
    codes, covered = [], set()

    def is_of_rooms(file):
        return (file.suffix == ".cpp" and file.is_relative_to(root)
                and file.relative_to(root).parts[0] in ROOMS)

    for command in json.loads((build / "compile_commands.json").read_text()):
        files = [file for file in files_of(command) if is_of_rooms(file) and file not in covered]
        covered.update(files)
        if len(files) == 1:
            codes.append(Code(command, files, str(files[0])))
        elif files:
            joined = pathlib.Path(folder, f"joined_{len(codes)}.cpp")
            joined.write_text("".join("\n".join(lines_of(file)) + "\n" for file in files))
            codes.append(Code(command, files, str(joined)))
    return codes


def is_named_like_its_value(file, line, name):
    """Whether the method takes nothing and gives a value: then it may be named like the value."""
    if not NAMED_LIKE_A_VALUE.match(name):
        return False
    lines = lines_of(file)
    # The type may stand on the line before.
    text = " ".join(lines[max(line - 2, 0):line])
    types = re.findall(r"([\w>&*\]]+)[ &*]+(?:\w+::)*" + name + r"\(\)", text)
    return any(type_name not in ("void", "return") for type_name in types)


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release").resolve()
    root = pathlib.Path(__file__).resolve().parent.parent
    if not (build / "compile_commands.json").is_file():
        sys.exit(f"{build} has no compile_commands.json: configure it first")
    findings, failures = {}, []

    with tempfile.TemporaryDirectory() as folder:
        # For what is joined there; files of the tree have the rules of their own folders.
        shutil.copy(root / ".clang-tidy", folder)
        codes = codes_of_rooms(build, root, folder)
        if not codes:
            sys.exit(f"{build} compiles no file of {', '.join(ROOMS)}")
        (pathlib.Path(folder) / "compile_commands.json").write_text(
            json.dumps([code.command for code in codes]))

        def look_at(code):
            return code, subprocess.run(["clang-tidy", "-p", folder, "--quiet", code.name],
                                        stdin=subprocess.DEVNULL, capture_output=True, text=True)

        workers = len(os.sched_getaffinity(0))
        with concurrent.futures.ThreadPoolExecutor(workers) as pool:
            for code, run in pool.map(look_at, codes):
                # It ends well with warnings, and does not where it could not read the file.
                if run.returncode != 0:
                    names = " ".join(str(file) for file in code.files)
                    failures.append(f"{names}: {run.stdout}{run.stderr}")
                for line in run.stdout.splitlines():
                    found = FINDING.match(line)
                    if not found:
                        continue
                    place = (*code.place(found[1], int(found[2])), int(found[3]))
                    message = found[4]
                    method = METHOD.match(message)
                    if method and is_named_like_its_value(place[0], place[1], method[1]):
                        continue
                    findings[(*place, message)] = None

    for failure in failures:
        print(failure)
    for file, line, column, message in sorted(findings):
        print(f"{os.path.relpath(file, root)}:{line}:{column}: {message}")
    print(f"{sum(len(code.files) for code in codes)} files, {len(findings)} findings")
    return 1 if findings or failures else 0


if __name__ == "__main__":
    sys.exit(main())
