"""Has Orca read a whole survey aloud, and compares what it says with a transcript.

Run by scripts/test-accessibility on an X server: hear-survey.py TRANSCRIPT ORCA_LOG HOST. A line of
the transcript that begins with "> " is a command for kestrio-host; the lines after it are what Orca
then says, "? " before one that is gone too soon for a busy machine. What kestrio-host's `speak`
reports must be among what Orca says.
"""

import itertools
import json
import re
import subprocess
import sys
import time

PATIENCE = 60
SPOKEN = re.compile(r"SPEECH OUTPUT: '(.*)'[^']*\{")
# Whether Orca says it again, perhaps with a label of the page, depends on whether it notices that
# the focus is nowhere between pages.
DIALOG = "kestrio-host dialog"
HEARD = "app.name='kestrio-host'"
# How kestrio-host and Orca call roles and states.
TERMS = {"radiobutton": "radio button", "checkbox": "check box", "button": "push button",
         "editabletext": "text", "grouping": "panel"}


def spoken(log):
    with open(log, encoding="utf-8", errors="replace") as lines:
        return [said.group(1) for said in map(SPOKEN.search, lines) if said]


def blocks(transcript):
    """The commands and, for each group of them, what is said then."""
    found = []
    for line in open(transcript, encoding="utf-8").read().splitlines():
        if line.startswith("> ") and (not found or found[-1][1]):
            found.append(([], []))
        if line.strip() and not line.startswith("#"):
            found[-1][not line.startswith("> ")].append(line.removeprefix("> "))
    return found


class Host:
    def __init__(self, program):
        self.process = subprocess.Popen([program, "--script", "-"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def send(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()

    def spoken(self):
        self.send("speak")
        for line in self.process.stdout:
            if line.startswith('{"spoken"'):
                return json.loads(line)["spoken"]
            if line.startswith('{"error"'):
                sys.exit(line)
        sys.exit("kestrio-host has ended")


def wait_until(holds, complain, pause=0.1):
    deadline = time.monotonic() + PATIENCE
    while not holds():
        if time.monotonic() > deadline:
            sys.exit(complain())
        time.sleep(pause)


def find_orca(host, log):
    """Moves the focus until Orca notices: before, neither hears of the other's events."""
    fields = itertools.cycle(["Environment", "Language"])

    def is_heard():
        host.send("click " + next(fields))
        return HEARD in open(log, encoding="utf-8", errors="replace").read()
    wait_until(is_heard, lambda: "Orca hears nothing of the host", pause=1)


def matches(said, expected):
    """Whether all that is expected, and nothing else, was said. What is optional may be missing."""
    said = list(said)
    for line in expected:
        if said and said[0] == line.removeprefix("? "):
            said.pop(0)
        elif not line.startswith("? "):
            return False
    return not said


def words(text):
    return " %s " % " ".join(re.findall(r"\w+", text))


def check_agreement(reported, said):
    for part in [part for text in reported for part in text.split(", ")]:
        if words(TERMS.get(part, part)) not in words(" ".join(said)):
            sys.exit("kestrio-host speaks %s, Orca says %s" % (reported, said))


def hear(host, log, commands, expected, is_first):
    start = len(spoken(log))
    host.spoken()
    for command in commands:
        host.send(command)

    def said():
        lines = spoken(log)[start:]
        if is_first and DIALOG in lines:
            return lines[lines.index(DIALOG):]
        return [line for line in lines if not line.startswith(DIALOG)]
    wait_until(lambda: matches(said(), expected),
               lambda: "after %s Orca says %s, not %s" % (commands, said(), expected))
    check_agreement(host.spoken(), [line.removeprefix("? ") for line in expected])


def main(transcript, log, program):
    wait_until(lambda: spoken(log), lambda: "Orca does not start")
    host, is_first = Host(program), True
    host.send("configure pictures\nwait-for visitor 60000\nwindow 900 700")
    find_orca(host, log)
    for commands, expected in blocks(transcript):
        hear(host, log, commands, expected, is_first)
        is_first = False
    host.send("wait-for gone 60000\nwait-for idle 60000")
    host.process.stdin.close()
    if host.process.wait(PATIENCE):
        sys.exit("kestrio-host has failed")


main(*sys.argv[1:])
