"""Draws what the tools of the skeleton window do to the leg, before and after each.

    torvel-host --batch --script tools/pictures/tools.py -- docs/images scenes/leg.ma

The axes are those in which a joint's rotate channels turn. Grey, for Freeze Rotations: where the joints would
stand with all rotate channels at zero; for Reset Bind Pose: where the bind pose is.
"""
import os
import sys

import maya.cmds as cmds
from PySide2 import QtWidgets

SIZE = (400, 440)
GREY = "grey"


def settle():
    for _ in range(3):
        QtWidgets.QApplication.processEvents()


def open_window():
    main = [w for w in QtWidgets.QApplication.topLevelWidgets() if w.objectName() == "MayaWindow"][0]
    menu = main.findChild(QtWidgets.QMenu, "TorvelPlugin")
    for action in menu.actions():
        if action.text() == "Skeleton Configuration":
            action.trigger()
    settle()
    return [w for w in QtWidgets.QApplication.allWidgets() if w.objectName() == "SkeletonWindow"][0]


class Clicks:
    """The window of the tools, and the buttons in it by their object names."""

    def __init__(self):
        self.window = open_window()

    def __call__(self, *names):
        for name in names:
            self.window.findChild(QtWidgets.QAbstractButton, name).click()
            settle()

    def tick(self, name, on):
        self.window.findChild(QtWidgets.QCheckBox, name).setChecked(on)

    def close(self):
        self.window.close()
        settle()


def joints():
    """Their full paths: the copy in grey bears the same names."""
    return cmds.ls("|hip", "|hip|knee", "|hip|knee|ankle", "|hip|knee|ankle|toe", long=True)


def add_axes():
    """Transforms below the joints that stand as the rotate channels do: without the rotate axis."""
    made = []
    for joint in joints():
        turn = cmds.ls(cmds.createNode("transform", name="axes", parent=joint, skipSelect=True), long=True)[0]
        angles = cmds.getAttr(joint + ".rotateAxis")[0]
        if any(abs(angle) > 1e-9 for angle in angles):
            cmds.setAttr(turn + ".rotateOrder", 5)  # zyx with the angles reversed undoes xyz
            cmds.setAttr(turn + ".rotate", *[-angle for angle in angles])
        cmds.setAttr(turn + ".displayLocalAxis", True)
        made.append(turn)
    return made


def add_grey(pose):
    """A copy in grey of the skeleton as it stands after `pose`; the skeleton itself stays where it is."""
    pose_of = {joint: cmds.getAttr(joint + ".rotate")[0] for joint in joints()}
    pose()
    copy = cmds.duplicate("hip", returnRootsOnly=True, name=GREY)[0]
    for joint, angles in pose_of.items():
        cmds.setAttr(joint + ".rotate", *angles)
    cmds.setAttr(copy + ".overrideEnabled", True)
    cmds.setAttr(copy + ".overrideDisplayType", 1)
    return [copy]


def all_to_zero():
    for joint in joints():
        cmds.setAttr(joint + ".rotate", 0, 0, 0)


def to_bind_pose():
    cmds.dagPose("hip", restore=True, bindPose=True)


def picture(folder, name, extras=lambda: []):
    selected = cmds.ls(selection=True, long=True)
    made = extras()
    cmds.select(selected, replace=True) if selected else cmds.select(clear=True)
    path = os.path.join(folder, name)
    cmds.hostRender("leg", file=path, size=SIZE)
    if made:
        cmds.delete(made)
    cmds.select(selected, replace=True) if selected else cmds.select(clear=True)
    print(path)


def both(folder, tool, scene, choose, act, extras=lambda: []):
    """The pictures of one tool: `choose` prepares the scene and the selection, `act` clicks."""
    cmds.file(scene, open=True, force=True)
    choose()
    clicks = Clicks()
    try:
        picture(folder, tool + "_before.png", extras)
        act(clicks)
        picture(folder, tool + "_after.png", extras)
    finally:
        clicks.close()


def freeze(clicks):
    clicks.tick("cBox_allHierarchy", True)
    clicks("btn_freezeRot")


def orient(clicks):
    clicks.tick("cBox_orientChld", True)
    clicks("rad_primY", "rad_secX", "btn_OrientJoints")


def flip(clicks):
    clicks("rad_primX", "rad_secY", "btn_flipOrient")


def display(clicks):
    clicks("btn_showAxis", "btn_drawJoint", "btn_plusRadius")


def bend():
    cmds.setAttr("knee.rotateZ", cmds.getAttr("knee.rotateZ") - 45)
    cmds.select("knee")


def main(folder, scene):
    os.makedirs(folder, exist_ok=True)
    scene = os.path.abspath(scene)
    both(folder, "freeze_rotations", scene, lambda: cmds.select("hip"), freeze, lambda: add_grey(all_to_zero))
    both(folder, "orient_joints", scene, lambda: cmds.select("knee"), orient, add_axes)
    both(folder, "flip_orientation", scene, lambda: cmds.select("knee", "ankle"), flip, add_axes)
    both(folder, "display_tools", scene, lambda: cmds.select("knee", "ankle"), display)
    both(folder, "reset_bind_pose", scene, bend, lambda clicks: clicks("btn_resetBndPose"),
         lambda: add_grey(to_bind_pose))


main(*(sys.argv[1:] or (os.path.join("docs", "images"), os.path.join("scenes", "leg.ma"))))
