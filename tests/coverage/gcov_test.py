#!/usr/bin/env python3
"""Whether script/gcov-without-cleanup.py leaves out what the compiler made, and no decision.

usage: gcov_test.py COMPILER GCOV FILTER KNOWN.cpp

Compiles KNOWN.cpp so that it counts, runs it, and holds the branches of its lines against what they
say of themselves. And no macro of the code may have a handler: the filter knows one by its word.
"""

import os
import re
import subprocess
import sys
import tempfile

EXPECTED = re.compile(r"// (\d+) of (\d+)( hidden)?$")


def branches(command, folder):
    """By the number of a line, how many branches gcov has there, but for those of exceptions, and how
    many of them were taken."""
    subprocess.run([*command, "--branch-counts", "--branch-probabilities", "known.gcda"], cwd=folder,
                   check=True, stdout=subprocess.DEVNULL)
    result, number = {}, 0
    with open(os.path.join(folder, "known.cpp.gcov"), encoding="utf-8") as lines:
        for line in lines:
            source = re.match(r"\s*[^:\s]+:\s*(\d+):", line)
            if source:
                number = int(source.group(1))
            elif line.startswith("branch") and "(throw)" not in line:
                there, taken = result.get(number, (0, 0))
                counted = re.search(r"taken (\d+)", line)
                result[number] = (there + 1, taken + bool(counted and int(counted.group(1)) > 0))
    return result


def macros_with_handlers():
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
    found = []
    for top in ("src", "register", "console"):
        for folder, _, files in os.walk(os.path.join(root, top)):
            for name in files:
                with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as file:
                    macros = re.findall(r"^\s*#\s*define (?:.*\\\n)*.*", file.read(), re.MULTILINE)
                found += [f"{os.path.join(folder, name)}: a handler in a macro: {macro}"
                          for macro in macros if re.search(r"\bcatch\b", macro)]
    return found


def main():
    compiler, gcov, script, known = sys.argv[1:]
    os.environ["GCOV"] = gcov
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([compiler, "-std=c++20", "-O0", "--coverage", "-c", known, "-o", "known.o"],
                       cwd=folder, check=True)
        subprocess.run([compiler, "--coverage", "known.o", "-o", "known"], cwd=folder, check=True)
        subprocess.run([os.path.join(folder, "known")], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)
        whole = branches([gcov], folder)
        left = branches([sys.executable, script], folder)
    wrong, looked_at = macros_with_handlers(), 0
    with open(known, encoding="utf-8") as lines:
        for number, line in enumerate(lines, 1):
            expected = EXPECTED.search(line)
            if not expected:
                continue
            looked_at += 1
            taken, there = int(expected.group(1)), int(expected.group(2))
            if left.get(number) != (there, taken):
                wrong.append(f"{known}:{number}: {left.get(number)} instead of {(there, taken)}")
            if (whole.get(number, (0, 0))[0] > there) != bool(expected.group(3)):
                wrong.append(f"{known}:{number}: gcov alone has {whole.get(number)}")
    if looked_at == 0:
        wrong.append(f"{known}: nothing to look at")
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
