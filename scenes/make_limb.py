"""Makes scenes/limb.ma: a bound limb whose joints are moved by controls, one kind of constraint at each joint, and whose
last two are linked by their rotations.

    torvel-host --batch --no-plugin --script scenes/make_limb.py -- scenes/limb.ma
"""
import sys

import maya.cmds as cmds

from limb import make_limb

# Name, translation, joint orientation, rotation (degrees). X runs along each bone.
# The tip's x and z rotations are the hand's x and y, to which they are linked.
JOINTS = (
    ("shoulder", (0.0, 14.0, 0.0), (0.0, 0.0, -20.0), (5.0, -10.0, 8.0)),
    ("upper", (3.0, 0.0, 0.0), (0.0, 0.0, -35.0), (10.0, 6.0, -4.0)),
    ("elbow", (7.0, 0.0, 0.0), (0.0, 20.0, 0.0), (0.0, 15.0, 12.0)),
    ("forearm", (3.0, 0.0, 0.0), (0.0, 0.0, 0.0), (-8.0, 3.0, 5.0)),
    ("wrist", (3.5, 0.0, 0.0), (0.0, 0.0, 15.0), (4.0, -6.0, 9.0)),
    ("hand", (2.0, 0.0, 0.0), (10.0, 0.0, 0.0), (6.0, -9.0, 4.0)),
    ("tip", (2.0, 0.0, 0.0), (0.0, 0.0, 0.0), (6.0, 0.0, -9.0)),
)


def control(name, position, rotation=(0.0, 0.0, 0.0)):
    cmds.createNode("transform", name=name, parent="controls", skipSelect=True)
    cmds.createNode("locator", name=name + "Shape", parent=name, skipSelect=True)
    cmds.setAttr(name + ".translate", *position)
    cmds.setAttr(name + ".rotate", *rotation)


def place(joint, x=0.0, y=0.0, z=0.0):
    at = cmds.xform(joint, query=True, worldSpace=True, translation=True)
    return at[0] + x, at[1] + y, at[2] + z


def add_controls():
    cmds.createNode("transform", name="controls", skipSelect=True)
    control("ctrl_body", place("shoulder", -2.0, 1.0), (0.0, 25.0, 0.0))
    control("ctrl_aim", place("upper", 9.0, -4.0, 3.0))
    # Straight above the joint, where its world up direction and the scene's are one.
    control("ctrl_up", place("upper", 0.0, 8.0))
    control("ctrl_elbow", place("elbow", 0.0, 2.0, -1.0))
    control("ctrl_a", place("forearm", 0.0, 3.0), (10.0, 20.0, 30.0))
    control("ctrl_b", place("forearm", 0.0, -3.0), (-15.0, 5.0, 12.0))
    control("ctrl_scale", place("forearm", 0.0, 4.0))
    control("ctrl_grip", place("wrist", 5.0, 1.0, -2.0))


def add_constraints():
    cmds.parentConstraint("ctrl_body", "shoulder", maintainOffset=True)
    cmds.aimConstraint("ctrl_aim", "upper", maintainOffset=True, aimVector=(0, 0, 1), upVector=(1, 0, 0),
                       worldUpType="object", worldUpObject="ctrl_up")
    cmds.pointConstraint("ctrl_elbow", "elbow", maintainOffset=True)
    cmds.orientConstraint("ctrl_a", "ctrl_b", "forearm", maintainOffset=True)
    cmds.scaleConstraint("ctrl_scale", "forearm", maintainOffset=True)
    cmds.aimConstraint("ctrl_grip", "wrist", maintainOffset=True)


def add_links():
    for above, below in zip(JOINTS, JOINTS[1:]):
        cmds.connectAttr(above[0] + ".scale", below[0] + ".inverseScale")
    cmds.connectAttr("hand.rotateX", "tip.rotateX")
    cmds.connectAttr("hand.rotateY", "tip.rotateZ")
    cmds.createNode("multiplyDivide", name="reading", skipSelect=True)
    cmds.connectAttr("hand.rotateZ", "reading.input1X")


def main(target):
    make_limb(target, "skin", JOINTS, radii=(2.2, 1.9, 1.5, 1.3, 1.0, 0.9, 0.5), rings=60, around=24)
    add_controls()
    add_constraints()
    add_links()
    cmds.select(clear=True)
    cmds.file(save=True, type="mayaAscii")


main(sys.argv[1] if len(sys.argv) > 1 else "scenes/limb.ma")
