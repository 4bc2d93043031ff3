#!/usr/bin/env python3
"""Writes docs/coverage.md from the tables of the host program.

    tools/generate/coverage.py [--program PATH] [--check]

--check only tells (exit 1) when the page is out of date.
"""
import argparse
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "coverage.md"
TEXT = "from maya import cmds\nimport sys\nsys.stdout.write(cmds.hostCoverage())"


def page_of(program):
    """The page as the program gives it."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    done = subprocess.run([program, "--batch", "--no-plugin", "--python", TEXT], env=environment,
                          stdout=subprocess.PIPE, check=True)
    text = done.stdout.decode("utf-8")
    return text[text.index("# What the host covers"):].rstrip("\n") + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--program", default=str(ROOT / "build" / "dev" / "host" / "app" / "torvel-host"))
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    page = page_of(options.program)
    if options.check:
        return 0 if PAGE.is_file() and PAGE.read_text(encoding="utf-8") == page else 1
    PAGE.write_text(page, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
