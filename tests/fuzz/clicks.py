"""Clicks at random in the plug-in's windows, over the sample rigs.

    torvel-host --batch --script tests/fuzz/clicks.py -- SCENES SECONDS SEED

SCENES is the folder of the sample rigs. Every button, box, list and text of the windows is used, with
random selections, and now and then the rig is edited behind the windows' back. Nothing may crash; what
is saved afterwards opens again and is saved as the same text. Stops with an error that names the seed
and the step.
"""
import os
import random
import sys
import tempfile
import time

import maya.cmds as cmds
from PySide2 import QtCore, QtWidgets

WINDOWS = ("torvel_skeleton", "torvel_twist", "torvel_renameUI")
TEXTS = ("", "a", "L_", "x y", "*", "joint1", "é", "|", "very" * 30, "1", "#")


def tool_windows():
    """What the plug-in's commands opened: every visible window but the desktop itself."""
    return [w for w in QtWidgets.QApplication.topLevelWidgets()
            if w.isVisible() and w.objectName() != "MayaWindow"]


def select_something(rng):
    nodes = cmds.ls(type="transform") + cmds.ls(type="joint") + cmds.ls(type="mesh")
    cmds.select(clear=True)
    if nodes and rng.random() < 0.9:
        cmds.select(rng.sample(nodes, rng.randint(1, min(3, len(nodes)))), replace=True)


def use_widget(rng):
    windows = tool_windows()
    if not windows:
        return open_window(rng)
    kinds = (QtWidgets.QAbstractButton, QtWidgets.QComboBox, QtWidgets.QLineEdit, QtWidgets.QSpinBox,
             QtWidgets.QDoubleSpinBox, QtWidgets.QTabWidget)
    widgets = [w for kind in kinds for w in rng.choice(windows).findChildren(kind) if w.isEnabled()]
    if not widgets:
        return None
    widget = rng.choice(widgets)
    if isinstance(widget, QtWidgets.QAbstractButton):
        widget.click()
    elif isinstance(widget, QtWidgets.QLineEdit):
        widget.setText(rng.choice(TEXTS))
    elif isinstance(widget, (QtWidgets.QComboBox, QtWidgets.QTabWidget)):
        widget.setCurrentIndex(rng.randint(-1, max(0, widget.count() - 1)))
    else:
        widget.setValue(rng.choice((-5, 0, 1, 3, 9)))
    return widget.objectName()


def open_window(rng):
    name = rng.choice(WINDOWS)
    getattr(cmds, name)()
    return name


def edit_behind(rng):
    """An edit as another script would make it; failures are its own affair."""
    joints = cmds.ls(type="joint", long=True)
    if not joints:
        return None
    joint = rng.choice(joints)
    edits = (lambda: cmds.delete(joint), lambda: cmds.rename(joint, rng.choice(("a", "knee", "n1"))),
             lambda: cmds.setAttr(joint + ".rotateX", rng.uniform(-180, 180)),
             lambda: cmds.setAttr(joint + ".rotateY", lock=rng.random() < 0.5),
             lambda: cmds.parent(joint, world=True), lambda: cmds.duplicate(joint),
             lambda: cmds.delete(cmds.ls(type="skinCluster")), lambda: cmds.parent(joint, rng.choice(joints)),
             lambda: cmds.file(new=True, force=True))
    number = rng.randrange(len(edits))
    try:
        edits[number]()
    except (RuntimeError, ValueError, TypeError):
        pass
    return f"edit {number} of {joint}"


def close_something(rng):
    for window in tool_windows()[:1]:
        window.close()
    QtCore.QCoreApplication.sendPostedEvents(None, QtCore.QEvent.DeferredDelete)


def expect_stable(folder):
    texts = []
    for name in ("one.ma", "two.ma"):
        path = os.path.join(folder, name)
        cmds.file(rename=path)
        cmds.file(save=True, type="mayaAscii")
        with open(path, encoding="utf-8") as file:
            texts.append(file.read())
        cmds.file(path, open=True, force=True)
    if texts[0] != texts[1]:
        raise AssertionError("saved twice, two texts")


def run(scenes, seconds, seed, folder):
    end, step, rng = time.time() + seconds, 0, random.Random(seed)
    rigs = sorted(name for name in os.listdir(scenes) if name.endswith(".ma"))
    while time.time() < end:
        rig = rng.choice(rigs)
        cmds.file(os.path.join(scenes, rig), open=True, force=True)
        for _ in range(rng.randint(5, 40)):
            step += 1
            act = rng.choices((select_something, use_widget, edit_behind, open_window, close_something),
                              (4, 12, 2, 1, 1))[0]
            try:
                act(rng)
                QtWidgets.QApplication.processEvents()
            except Exception as error:
                raise RuntimeError(f"seed {seed}, step {step} on {rig}: {error!r}") from error
        expect_stable(folder)
    print(f"{step} steps, seed {seed}: nothing found")


with tempfile.TemporaryDirectory() as place:
    run(sys.argv[1], float(sys.argv[2]), int(sys.argv[3]), place)
