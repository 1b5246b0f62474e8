"""Answers a survey of every type of question as assistive technology does: over AT-SPI alone.

Run by scripts/test-accessibility beside kestrio-host, on an X server. Finds the controls of each
page by role and name, and uses their actions; fails, with what it found instead, when one is not
there.
"""

import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

PATIENCE = 15
APPLICATION = "kestrio-host"


def descendants(parent):
    for index in range(parent.get_child_count()):
        child = parent.get_child_at_index(index)
        if child is not None:
            yield child
            yield from descendants(child)


def is_showing(accessible):
    return accessible.get_state_set().contains(Atspi.StateType.SHOWING)


def application():
    for child in descendants_of_desktop():
        if child.get_name() == APPLICATION:
            return child
    return None


def descendants_of_desktop():
    desktop = Atspi.get_desktop(0)
    return [desktop.get_child_at_index(index) for index in range(desktop.get_child_count())]


def dialog():
    host = application()
    for accessible in descendants(host) if host else []:
        if accessible.get_role_name() == "dialog" and is_showing(accessible):
            return accessible
    return None


def controls(root):
    found = []
    for accessible in descendants(root):
        try:
            if is_showing(accessible):
                found.append((accessible.get_role_name(), accessible.get_name(), accessible))
        except gi.repository.GLib.Error:
            pass  # gone since it was listed
    return found


def wait_until(look):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        try:
            result = look()
        except gi.repository.GLib.Error:
            result = None
        if result:
            return result
        time.sleep(0.1)
    root = dialog()
    sys.exit("not found; showing: %s" % [known[:2] for known in controls(root)] if root else
             "there is no survey")


def find(role, name):
    def look():
        root = dialog()
        return root and next((known[2] for known in controls(root) if known[:2] == (role, name)),
                             None)
    return wait_until(look)


def press(role, name):
    """Waits until the control offers it: a page cannot be answered before it is to be seen."""
    def look():
        control = find(role, name)
        actions = [control.get_action_name(index) for index in range(control.get_n_actions())]
        action = next((known for known in ("Press", "Toggle") if known in actions), None)
        return action and control.do_action(actions.index(action))
    wait_until(look)
    print("pressed %s \"%s\"" % (role, name))


def expect_question(text, expected):
    find("panel", text)
    for role, name in expected + [("push button", "Close")]:
        find(role, name)
    print("found \"%s\" with %d controls" % (text, len(expected) + 1))


def main():
    host = wait_until(application)
    order = next(known for known in descendants(host)
                 if known.get_role_name() == "push button" and known.get_name() == "Place order")
    print("waiting for the survey")
    expect_question("How easy was it to find what you were looking for?",
                    [("radio button", str(point)) for point in range(1, 6)])
    try:
        order.do_action(0)
        sys.exit("the host's button can be pressed under the survey")
    except gi.repository.GLib.Error:
        print("the host's button is out of reach")
    press("radio button", "4")
    expect_question("How did you hear about us?",
                    [("radio button", "A search engine"), ("radio button", "Somewhere else")])
    press("radio button", "A search engine")
    expect_question("Which of these would you use?",
                    [("check box", "Free returns"), ("check box", "Gift wrapping"),
                     ("push button", "Next")])
    press("check box", "Gift wrapping")
    wait_until(lambda: find("check box", "Gift wrapping").get_state_set()
               .contains(Atspi.StateType.CHECKED))
    press("push button", "Next")
    expect_question("How likely are you to recommend our shop to a friend?",
                    [("radio button", str(point)) for point in range(11)])
    press("radio button", "9")
    expect_question("What should we do better?",
                    [("text", "I think that..."), ("push button", "Finish")])
    find("text", "I think that...").get_editable_text_iface().insert_text(0, "Nothing", 7)
    press("push button", "Finish")
    find("label", "Thanks!")
    print("completed the survey")


main()
