#!/usr/bin/env python3
"""Compares the commands and options in the manual of kestrel-cli with those of the program.

Usage: tools/check_manual.py CLI_PROGRAM

Prints what only one of the two knows, and exits with 1 when there is any.
"""

import pathlib
import re
import subprocess
import sys

MANUAL = pathlib.Path(__file__).resolve().parent.parent / "packaging/man/kestrel-cli.1"


def help_text(*command):
    return subprocess.run([*command, "--help"], capture_output=True, text=True, check=True).stdout


def long_options(text):
    return set(re.findall(r"--[a-z][a-z-]+", text))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    cli = sys.argv[1]
    overview = help_text(cli)
    commands = set(re.findall(r"^  ([a-z][a-z-]*) ", overview.partition("Subcommands:")[2], re.MULTILINE))
    # An option is an option where a line of help begins with it, not where a sentence names it.
    options = set()
    for text in [overview, *(help_text(cli, command) for command in sorted(commands))]:
        for line in text.splitlines():
            if match := re.match(r"  (-\w,)?--[a-z-]+", line):
                options |= long_options(match[0])

    manual = MANUAL.read_text()
    documented_commands = set(re.findall(r"^\.It Cm ([a-z][a-z-]*)", manual, re.MULTILINE))
    documented_options = {"--" + name for name in re.findall(r"\\-([a-z][a-z-]+)", manual)}

    faults = 0
    for what, ours, theirs in [("command", documented_commands, commands),
                               ("option", documented_options, options)]:
        if not theirs:
            sys.exit(f"check_manual: found no {what} in the help of {cli}")
        for name in sorted(ours ^ theirs):
            side = "the manual" if name in ours else "the program"
            print(f"{what} {name}: only in {side}")
            faults += 1
    print(f"{len(commands)} commands and {len(options)} options compared")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
