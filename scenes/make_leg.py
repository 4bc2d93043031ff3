"""Makes scenes/leg.ma: a leg of four joints that carry rotations while it is bound to its mesh.

    torvel-host --batch --no-plugin --script scenes/make_leg.py -- scenes/leg.ma
"""
import math
import os
import sys
import tempfile

import maya.cmds as cmds

# Name, translation, joint orientation, rotation (degrees). X runs along each bone.
JOINTS = (
    ("hip", (2.0, 18.0, 0.0), (0.0, 0.0, -90.0), (8.0, 12.0, 14.0)),
    ("knee", (8.0, 0.0, 0.0), (0.0, 0.0, 5.0), (0.0, -6.0, -38.0)),
    ("ankle", (8.0, 0.0, 0.0), (0.0, 0.0, 55.0), (4.0, 10.0, 16.0)),
    ("toe", (3.6, 0.0, 0.0), (0.0, 0.0, 10.0), (2.0, -3.0, 6.0)),
)
RADII = (2.4, 1.5, 0.95, 0.6)
RINGS = 72
AROUND = 40


def make_joints():
    """The chain, bent; returns the joints' world positions."""
    parent = None
    for name, translation, orientation, rotation in JOINTS:
        joint = cmds.createNode("joint", name=name, parent=parent) if parent else cmds.createNode("joint", name=name)
        cmds.setAttr(joint + ".translate", *translation)
        cmds.setAttr(joint + ".jointOrient", *orientation)
        cmds.setAttr(joint + ".rotate", *rotation)
        cmds.setAttr(joint + ".segmentScaleCompensate", True)
        parent = joint
    return [cmds.xform(row[0], query=True, worldSpace=True, translation=True) for row in JOINTS]


def add(a, b, factor=1.0):
    return [x + factor * y for x, y in zip(a, b)]


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return [x / length for x in a]


def cross(a, b):
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]]


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def on_curve(points, at):
    """A smooth curve through the points; `at` runs from 0 to their number less one."""
    i = min(int(at), len(points) - 2)
    t = at - i
    p1, p2 = points[i], points[i + 1]
    p0 = points[i - 1] if i else add(add(p1, p1), p2, -1.0)
    p3 = points[i + 2] if i + 2 < len(points) else add(add(p2, p2), p1, -1.0)
    return [
        0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t + (3 * b - a - 3 * c + d) * t ** 3)
        for a, b, c, d in zip(p0, p1, p2, p3)
    ]


def tube(points):
    """Rings around the curve, each turned as little as possible against the one before."""
    last = len(points) - 1
    vertices = []
    side = [1.0, 0.0, 0.0]
    for ring in range(RINGS):
        at = last * ring / (RINGS - 1)
        centre = on_curve(points, at)
        along = unit(add(on_curve(points, min(at + 1e-3, last)), on_curve(points, max(at - 1e-3, 0)), -1.0))
        side = unit(add(side, along, -dot(side, along)))
        up = cross(along, side)
        i = min(int(at), last - 1)
        radius = RADII[i] + (RADII[i + 1] - RADII[i]) * (at - i)
        for k in range(AROUND):
            angle = 2 * math.pi * k / AROUND
            vertices.append(add(add(centre, side, radius * math.cos(angle)), up, radius * math.sin(angle)))
    return vertices


def mesh_text(vertices):
    """The tube as a mesh node of a scene file, open at both ends."""
    def vertex(ring, k):
        return ring * AROUND + k % AROUND

    rounds = [(vertex(r, k), vertex(r, k + 1)) for r in range(RINGS) for k in range(AROUND)]
    lengths = [(vertex(r, k), vertex(r + 1, k)) for r in range(RINGS - 1) for k in range(AROUND)]
    faces = []
    for r in range(RINGS - 1):
        for k in range(AROUND):
            near, far = r * AROUND + k, (r + 1) * AROUND + k
            left = len(rounds) + r * AROUND + k
            right = len(rounds) + r * AROUND + (k + 1) % AROUND
            faces.append("f 4 %d %d %d %d" % (near, right, -far - 1, -left - 1))
    edges = rounds + lengths
    lines = ['createNode transform -n "leg";', 'createNode mesh -n "legShape" -p "leg";', '\tsetAttr -k off ".v";']
    lines.append('\tsetAttr -s %d ".vt[0:%d]"' % (len(vertices), len(vertices) - 1))
    lines += ["\t\t%.6g %.6g %.6g" % tuple(v) for v in vertices]
    lines.append('\t\t;\n\tsetAttr -s %d ".ed[0:%d]"' % (len(edges), len(edges) - 1))
    lines += ["\t\t%d %d 0" % edge for edge in edges]
    lines.append('\t\t;\n\tsetAttr -s %d ".fc[0:%d]" -type "polyFaces"' % (len(faces), len(faces) - 1))
    lines += ["\t\t" + face for face in faces]
    lines.append("\t\t;")
    return "\n".join(lines) + "\n"


def main(target):
    cmds.file(new=True, force=True)
    positions = make_joints()
    head = '//Maya ASCII 2024 scene\nrequires maya "2024";\ncurrentUnit -l centimeter -a degree -t film;\n'
    folder = tempfile.mkdtemp()
    source = os.path.join(folder, "mesh.ma")
    try:
        with open(source, "w") as out:
            out.write(head + mesh_text(tube(positions)) + "// End of mesh.ma\n")
        cmds.file(source, open=True, force=True)
    finally:
        os.remove(source)
        os.rmdir(folder)
    make_joints()
    cmds.skinCluster("hip", "knee", "ankle", "toe", "leg", toSelectedBones=True, bindMethod=0, skinMethod=0,
                     normalizeWeights=1, maximumInfluences=3, dropoffRate=4.0)
    cmds.select(clear=True)
    cmds.file(rename=os.path.abspath(target))
    cmds.file(save=True, type="mayaAscii")
    print("%s: %d vertices, %d joints" % (target, RINGS * AROUND, len(JOINTS)))


main(sys.argv[1] if len(sys.argv) > 1 else "scenes/leg.ma")
