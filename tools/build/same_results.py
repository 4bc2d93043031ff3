#!/usr/bin/env python3
"""The same job gives the same bytes, whatever builds and runs it.

    tools/build/same_results.py REPORT.xml BUILD [BUILD ...]

Runs Freeze Rotations over the sample leg with each build's program: on one core and on all, under
other hash seeds and under locales with decimal commas and dotless i. The saved scene, the trace, the
comparison and the picture must be the same files everywhere. Writes a JUnit report of one case for
each way of running it.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parents[2]
JOB = ("import maya.cmds as cmds\ncmds.select('hip')\ncmds.torvel_skeleton()\n"
       "from PySide2 import QtWidgets\n"
       "window = [w for w in QtWidgets.QApplication.allWidgets() if w.objectName() == 'SkeletonWindow'][0]\n"
       "window.findChild(QtWidgets.QCheckBox, 'cBox_allHierarchy').setChecked(True)\n"
       "window.findChild(QtWidgets.QPushButton, 'btn_freezeRot').click()\n")
FILES = ("out.ma", "trace.jsonl", "verify.json", "picture.png")


def ways(locales):
    """Name and what it changes: environment, and the cores it may use."""
    yield "all cores", {}, None
    yield "one core", {}, {0}
    for seed in ("1", "4711"):
        yield f"hash seed {seed}", {"PYTHONHASHSEED": seed}, None
    for name in ("de_DE", "tr_TR"):
        yield name, {"LC_ALL": f"{name}.UTF-8", "LOCPATH": str(locales)}, None


def make_locales(folder):
    """The two locales, compiled from the system's sources; False where these are not installed."""
    for name in ("de_DE", "tr_TR"):
        done = subprocess.run(["localedef", "-i", name, "-f", "UTF-8", f"{folder}/{name}.UTF-8"],
                              capture_output=True, check=False)
        if done.returncode > 1:  # 1: warnings
            return False
    return True


def run(program, environment, cores):
    """The bytes of each file that the job writes."""
    with tempfile.TemporaryDirectory() as folder:
        base = {k: v for k, v in os.environ.items()
                if k not in ("DISPLAY", "WAYLAND_DISPLAY", "PYTHONHOME", "PYTHONPATH")}
        base.update(QT_QPA_PLATFORM="offscreen", HOME=folder, LC_ALL="C.UTF-8",
                    ASAN_OPTIONS="detect_leaks=0", PYTHONDONTWRITEBYTECODE="1")
        base.update(environment)
        done = subprocess.run(
            [program, "--batch", ROOT / "scenes/leg.ma", "--python", JOB, "--save", "out.ma",
             "--trace", "trace.jsonl", "--verify", "--verify-json", "verify.json", "--render",
             "picture.png"],
            cwd=folder, env=base, capture_output=True, text=True, timeout=300, check=False,
            preexec_fn=(lambda: os.sched_setaffinity(0, cores)) if cores else None)
        if done.returncode != 0:
            raise RuntimeError(f"exit code {done.returncode}: {done.stderr[-2000:]}")
        return {name: pathlib.Path(folder, name).read_bytes() for name in FILES}


def judge(program, environment, cores, wanted):
    """What is wrong, or an empty text; `wanted` is filled by the first good run."""
    try:
        got = run(program, environment, cores)
    except (RuntimeError, OSError, subprocess.TimeoutExpired) as error:
        return str(error)
    if not wanted:
        wanted.update(got)
    return ", ".join(f"{name} differs" for name in FILES if got[name] != wanted[name])


def main(report, builds):
    cases, wanted, failed = [], {}, False
    with tempfile.TemporaryDirectory() as locales:
        have = make_locales(locales)
        for build in builds:
            for name, environment, cores in ways(locales):
                case = f'<testcase classname="same_results" name="{escape(build)}, {name}"'
                if "LOCPATH" in environment and not have:
                    cases.append(f'{case}><skipped message="SKIP_NO_LOCALES"/></testcase>')
                    continue
                fault = judge(ROOT / build / "host/app/torvel-host", environment, cores, wanted)
                failed = failed or bool(fault)
                print(f"same results, {build}, {name}: {fault or 'the same'}")
                body = f'<failure message="{escape(fault[:500])}"/>' if fault else ""
                cases.append(f"{case}>{body}</testcase>")
    pathlib.Path(report).write_text("<testsuite>" + "\n".join(cases) + "</testsuite>\n", "utf-8")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
