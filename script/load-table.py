#!/usr/bin/python3
"""The table of desks at a door for docs/performance.md, and its pictures, from what door_load told.

usage: script/load-table.py [--write] FOLDER

FOLDER has alone-N.json, the receipts without a door, each with desks-N.json, the desks at work right behind,
and jobs.json, a long run of desks. What is beside the bound is the median over the pairs. The table is shown;
with --write it goes into the page, which keeps what stands outside of the marks."""

import argparse
import json
import pathlib
import runpy
import statistics
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "performance.md"
PICTURES = ROOT / "docs" / "pictures"
BEGIN = "<!-- Desks: script/load-table.py writes them. -->"
END = "<!-- End of the desks. -->"
GOAL = 0.9


def rate(run):
    return run["jobs"] / run["seconds"]


def medians(runs, *names):
    return [statistics.median(run["latency"][name] for run in runs) for name in names]


def table(pairs, jobs):
    """A row for the bound, for the desks beside it, and for the long run."""
    marked, bare = (statistics.median(statistics.median(alone[name]) for alone, _ in pairs)
                    for name in ("marked", "bare"))
    runs = [run for _, run in pairs]
    part = statistics.median(rate(run) / statistics.median(alone["marked"]) for alone, run in pairs)
    sizes = [size for _, size, _ in jobs["memory"]]
    late = "{:.0f} ms | {:.0f} ms | {:.0f} ms"
    return [
        "| run | documents a second | beside the bound | goal | | median | p99 | longest |",
        "|---|---|---|---|---|---|---|---|",
        f"| the bound: lines and mark, and one commit | {marked:.0f} | 1.00 | | | | | |",
        f"| the same without the mark | {bare:.0f} | {bare / marked:.2f} | | | | | |",
        f"| {runs[0]['desks']} desks, {len(runs)} times for {runs[0]['seconds']:.0f} s | "
        f"{statistics.median(map(rate, runs)):.0f} | {part:.2f} | {GOAL} | {'met' if part >= GOAL else 'missed'} | "
        + late.format(*medians(runs, "median", "p99", "most")) + " |",
        f"| {jobs['desks']} desks, {jobs['jobs']:,} jobs | {rate(jobs):.0f} | | | | "
        + late.format(*medians([jobs], "median", "p99", "most")) + " |",
        "",
        f"The door's memory in the long run, with {jobs['events']:,} events: {sizes[len(sizes) // 10] / 1024:.1f} MB "
        f"behind its first tenth, {sizes[-1] / 1024:.1f} MB at its end.",
    ]


def draw(name, title, unit, points):
    """A picture of something against jobs, the same for the same figures."""
    import matplotlib

    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = name
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(figsize=(8, 4.5))
    axes.plot(*zip(*points))
    axes.set_xlabel("jobs")
    axes.set_ylabel(unit)
    axes.set_ylim(bottom=0)
    axes.set_title(title)
    axes.grid(True, linewidth=0.3)
    figure.tight_layout()
    PICTURES.mkdir(exist_ok=True)
    figure.savefig(PICTURES / f"{name}.svg", metadata={"Date": None})
    pyplot.close(figure)
    return f"![{title}](pictures/{name}.svg)"


def rates(memory, parts=100):
    """Documents a second in each part of the run."""
    step = max(1, len(memory) // parts)
    ends = memory[::step]
    return [(after[0], (after[0] - before[0]) / (after[2] - before[2]))
            for before, after in zip(ends, ends[1:]) if after[2] > before[2]]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--write", action="store_true")
    parser.add_argument("folder", type=pathlib.Path)
    arguments = parser.parse_args()

    def read(name):
        return json.loads((arguments.folder / f"{name}.json").read_text().splitlines()[-1])

    count = len(list(arguments.folder.glob("alone-*.json")))
    pairs = [(read(f"alone-{number}"), read(f"desks-{number}")) for number in range(1, count + 1)]
    jobs = read("jobs")
    lines = table(pairs, jobs)
    print("\n".join(lines))
    if not arguments.write:
        return
    machine = runpy.run_path(ROOT / "script" / "bench-table.py")["machine"]
    lines = [BEGIN, "", machine(ROOT / "build" / "release"), "", *lines, "",
             draw("load-memory", "Memory of the door", "MB", [(one[0], one[1] / 1024) for one in jobs["memory"]]), "",
             draw("load-rate", "Documents a second", "documents a second", rates(jobs["memory"])), "", END]
    text = PAGE.read_text()
    before, begin, rest = text.partition(BEGIN)
    _, end, behind = rest.partition(END)
    if not begin or not end:
        sys.exit(f"{PAGE}: has no marks for the desks")
    PAGE.write_text(before + "\n".join(lines) + behind)


if __name__ == "__main__":
    main()
