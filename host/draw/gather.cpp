#include "draw/gather.h"

#include <algorithm>

#include "edit/components.h"
#include "nodes/shape/mesh.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/transform/transform.h"

namespace torvel {

namespace {

const QColor kLead(67, 255, 163), kChosen(255, 255, 255), kTemplate(120, 120, 120),
    kReference(25, 25, 25), kCurve(150, 178, 214), kMeshEdge(70, 74, 80), kJoint(240, 190, 80),
    kLocator(190, 200, 120), kHandle(214, 140, 255), kComponent(255, 230, 40),
    kHilited(190, 120, 220);

constexpr double kBallPerRadius = 0.5;

// Perpendicular to a direction of length 1.
V3d anyNormal(const V3d& d) {
    const V3d other = std::abs(d.y) < 0.9 ? V3d(0, 1, 0) : V3d(1, 0, 0);
    return d.cross(other).normalized();
}

}  // namespace

ScenePainter::Gatherer::Gatherer(const Scene& scene, ScenePainter& out)
    : m_scene(scene), m_out(out) {}

double ScenePainter::Gatherer::number(NodeHandle node, const char* attr, double fallback) const {
    const Plug plug = m_scene.findPlug(node, attr);
    return plug.isNull() ? fallback : m_scene.number(plug);
}

void ScenePainter::Gatherer::collectChosen() {
    for (const SelectionItem& item : m_scene.selection().items())
        if (item.component.empty() && item.plug.isNull())
            m_chosen[item.node.index] = 1;
    const auto& items = m_scene.selection().items();
    if (!items.empty() && items.back().component.empty() && items.back().plug.isNull())
        m_chosen[items.back().node.index] = 2;
}

int ScenePainter::Gatherer::chosenOf(NodeHandle node) const {
    const auto at = m_chosen.find(node.index);
    return at == m_chosen.end() ? 0 : at->second;
}

void ScenePainter::Gatherer::applyOverride(NodeHandle node, State& state) const {
    if (number(node, "overrideEnabled") == 0.0)
        return;
    state.displayType = static_cast<int>(number(node, "overrideDisplayType"));
    const int index = static_cast<int>(number(node, "overrideColor"));
    if (number(node, "overrideRGBColors") != 0.0) {
        const V3d c = m_scene.vec3(m_scene.findPlug(node, "overrideColorRGB"));
        const auto part = [](double value) { return std::clamp(value, 0.0, 1.0); };
        state.color = QColor::fromRgbF(part(c.x), part(c.y), part(c.z));
        state.hasColor = true;
    } else if (index > 0) {
        state.color = indexColor(index);
        state.hasColor = true;
    }
}

// False for what hides with all that is below it.
bool ScenePainter::Gatherer::enter(NodeHandle node, State& state) const {
    const bool overridden = number(node, "overrideEnabled") != 0.0;
    if (number(node, "visibility", 1.0) == 0.0 || number(node, "lodVisibility", 1.0) == 0.0 ||
        (overridden && number(node, "overrideVisibility", 1.0) == 0.0) ||
        number(node, "intermediateObject") != 0.0)
        return false;
    applyOverride(node, state);
    if (number(node, "template") != 0.0)
        state.displayType = 1;
    const int own = chosenOf(node);
    const bool shape = m_scene.node(node)->type->is(kShapeType);
    state.chosen = shape ? std::max(own, state.chosen) : own;
    const auto& hilited = m_scene.selection().hilited;
    const bool here = std::find(hilited.begin(), hilited.end(), node) != hilited.end();
    state.hilited = here || (shape && state.hilited);
    return true;
}

ScenePainter::Look ScenePainter::Gatherer::look(const State& state, const QColor& plain) const {
    Look look;
    look.chosen = state.chosen != 0;
    look.behind = !look.chosen && state.displayType == 1;
    look.color = state.chosen == 2        ? kLead
                 : state.chosen == 1      ? kChosen
                 : state.displayType == 1 ? kTemplate
                 : state.displayType == 2 ? kReference
                 : state.hasColor         ? state.color
                                          : plain;
    return look;
}

void ScenePainter::Gatherer::run() {
    collectChosen();
    std::vector<Step> stack;
    std::vector<NodeHandle> path;
    const auto push = [&](NodeHandle parent, std::size_t depth, const State& state) {
        const std::vector<NodeHandle>& children = m_scene.node(parent)->children;
        for (std::size_t i = children.size(); i-- > 0;)
            stack.push_back({children[i], depth, state});
    };
    push(m_scene.world(), 0, {});
    while (!stack.empty()) {
        Step step = stack.back();
        stack.pop_back();
        path.resize(step.depth);
        path.push_back(step.node);
        if (!enter(step.node, step.state))
            continue;
        const bool instanced = m_scene.instanceCount(step.node) > 1;
        addNode(step.node, step.state, instanced ? m_scene.instanceNumber(path) : 0);
        push(step.node, step.depth + 1, step.state);
    }
    addComponents();
}

void ScenePainter::Gatherer::addNode(NodeHandle node, const State& state, int instance) {
    const M44d world = worldMatrix(m_scene, node, instance);
    if (m_scene.isType(node, "mesh"))
        addMesh(node, state, world);
    else if (m_scene.isType(node, "nurbsCurve"))
        addCurve(node, state, world);
    else if (m_scene.isType(node, "locator"))
        addLocator(node, state, world);
    else if (m_out.m_options.joints && isJoint(m_scene, node))
        addJoint(node, state, world);
    else if (m_out.m_options.joints && m_scene.isType(node, "ikHandle"))
        m_out.m_dots.push_back({world.translation(), look(state, kHandle).color});
    if (number(node, "displayLocalAxis") != 0.0)
        m_out.m_axes.push_back({world, 2.5 * kBallPerRadius * number(node, "radius")});
}

void ScenePainter::Gatherer::addMesh(NodeHandle node, const State& state, const M44d& world) {
    const auto mesh = meshPoints(m_scene, node);
    if (!mesh->topology || mesh->points.empty())
        return;
    Solid solid;
    solid.topology = mesh->topology;
    solid.look = look(state, m_out.m_options.wire ? kCurve : kMeshEdge);
    solid.wire = m_out.m_options.wire || state.displayType == 1;
    solid.points.reserve(mesh->points.size());
    for (const V3f& point : mesh->points)
        solid.points.push_back(V3d(point) * world);
    m_out.m_points.insert(m_out.m_points.end(), solid.points.begin(), solid.points.end());
    m_out.m_solids.push_back(std::move(solid));
}

void ScenePainter::Gatherer::addCurve(NodeHandle node, const State& state, const M44d& world) {
    const auto curve = curveOf(m_scene, node);
    if (!curve || curve->cvs.empty())
        return;
    Wire wire{curvePolyline(*transformed(*curve, world), 12), look(state, kCurve)};
    wire.look.width = 2.0;
    m_out.m_points.insert(m_out.m_points.end(), wire.points.begin(), wire.points.end());
    m_out.m_wires.push_back(std::move(wire));
    if (state.hilited)
        for (const V3d& cv : curve->cvs)
            m_out.m_dots.push_back({cv * world, kHilited});
}

void ScenePainter::Gatherer::addCross(const M44d& world, const V3d& center, const V3d& size,
                                      const Look& look) {
    for (int axis = 0; axis < 3; ++axis) {
        V3d arm(0.0);
        arm[axis] = size[axis];
        m_out.m_wires.push_back({{(center - arm) * world, (center + arm) * world}, look});
        m_out.m_points.push_back((center - arm) * world);
        m_out.m_points.push_back((center + arm) * world);
    }
}

void ScenePainter::Gatherer::addLocator(NodeHandle node, const State& state, const M44d& world) {
    addCross(world, m_scene.vec3(m_scene.findPlug(node, "localPosition")),
             m_scene.vec3(m_scene.findPlug(node, "localScale")), look(state, kLocator));
}

// A slim pyramid from the parent's ball to the child.
void ScenePainter::Gatherer::addBone(const V3d& from, const V3d& to, double radius,
                                     const Look& look) {
    const double length = (to - from).length();
    if (length < 1e-9)
        return;
    const V3d along = (to - from) / length, side = anyNormal(along), other = along.cross(side);
    const double size = std::min(radius, length * 0.3);
    const V3d base = from + along * size;
    const V3d c0 = base + side * size * 0.7, c2 = base - side * size * 0.7,
              c1 = base + other * size * 0.7, c3 = base - other * size * 0.7;
    m_out.m_bones.push_back({{c0, c1, c2, c3, c0, to, c1, c2, to, c3}, look});
}

void ScenePainter::Gatherer::addBox(const M44d& world, double size, const Look& look) {
    static const int kTour[] = {0, 1, 3, 2, 0, 4, 5, 7, 6, 4, 5, 1, 3, 7, 6, 2};
    M44d axes = rotationPart(world);
    Wire box{{}, look};
    for (const int corner : kTour) {
        const V3d sign(corner & 1 ? 1 : -1, corner & 2 ? 1 : -1, corner & 4 ? 1 : -1);
        box.points.push_back(world.translation() + (sign * size) * axes);
    }
    m_out.m_bones.push_back(std::move(box));
}

void ScenePainter::Gatherer::addJoint(NodeHandle node, const State& state, const M44d& world) {
    enum DrawStyle { kBone, kBoxWhenForked, kNone, kJointOnly };
    const int style = static_cast<int>(number(node, "drawStyle"));
    const V3d at = world.translation();
    m_out.m_points.push_back(at);
    if (style == kNone)
        return;
    Look color = look(state, kJoint);
    color.width = color.chosen ? 1.8 : 1.2;
    const double radius = kBallPerRadius * number(node, "radius", 1.0);
    std::vector<V3d> ends;
    for (NodeHandle child : m_scene.node(node)->children)
        if (isJoint(m_scene, child) && number(child, "visibility", 1.0) != 0.0)
            ends.push_back(worldPosition(m_scene, child));
    if (style == kBoxWhenForked && ends.size() > 1) {
        addBox(world, radius, color);
        return;
    }
    for (int axis = 0; axis < 3; ++axis) {
        V3d reach(0.0);
        reach[axis] = radius;
        m_out.m_points.push_back(at + reach);
        m_out.m_points.push_back(at - reach);
    }
    m_out.m_balls.push_back({at, radius, color});
    if (style != kJointOnly)
        for (const V3d& end : ends)
            addBone(at, end, radius, color);
}

void ScenePainter::Gatherer::addComponents() {
    for (const SelectionItem& item : m_scene.selection().items()) {
        PointSet set;
        if (item.component.empty() || !pointsOfItem(m_scene, item, set))
            continue;
        const std::vector<V3d> points = shapePoints(m_scene, set.shape);
        const M44d world = worldMatrix(m_scene, set.shape);
        for (const int index : set.points)
            m_out.m_dots.push_back({points[static_cast<std::size_t>(index)] * world, kComponent});
    }
}

}  // namespace torvel
