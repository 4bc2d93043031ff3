"""Draws what the systems of the control window build on the arm, before and after each, and with the controls moved.

    torvel-host --batch --plugin <control_probe> --script tools/pictures/systems.py -- docs/images scenes

<control_probe> is the library that the tests build; its command opens the window, which the shipped
plug-in does not register.
"""
import os
import sys

import maya.cmds as cmds
from PySide2 import QtWidgets

SIZE = (560, 460)


def settle():
    for _ in range(3):
        QtWidgets.QApplication.processEvents()


class Clicks:
    """A new control window, and the buttons in it by their object names."""

    def __init__(self):
        cmds.controlProbe()
        settle()
        self.window = [w for w in QtWidgets.QApplication.allWidgets() if w.objectName() == "ControlWindow"][-1]

    def __call__(self, *names):
        for name in names:
            self.window.findChild(QtWidgets.QAbstractButton, name).click()
            settle()

    def close(self):
        self.window.close()
        settle()


def picture(folder, name, frame):
    """Framed on the nodes that `frame` names, or on the whole scene."""
    cmds.select(clear=True)
    path = os.path.join(folder, name + ".png")
    cmds.hostRender(*frame, file=path, size=SIZE)
    print(path)


def pictures(folder, tool, scene, selection, buttons, move, frame, prepare=None):
    """Before the click, after it, and after `move` has moved the controls; of a prepared scene no first one."""
    cmds.file(scene, open=True, force=True)
    clicks = Clicks()
    try:
        if prepare:
            prepare()
        else:
            picture(folder, tool + "_before", frame)
        cmds.select(selection)
        clicks(*buttons)
        picture(folder, tool + "_after", frame)
        if move:
            move()
            picture(folder, tool + "_moved", frame)
    finally:
        clicks.close()


def turn_fk():
    cmds.setAttr("shoulder_FK_ctrl.rotateZ", 25)
    cmds.setAttr("elbow_FK_ctrl.rotateY", -55)
    cmds.setAttr("wrist_FK_ctrl.rotateZ", 30)


def move_ik():
    cmds.move(-5, 4, 2, "wrist_IK_ctrl", relative=True, worldSpace=True)


def main(folder, scenes):
    os.makedirs(folder, exist_ok=True)
    arm = os.path.abspath(os.path.join(scenes, "arm.ma"))
    leg = os.path.abspath(os.path.join(scenes, "leg.ma"))
    pictures(folder, "fk", arm, ["clavicle", "shoulder", "elbow", "wrist"], ["btn_FKsystem"], turn_fk, ["arm"])
    pictures(folder, "ik", arm, ["shoulder", "wrist"], ["btn_IKsystem"], move_ik, [])
    pictures(folder, "fkik", arm, ["shoulder", "wrist"], ["btn_FKIKSystem"], None, [])
    pictures(folder, "fkik_top", arm, ["shoulder", "wrist"], ["btn_FKIKSystem"], None, [],
             lambda: cmds.parent("shoulder", world=True))
    pictures(folder, "foot_roll", leg, ["ankle"], ["btn_footRoll"], None, ["leg"])


main(*(sys.argv[1:] or (os.path.join("docs", "images"), "scenes")))
