#!/usr/bin/env python3
"""The rooms of the house: who may include whom.

usage: script/check-rooms.py [FOLDER]    (the project's own folder)

Prints the layers, from top to bottom. A room may include what stands below it and itself; an
include upwards is a fault and so is a circle of files within a room. Faults are named with the two
files, the line and the rule; then the exit status is 1.
"""
import pathlib
import posixpath
import re
import sys

# From top to bottom. What stands in a row of several may not include one another in a circle, which
# follows from their order here.
LAYERS = {
    "": ["bench", "tests", "examples", "door", "console", "bindings", "recording", "language", "register", "src"],
    "register": ["sanitizer", "face", "client", "inspect", "report", "desk", "core", "storage", "totals", "state",
                 "document", "tables", "fault", "paper", "value"],
    "door": ["main.cpp", "run_door.cpp", "run_door.h", "door_watch.cpp", "door_watch.h", "no_faults.cpp", "faults.h",
             "http", "job", "receipt", "judge", "system", "log", "access"],
    "console": ["main.cpp", "command", "command/backup", "conform", "shell", "host", "remote",
                "token", "device", "check", "terminal", "message"],
    "src": ["lorimatrt", "pal/protocols", "managermachine", "rpccommon", "pal"],
}
# The foundation is one room under two names: the log writes through sockets and threads, and these
# write to the log. What is installed of the boundary lies in include/.
ONE_ROOM = {"utility": "pal", "include": "src"}
# What the register may know of src/: the interface of a device client, its constants and the
# numbers of its keys.
REGISTER_KNOWS = ("src/rpccommon/", "src/managermachine/",
                  "src/pal/peripherals/keyboard/functioncode.h")
# And of the headers for hosts its own face.
FACE_KNOWS = ("include/lorimatrt/register.h",)

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]([^">]+)[">]')


def room_of(path, folder):
    """The room that a file of a folder is in: the longest name that it lies under."""
    inside = path[len(folder) + 1:] if folder else path
    names = LAYERS[folder] + list(ONE_ROOM)
    rooms = [name for name in names if inside == name or inside.startswith(name + "/")]
    room = max(rooms, key=len, default=None)
    return ONE_ROOM.get(room, room)


def resolve(include, path, files):
    """The file of the project that an include means; None for one of a library."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(path), include))
    for candidate in (beside, include, "src/" + include, "include/" + include, "tests/" + include,
                      "tests/unit/" + include):
        if candidate in files:
            return candidate
    return None


def circles(edges):
    """One circle of files for each that there is, as a list that begins and ends with the same."""
    found, state, trail = [], {}, []

    def visit(file):
        state[file] = "open"
        trail.append(file)
        for target in sorted(edges.get(file, ())):
            if state.get(target) == "open":
                found.append(trail[trail.index(target):] + [target])
            elif target not in state:
                visit(target)
        trail.pop()
        state[file] = "done"

    for file in sorted(edges):
        if file not in state:
            visit(file)
    return found


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    if len(sys.argv) > 2 or str(root) in ("-h", "--help"):
        print(__doc__.strip())
        return 0 if len(sys.argv) == 2 else 2
    files = {}
    for folder in LAYERS[""] + ["include"]:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".h", ".cpp", ".c", ".inc") and path.is_file():
                files[path.relative_to(root).as_posix()] = path
    for folder in ("register", "console", "src"):
        if not any(name.startswith(folder + "/") for name in files):
            print(f"{root}: there is no source in {folder}/", file=sys.stderr)
            return 2

    faults, edges = [], {}
    for name, path in files.items():
        for number, line in enumerate(path.read_text("utf-8", "replace").splitlines(), 1):
            match = INCLUDE.match(line)
            target = match and resolve(match.group(1), name, files)
            if not target:
                continue
            if target != name:
                edges.setdefault(name, set()).add(target)
            place = f"{name}:{number}: {target}"
            if name.startswith("register/") and target.startswith(("src/", "include/")):
                knows = REGISTER_KNOWS + (FACE_KNOWS if name.startswith("register/face/") else ())
                if not target.startswith(knows):
                    faults.append(f"{place}: the register knows the client interface alone")
            folder = name.split("/")[0]
            if target.split("/")[0] != folder:
                folder = ""
            if folder not in LAYERS:
                continue
            here, there = room_of(name, folder), room_of(target, folder)
            rooms = LAYERS[folder]
            title = folder or "the project"
            if here is None or there is None:
                faults.append(f"{place}: {name if here is None else target} is in no room of {title}")
            elif rooms.index(there) < rooms.index(here):
                faults.append(f"{place}: {title} has {there} above {here}")
    for name in files:
        folder = name.split("/")[0]
        if folder in LAYERS and room_of(name, folder) is None:
            faults.append(f"{name}: is in no room of {folder}")
    for circle in circles(edges):
        faults.append("a circle: " + " > ".join(circle))

    for folder, rooms in LAYERS.items():
        print(f"{folder or 'project'}: {' > '.join(rooms)}")
    for fault in sorted(set(faults)):
        print(f"FAULT: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
