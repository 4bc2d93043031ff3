"""Freezes the knee of each rig with the plug-in's own window and says what happened to the skin.

    torvel-host --batch --script tools/demo/show_freeze.py -- scenes/leg.ma [rig.ma ...]

Each rig is done twice: the chosen joint alone, then with "All Hierarchy". The knee is taken where there
is one, else the first influence that is no top joint. A picture of the window goes to
build/pictures/window.png. A rig that cannot be done is told in its row; the script fails at the end then.
"""
import json
import os
import sys
import time

import maya.cmds as cmds
from PySide2 import QtWidgets

TITLES = ("rig", "scope", "joints", "frozen", "vertices", "clusters", "largest move", "of size", "weights", "ms")
PICTURE = os.path.join("build", "pictures", "window.png")


def main_window():
    for widget in QtWidgets.QApplication.topLevelWidgets():
        if widget.objectName() == "MayaWindow":
            return widget
    raise RuntimeError("there is no main window")


def open_tool():
    """Clicks the menu item as a person would; returns the window."""
    main = main_window()  # kept: PySide2 lets go of a child together with its parent's wrapper
    menu = main.findChild(QtWidgets.QMenu, "TorvelPlugin")
    if menu is None:
        raise RuntimeError("the plug-in's menu is missing")
    for action in menu.actions():
        if action.text() == "Skeleton Configuration":
            action.trigger()
    QtWidgets.QApplication.processEvents()
    for widget in QtWidgets.QApplication.allWidgets():
        if widget.objectName() == "SkeletonWindow":
            return widget
    raise RuntimeError("the window did not open")


def influences():
    """Joints that a skin cluster listens to, in their order, each once."""
    found = []
    for cluster in cmds.ls(type="skinCluster"):
        for joint in cmds.listConnections(cluster + ".matrix", source=True, destination=False) or []:
            if joint not in found and cmds.nodeType(joint) == "joint":
                found.append(joint)
    return found


def choose_joint():
    knees = cmds.ls("knee", type="joint")
    if len(knees) == 1:
        return knees[0]
    joints = influences() or cmds.ls(type="joint")
    for joint in joints:
        parent = cmds.listRelatives(joint, parent=True, fullPath=True) or []
        if parent and cmds.nodeType(parent[0]) == "joint":
            return joint
    if joints:
        return joints[0]
    raise RuntimeError("no joints")


def top_joint(joint):
    path = cmds.ls(joint, long=True)[0]
    while True:
        parent = cmds.listRelatives(path, parent=True, fullPath=True) or []
        if not parent or cmds.nodeType(parent[0]) != "joint":
            return path
        path = parent[0]


def scope_of(path, everything):
    if not everything:
        return [path]
    top = top_joint(path)
    below = cmds.listRelatives(top, allDescendents=True, type="joint", fullPath=True) or []
    return [top] + below


def is_frozen(joint):
    return cmds.objExists(joint) and all(abs(cmds.getAttr(joint + ".rotate" + axis)) < 1e-6 for axis in "XYZ")


def compare(state):
    rows = json.loads(cmds.hostState(compare=state))["rows"]
    return {row["what"]: row for row in rows}


def weights_verdict(row):
    if row["gone"] or row["come"] or row["largest"] is None:
        return "CHANGED"
    return "identical" if row["largest"] == 0 else "to %.1g" % row["largest"]


def click(window, everything):
    window.findChild(QtWidgets.QCheckBox, "cBox_allHierarchy").setChecked(everything)
    button = window.findChild(QtWidgets.QPushButton, "btn_freezeRot")
    began = time.perf_counter()
    button.click()
    return (time.perf_counter() - began) * 1000.0


def grab(window):
    os.makedirs(os.path.dirname(PICTURE), exist_ok=True)
    window.grab().save(PICTURE)


def freeze(rig, everything):
    """One row of the table."""
    cmds.file(os.path.abspath(rig), open=True, force=True)
    joint = cmds.ls(choose_joint(), long=True)[0]
    scope = scope_of(joint, everything)
    window = open_tool()
    try:
        cmds.hostState(remember="rig")
        cmds.select(joint)
        print("== %s: %s, %s" % (os.path.basename(rig), joint, "all hierarchy" if everything else "this joint"))
        sys.stdout.flush()
        spent = click(window, everything)
        grab(window)
    finally:
        window.close()
        QtWidgets.QApplication.processEvents()
    rows = compare("rig")
    cmds.hostState(forget="rig")
    return report(rig, everything, scope, rows, spent)


def report(rig, everything, scope, rows, spent):
    points = rows["points"]
    move, size = points["largest"], points["size"]
    frozen = sum(1 for each in scope if is_frozen(each))
    return (
        os.path.basename(rig), "all" if everything else "one", str(len(cmds.ls(type="joint"))),
        "%d of %d" % (frozen, len(scope)), str(points["before"]), str(len(cmds.ls(type="skinCluster"))),
        "?" if move is None else "%.3g" % move, "%.1g" % (move / size) if move is not None and size else "-",
        weights_verdict(rows["weights"]) if rows["weights"]["before"] else "no skin", "%.1f" % spent,
    )


def print_table(rows):
    table = [TITLES] + rows
    widths = [max(len(row[i]) for row in table if len(row) > 2) for i in range(len(TITLES))]
    for row in table:
        if len(row) == 2:
            print("%-*s  %s" % (widths[0], row[0], row[1]))
        else:
            print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())


def main(rigs):
    rows, failures = [], 0
    for rig in rigs:
        for everything in (False, True):
            try:
                rows.append(freeze(rig, everything))
            except Exception as error:  # told in the rig's row; the next rig goes on
                rows.append((os.path.basename(rig), "FAILED: " + (str(error).strip() or type(error).__name__)))
                failures += 1
                break
    print()
    print_table(rows)
    if os.path.exists(PICTURE):
        print("\nThe window: " + PICTURE)
    sys.stdout.flush()
    if failures:
        raise RuntimeError("%d of %d rigs could not be done" % (failures, len(rigs)))


main(sys.argv[1:] or [os.path.join("scenes", "leg.ma")])
