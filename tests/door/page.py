"""The examples of a page: commands behind "$ ", each with the answer below it."""
import json
import re

PORT = "127.0.0.1:8577"


def examples(page):
    """(door, command, expected), in the order of the page. A door is what the last comment before it
    says: <!-- door: NAME -->."""
    found, door, block = [], None, []
    for line in page.splitlines() + ["end"]:
        if line.startswith("    ") or not line:
            block.append(line[4:])
            continue
        found += [(door, command, answer) for command, answer in in_block(block)]
        block = []
        if marker := re.fullmatch(r"<!-- door: (\S+) -->", line):
            door = marker.group(1)
    return found


def in_block(lines):
    """(command, answer) of an indented block."""
    at = 0
    while at < len(lines):
        if not lines[at].startswith("$ "):
            at += 1
            continue
        command = [lines[at][2:]]
        while command[-1].endswith("\\"):
            at += 1
            command.append(lines[at])
        at += 1
        answer = []
        while at < len(lines) and not lines[at].startswith("$ "):
            answer.append(lines[at])
            at += 1
        yield "\n".join(command), "\n".join(answer)


def masked(text):
    """Without what is another one each time: times, also those of a paper, and the mark of a job."""
    text = re.sub(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d", "TIME", text)
    text = re.sub(r"\b\d\d/\d\d/\d{4} \d\d:\d\d\b", "TIME", text)
    return re.sub(r"\bR[0-9A-Z]{10}\b", "MARK", text)


def answer_of(text):
    """Status, headers and body of an answer as curl -i prints it; a body that is no JSON as text."""
    head, _, body = masked(text.replace("\r", "")).partition("\n\n")
    first, *rest = head.strip().splitlines()
    headers = {name.lower(): value for name, value in (line.split(": ", 1) for line in rest)}
    found = re.fullmatch(r"HTTP/1\.1 (\d{3}) .*", first)
    body = body.strip()
    return int(found.group(1)), headers, json.loads(body) if body.startswith("{") else body
