#!/usr/bin/python3
"""The table of desks at a door for docs/performance.md, and its pictures, from what door_load told.

usage: script/load-table.py [--write] FOLDER

FOLDER has first.json and second.json, the receipts without a door, and time.json and jobs.json, the desks at
work. The table is shown; with --write it goes into the page, which keeps what stands outside of the marks."""

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


def table(bound, runs):
    marked, bare = (statistics.median(bound[name]) for name in ("marked", "bare"))
    lines = ["| run | documents a second | beside the bound | goal | | median | p99 | longest | memory |",
             "|---|---|---|---|---|---|---|---|---|",
             f"| the bound: lines and mark, and one commit | {marked:.0f} | 1.00 | | | | | | |",
             f"| the same without the mark | {bare:.0f} | {bare / marked:.2f} | | | | | | |"]
    for title, run in runs.items():
        rate, late = run["jobs"] / run["seconds"], run["latency"]
        met = "met" if rate >= GOAL * marked else "missed"
        sizes = [size for _, size, _ in run["memory"]]
        tenth = sizes[len(sizes) // 10]
        lines.append(f"| {title} | {rate:.0f} | {rate / marked:.2f} | {GOAL} | {met} | {late['median']:.0f} ms | "
                     f"{late['p99']:.0f} ms | {late['most']:.0f} ms | {tenth / 1024:.1f} MB behind a tenth, "
                     f"{sizes[-1] / 1024:.1f} MB at the end |")
    return lines


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

    first, second, time, jobs = (read(name) for name in ("first", "second", "time", "jobs"))
    bound = {name: first[name] + second[name] for name in ("marked", "bare")}
    lines = table(bound, {f"{time['desks']} desks, {time['seconds']:.0f} s": time,
                          f"{jobs['desks']} desks, {jobs['jobs']:,} jobs and {jobs['events']:,} events": jobs})
    print("\n".join(lines))
    if not arguments.write:
        return
    lines = [BEGIN, "", runpy.run_path(ROOT / "script" / "bench-table.py")["machine"](ROOT / "build" / "release"), "", *lines, "",
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
