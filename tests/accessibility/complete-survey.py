"""Answers a survey of every type of question as assistive technology does: over AT-SPI alone.

Run by scripts/test-accessibility beside kestrio-host, on an X server. Finds the controls of each page
by role and name, and uses their actions; fails, with what it found instead, when one is not there.
"""

import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

PATIENCE = 60
# The questions, the controls that answer each, and what is pressed.
PAGES = [
    ("How easy was it to find what you were looking for?", "radio button", "12345", ["4"]),
    ("How did you hear about us?", "radio button", ["A search engine", "Somewhere else"],
     ["A search engine"]),
    ("Which of these would you use?", "check box", ["Free returns", "Gift wrapping"],
     ["Gift wrapping", "Next"]),
    ("How likely are you to recommend our shop to a friend?", "radio button",
     [str(point) for point in range(11)], ["9"]),
    ("What should we do better?", "text", ["I think that..."], ["Finish"]),
]


def application():
    desktop = Atspi.get_desktop(0)
    children = map(desktop.get_child_at_index, range(desktop.get_child_count()))
    return next(child for child in children if child and child.get_name() == "kestrio-host")


def showing(parent):
    """What is shown below it, as (role, name, accessible)."""
    for child in map(parent.get_child_at_index, range(parent.get_child_count())):
        if child and child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child.get_role_name(), child.get_name(), child
            yield from showing(child)


def dialog():
    return next(child for role, _, child in showing(application()) if role == "dialog")


def wait_for(root, role, name, use=lambda control: True):
    """Returns the control once it is there and `use` of it succeeds."""
    deadline = time.monotonic() + PATIENCE
    found = []
    while time.monotonic() < deadline:
        try:
            found = list(showing(root()))
            for known in found:
                if known[:2] == (role, name) and use(known[2]):
                    return known[2]
        except (gi.repository.GLib.Error, StopIteration):
            pass  # not there yet, or gone since it was listed
        time.sleep(0.1)
    sys.exit("no %s \"%s\" among %s" % (role, name, [known[:2] for known in found]))


def press(control):
    """Whether it offers an action: a page cannot be answered before it is to be seen."""
    actions = [control.get_action_name(index) for index in range(control.get_n_actions())]
    action = next((known for known in ("Press", "Toggle") if known in actions), None)
    return action and control.do_action(actions.index(action))


def answer(question, role, options, pressed):
    for name in options:
        wait_for(dialog, role, name)
    wait_for(dialog, "panel", question)
    wait_for(dialog, "push button", "Close")
    if role == "text":
        control = wait_for(dialog, role, options[0])
        control.get_editable_text_iface().insert_text(0, "Nothing", 7)
    for name in pressed:
        wait_for(dialog, role if name in options else "push button", name, press)
        if role == "check box" and name in options:
            wait_for(dialog, role, name, lambda control: control.get_state_set().contains(
                Atspi.StateType.CHECKED))


order = wait_for(application, "push button", "Place order")
wait_for(dialog, "push button", "Close")
try:
    order.do_action(0)
    sys.exit("the host's button can be pressed under the survey")
except gi.repository.GLib.Error:
    print("the host's button is out of reach")
for page in PAGES:
    answer(*page)
