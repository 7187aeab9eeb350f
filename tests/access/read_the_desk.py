#!/usr/bin/python3
"""A screen reader's view of the running desk, through AT-SPI.

Starts the desk on a new demo practice, finds it on the accessibility bus,
finds Dr. Ortiz's column and an appointment in it by the names a reader
speaks, then presses Down through the AT-SPI registry and checks that the
focused cell moved. Run it inside tests/access/with_session.sh.
Usage: read_the_desk.py PRACTICE_DESK_BINARY
"""
import os
import subprocess
import sys
import tempfile
import time

import pyatspi

COLUMN = "Dr. Ortiz, Monday, November 23, 2026"
APPOINTMENT = "Ada Byron (R), 8:00 AM to 8:30 AM, Scheduled"


def wait_for(what, probe, seconds=60):
    end = time.time() + seconds
    while time.time() < end:
        found = probe()
        if found:
            return found
        time.sleep(0.2)
    sys.exit(f"not found within {seconds} s: {what}")


def desk_application():
    desktop = pyatspi.Registry.getDesktop(0)
    for app in desktop:
        if app is not None and app.name == "practice-desk":
            return app
    return None


def find(node, test, depth=0):
    if node is None or depth > 40:
        return None
    if test(node):
        return node
    for child in node:
        hit = find(child, test, depth + 1)
        if hit is not None:
            return hit
    return None


def focused_part(table):
    for part in table:
        if part is not None and part.getState().contains(pyatspi.STATE_FOCUSED):
            return part.name
    return None


def press(keysym):
    pyatspi.Registry.generateKeyboardEvent(keysym, None, pyatspi.KEY_SYM)
    time.sleep(0.3)


def main():
    with tempfile.TemporaryDirectory() as home:
        # A new practice opened by a named user makes that user its administrator.
        env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home, PRACTICE_DESK_PASSWORD="reader's pass")
        desk = subprocess.Popen([sys.argv[1], "--demo", "--database", os.path.join(home, "practice.sqlite"),
                                 "--today", "11/23/2026", "--user", "reader"], env=env)
        try:
            app = wait_for("the desk on the accessibility bus", desk_application)
            table = wait_for(f"the table \"{COLUMN}\"",
                             lambda: find(app, lambda n: n.getRole() == pyatspi.ROLE_TABLE and n.name == COLUMN))
            item = find(table, lambda n: n.name == APPOINTMENT)
            if item is None:
                sys.exit(f"no part of \"{COLUMN}\" is named \"{APPOINTMENT}\"")
            print(f"found \"{item.name}\" ({item.getRoleName()}) in \"{table.name}\"")

            table.queryComponent().grabFocus()
            wait_for("the focus on the column", lambda: table.getState().contains(pyatspi.STATE_FOCUSED))
            press(0xFF50)  # Home: the start of business hours
            first = wait_for("a focused cell", lambda: focused_part(table))
            press(0xFF54)  # Down
            second = wait_for("the focus on the next cell", lambda: (focused_part(table) or first) != first and
                              focused_part(table))
            print(f"Home, then Down: \"{first}\" -> \"{second}\"")
            if first != "8:00 AM, free" and not first.startswith("Ada Byron"):
                sys.exit(f"Home focused \"{first}\"")
            if second != "8:15 AM, free":
                sys.exit(f"Down focused \"{second}\", not \"8:15 AM, free\"")
        finally:
            desk.terminate()
            try:
                desk.wait(10)
            except subprocess.TimeoutExpired:
                desk.kill()


if __name__ == "__main__":
    main()
