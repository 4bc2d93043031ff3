// The command circle: a curve with a makeNurbCircle node before it.
#include <cmath>

#include "edit/curves.h"
#include "script/session.h"
#include "nodes/shape/make_nurb_circle.h"
#include "nodes/shape/nurbs_curve.h"
#include "nodes/transform/rotation.h"

namespace torvel {
namespace {

const FlagRow kCircleFlags[] = {
    {"center", "c", "lll"},
    {"centerX", "cx", "l"},
    {"centerY", "cy", "l"},
    {"centerZ", "cz", "l"},
    {"constructionHistory", "ch", "b", kCreate},
    {"degree", "d", "i"},
    {"first", "fp", "lll"},
    {"firstPointX", "fpx", "l"},
    {"firstPointY", "fpy", "l"},
    {"firstPointZ", "fpz", "l"},
    {"fixCenter", "fc", "b"},
    {"name", "n", "s", kCreate},
    {"normal", "nr", "lll"},
    {"normalX", "nrx", "l"},
    {"normalY", "nry", "l"},
    {"normalZ", "nrz", "l"},
    {"object", "o", "b", kCreate},
    {"radius", "r", "l"},
    {"sections", "s", "i"},
    {"sweep", "sw", "a"},
    {"tolerance", "tol", "d"},
    {"useTolerance", "ut", "b"},
};

/// Flags that are attributes of the maker of the same name.
const char* const kVectors[] = {"center", "first", "normal"};
const char* const kNumbers[] = {"centerX",     "centerY",     "centerZ",     "degree",
                                "firstPointX", "firstPointY", "firstPointZ", "fixCenter",
                                "normalX",     "normalY",     "normalZ",     "radius",
                                "sections",    "sweep",       "tolerance",   "useTolerance"};

double unitOf(const std::string& flag) {
    return flag == "sweep" ? kDegToRad : 1.0;
}

Status checkAmounts(const CommandCall& call) {
    if (call.has("degree") && call.integer("degree") != 1 && call.integer("degree") != 3)
        return call.fail("The degree of a circle is 1 or 3.");
    const bool closed = std::abs(call.number("sweep", 360.0)) >= 360.0;
    if (call.has("sections") && call.integer("sections") < (closed ? 3 : 1))
        return call.fail(closed ? "A full circle needs at least 3 sections."
                                : "An arc needs at least 1 section.");
    if (call.number("sections") > kMostCircleSections)
        return call.fail("A circle has at most " +
                         std::to_string(static_cast<int>(kMostCircleSections)) + " sections.");
    return Status::ok();
}

void setAmounts(const CommandCall& call, NodeHandle maker) {
    Scene& scene = call.scene();
    for (const char* flag : kVectors)
        if (call.has(flag))
            scene.setVec3(
                scene.findPlug(maker, flag),
                {call.number(flag, 0.0, 0), call.number(flag, 0.0, 1), call.number(flag, 0.0, 2)});
    for (const char* flag : kNumbers)
        if (call.has(flag))
            scene.setNumber(scene.findPlug(maker, flag), call.number(flag) * unitOf(flag));
}

Status createCircle(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    NodeHandle maker, transform, shape;
    if (Status made = scene.createNode("makeNurbCircle", {}, {}, maker); !made)
        return made;
    setAmounts(call, maker);
    if (!call.flag("object", true)) {
        result = Value::strings({scene.names().shortest(maker)});
        return Status::ok();
    }
    const std::string wanted = Names::legal(call.text("name"));
    const std::string name = wanted.empty() ? scene.names().numbered("nurbsCircle") : wanted;
    const std::string shapeName =
        wanted.empty() ? freeShapeName(scene, "nurbsCircleShape", name.substr(11)) : std::string();
    Status status = makeCurveNodes(scene, name, shapeName, transform, shape);
    if (status)
        status =
            scene.connect(scene.findPlug(maker, "outputCurve"), scene.findPlug(shape, "create"));
    if (!status) {
        scene.deleteNodes({maker});
        return status;
    }
    std::vector<NodeHandle> made{transform, maker};
    if (!call.flag("constructionHistory", true)) {
        setCurve(scene, shape, curveOf(scene, shape));
        scene.deleteNodes({maker});
        made.pop_back();
    }
    scene.selection().replace(transform);
    std::vector<std::string> names;
    for (NodeHandle node : made)
        names.push_back(scene.names().shortest(node));
    result = Value::strings(names);
    return Status::ok();
}

Status makerOf(const CommandCall& call, NodeHandle& maker) {
    const Scene& scene = call.scene();
    std::vector<NodeHandle> nodes;
    if (Status found = call.objectsOrSelection(nodes); !found)
        return found;
    for (NodeHandle node : nodes) {
        const NodeHandle shape = curveShapeOf(scene, node);
        maker = shape.isNull() ? node : scene.source(scene.findPlug(shape, "create")).node;
        if (scene.isType(maker, "makeNurbCircle"))
            return Status::ok();
    }
    return call.fail("There is no circle with construction history.");
}

Status queryCircle(const CommandCall& call, NodeHandle maker, Value& result) {
    const Scene& scene = call.scene();
    for (const char* flag : kVectors)
        if (call.has(flag)) {
            const V3d value = scene.vec3(scene.findPlug(maker, flag));
            result = Value::doubles({value.x, value.y, value.z});
            return Status::ok();
        }
    for (const char* flag : kNumbers)
        if (call.has(flag)) {
            const double value = scene.number(scene.findPlug(maker, flag)) / unitOf(flag);
            const std::string name = flag;
            const bool whole = name == "degree" || name == "sections";
            result = whole ? Value(static_cast<int>(value))
                     : name == "fixCenter" || name == "useTolerance" ? Value(value != 0.0)
                                                                     : Value(value);
            return Status::ok();
        }
    return call.fail("Needs a flag that tells what to query.");
}

Status circle(const CommandCall& call, Value& result) {
    if (call.isCreate() && !call.args().empty())
        return call.fail("Takes no objects.");
    if (Status sound = call.isQuery() ? Status::ok() : checkAmounts(call); !sound)
        return sound;
    if (call.isCreate())
        return createCircle(call, result);
    NodeHandle maker;
    if (Status found = makerOf(call, maker); !found)
        return found;
    if (call.isQuery())
        return queryCircle(call, maker, result);
    setAmounts(call, maker);
    return Status::ok();
}

const Command kCircleCommands[] = {{"circle", kCircleFlags, countOf(kCircleFlags), circle,
                                    "Makes a circle or an arc with construction history."}};

}  // namespace

CommandTable circleCommands() {
    return {kCircleCommands, std::size(kCircleCommands)};
}

}  // namespace torvel
