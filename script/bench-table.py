#!/usr/bin/python3
"""Writes the figures of docs/performance.md, and its pictures, from what the benchmarks told.

usage: script/bench-table.py [--build FOLDER] JSON...

A JSON file is what a program of Google Benchmark wrote by --benchmark_out, with repetitions. The names of
benchmarks are SUBJECT/SIDE or SUBJECT/SIDE/SIZE. One that tells what items it has processed has as many as
its size says. The counter "cpu" goes before the processor's time, in seconds; "memory" is what the process
grew by, in bytes. bench/goals.tsv names the pairs and what ours may cost at most of the rival's;
bench/instructions.txt has what script/growth counted, and bench/instructions_before.txt what it was before
the work on speed. The page keeps what stands outside of its marks.
FOLDER, build/release, is where the programs were built.
"""

import argparse
import collections
import json
import pathlib
import re
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "performance.md"
PICTURES = ROOT / "docs" / "pictures"
BEGIN = "<!-- Figures: script/bench-table.py writes them. -->"
END = "<!-- End of the figures. -->"
TIMES = {"cpu": "cpu_time", "wall": "real_time"}
IN_NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def output(*command):
    return subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=True).stdout


class Measured:
    """Of each benchmark, by name: the times of its runs in nanoseconds, by kind (cpu, wall)."""

    def __init__(self, paths):
        self.times = {kind: collections.defaultdict(list) for kind in TIMES}
        self.memory = {}  # in bytes, at most
        self.has_items = set()
        for path in paths:
            for row in json.loads(path.read_text())["benchmarks"]:
                if row["run_type"] == "iteration" and not row.get("error_occurred"):
                    self.take(row)

    def take(self, row):
        # A benchmark that is timed by hand or by the clock has that behind its name.
        name = re.sub(r"/(manual_time|real_time|process_time|iterations:\d+)", "", row["run_name"])
        for kind, field in TIMES.items():
            self.times[kind][name].append(row[field] * IN_NANOSECONDS[row["time_unit"]])
        if "cpu" in row:
            self.times["cpu"][name][-1] = row["cpu"] * 1e9
        if "memory" in row:
            self.memory[name] = max(self.memory.get(name, 0), row["memory"])
        if "items_per_second" in row:
            self.has_items.add(name)

    def by_size(self):
        """Of what was measured at several sizes: the processor's time of a unit by subject, side and size."""
        found = collections.defaultdict(lambda: collections.defaultdict(list))
        for name, values in self.times["cpu"].items():
            parts = name.split("/")
            if len(parts) == 3 and parts[2].isdigit():
                size = int(parts[2])
                units = size if name in self.has_items else 1
                found[parts[0]][parts[1]].append((size, statistics.median(values) / units))
        for subject, sides in list(found.items()):
            found[subject] = {side: sorted(points) for side, points in sides.items() if len(points) > 1}
        return {subject: sides for subject, sides in found.items() if sides}


def read_rows(path, separator=None):
    for line in path.read_text().splitlines():
        if line and not line.startswith("#"):
            yield line.split(separator)


def shown(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def shown_memory(size):
    return f"{size / 2**20:.1f} MB" if size >= 2**20 else f"{size / 2**10:.0f} KB"


def machine(build):
    cpu = re.search(r"^model name\s*: (.+)$", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    cache = (build / "CMakeCache.txt").read_text()
    compiler = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.+)$", cache, re.MULTILINE).group(1)
    version = output(compiler, "--version").splitlines()[0]
    commit = output("git", "rev-parse", "--short", "HEAD").strip()
    return f"Commit {commit}, {version}, {cpu.group(1) if cpu else 'unknown processor'}."


def goals_table(times):
    lines = [
        "| subject | time | ours | rival | theirs | ratio | goal | |",
        "|---|---|---|---|---|---|---|---|",
    ]
    for subject, ours, rival, goal, kind in read_rows(ROOT / "bench" / "goals.tsv", "\t"):
        if ours not in times[kind] or rival not in times[kind]:
            print(f"bench-table: {ours} or {rival} was not measured", file=sys.stderr)
            continue
        mine = statistics.median(times[kind][ours])
        theirs = statistics.median(times[kind][rival])
        ratio = mine / theirs
        met = "" if goal == "-" else "met" if ratio <= float(goal) else "missed"
        name = rival.split("/")[1]
        lines.append(
            f"| {subject} | {kind} | {shown(mine)} | {name} | {shown(theirs)} | {ratio:.2f} | {goal} | {met} |"
        )
    return lines


def sizes_table(measured):
    lines = ["| subject | side | of a unit, by size | memory, by size |", "|---|---|---|---|"]
    for subject, sides in measured.by_size().items():
        for side, points in sides.items():
            costs = ", ".join(f"{shown(cost)} at {size:,}" for size, cost in points)
            grown = ((size, measured.memory.get(f"{subject}/{side}/{size}")) for size, _ in points)
            memory = ", ".join(f"{shown_memory(most)} at {size:,}" for size, most in grown if most is not None)
            lines.append(f"| {subject} | {side} | {costs} | {memory} |")
    return lines


def families(name):
    """Of what was counted: program and family with sizes and instructions for each unit."""
    found = collections.defaultdict(list)
    for program, subject, units, instructions in read_rows(ROOT / "bench" / name):
        family, size = subject.rsplit("/", 1)
        found[program, family].append((int(size), int(instructions) / int(units)))
    return found


def counts_table(found, before):
    lines = [
        "| program | family | before | instructions a unit, by size | now, of before |",
        "|---|---|---|---|---|",
    ]
    for (program, family), points in found.items():
        costs = ", ".join(f"{cost:,.0f} at {size:,}" for size, cost in points)
        largest, now = max(points)
        then = dict(before.get((program, family), [])).get(largest)
        shown_then, part = (f"{then:,.0f}", f"{now / then:.2f}") if then else ("-", "-")
        lines.append(f"| {program} | {family} | {shown_then} | {costs} | {part} |")
    return lines


def draw(name, title, unit, curves):
    """A picture of cost against size, the same for the same figures."""
    import matplotlib

    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = name
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(figsize=(8, 4.5))
    for label, points in curves.items():
        axes.plot(*zip(*sorted(points)), marker="o", label=label)
    axes.set_xscale("log")
    axes.set_yscale("log")
    axes.set_xlabel("size")
    axes.set_ylabel(unit)
    axes.set_title(title)
    axes.grid(True, which="major", linewidth=0.3)
    axes.legend(fontsize="small", ncols=2)
    figure.tight_layout()
    PICTURES.mkdir(exist_ok=True)
    figure.savefig(PICTURES / f"{name}.svg", metadata={"Date": None})
    pyplot.close(figure)
    return f"![{title}: {unit} by size](pictures/{name}.svg)"


def pictures(measured, found):
    lines = []
    for subject, sides in measured.by_size().items():
        curves = {side: [(size, cost / 1e3) for size, cost in points] for side, points in sides.items()}
        lines.append(draw(f"time-{subject}", subject, "µs of the processor a unit", curves))
    by_program = collections.defaultdict(dict)
    for (program, family), points in found.items():
        if len(points) > 1:
            by_program[program][family] = points
    for program, curves in by_program.items():
        lines.append(draw(f"growth-{program}", program, "instructions a unit", curves))
    return [line for picture in lines for line in (picture, "")]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release")
    parser.add_argument("files", type=pathlib.Path, nargs="+")
    arguments = parser.parse_args()

    measured = Measured(arguments.files)
    found = families("instructions.txt")
    repetitions = min(len(values) for values in measured.times["cpu"].values())
    figures = [
        BEGIN,
        "",
        machine(arguments.build),
        f"Medians of {repetitions} repetitions and more.",
        "",
        *goals_table(measured.times),
        "",
        "Processor times of one unit (a line, an article, a receipt, an operation) at several sizes, and what the",
        "process grew by meanwhile:",
        "",
        *sizes_table(measured),
        "",
        "Instructions, as `script/growth` counts them. Before is the code ahead of the work on its speed, by",
        "`bench/instructions_before.txt`, at the largest size:",
        "",
        *counts_table(found, families("instructions_before.txt")),
        "",
        *pictures(measured, found),
        END,
    ]
    text = PAGE.read_text()
    before, begin, rest = text.partition(BEGIN)
    _, end, behind = rest.partition(END)
    if not begin or not end:
        sys.exit(f"{PAGE}: has no marks for the figures")
    PAGE.write_text(before + "\n".join(figures) + behind)


if __name__ == "__main__":
    main()
