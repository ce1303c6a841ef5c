#!/usr/bin/env python3
"""Compares what script/growth counted with what is kept.

usage: script/growth-table.py [--update] LIST FOLDER...

A FOLDER is named for its program and has callgrind's files of it, one for each subject, and in "units"
what the program said: "subject units" in each line. LIST has a line for each subject:

    PROGRAM FAMILY/SIZE UNITS INSTRUCTIONS

Ends with 1 when a subject costs more than a third more than in the list, when one of either side is
missing in the other, or when a unit costs more than a third more at one size than at the smallest one of
its family. A subject that costs less than three quarters asks for --update, which writes LIST anew.
"""

import argparse
import pathlib
import re
import sys

MOST = 4 / 3
LEAST = 3 / 4


def counted(folder):
    """The subjects of a program, in their order, with units and instructions."""
    units = {}
    for line in (folder / "units").read_text().splitlines():
        subject, number = line.rsplit(" ", 1)
        units[subject] = int(number)
    instructions = {}
    for file in folder.glob("counts.*"):
        text = file.read_text()
        subject = re.search(r"^desc: Trigger: Client Request: (.+)$", text, re.MULTILINE)
        if subject:
            total = re.search(r"^(?:summary|totals): (\d+)$", text, re.MULTILINE)
            instructions[subject.group(1)] = int(total.group(1))
    if set(units) != set(instructions):
        sys.exit(f"{folder}: what was counted is not what was told")
    return {subject: (units[subject], instructions[subject]) for subject in units}


def kept(path):
    rows = {}
    for line in path.read_text().splitlines() if path.exists() else []:
        if line and not line.startswith("#"):
            program, subject, units, instructions = line.split()
            rows[program, subject] = (int(units), int(instructions))
    return rows


def growing(rows):
    """The faults of families: a unit that costs more than at the smallest size."""
    smallest = {}
    faults = []
    for (program, subject), (units, instructions) in rows.items():
        family, size = subject.rsplit("/", 1)
        cost = instructions / units
        first = smallest.setdefault((program, family), (int(size), cost))
        if int(size) < first[0]:
            faults.append(f"{program} {subject}: stands behind a larger size of its family")
        elif cost > first[1] * MOST:
            faults.append(
                f"{program} {subject}: {cost:.0f} instructions a unit, and {first[1]:.0f} at {first[0]}"
            )
    return faults


def write(path, rows):
    lines = [
        "# Instructions by subject, as script/growth counted them: program, family/size, units, count.",
        "# Written by script/growth --update.",
    ]
    for (program, subject), (units, instructions) in rows.items():
        lines.append(f"{program} {subject} {units} {instructions}")
    path.write_text("\n".join(lines) + "\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--update", action="store_true")
    parser.add_argument("list", type=pathlib.Path)
    parser.add_argument("folders", type=pathlib.Path, nargs="+")
    arguments = parser.parse_args()

    rows = {
        (folder.name, subject): row
        for folder in arguments.folders
        for subject, row in counted(folder).items()
    }
    old = kept(arguments.list)
    faults = growing(rows)
    print(f"{'subject':32} {'units':>8} {'a unit':>10} {'in the list':>12}")
    for key, (units, instructions) in rows.items():
        before = old.get(key)
        share = instructions / before[1] if before else None
        told = f"{share:11.1%}" if share else "none"
        print(f"{key[1]:32} {units:8} {instructions / units:10.1f} {told:>12}")
        if arguments.update:
            continue
        if before is None or before[0] != units:
            faults.append(f"{key[0]} {key[1]}: is not in the list with {units} units")
        elif share > MOST:
            faults.append(f"{key[0]} {key[1]}: {instructions} instructions, and {before[1]} before")
        elif share < LEAST:
            print(f"{key[1]}: cheaper than the list says, which --update writes anew")
    if arguments.update:
        write(arguments.list, rows)
    else:
        faults += [f"{program} {subject}: was not counted" for program, subject in old.keys() - rows.keys()]
    for fault in faults:
        print(f"growth: {fault}", file=sys.stderr)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
