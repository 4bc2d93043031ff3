// The command curve.
#include "script/session.h"
#include "edit/curves.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

const FlagRow kCurveFlags[] = {
    {"append", "a"},
    {"bezier", "bez"},
    {"degree", "d", "d", kCreate},
    {"editPoint", "ep", "lll", kCreate, true},
    {"knot", "k", "d", kCreate, true},
    {"name", "n", "s", kCreate},
    {"objectSpace", "os"},
    {"periodic", "per", "b", kCreate},
    {"point", "p", "lll", kCreate, true},
    {"pointWeight", "pw", "llld", kCreate, true},
    {"replace", "r"},
    {"worldSpace", "ws"},
};

// Points in the order they were given, whichever flag gave them.
void readPoints(const CommandCall& call, NurbsCurveData& curve) {
    for (const FlagUse& use : call.m_flags) {
        const std::string flag = use.row->longName;
        if (flag != "point" && flag != "pointWeight" && flag != "editPoint")
            continue;
        const bool weighted = flag == "pointWeight";
        curve.rational = curve.rational || weighted;
        curve.cvs.emplace_back(use.values[0].number(), use.values[1].number(),
                               use.values[2].number());
        curve.weights.push_back(weighted ? use.values[3].number() : 1.0);
    }
    if (!curve.rational)
        curve.weights.clear();
}

bool endsAsItBegins(const NurbsCurveData& curve) {
    const auto degree = static_cast<std::size_t>(curve.degree);
    const std::size_t from = curve.cvs.size() - degree;
    for (std::size_t i = 0; i < degree; ++i)
        if ((curve.cvs[from + i] - curve.cvs[i]).length() > 1e-6)
            return false;
    return true;
}

Status readKnots(const CommandCall& call, NurbsCurveData& curve) {
    for (const FlagUse* use : call.uses("knot"))
        curve.knots.push_back(use->values[0].number());
    const bool periodic = call.flag("periodic");
    if (curve.knots.empty() && periodic && curve.degree > 1)
        return call.fail("A periodic curve needs its knots (-knot).");
    if (curve.knots.empty())
        curve.knots = clampedKnots(curve.cvs.size(), curve.degree);
    if (const std::string fault = curveFault(curve); !fault.empty())
        return call.fail(fault);
    if (periodic && !endsAsItBegins(curve))
        return call.fail("The last " + std::to_string(curve.degree) +
                         " points of a periodic curve must repeat its first ones.");
    curve.form = periodic ? 2 : 0;
    return Status::ok();
}

Status readCurve(const CommandCall& call, NurbsCurveData& curve) {
    curve.degree = call.integer("degree", 3);
    if (call.has("bezier"))
        return call.fail("Bezier curves (-bezier) are not covered.");
    if (call.has("editPoint") && curve.degree != 1)
        return call.fail(
            "Edit points (-editPoint) are covered for degree 1 only; give control points "
            "(-point).");
    readPoints(call, curve);
    if (curve.cvs.empty())
        return call.fail("Needs points (-point).");
    if (Status read = readKnots(call, curve); !read)
        return read;
    curve.spans = static_cast<int>(curve.cvs.size()) - curve.degree;
    return Status::ok();
}

Status createCurve(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    auto curve = std::make_shared<NurbsCurveData>();
    if (Status read = readCurve(call, *curve); !read)
        return read;
    const std::string wanted = Names::legal(call.text("name"));
    const std::string name = wanted.empty() ? scene.names().numbered("curve") : wanted;
    // The name is the transform's alone: the shape keeps the default one.
    const std::string shapeName =
        freeShapeName(scene, "curveShape", wanted.empty() ? name.substr(5) : "1");
    NodeHandle transform, shape;
    if (Status made = makeCurveNodes(scene, name, shapeName, transform, shape); !made)
        return made;
    setCurve(scene, shape, curve);
    scene.selection().replace(transform);
    result = Value(scene.names().shortest(transform));
    return Status::ok();
}

// The one curve that -append and -replace work on. Its points must be its own.
Status editedShape(const CommandCall& call, NodeHandle& shape) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    if (nodes.size() == 1)
        shape = curveShapeOf(scene, nodes.front());
    if (shape.isNull())
        return call.fail("Needs one curve.");
    if (!scene.source(scene.findPlug(shape, "create")).isNull())
        return call.fail("The curve '" + scene.node(shape)->name + "' has construction history.");
    return Status::ok();
}

void toObjectSpace(const CommandCall& call, NodeHandle shape, std::vector<V3d>& points) {
    if (!call.has("worldSpace"))
        return;
    const M44d toLocal = inverseOf(worldMatrix(call.scene(), shape));
    for (V3d& point : points)
        point = point * toLocal;
}

Status appendTo(const CommandCall& call, NodeHandle shape, std::shared_ptr<NurbsCurveData>& out) {
    NurbsCurveData given;
    readPoints(call, given);
    toObjectSpace(call, shape, given.cvs);
    const auto now = curveOf(call.scene(), shape);
    if (given.cvs.empty() || !now)
        return call.fail("Needs a curve and points (-point).");
    if (given.rational || now->rational || call.has("knot"))
        return call.fail(
            "Only plain points (-point) can be appended, and to a curve without weights.");
    out = appended(*now, given.cvs);
    return out ? Status::ok() : call.fail("Nothing can be appended to a periodic curve.");
}

Status replaceIn(const CommandCall& call, NodeHandle shape, std::shared_ptr<NurbsCurveData>& out) {
    out = std::make_shared<NurbsCurveData>();
    if (Status read = readCurve(call, *out); !read)
        return read;
    toObjectSpace(call, shape, out->cvs);
    return Status::ok();
}

Status curve(const CommandCall& call, Value& result) {
    const bool append = call.has("append");
    if (!append && !call.has("replace"))
        return call.args().empty() ? createCurve(call, result) : call.fail("Takes no objects.");
    NodeHandle shape;
    std::shared_ptr<NurbsCurveData> changed;
    Status status = editedShape(call, shape);
    if (status)
        status = append ? appendTo(call, shape, changed) : replaceIn(call, shape, changed);
    if (!status)
        return status;
    Scene& scene = call.scene();
    setCurve(scene, shape, changed);
    result = Value(scene.names().shortest(scene.node(shape)->parents.front()));
    return Status::ok();
}

const Command kCurveCommands[] = {
    {"curve", kCurveFlags, countOf(kCurveFlags), curve, "Makes a curve from points."}};

}  // namespace

CommandTable curveCommands() {
    return {kCurveCommands, std::size(kCurveCommands)};
}

}  // namespace torvel
