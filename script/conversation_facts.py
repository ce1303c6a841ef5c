#!/usr/bin/env python3
"""What the conversations of tests/conversations show of a device.

script/make-devices writes docs/devices.md of it. The conversations are played against the library
by every run of the tests, so what they show is what the library does.
"""
import collections
import concurrent.futures
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
CONVERSATIONS = ROOT / "tests/conversations"

# Commands that are several in one: the field that says which, and values that go one way.
SELECTORS = {3: 1, 71: 1, 26: 1, 9: 4}
RANGES = {9: [(125, 144, "125 to 144"), (178, 178, "178"), (179, 179, "179"),
              (0, 255, "any other")],
          71: [(1000, 1999, "1000 to 1999")]}

# The exports that ask the device.
EXPORTS = ["TradInit", "GetEcrConfVal", "GetEcrConfStr"]

Call = collections.namedtuple("Call", "name arguments answer outs")
Step = collections.namedtuple("Step", "sent command calls code rules")
Rule = collections.namedtuple("Rule", "name arguments code outcome")


class Fault(Exception):
    pass


# --- The sources


def constants(path, pattern):
    """Numbers to names, of the lines that the pattern finds; the first name of a number counts."""
    found = {}
    for name, number in re.findall(pattern, (ROOT / path).read_text()):
        found.setdefault(int(number), name)
    return found


PROPERTIES = constants("src/rpccommon/services/rtffptrconst.h", r"RTF_PIDXFptr_(\w+) = (\d+);")
KEYS = constants("src/pal/peripherals/keyboard/functioncode.h", r"\b(k\w+) = (\d+),")
READINGS = constants("src/rpccommon/services/rtffptrconst.h", r"RTF_FPTR_(GD_\w+) = (\d+);")


def operations():
    """The client's operations in their order, with the names and types of their parameters."""
    text = (ROOT / "src/rpccommon/client/rtfclientinterface.h").read_text()
    found = {}
    for name, parameters in re.findall(r"virtual \w+ (\w+)\(([^)]*)\) = 0;", text):
        found[name] = [tuple(p.strip().rsplit(" ", 1)) for p in parameters.split(",") if p.strip()]
    return found


OPERATIONS = operations()


def commands():
    """Opcodes to (word, fields by number), of the language that the conversations speak."""
    words, fields, section = {}, collections.defaultdict(dict), None
    for line in (CONVERSATIONS / "test.ini").read_text().splitlines():
        if line.startswith("["):
            section = line[1:-1]
        elif "=" in line and not line.startswith(";"):
            row, name = line.split("=", 1)
            name, _, number = name.partition(",")
            if section == "OPCOD":
                words[int(row)] = name
            elif section.isdigit():
                fields[int(section)][name] = int(number or row)
    text = (ROOT / "src/pal/protocols/lorimat/commands.inc").read_text()
    reached = [int(number) for number in re.findall(r"^LORIMAT_COMMAND\((\d+),", text, re.M)]
    return {opcode: (words[opcode], fields[opcode]) for opcode in reached if opcode in words}


COMMANDS = commands()
WORDS = {word: opcode for opcode, (word, _) in COMMANDS.items()}


# --- The conversations


def values(text, at, closing):
    """The values of a list up to its closing bracket, and the place behind it."""
    found, begin, quoted = [], at, False
    while at < len(text):
        c = text[at]
        if quoted and c == "\\":
            at += 1
        elif c == '"':
            quoted = not quoted
        elif not quoted and c in "," + closing:
            value = text[begin:at].strip()
            if value or found or c == ",":
                found.append(value)
            begin = at + 1
            if c == closing:
                return found, at + 1
        at += 1
    raise Fault("a list has no end: %s" % text)


def read_call(text):
    name, _, rest = text.partition("(")
    arguments, at = values(rest, 0, ")")
    found = re.match(r"(?: -> (\S+))?(?: \[)?", rest[at:])
    outs = values(rest, at + found.end(), "]")[0] if found.group(0).endswith("[") else []
    return Call(name, tuple(arguments), found.group(1) or "0", tuple(outs))


def read_rule(text):
    head, _, outcome = text.partition(": ")
    found = re.match(r"(\w+)(?:\((.*)\))?(?: (-?\d+))?$", head)
    arguments = values(found.group(2) + ")", 0, ")")[0] if found.group(2) is not None else None
    return Rule(found.group(1), arguments, found.group(3), outcome)


def command_of(sent):
    """The word of a line, the names of its fields, and their values."""
    word, _, rest = sent.strip().partition(" ")
    return word.upper(), rest


def read_steps(text):
    """The steps of a conversation that has no tables any more."""
    steps, sent, calls, command = [], None, [], None
    rules = [read_rule(line[6:]) for line in text.splitlines() if line.startswith("sweep ")]

    def end(code):
        # The flag to wait puts GetState ahead of any command; that is no part of what it does.
        while calls and calls[0].name == "GetState" and command != "IDLE":
            del calls[0]
        if command is not None:
            steps.append(Step(sent, command, tuple(calls), code, rules))

    for line in text.splitlines():
        if re.match(r"(init:|>|!) ?", line) and command in EXPORTS:
            end(None)  # an export has no line with its answer
        if line.startswith("init: ") and line != "init: none":
            sent, calls, command = "TradInit() -> " + line[6:], [], "TradInit"
        elif line.startswith("> "):
            word = command_of(line[2:])[0]
            sent, calls, command = line[2:], [], word if word in WORDS else None
        elif line.startswith("! "):
            name = line[2:].partition("(")[0]
            sent, calls, command = line[2:], [], name if name in EXPORTS else None
        elif line.startswith("< ") and line != "< none":
            calls.append(read_call(line[2:]))
        elif line.startswith("= "):
            end(line[2:].split(" ")[0])
            command = None
    if command in EXPORTS:
        end(None)
    return steps


def expand(runner, path):
    done = subprocess.run([runner, "--expand", path], capture_output=True, check=False)
    if done.returncode != 0:
        raise Fault("%s cannot write %s out: %s" % (runner, path, done.stderr.decode()))
    return done.stdout.decode("utf-8", "backslashreplace")


def all_steps(runner):
    paths = sorted(p for p in CONVERSATIONS.glob("*/*.txt")
                   if p.parent.name not in ("must_fail", "register_must_fail"))
    with concurrent.futures.ThreadPoolExecutor() as pool:
        texts = pool.map(lambda path: expand(runner, path), paths)
    return [step for text in texts for step in read_steps(text)]


# --- What they show


def label(call):
    """A call as what it is asked for: the operation, with the item or property that it names."""
    name, given = call.name, call.arguments
    if name in ("GetDataInternal", "SetDataInternal"):
        return "%s(%s)" % (name, given[0])
    if name.endswith("Property"):
        return "%s(%s)" % (name, PROPERTIES.get(int(given[0]), given[0]))
    if name == "GetData":
        return "%s(%s)" % (name, READINGS.get(int(given[0]), given[0]))
    if name.startswith("Config"):
        return "%s(%s)" % (name, "write" if given[0] == "true" else "read")
    if name == "UploadTable":
        return "%s(%s)" % (name, ", ".join(given[:2]))
    if name == "PrintRecSubtotalEx":
        return "%s(%s)" % (name, "check" if given[1] == "true" else "print")
    return name + ("()" if not OPERATIONS.get(name) else "")


def selector(step):
    """What a command that is several in one is in this step: the value of its field."""
    opcode = WORDS.get(step.command)
    if opcode not in SELECTORS:
        return ""
    names = COMMANDS[opcode][1]
    given = ""
    for part in command_of(step.sent)[1].split(","):
        name, _, value = part.partition("=")
        if names.get(name.strip().upper()) == SELECTORS[opcode]:
            given = value.strip(" '")
    number = int(given) if given.isdigit() else 0
    for first, last, text in RANGES.get(opcode, []):
        if first <= number <= last:
            return text
    return given


def named_item(step):
    """The data item that the line itself names, as text; None for most."""
    found = re.match(r"(?:GetEcrConfStr\(|INFO .*?=)(0x[0-9A-Fa-f]+|\d+)", step.sent)
    selected = int(found.group(1), 0) & 0xFFFF if found else 0
    return str(selected - 1000) if selected >= 1000 else None


def labels(step):
    names = [label(call) for call in step.calls]
    # Ahead of the named item the configuration may be read, with the same numbers.
    if names and names[-1] == "GetDataInternal(%s)" % named_item(step):
        names[-1] = "GetDataInternal(n)"
    return names


def codes_of(result):
    """The line's code for a client's result, and that with its class given twice."""
    def checked(code):
        return 0 if code == 0 else 512 if code == -1 else code | (512 if code < 200 else 1024)
    return str(checked(result)), str(checked(checked(result)))


def fits(rule, call, code):
    return (rule.name == call.name and rule.code in (None, code) and
            (rule.arguments is None or len(rule.arguments) == len(call.arguments) and
             all(want in ("*", got) for want, got in zip(rule.arguments, call.arguments))))


ENDS = {"checkResult": "fails with its code", "checkResult twice": "fails, its class given twice",
        "as before": "ends as if it had not been"}


def told(outcome, following, code):
    """A rule of a sweep: (its code, how the line ends, what comes besides), and which calls of the
    step it takes away."""
    if outcome == "skip":
        return None
    parts = outcome.split(", ")
    end = ENDS.get(parts[0], "ends with " + parts[0])
    gone = [part[3:] for part in parts[1:] if part.startswith("no ")]
    names = [call.name for call in following]
    if "*" in gone:
        gone = ["more"] if following else []
    also = tuple(part[5:] for part in parts[1:] if part.startswith("also "))
    return (code, end, also), [name for name in gone if name == "more" or name in names]


def in_words(rule, gone):
    code, end, also = rule
    if "more" in gone:
        end += "; no more calls"
    elif gone:
        end += "; no " + ", ".join("`%s`" % name for name in gone)
    if also:
        end += "; then `%s`" % "`, `".join(also)
    return end if code is None else "%s: %s" % (code, end)


def refusals(steps):
    """Labels to what a refusal does: what sweeps play, else what the steps show."""
    swept = collections.defaultdict(dict)
    seen = collections.defaultdict(dict)
    for step in steps:
        for at, (call, name) in enumerate(zip(step.calls, labels(step))):
            for code in ("107", "207", "212", "1213", "-1"):
                rule = next((r for r in step.rules if fits(r, call, code)), None)
                result = rule and told(rule.outcome, step.calls[at + 1:], rule.code)
                if result:
                    gone = swept[name].setdefault(result[0], [])
                    gone += [one for one in result[1] if one not in gone]
            if call.name != "GetState" and re.match(r"-?[1-9]", call.answer):
                once, twice = codes_of(int(call.answer))
                end = (ENDS["checkResult"] if step.code == once else
                       ENDS["checkResult twice"] if step.code == twice else
                       "answers null" if step.sent.endswith(" -> null") else
                       ENDS["as before"] if step.code in (None, "0") else
                       "ends with " + step.code)
                seen[name].setdefault((None, end, ()), [])
    return {name: "; or: ".join(in_words(*one) for one in (swept.get(name) or seen[name]).items())
            for name in list(swept) + list(seen)}


def shown_answer(call):
    if call.name in ("GetState", "GetClaimed", "GetDeviceEnabled"):
        return call.answer
    if call.answer != "0":
        return call.answer
    # A number that is not filled stays what it was.
    return ", ".join(call.outs) or ("nothing" if call.name == "GetIntProperty" else "")


def decisions(steps):
    """Labels to {answer: what follows}, of calls whose answer alone makes the difference: the same
    line, the same calls and answers ahead of it, and another way from there."""
    ways = collections.defaultdict(lambda: collections.defaultdict(set))
    for step in steps:
        names = labels(step)
        for at, call in enumerate(step.calls):
            if call.answer != "0" and call.name != "GetState":
                continue
            ahead = (step.sent, names[at], call.arguments, step.calls[:at])
            follows = names[at + 1] if at + 1 < len(names) else ""
            end = step.code if step.code not in (None, "0") and not follows else ""
            ways[ahead][shown_answer(call)].add((follows, end))
    found = collections.defaultdict(lambda: collections.defaultdict(set))
    for (_, name, _, _), answers in ways.items():
        if len({way for follow in answers.values() for way in follow}) < 2:
            continue
        if any(len(follow) > 1 for follow in answers.values()):
            continue  # not the answer alone
        for answer, follow in answers.items():
            found[name][answer] |= follow
    return found


ITEMS = re.compile(r"^[GS]et(Data|DataInternal|\w+Property)$")


def folded(names):
    """A sequence of labels with what is repeated said once."""
    merged = []
    for name in names:
        head, _, inside = name.partition("(")
        last = merged[-1] if merged else None
        if last and last[0] == head and (name == last[3] or ITEMS.search(head)):
            if inside not in last[1]:
                last[1].append(inside)
            last[2] = True
        else:
            merged.append([head, [inside], False, name])
    texts = []
    for head, insides, more, _ in merged:
        items = [inside[:-1] for inside in insides if inside]
        if len(items) > 6:
            items = items[:2] + ["..."] + items[-1:]
        text = "`%s%s`" % (head, "(" + ", ".join(items) + ")" if insides[0] else "")
        texts.append(text + (" repeated" if more and len(insides) == 1 else ""))
    for width in (1, 2, 3):
        at = 0
        while at + 2 * width <= len(texts):
            block = texts[at:at + width]
            if block == texts[at + width:at + 2 * width]:
                while texts[at + width:at + 2 * width] == block:
                    del texts[at + width:at + 2 * width]
                if width > 1:
                    texts[at:at + width] = ["(" + ", ".join(block) + ") repeated"]
                elif not block[0].endswith("repeated"):
                    texts[at] += " repeated"
            at += 1
    return ", ".join(texts)
