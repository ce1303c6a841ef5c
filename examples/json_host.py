#!/usr/bin/env python3
"""Sells on a register, line by line: json_host.py [LORIMAT [OPTION OF THE SHELL]...]"""
import json
import subprocess
import sys

program = sys.argv[1] if len(sys.argv) > 1 else "lorimat"
shell = subprocess.Popen([program, "shell", "--json", *sys.argv[2:]],
                         stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")

def send(number, line):
    print(json.dumps({"id": number, "line": line}), file=shell.stdin, flush=True)
    text = shell.stdout.readline()
    if not text:  # the line may have run: look at the register before it is sent again
        sys.exit(f"no answer to {line}")
    answer = json.loads(text)
    print(*answer["paper"], sep="\n", end="\n" if answer["paper"] else "")
    if answer["code"] != 0:
        sys.exit(f"{line}\n{answer['text']}\n{answer.get('error', answer['explanation'])}")
    return answer["state"]

send(1, "VEND REP=2, QTA=2, PRE=1.20, DES='CAFFÈ'")
state = send(2, "VEND REP=2, PRE=1.50, DES='CORNETTO'")
assert state["open_document"]["subtotal_cents"] == 390
send(3, "CHIU TEND=CONTANTI, IMP=5.00")
shell.stdin.close()
sys.exit(shell.wait())
