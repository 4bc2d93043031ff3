"""Draws the pictures of the control window for the documentation.

    torvel-host --batch --plugin <control_probe> --script tools/pictures/controls.py -- docs/images

<control_probe> is the library that the tests build; its command opens the window, which the shipped
plug-in does not register.
"""
import os
import sys

import maya.cmds as cmds
from PySide2 import QtWidgets

TABS = ("settings", "simply", "advance", "assembly")


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
    cmds.controlProbe()
    window = [w for w in QtWidgets.QApplication.allWidgets() if w.objectName() == "ControlWindow"][-1]
    window.resize(630, 420)
    settle()
    tabs = window.findChild(QtWidgets.QTabWidget, "tabWid_leftPanel")
    for index, name in enumerate(TABS):
        tabs.setCurrentIndex(index)
        settle()
        picture(window, folder, "control_%s.png" % name)
    area = window.findChild(QtWidgets.QScrollArea, "scrollArea")
    area.setMinimumHeight(214)
    area.setMaximumHeight(214)
    settle()
    picture(area.widget(), folder, "control_palette.png")
    window.close()
    settle()


main(sys.argv[1] if len(sys.argv) > 1 else os.path.join("docs", "images"))
