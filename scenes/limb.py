"""Builds a limb of our own scenes: a chain of joints and a tube around it, bound to them. The scripts beside it use it."""
import math
import os
import tempfile

import maya.cmds as cmds

HEAD = '//Maya ASCII 2024 scene\nrequires maya "2024";\ncurrentUnit -l centimeter -a degree -t film;\n'


def make_joints(rows):
    """A chain of the rows (name, translation, joint orientation, rotation in degrees); gives their world positions."""
    parent = None
    for name, translation, orientation, rotation in rows:
        joint = cmds.createNode("joint", name=name, parent=parent) if parent else cmds.createNode("joint", name=name)
        cmds.setAttr(joint + ".translate", *translation)
        cmds.setAttr(joint + ".jointOrient", *orientation)
        cmds.setAttr(joint + ".rotate", *rotation)
        cmds.setAttr(joint + ".segmentScaleCompensate", True)
        parent = joint
    return [cmds.xform(row[0], query=True, worldSpace=True, translation=True) for row in rows]


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


def tube(points, radii, rings, around):
    """Vertices in rings around the curve, each turned as little as possible against the one before."""
    last = len(points) - 1
    vertices = []
    side = [1.0, 0.0, 0.0]
    for ring in range(rings):
        at = last * ring / (rings - 1)
        centre = on_curve(points, at)
        along = unit(add(on_curve(points, min(at + 1e-3, last)), on_curve(points, max(at - 1e-3, 0)), -1.0))
        side = unit(add(side, along, -dot(side, along)))
        up = cross(along, side)
        i = min(int(at), last - 1)
        radius = radii[i] + (radii[i + 1] - radii[i]) * (at - i)
        for k in range(around):
            angle = 2 * math.pi * k / around
            vertices.append(add(add(centre, side, radius * math.cos(angle)), up, radius * math.sin(angle)))
    return vertices


def mesh_text(name, vertices, rings, around):
    """The tube as a mesh node of a scene file, open at both ends."""
    def vertex(ring, k):
        return ring * around + k % around

    rounds = [(vertex(r, k), vertex(r, k + 1)) for r in range(rings) for k in range(around)]
    lengths = [(vertex(r, k), vertex(r + 1, k)) for r in range(rings - 1) for k in range(around)]
    faces = []
    for r in range(rings - 1):
        for k in range(around):
            near, far = r * around + k, (r + 1) * around + k
            left = len(rounds) + r * around + k
            right = len(rounds) + r * around + (k + 1) % around
            faces.append("f 4 %d %d %d %d" % (near, right, -far - 1, -left - 1))
    edges = rounds + lengths
    lines = ['createNode transform -n "%s";' % name, 'createNode mesh -n "%sShape" -p "%s";' % (name, name)]
    lines.append('\tsetAttr -k off ".v";')
    lines.append('\tsetAttr -s %d ".vt[0:%d]"' % (len(vertices), len(vertices) - 1))
    lines += ["\t\t%.6g %.6g %.6g" % tuple(v) for v in vertices]
    lines.append('\t\t;\n\tsetAttr -s %d ".ed[0:%d]"' % (len(edges), len(edges) - 1))
    lines += ["\t\t%d %d 0" % edge for edge in edges]
    lines.append('\t\t;\n\tsetAttr -s %d ".fc[0:%d]" -type "polyFaces"' % (len(faces), len(faces) - 1))
    lines += ["\t\t" + face for face in faces]
    lines.append("\t\t;")
    return "\n".join(lines) + "\n"


def make_limb(target, mesh, rows, radii, rings, around):
    """A new scene with the chain and the tube, radii[i] thick at rows[i], bound to it; saved as `target`."""
    cmds.file(new=True, force=True)
    vertices = tube(make_joints(rows), radii, rings, around)
    folder = tempfile.mkdtemp()
    source = os.path.join(folder, "mesh.ma")
    try:
        with open(source, "w") as out:
            out.write(HEAD + mesh_text(mesh, vertices, rings, around) + "// End of mesh.ma\n")
        cmds.file(source, open=True, force=True)
    finally:
        os.remove(source)
        os.rmdir(folder)
    make_joints(rows)
    joints = [row[0] for row in rows]
    cmds.skinCluster(*(joints + [mesh]), toSelectedBones=True, bindMethod=0, skinMethod=0, normalizeWeights=1,
                     maximumInfluences=3, dropoffRate=4.0)
    cmds.select(clear=True)
    cmds.file(rename=os.path.abspath(target))
    cmds.file(save=True, type="mayaAscii")
    print("%s: %d vertices, %d joints" % (target, len(vertices), len(rows)))
