#!/usr/bin/env python3
"""gcov for gcovr, without the branches that the compiler made to clean up behind an exception.

usage: gcovr --gcov-executable script/gcov-without-cleanup.py ...

Runs gcov with the same arguments, one file of counts among them, and takes lines out of the files that it writes. A branch goes when
all of this holds:

  - it was never executed,
  - gcov says of its block that nothing but an exception leads there,
  - it stands in no function whose lines have the word "catch".

Without a handler an exception leaves the function, and on its way there is no code but that of the
compiler: loops that destroy what a list in braces had, and questions whether an object was made
already. Whatever is not certain stays, and counts.
"""

import json
import os
import re
import subprocess
import sys

# What gcov puts before a block that was not executed and that only exceptions lead to.
ONLY_BY_EXCEPTION = "$$$$$"

BLOCK = re.compile(r"\s*([^:\s]+):\s*\d+-block\s")
SOURCE_LINE = re.compile(r"\s*[^:\s]+:\s*(\d+):")
ARC = re.compile(r"(branch|call|unconditional)\s+\d+ (.*)")
CATCH = re.compile(r"\bcatch\b")


def lines_with_handlers(measured):
    """Of each source, the numbers of the lines of functions that have the word "catch"."""
    kept = {}
    for file in measured["files"]:
        name = os.path.join(measured["current_working_directory"], file["file"])
        try:
            with open(name, encoding="utf-8", errors="replace") as text:
                lines = text.read().split("\n")
        except OSError:
            continue  # what cannot be read is kept whole: it has no row
        numbers = kept.setdefault(os.path.realpath(name), set())
        for function in file["functions"]:
            first, last = function["start_line"], function["end_line"]
            if last < first or any(CATCH.search(line) for line in lines[first - 1:last]):
                numbers.update(range(first, max(first, last) + 1))
    return kept


def is_cleanup(arcs):
    """Whether the arcs below the sign of a block are its own: calls, and at their end two branches that
    were not executed. More than that may be of a block that gcov gave no sign."""
    kinds = [ARC.match(arc).group(1) for arc in arcs]
    return (kinds[-2:] == ["branch", "branch"] and set(kinds[:-2]) <= {"call"} and
            all(ARC.match(arc).group(2).startswith("never executed") for arc in arcs[-2:]))


def without_cleanup(lines, kept):
    """The lines of a file of gcov, without the branches that go; kept are the numbers of source lines
    whose branches all stay."""
    result, number, i = [], 0, 0
    while i < len(lines):
        line = lines[i]
        i += 1
        result.append(line)
        block = BLOCK.match(line)
        if not block:
            source = SOURCE_LINE.match(line)
            if source:
                number = int(source.group(1))
            continue
        arcs = []
        while i < len(lines) and ARC.match(lines[i]):
            arcs.append(lines[i])
            i += 1
        if block.group(1) == ONLY_BY_EXCEPTION and number not in kept and is_cleanup(arcs):
            arcs = arcs[:-2]
        result += arcs
    return result


def main():
    gcov, arguments = os.environ.get("GCOV", "gcov"), sys.argv[1:]
    if any(argument.startswith("--help") or argument == "--version" for argument in arguments):
        return subprocess.run([gcov, *arguments], check=False).returncode
    done = subprocess.run([gcov, "--all-blocks", "--unconditional-branches", *arguments],
                          check=False, stdout=subprocess.PIPE, text=True)
    sys.stdout.write(done.stdout)
    if done.returncode != 0:
        return done.returncode
    asked = subprocess.run([gcov, "--json-format", "--stdout", *arguments], check=False,
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    if asked.returncode != 0:
        return asked.returncode
    measured = json.loads(asked.stdout)
    kept, directory = lines_with_handlers(measured), measured["current_working_directory"]
    for name in re.findall(r"^Creating '(.*)'$", done.stdout, re.MULTILINE):
        with open(name, encoding="utf-8", errors="surrogateescape") as file:
            lines = file.read().split("\n")
        source = re.match(r"\s*-:\s+0:Source:(.*)", lines[0])
        source = os.path.realpath(os.path.join(directory, source.group(1))) if source else ""
        if source in kept:
            with open(name, "w", encoding="utf-8", errors="surrogateescape") as file:
                file.write("\n".join(without_cleanup(lines, kept[source])))
    return 0


if __name__ == "__main__":
    sys.exit(main())
