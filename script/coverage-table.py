#!/usr/bin/env python3
"""What gcovr measured, as a table by folder, held against the goals and the exceptions.

usage: script/coverage-table.py MEASURED.json EXCEPTIONS [--goals FOLDER=LINES,BRANCHES]...
                                [--list FOLDER]... [--counts FILE]

Ends with 1 when a folder is below its goal, a line of src/ is run by no test and is no exception, or
an exception is none. --list shows what is not reached in a folder, file by file; --counts writes the
lines of docs/testing.md.
"""

import argparse
import collections
import decimal
import json
import os
import sys

# Whose lines have to be run, each of them.
STRICT = "src"


class Exceptional(collections.namedtuple("Exceptional", "file kind text reason place")):
    """A row of the exceptions: its text is one line of the file, or some in a row of which the last one
    is meant, with " ... " between them."""

    def line_numbers(self, sources):
        wanted = self.text.split(" ... ")
        lines = sources.get(self.file)
        return [end for end in range(len(wanted), len(lines) + 1)
                if lines[end - len(wanted):end] == wanted]


class Sources:
    """The lines of a file without their blanks at either end, read once."""

    def __init__(self):
        self.files = {}

    def get(self, file):
        if file not in self.files:
            lines = []
            if os.path.exists(file):
                with open(file, encoding="utf-8") as text:
                    lines = [line.strip() for line in text]
            self.files[file] = lines
        return self.files[file]


def read_exceptions(file):
    rows, wrong = [], []
    with open(file, encoding="utf-8") as text:
        for number, line in enumerate(text, 1):
            if line.startswith("#") or not line.strip():
                continue
            cells = [cell.strip() for cell in line.split(" :: ")]
            place = f"{file}:{number}"
            if len(cells) != 4 or cells[1] not in ("line", "branches"):
                wrong.append(f"{place}: a row is FILE :: line or branches :: TEXT :: REASON")
                continue
            rows.append(Exceptional(*cells, place))
    return rows, wrong


class File:
    """The numbers of the lines that have code, with those that were not run, and the branches."""

    def __init__(self, measured):
        self.name = measured["file"]
        self.lines = set()
        self.missed = set()
        self.branches = {}  # line: how many there are, how many were taken
        for line in measured["lines"]:
            if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
                continue
            number = line["line_number"]
            self.lines.add(number)
            if line["count"] == 0:
                self.missed.add(number)
            if line["branches"]:
                taken = sum(branch["count"] > 0 for branch in line["branches"])
                self.branches[number] = (len(line["branches"]), taken)

    def except_lines(self, numbers):
        self.lines -= numbers
        self.missed -= numbers

    def except_branches(self, numbers):
        for number in numbers:
            _, taken = self.branches[number]
            self.branches[number] = (taken, taken)


def judge_exceptions(rows, files, sources):
    """Takes the exceptions out of the files; gives what is wrong with them."""
    wrong = []
    lines, branches = collections.defaultdict(set), collections.defaultdict(set)
    for row in rows:
        numbers = row.line_numbers(sources)
        file = files.get(row.file)
        if not file or not numbers:
            wrong.append(f"{row.place}: there is no such line: {row.file}: {row.text}")
            continue
        if len(numbers) > 1:
            wrong.append(f"{row.place}: {len(numbers)} lines are like it: {row.file}: {row.text}")
            continue
        number = numbers[0]
        if row.kind == "line":
            if number not in file.missed:
                wrong.append(f"{row.place}: the line is run, and no exception: {row.file}:{number}")
            lines[row.file].add(number)
        else:
            there, taken = file.branches.get(number, (0, 0))
            if there == taken:
                wrong.append(f"{row.place}: all branches are taken: {row.file}:{number}")
            elif number in file.missed:
                wrong.append(f"{row.place}: the line is not run at all: {row.file}:{number}")
            else:
                branches[row.file].add(number)
    for name, numbers in lines.items():
        # The branches of a line that cannot be run cannot be taken.
        files[name].except_branches(numbers & files[name].branches.keys())
        files[name].except_lines(numbers)
    for name, numbers in branches.items():
        files[name].except_branches(numbers)
    return wrong


def percent(part, whole):
    """Rounded down: 100 is all."""
    if whole == 0:
        return decimal.Decimal("100.00")
    return (decimal.Decimal(part) * 100 / whole).quantize(decimal.Decimal("0.01"),
                                                         decimal.ROUND_DOWN)


class Sum:
    def __init__(self):
        self.lines = self.run = self.branches = self.taken = 0

    def add(self, file):
        self.lines += len(file.lines)
        self.run += len(file.lines) - len(file.missed)
        self.branches += sum(there for there, _ in file.branches.values())
        self.taken += sum(taken for _, taken in file.branches.values())

    def row(self, name):
        return (name, f"{self.run}", f"{self.lines}", f"{percent(self.run, self.lines)} %",
                f"{self.taken}", f"{self.branches}", f"{percent(self.taken, self.branches)} %")


def print_table(files, folders):
    rows = [("", "lines run", "of", "", "branches taken", "of", "")]
    sums = {}
    for folder in folders:
        by_room = collections.defaultdict(Sum)
        sums[folder] = Sum()
        for name in sorted(files):
            if name.startswith(folder + "/"):
                by_room[os.path.dirname(name)].add(files[name])
                sums[folder].add(files[name])
        rows += [total.row(name) for name, total in sorted(by_room.items())]
        rows.append(sums[folder].row(folder + ", all"))
    width = [max(len(row[column]) for row in rows) for column in range(7)]
    for row in rows:
        print(f"{row[0]:{width[0]}}  " + "  ".join(f"{cell:>{width[i + 1]}}"
                                                   for i, cell in enumerate(row[1:])))
    return sums


def print_missed(files, folder, sources):
    for name in sorted(files):
        file = files[name]
        if not name.startswith(folder + "/"):
            continue
        for number in sorted(file.missed | file.branches.keys()):
            there, taken = file.branches.get(number, (0, 0))
            what = "not run" if number in file.missed else f"{taken} of {there} branches"
            if number in file.missed or taken < there:
                print(f"{name}:{number}: {what}: {sources.get(name)[number - 1]}")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("measured")
    parser.add_argument("exceptions")
    parser.add_argument("--goals", action="append", default=[])
    parser.add_argument("--list", action="append", default=[])
    parser.add_argument("--counts")
    arguments = parser.parse_args()
    goals = {}
    for goal in arguments.goals:
        folder, percents = goal.split("=")
        goals[folder] = tuple(decimal.Decimal(number) for number in percents.split(","))

    with open(arguments.measured, encoding="utf-8") as measured:
        files = {file["file"]: File(file) for file in json.load(measured)["files"]}
    sources = Sources()
    rows, wrong = read_exceptions(arguments.exceptions)
    rows = [row for row in rows if row.file.split("/")[0] in goals]
    wrong += judge_exceptions(rows, files, sources)

    sums = print_table(files, list(goals))
    print(f"{len(rows)} exceptions do not count ({arguments.exceptions}).")
    for folder in arguments.list:
        print_missed(files, folder, sources)
    for name in sorted(files):
        if STRICT in goals and name.startswith(STRICT + "/"):
            wrong += [f"{name}:{number}: no test runs this line: {sources.get(name)[number - 1]}"
                      for number in sorted(files[name].missed)]
    counts = []
    for folder, (line_goal, branch_goal) in goals.items():
        total = sums[folder]
        for what, done, goal in (("lines", percent(total.run, total.lines), line_goal),
                                 ("branches", percent(total.taken, total.branches), branch_goal)):
            counts.append(f"COUNT coverage.{folder}.{what} {done} {goal} %")
            if total.lines == 0:
                wrong.append(f"{folder}: nothing was measured")
            if done < goal:
                wrong.append(f"{folder}: {done} % of the {what}, and the goal is {goal} %")
    if arguments.counts:
        with open(arguments.counts, "w", encoding="utf-8") as file:
            file.write("".join(line + "\n" for line in counts))
    for line in wrong:
        print(line)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
