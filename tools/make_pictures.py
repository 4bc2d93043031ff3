"""Draws the pictures of the documentation anew.

    torvel-host --batch scenes/leg.ma --script tools/make_pictures.py -- docs/images
"""
import os
import sys

import maya.cmds as cmds
from PySide2 import QtWidgets

# File name and the menu item that opens the window.
TOOLS = (
    ("skeleton.png", "Skeleton Configuration"),
    ("twist.png", "Twist Bones"),
    ("rename.png", "Rename"),
)


def top_widgets():
    return [w for w in QtWidgets.QApplication.allWidgets() if w.isWindow() and w.isVisible()]


def settle():
    for _ in range(5):
        QtWidgets.QApplication.processEvents()


def picture(widget, folder, name):
    path = os.path.join(folder, name)
    if not widget.grab().save(path):
        raise RuntimeError("cannot write " + path)
    print(path)


def main(folder):
    os.makedirs(folder, exist_ok=True)
    window = [w for w in QtWidgets.QApplication.topLevelWidgets() if w.objectName() == "MayaWindow"][0]
    window.resize(1100, 720)
    window.show()
    if cmds.ls("knee", type="joint"):
        cmds.select("knee")
    settle()
    picture(window, folder, "window.png")
    menu = window.findChild(QtWidgets.QMenu, "TorvelPlugin")
    for name, label in TOOLS:
        before = set(top_widgets())
        for action in menu.actions():
            if action.text() == label:
                action.trigger()
        settle()
        for made in top_widgets():
            if made not in before:
                picture(made, folder, name)
                made.close()
        settle()
    window.hide()


main(sys.argv[1] if len(sys.argv) > 1 else os.path.join("docs", "images"))
