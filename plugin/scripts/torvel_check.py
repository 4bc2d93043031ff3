"""What the tools of the skeleton window would lose, refuse or change on the rigs of the open scene.

    import torvel_check
    torvel_check.show()                    # a block of lines for each finding
    findings = torvel_check.check()        # [{"rule", "tools", "skeleton", "nodes", "text"}]
    binds = torvel_check.closing_binds()   # [{"skeleton", "mesh", "cluster", "does"}]

Nothing is edited. Skeletons come in the order of `ls`, findings in the order of RULES, nodes in the
order of the scene. Only documented calls of maya.cmds: it runs in Maya as in the open host.
Matrices are row-major and multiply points from the right, as getAttr gives them; lengths are world
units.
"""
import itertools
import json
import sys

import maya.cmds as cmds

EVERY_EDIT = "Freeze Rotations, Orient Joints, Flip Orientation"
PARKING_GROUP = "tempOldSkeletonGroup"
REBUILT = ("parentConstraint", "orientConstraint", "pointConstraint", "aimConstraint")
SHAPE_DATA = ("mesh", "nurbsCurve", "nurbsSurface", "lattice", "any")  # any: what a kept node takes
SHOWN_NODES = 8

IDENTITY = [float(i % 5 == 0) for i in range(16)]

# A point of the rig that moves by less than this part of the rig's size has not moved.
STILL = 1e-5


def leaf(node):
    return node.rsplit("|", 1)[-1]


def node_of(plug):
    return plug.split(".", 1)[0]


def index_of(plug):
    """Logical index of an element: 3 for "skin.matrix[3]"."""
    return int(plug[plug.rindex("[") + 1:plug.rindex("]")])


def unique(items):
    return list(dict.fromkeys(items))


class Links:
    """Connections of one direction, asked for in bulk and kept."""

    def __init__(self, downstream):
        self.downstream = downstream
        self.links = {}  # node -> [(own plug, other plug)]
        self.others = {}  # node -> the nodes of its other plugs

    def fetch(self, nodes):
        new = [node for node in nodes if node not in self.links]
        if not new:
            return
        self.links.update((node, []) for node in new)
        ends = iter(cmds.listConnections(new, source=not self.downstream, connections=True,
                                         destination=self.downstream, plugs=True, shapes=True)
                    or [])
        for own, other in zip(ends, ends):
            self.links.setdefault(node_of(own), []).append((own, other))
        self.others.update((node, unique(node_of(other) for _, other in self.links[node]))
                           for node in new)

    def of(self, node):
        self.fetch([node])
        return self.links[node]

    def reached(self, starts, follows=None):
        """The starts and all that hangs on them, level by level."""
        found = dict.fromkeys(starts)
        level = list(found)
        while level:
            self.fetch(level)
            if follows:
                near = (node_of(other) for node in level for own, other in self.links[node]
                        if follows(own, other))
            else:
                near = (other for node in level for other in self.others[node])
            level = unique(node for node in near if node not in found)
            found.update(dict.fromkeys(level))
        return list(found)


class Scene:
    """Node lists and connections that every rule asks for, read once."""

    def __init__(self):
        self.joints = cmds.ls(type="joint")
        self.is_joint = set(self.joints)
        self.constraints = set(cmds.ls(type="constraint"))
        self.clusters = set(cmds.ls(type="skinCluster"))
        self.handles = set(cmds.ls(type="ikHandle"))
        self.effectors = set(cmds.ls(type="ikEffector"))
        self.meshes = set(cmds.ls(type="mesh"))
        self.unknown = set(cmds.ls(type=["unknown", "unknownDag", "unknownTransform"]))
        self.children = {joint: self.children_of(joint) for joint in self.joints}
        self.outgoing = Links(downstream=True)
        self.outgoing.fetch(self.joints)
        self.incoming = Links(downstream=False)
        self.incoming.fetch([*self.constraints, *self.clusters])
        self._unjudged = None

    @staticmethod
    def children_of(node):
        return cmds.listRelatives(node, children=True, path=True) or []

    def top_joints(self):
        below = {child for children in self.children.values() for child in children}
        return [joint for joint in self.joints if joint not in below]

    def influences(self, cluster):
        """(logical index, node) for each matrix that is connected."""
        for own, other in self.incoming.of(cluster):
            if own.startswith(cluster + ".matrix["):
                yield index_of(own), node_of(other)

    def unjudged(self):
        """Transforms whose place depends on a node that is not evaluated."""
        if self._unjudged is None:
            found, level = set(), list(self.unknown)
            while level:
                self.outgoing.fetch(level)
                found.update(level)
                level = unique(n for node in level for n in self.moved_by(node) if n not in found)
            self._unjudged = found
        return self._unjudged

    def moved_by(self, node):
        for own, other in self.outgoing.of(node):
            if not own.endswith(".message"):
                yield node_of(other)
        if node in self.handles:
            yield from cmds.ikHandle(node, query=True, jointList=True) or []
        if "transform" in cmds.nodeType(node, inherited=True):
            yield from self.children_of(node)


class Skeleton:
    """A top joint and what hangs on it."""

    def __init__(self, scene, top):
        self.scene = scene
        self.top = top
        self.joints = list(self.walk())  # depth first, the top one first
        self.members = set(self.joints)
        self.clusters = [node for node in self.driven() if node in scene.clusters]
        self._box = None
        self._drifted = None

    def walk(self):
        stack, seen = [self.top], set()
        while stack:
            joint = stack.pop()
            if joint not in seen:
                seen.add(joint)
                yield joint
                stack.extend(c for c in reversed(self.scene.children[joint])
                             if c in self.scene.is_joint)

    def driven(self):
        return unique(node for joint in self.joints for node in self.scene.outgoing.others[joint])

    def below(self, wanted):
        return [child for joint in self.joints for child in self.scene.children[joint]
                if wanted(child)]

    def constraints(self):
        return self.below(lambda child: child in self.scene.constraints)

    def feeds(self, constraint):
        return any(own.startswith(constraint + ".target[") and node_of(other) in self.members
                   for own, other in self.scene.incoming.of(constraint))

    def meshes_of(self, cluster):
        """Those that the tools take for bound to it: all that hang on it by any connection."""
        return [node for node in self.scene.outgoing.reached([cluster])
                if node in self.scene.meshes]

    @property
    def box(self):
        """Lowest and highest corner of its joints and of what they deform."""
        if self._box is None:
            places = [cmds.xform(joint, query=True, worldSpace=True, translation=True)
                      for joint in self.joints]
            shapes = unique(shape for cluster in self.clusters for shape in
                            cmds.skinCluster(cluster, query=True, geometry=True) or [])
            if shapes:
                sides = cmds.exactWorldBoundingBox(shapes)
                places += [sides[:3], sides[3:]]
            self._box = [[pick(axis) for axis in zip(*places)] for pick in (min, max)]
        return self._box

    @property
    def size(self):
        return sum((high - low) ** 2 for low, high in zip(*self.box)) ** 0.5 or 1.0

    def drifted(self):
        """Joints that carry the rig's box away from where it was bound, by bind * world."""
        if self._drifted is None:
            corners = list(itertools.product(*zip(*self.box)))
            limit = STILL * self.size
            self._drifted = unique(
                joint for cluster in self.clusters
                for index, joint in self.scene.influences(cluster) if joint in self.members and
                apart(corners, IDENTITY, times(
                    cmds.getAttr("%s.bindPreMatrix[%d]" % (cluster, index)), world(joint)), limit))
        return self._drifted

    def away_from(self, pose):
        """Joints that do not stand as the pose holds them, seen at the rig's size."""
        size = self.size
        points = [(0, 0, 0), (size, 0, 0), (0, size, 0), (0, 0, size)]
        for own, other in self.scene.incoming.of(pose):
            joint = node_of(other)
            if own.startswith(pose + ".members[") and joint in self.members:
                held = cmds.getAttr("%s.worldMatrix[%d]" % (pose, index_of(own)))
                if apart(points, held, world(joint), STILL * size):
                    yield joint


def world(node):
    return cmds.getAttr(node + ".worldMatrix[0]")


def times(a, b):
    return [sum(a[4 * r + k] * b[4 * k + c] for k in range(4)) for r in range(4) for c in range(4)]


def apart(points, a, b, limit):
    """True when one of the points, times a and times b, lies farther apart than the limit."""
    step = [y - x for x, y in zip(a, b)]
    if not any(step):
        return False
    return any(sum((x * step[c] + y * step[4 + c] + z * step[8 + c] + step[12 + c]) ** 2
                   for c in range(3)) > limit * limit for x, y, z in points)


def carries_shape(plug):
    try:
        data = cmds.getAttr(plug, type=True)
    except (RuntimeError, TypeError, ValueError):
        return True  # of a node that is kept only: it may
    return not data or data in SHAPE_DATA


def along_geometry(own, other):
    return carries_shape(own) and carries_shape(other)


# The rules: each gives the nodes it is about.


def posed_away(rig):
    return [joint for joint in rig.drifted() if joint not in rig.scene.unjudged()]


def pose_unknown(rig):
    return [joint for joint in rig.drifted() if joint in rig.scene.unjudged()]


def lost_constraints(rig):
    return [c for c in rig.constraints() if cmds.nodeType(c) not in REBUILT]


def drivers_within(rig):
    return [c for c in rig.constraints() if cmds.nodeType(c) in REBUILT and rig.feeds(c)]


def outside_constraints(rig):
    own = set(rig.constraints())
    return [node for node in rig.driven()
            if node in rig.scene.constraints and node not in own and rig.feeds(node)]


def ik_handles(rig):
    return [node for node in rig.driven() if node in rig.scene.handles]


def geometry_below(rig):
    scene = rig.scene
    return rig.below(lambda child: child not in scene.is_joint and
                     child not in scene.constraints and child not in scene.effectors)


def namesakes(rig):
    return [node for node in cmds.ls(leaf(rig.top)) if node != rig.top]


def parking_group(rig):
    return cmds.ls(PARKING_GROUP)


def locked_rotations(rig):
    return [joint for joint in rig.joints
            if any(cmds.getAttr(joint + attr, lock=True)
                   for attr in (".rotate", ".rotateX", ".rotateY", ".rotateZ"))]


def not_evaluated(rig):
    return [node for node in rig.scene.outgoing.reached(rig.clusters, along_geometry)
            if node in rig.scene.unknown]


def through_shading(rig):
    direct = set(rig.scene.outgoing.reached(rig.clusters, along_geometry))
    return [node for node in rig.scene.outgoing.reached(rig.clusters)
            if node in rig.scene.meshes and node not in direct]


def posed(rig):
    poses = cmds.dagPose(rig.top, query=True, bindPose=True) or []
    return unique(joint for pose in poses for joint in rig.away_from(pose)
                  if joint not in rig.scene.unjudged())


def history_below(rig):
    shapes = (shape for node in geometry_below(rig) for shape in
              cmds.ls(node, dagObjects=True, shapes=True, noIntermediate=True))
    return unique(shape for shape in shapes if cmds.listHistory(shape, pruneDagObjects=True))


def instances(rig):
    return [joint for joint in rig.joints
            if not rig.members.issuperset(cmds.listRelatives(joint, allParents=True, path=True)
                                          or []) and joint != rig.top]


def unreached_skins(rig):
    """Clusters that some joint, flipped alone, would not find while it replaces the skeleton."""
    constrained = {joint for joint in rig.joints
                   if rig.scene.constraints.intersection(rig.scene.children[joint])}
    reaching = {cluster: rig.members.intersection(rig.scene.incoming.reached([cluster]))
                for cluster in rig.clusters}
    editing = constrained.union(*reaching.values())
    return [cluster for cluster in rig.clusters if editing - reaching[cluster]]


def names_at_top(rig):
    parent = cmds.listRelatives(rig.top, parent=True, path=True)
    beside = Scene.children_of(parent[0]) if parent else cmds.ls(assemblies=True)
    names = {leaf(child) for joint in rig.joints for child in rig.scene.children[joint]}
    return [node for node in beside if node != rig.top and leaf(node) in names]


def meshless_skins(rig):
    return [cluster for cluster in rig.clusters
            if cmds.skinCluster(cluster, query=True, geometry=True) and not rig.meshes_of(cluster)]


def is_changed(cluster):
    return cmds.getAttr(cluster + ".skinningMethod") != 0 or \
        cmds.getAttr(cluster + ".normalizeWeights") != 1


def changed_skins(rig):
    return [c for c in rig.clusters if is_changed(c) and rig.meshes_of(c)]


# rule, buttons, only where a skin hangs on the skeleton, nodes, what will happen and what to do
RULES = (
    ("posed-away", EVERY_EDIT, True, posed_away,
     "The skeleton is posed away from where its skin was bound: the mesh takes its rest shape. "
     "Go to the bind pose first."),
    ("lost-constraint", EVERY_EDIT, True, lost_constraints,
     "These constraints are not rebuilt on the new joints, only parent, orient, point and aim "
     "constraints are."),
    ("driver-within", EVERY_EDIT, True, drivers_within,
     "These constraints follow joints of the same skeleton, which are replaced: they are lost. "
     "Make them again after."),
    ("outside-constraint", EVERY_EDIT, True, outside_constraints,
     "These constraints follow joints of the skeleton, which are replaced: they lose them. "
     "Make them again after."),
    ("ik", EVERY_EDIT, True, ik_handles,
     "These IK handles solve joints that are replaced: they are lost. Make them again after."),
    ("geometry-below", EVERY_EDIT, True, geometry_below,
     "These objects below joints are copied with the skeleton, the originals go with the old one. "
     "Parent them elsewhere."),
    ("namesake", EVERY_EDIT, True, namesakes,
     "Other nodes bear the top joint's name: the closing bind finds it ambiguous. Rename them."),
    ("parking-group", EVERY_EDIT, True, parking_group,
     "A group is left from a run that stopped: the closing bind meets two roots of one name. "
     "Delete it."),
    ("locked-rotation", EVERY_EDIT, False, locked_rotations,
     "Rotations are locked: these joints are refused. Unlock them."),
    ("not-evaluated", EVERY_EDIT, True, not_evaluated,
     "These nodes between skin and mesh are kept but not evaluated here: points cannot be judged "
     "behind them."),
    ("through-shading", EVERY_EDIT, True, through_shading,
     "These meshes share a shading group with the skin and are taken for bound ones: the closing "
     "bind takes them too."),
    ("pose-unknown", EVERY_EDIT, True, pose_unknown,
     "These joints are not where the skin was bound, but hang on nodes that are not evaluated "
     "here: whether they are posed cannot be told."),
    ("posed", "Orient Joints, Flip Orientation", False, posed,
     "These joints go back to the bind pose and stay there; those that are driven or locked stay "
     "as they are. Keep the pose first."),
    ("history-below", EVERY_EDIT, True, history_below,
     "These shapes below joints are copied as they look: their history, deformers and skins go "
     "with the originals. Parent them elsewhere."),
    ("instance", EVERY_EDIT, True, instances,
     "These joints have instances outside the skeleton, which keep the old joint: the new one is "
     "no instance. Make the instances again after."),
    ("unreached-skin", "Flip Orientation", True, unreached_skins,
     "Flip replaces the whole skeleton but rewires only the skins that a selected joint reaches: "
     "without one these lose their joints, and a skin without any falls to the origin. Select a "
     "joint of each of them, too."),
    ("name-at-top", "Flip Orientation", True, names_at_top,
     "These nodes beside the top joint bear the name of a node below it, which is numbered when "
     "it is taken out: as an influence it is lost. Rename them."),
    ("skin-without-mesh", EVERY_EDIT, True, meshless_skins,
     "These skins deform no mesh: they are detached and no closing bind takes them up again. Set "
     "nodeState to 0 after."),
    ("skin-method", EVERY_EDIT, True, changed_skins,
     "The closing bind makes these skins classic linear with interactive weights. Set the method "
     "again after."),
)


def skeletons():
    scene = Scene()
    return [Skeleton(scene, top) for top in scene.top_joints()]


def findings_of(rig):
    for rule, tools, needs_skin, find, text in RULES:
        nodes = find(rig) if rig.clusters or not needs_skin else []
        if nodes:
            yield {"rule": rule, "tools": tools, "skeleton": rig.top, "nodes": nodes, "text": text}


def check(rigs=None):
    """Every finding; an empty list when there is nothing to lose."""
    return [finding for rig in (skeletons() if rigs is None else rigs)
            for finding in findings_of(rig)]


def binds_of(rig):
    taken = set()
    ambiguous = bool(namesakes(rig))
    for cluster in rig.clusters:
        for mesh in rig.meshes_of(cluster):
            skins = [node for node in rig.scene.incoming.reached([mesh], along_geometry)
                     if node in rig.scene.clusters]
            own = skins[0] if skins else ""
            if ambiguous:
                does = "refused, the top joint's name is ambiguous: it stays detached"
            elif not own and mesh not in taken:
                does = "given a skin of its own"
            elif own in taken or mesh in taken:
                does = "refused, it is bound already: nothing changes"
            else:
                does = "taken up, made linear and interactive" if is_changed(own) else "taken up"
            taken.update((own or mesh, mesh))
            yield {"skeleton": rig.top, "mesh": mesh, "cluster": own, "does": does}


def closing_binds(rigs=None):
    """What the bind at the end of Freeze, Orient and Flip does to each mesh, in its order."""
    return [bind for rig in (skeletons() if rigs is None else rigs) for bind in binds_of(rig)]


def counted(nodes):
    more = len(nodes) - SHOWN_NODES
    return " ".join(nodes[:SHOWN_NODES]) + (" and %d more" % more if more > 0 else "")


def as_text(findings):
    """A block of lines for each finding, then how many there are; "nothing to report" for none."""
    lines = []
    for f in findings:
        lines += ["%s  [%s]  %s" % (f["skeleton"], f["rule"], f["tools"]), "  " + f["text"],
                  "  " + counted(f["nodes"])]
    total = "%d finding%s" % (len(findings), "" if len(findings) == 1 else "s")
    return "\n".join(lines + [total if findings else "nothing to report"]) + "\n"


def as_json(findings, binds):
    """{"findings": as of check(), "closingBinds": as of closing_binds()}"""
    return json.dumps({"findings": findings, "closingBinds": binds}, indent=4, sort_keys=True,
                      ensure_ascii=False) + "\n"


def report():
    """Number of findings, as_text and as_json of them."""
    rigs = skeletons()
    findings = check(rigs)
    return [str(len(findings)), as_text(findings), as_json(findings, closing_binds(rigs))]


def show():
    sys.stdout.write(as_text(check()))
