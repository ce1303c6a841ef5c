#!/usr/bin/env python3
"""The table at the end of script/test: what its programs did, beside what they have to do.

usage: script/counts.py FILE

FILE holds what they reported, one a line, with the place where it ran in front of it:

    PLACE COUNT NAME VALUE GOAL [UNIT]

Lines with the same place, name and unit are added up, those in "%" are not: the last one counts. A
row that nobody reported is shown as "not run"; one that nobody expected stands at the end, under its
own name. Ends with 1 when a value is below its goal, or a line cannot be read.
"""

import decimal
import re
import sys

# The name in the line, and what the table calls it.
ROWS = [
    ("model", "comparisons of the model"),
    ("properties", "cases of the properties"),
    ("faults", "faults injected under the register"),
    ("faults.calls", "faults injected under the conversations"),
    ("faults.console", "faults injected under the console"),
    ("host.lines", "lines of a host that lives long"),
    ("host.troubled", "receipts of a host in hard times"),
    ("kills", "kills"),
    ("shop.receipts", "receipts of a shop's day"),
    ("shop.kills", "kills of its tills and its door"),
    ("shop.cuts", "cuts of its cables"),
    ("fuzz.lines", "executions of the fuzzer lines"),
    ("fuzz.definition", "executions of the fuzzer definition"),
    ("fuzz.batch", "executions of the fuzzer batch"),
    ("fuzz.foundation", "executions of the fuzzer foundation"),
    ("fuzz.reading", "executions of the fuzzer reading"),
    ("fuzz.recording", "executions of the fuzzer recording"),
    ("fuzz.register", "executions of the fuzzer register"),
    ("fuzz.register_file", "executions of the fuzzer register_file"),
    ("fuzz.console", "executions of the fuzzer console"),
    ("fuzz.http", "executions of the fuzzer http"),
    ("fuzz.json", "executions of the fuzzer json"),
    ("platforms.conversations", "conversations played on other machines"),
    ("coverage.src.lines", "lines of src/ that tests run"),
    ("coverage.src.branches", "branches of src/ that tests take"),
    ("coverage.register.lines", "lines of register/ that tests run"),
    ("coverage.register.branches", "branches of register/ that tests take"),
    ("coverage.console.lines", "lines of console/ that tests run"),
    ("coverage.console.branches", "branches of console/ that tests take"),
    ("coverage.recording.lines", "lines of recording/ that tests run"),
    ("coverage.recording.branches", "branches of recording/ that tests take"),
]

NUMBER = r"([0-9]+(?:\.[0-9]+)?)"
LINE = re.compile(r"(\S+) COUNT (\S+) " + NUMBER + " " + NUMBER + r"(?: (%))?")


def read_counts(file):
    """{(name, place): [value, goal, unit]} and the lines that are none."""
    counts, wrong = {}, []
    with open(file, encoding="utf-8", errors="replace") as lines:
        for line in lines.read().splitlines():
            found = LINE.fullmatch(line)
            if not found:
                wrong.append(line)
                continue
            place, name, value, goal, unit = found.groups()
            value, goal = decimal.Decimal(value), decimal.Decimal(goal)
            known = counts.get((name, place))
            if known and not unit:
                value, goal = value + known[0], goal + known[1]
            counts[name, place] = [value, goal, unit or ""]
    return counts, wrong


def shown(number, unit):
    return f"{number}{unit}" if unit else f"{number:,}"


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    counts, wrong = read_counts(sys.argv[1])
    titles = dict(ROWS)
    names = list(titles) + sorted({name for name, _ in counts} - set(titles))

    table, short = [("", "where", "done", "goal", "")], 0
    for name in names:
        places = [place for known, place in counts if known == name]
        if not places:
            table.append((titles[name], "", "not run", "", ""))
        for place in places:
            value, goal, unit = counts[name, place]
            short += value < goal
            table.append((titles.get(name, name), place, shown(value, unit), shown(goal, unit),
                          "BELOW ITS GOAL" if value < goal else ""))
    width = [max(len(row[column]) for row in table) for column in range(4)]
    for title, place, done, goal, remark in table:
        print(f"{title:{width[0]}}  {place:{width[1]}}  {done:>{width[2]}}  {goal:>{width[3]}}  {remark}"
              .rstrip())
    for line in wrong:
        print(f"no count: {line}")
    return 1 if short or wrong else 0


if __name__ == "__main__":
    sys.exit(main())
