#!/usr/bin/python3
"""Prints the tree that screen readers get from a running program, and what in it has no name.

Usage: accessibility_dump.py PROGRAM [ARGUMENT ...] [--keys KEY ...]
Starts the program, presses each of the keys (as xdotool names them, several joined by commas being
one step) in turn, and dumps the tree after each. Without --keys it goes through all windows and
menus of the program itself. Ends with 1 if a control has no name. Run it in a session of its own:

  dbus-run-session -- xvfb-run -a tools/accessibility_dump.py build/release/bin/kestrel \\
      build/demo/Library.xml

Needs the packages of the groups "screen" and "reader" (tools/install_packages.sh).
"""

import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

# What only holds other things, is part of something that has a name, or shows a text or nothing.
NAMELESS = {"filler", "panel", "separator", "scroll bar", "split pane", "viewport", "layered pane",
            "scroll pane", "table cell", "tree item", "list item", "table row", "window", "unknown",
            "status bar", "menu bar", "popup menu", "tool bar", "label", "page tab list", "invalid"}
# The toolkit gives these what is chosen in them for a name: a label or description has to say what
# is chosen.
NAMED_BY_VALUE = {"combo box"}
# The result; each menu and the two that lie in one; the windows. Each step closes what the one
# before it opened.
TOUR = ["ctrl+d", "Down", "alt+l", "Escape,alt+d", "Escape,alt+r", "Escape,alt+v", "c", "Escape,p",
        "Escape,Escape,alt+h", "Escape,alt+v,l", "alt+F4,F1", "Escape,alt+h,a",
        "Escape,Down,ctrl+l", "alt+F4,alt+r,y", "Escape,ctrl+r", "Escape,ctrl+u",
        "Escape,ctrl+Delete", "Escape,ctrl+shift+Delete", "Escape,ctrl+shift+d", "Escape,ctrl+comma",
        "Escape,ctrl+e", "Escape,alt+e", "Escape,alt+p", "ctrl+h"]
MOST_CHILDREN = 40  # a table of a million rows is not worth printing


def said_of(node):
    """What else is said of the node: its labels and its description."""
    labels = [relation.get_target(i).get_name() for relation in node.get_relation_set()
              if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
              for i in range(relation.get_n_targets())]
    return [text for text in [*labels, node.get_description()] if text]


def dump(node, depth, nameless, path):
    """Prints `node` and what is below it; adds the controls without a name to `nameless`."""
    if node is None:
        return
    role, name = node.get_role_name(), node.get_name()
    states = node.get_state_set()
    showing = states.contains(Atspi.StateType.SHOWING)
    focusable = states.contains(Atspi.StateType.FOCUSABLE)
    said = said_of(node)
    marks = ("" if showing else " hidden") + (" focusable" if focusable else "")
    marks += f" ({'; '.join(said)})" if said else ""
    print(f"{'  ' * depth}{role}: '{name}'{marks}")
    here = [*path, f"{role} '{name}'"]
    named = said if role in NAMED_BY_VALUE else name
    decoration = role == "image" and "alert '" in (path or [""])[-1]  # the toolkit's own
    if not named and showing and role not in NAMELESS and not decoration:
        nameless.append(" > ".join(here))
    count = node.get_child_count()
    for i in range(min(count, MOST_CHILDREN)):
        dump(node.get_child_at_index(i), depth + 1, nameless, here)
    if count > MOST_CHILDREN:
        print(f"{'  ' * (depth + 1)}… {count - MOST_CHILDREN} more")


def application(pid):
    """The tree of the process, once there is a window in it."""
    for _ in range(100):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_process_id() == pid and child.get_child_count():
                return child
        time.sleep(0.2)
    sys.exit("accessibility_dump: the program does not appear")


def main():
    command, keys = sys.argv[1:], TOUR
    if "--keys" in command:
        at = command.index("--keys")
        command, keys = command[:at], command[at + 1:]
    if not command:
        sys.exit(__doc__)
    environment = os.environ | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
    manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
    time.sleep(1)
    program = subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL)
    nameless = []
    try:
        root = application(program.pid)
        for key in [None, *keys]:
            if key:
                for one in key.split(","):
                    subprocess.run(["xdotool", "key", one], check=True)
                    time.sleep(0.5)
            time.sleep(2)
            print(f"== {key or 'at start'}")
            root.clear_cache()
            dump(root, 0, nameless, [])
    finally:
        for process in (program, manager):
            process.kill()
            process.wait()
    print("== without a name")
    print("\n".join(dict.fromkeys(nameless)) or "nothing")
    return 1 if nameless else 0


if __name__ == "__main__":
    sys.exit(main())
