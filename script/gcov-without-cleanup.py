#!/usr/bin/env python3
"""gcov for gcovr, without the branches that the compiler made for exceptions where gcov does not say so.

usage: gcovr --gcov-executable script/gcov-without-cleanup.py ...

Runs gcov with the same arguments, one file of counts among them, and takes lines out of the files that
it writes. It takes out two kinds of branches, and neither was ever executed.

The way of an exception out of a call, which gcovr leaves out itself where it can see it: gcov's text
marks it "(throw)", but only in a block that was executed. gcov's JSON marks it everywhere; what that
says is taken where both have the same branches of a line, and say the same of those that the text marks.

What cleans up behind an exception, when all of this holds:

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


def source_of(measured, name):
    return os.path.realpath(os.path.join(measured["current_working_directory"], name))


def marks_of_lines(measured):
    """Of each source, by the number of a line, whether each of its branches is the way of an exception.
    A line that several functions have, as one of a template, has none."""
    marks = {}
    for file in measured["files"]:
        by_number = marks.setdefault(source_of(measured, file["file"]), {})
        for line in file["lines"]:
            number = line["line_number"]
            again = number in by_number
            by_number[number] = [] if again else [arc["throw"] for arc in line["branches"]]
    return marks


def ways_of_exceptions(lines, marks):
    """The indices in a file of gcov of the branches of exceptions that were never executed."""
    by_number, number = {}, 0
    for i, line in enumerate(lines):
        source = SOURCE_LINE.match(line)
        if source:
            number = int(source.group(1))
        elif line.startswith("branch"):
            by_number.setdefault(number, []).append(i)
    found = set()
    for number, indices in by_number.items():
        throws = marks.get(number, [])
        never = [lines[i].endswith("never executed") for i in indices]
        same = len(throws) == len(indices) and all(
            never[at] or lines[i].endswith("(throw)") == throws[at] for at, i in enumerate(indices))
        if same:
            found.update(i for at, i in enumerate(indices) if throws[at] and never[at])
    return found


def lines_with_handlers(measured):
    """Of each source, the numbers of the lines of functions that have the word "catch"."""
    kept = {}
    for file in measured["files"]:
        name = source_of(measured, file["file"])
        try:
            with open(name, encoding="utf-8", errors="replace") as text:
                lines = text.read().split("\n")
        except OSError:
            continue  # what cannot be read is kept whole: it has no row
        numbers = kept.setdefault(name, set())
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


def without_cleanup(lines, kept, marks):
    """The lines of a file of gcov, without the branches that go; kept are the numbers of source lines
    whose branches of cleaning up stay."""
    exceptions = ways_of_exceptions(lines, marks)
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
            arcs.append(i)
            i += 1
        if (block.group(1) == ONLY_BY_EXCEPTION and number not in kept and
                is_cleanup([lines[arc] for arc in arcs])):
            arcs = arcs[:-2]
        result += [lines[arc] for arc in arcs if arc not in exceptions]
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
    kept, marks = lines_with_handlers(measured), marks_of_lines(measured)
    for name in re.findall(r"^Creating '(.*)'$", done.stdout, re.MULTILINE):
        with open(name, encoding="utf-8", errors="surrogateescape") as file:
            lines = file.read().split("\n")
        source = re.match(r"\s*-:\s+0:Source:(.*)", lines[0])
        source = source_of(measured, source.group(1)) if source else ""
        if source in kept:
            with open(name, "w", encoding="utf-8", errors="surrogateescape") as file:
                file.write("\n".join(without_cleanup(lines, kept[source], marks[source])))
    return 0


if __name__ == "__main__":
    sys.exit(main())
