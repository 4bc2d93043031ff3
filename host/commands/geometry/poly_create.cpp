#include "script/session.h"
#include "edit/sets.h"
#include "nodes/shape/mesh.h"
#include "nodes/shape/poly_shapes.h"

namespace torvel {
namespace {

// Flags that give attributes of the maker node their values.
struct SizeFlag {
    const char* flag;
    const char* attr;
};

struct PolyKind {
    const char* nodeType;
    const char* stem;  ///< of the transform: "pCube"
    const SizeFlag* sizes;
    std::size_t sizeCount;
    double (*faces)(double, double, double);  ///< for the last two or three sizes, the segments
};

constexpr SizeFlag kCubeSizes[] = {{"width", "width"},
                                   {"height", "height"},
                                   {"depth", "depth"},
                                   {"subdivisionsX", "subdivisionsWidth"},
                                   {"subdivisionsY", "subdivisionsHeight"},
                                   {"subdivisionsZ", "subdivisionsDepth"}};
constexpr SizeFlag kPlaneSizes[] = {{"width", "width"},
                                    {"height", "height"},
                                    {"subdivisionsX", "subdivisionsWidth"},
                                    {"subdivisionsY", "subdivisionsHeight"}};
constexpr SizeFlag kCylinderSizes[] = {{"radius", "radius"},
                                       {"height", "height"},
                                       {"subdivisionsX", "subdivisionsAxis"},
                                       {"subdivisionsY", "subdivisionsHeight"},
                                       {"subdivisionsZ", "subdivisionsCaps"}};

Status makeNodes(const CommandCall& call, const PolyKind& kind, NodeHandle (&made)[3]) {
    Scene& scene = call.scene();
    const std::string wanted = call.text("name");
    const std::string name = wanted.empty() ? scene.names().numbered(kind.stem) : wanted;
    if (const Status status = scene.createNode("transform", name, {}, made[0]); !status)
        return status;
    const std::string given = scene.node(made[0])->name;
    const std::string stem = kind.stem;
    const std::string shape =
        wanted.empty() ? stem + "Shape" + given.substr(stem.size()) : given + "Shape";
    if (const Status status = scene.createNode("mesh", shape, made[0], made[1]); !status)
        return status;
    return scene.createNode(kind.nodeType, "", {}, made[2]);
}

Status setSizes(const CommandCall& call, const PolyKind& kind, NodeHandle maker) {
    Scene& scene = call.scene();
    double segments[3]{};
    std::size_t counted = 0;
    for (std::size_t i = 0; i < kind.sizeCount; ++i) {
        const FlagUse* use = call.use(kind.sizes[i].flag);
        if (!use)
            continue;
        const Plug plug = scene.findPlug(maker, kind.sizes[i].attr);
        const double value = use->values[0].number();
        if (value < scene.info(plug).minimum)
            return call.fail(std::string(kind.sizes[i].flag) + " is too small.");
        scene.setNumber(plug, value);
    }
    for (std::size_t i = 0; i < kind.sizeCount; ++i)
        if (std::string_view(kind.sizes[i].flag).substr(0, 3) == "sub")
            segments[counted++] = scene.number(scene.findPlug(maker, kind.sizes[i].attr));
    if (kind.faces(segments[0], segments[1], segments[2]) > kMostPolyFaces)
        return call.fail("More than " + std::to_string(static_cast<int>(kMostPolyFaces)) +
                         " faces cannot be made.");
    if (const FlagUse* axis = call.use("axis"))
        scene.setVec3(
            scene.findPlug(maker, "axis"),
            V3d(axis->values[0].number(), axis->values[1].number(), axis->values[2].number()));
    if (call.has("createUVs"))
        scene.setNumber(scene.findPlug(maker, "createUVs"), call.integer("createUVs"));
    return Status::ok();
}

Status finish(const CommandCall& call, NodeHandle (&made)[3], std::vector<NodeHandle>& result) {
    Scene& scene = call.scene();
    const Plug in = scene.findPlug(made[1], "inMesh");
    if (const Status status = scene.connect(scene.findPlug(made[2], "output"), in); !status)
        return status;
    result = {made[0], made[2]};
    if (!call.flag("constructionHistory", true)) {
        setOwnMesh(scene, made[1], *meshPoints(scene, made[1]));
        scene.deleteNodes({made[2]});
        result.pop_back();
    }
    if (const NodeHandle group = scene.names().lookUp("initialShadingGroup"); !group.isNull())
        ignore(addToSet(scene, group, made[1]));
    scene.selection().replace(made[0]);
    return Status::ok();
}

Status createPoly(const CommandCall& call, const PolyKind& kind, Value& result) {
    Scene& scene = call.scene();
    if (!call.args().empty())
        return call.fail("Takes no objects.");
    NodeHandle made[3];
    Status status = makeNodes(call, kind, made);
    status = status ? setSizes(call, kind, made[2]) : status;
    std::vector<NodeHandle> nodes;
    status = status ? finish(call, made, nodes) : status;
    if (!status) {
        scene.deleteNodes({made[2], made[0]});
        return status;
    }
    Value::List names;
    for (NodeHandle node : nodes)
        names.emplace_back(scene.names().shortest(node));
    result = Value(std::move(names));
    return Status::ok();
}

Status runCube(const CommandCall& call, Value& result) {
    return createPoly(call, {"polyCube", "pCube", kCubeSizes, std::size(kCubeSizes), polyCubeFaces},
                      result);
}

Status runPlane(const CommandCall& call, Value& result) {
    return createPoly(
        call, {"polyPlane", "pPlane", kPlaneSizes, std::size(kPlaneSizes), polyPlaneFaces}, result);
}

Status runCylinder(const CommandCall& call, Value& result) {
    return createPoly(
        call,
        {"polyCylinder", "pCylinder", kCylinderSizes, std::size(kCylinderSizes), polyCylinderFaces},
        result);
}

constexpr FlagRow kCubeFlags[] = {
    {"name", "n", "s", kCreate},           {"width", "w", "l", kCreate},
    {"height", "h", "l", kCreate},         {"depth", "d", "l", kCreate},
    {"subdivisionsX", "sx", "i", kCreate}, {"subdivisionsY", "sy", "i", kCreate},
    {"subdivisionsZ", "sz", "i", kCreate}, {"axis", "ax", "lll", kCreate},
    {"createUVs", "cuv", "i", kCreate},    {"constructionHistory", "ch", "b", kCreate},
};
constexpr FlagRow kPlaneFlags[] = {
    {"name", "n", "s", kCreate},           {"width", "w", "l", kCreate},
    {"height", "h", "l", kCreate},         {"subdivisionsX", "sx", "i", kCreate},
    {"subdivisionsY", "sy", "i", kCreate}, {"axis", "ax", "lll", kCreate},
    {"createUVs", "cuv", "i", kCreate},    {"constructionHistory", "ch", "b", kCreate},
};
constexpr FlagRow kCylinderFlags[] = {
    {"name", "n", "s", kCreate},
    {"radius", "r", "l", kCreate},
    {"height", "h", "l", kCreate},
    {"subdivisionsX", "sx", "i", kCreate},
    {"subdivisionsY", "sy", "i", kCreate},
    {"subdivisionsZ", "sz", "i", kCreate},
    {"axis", "ax", "lll", kCreate},
    {"createUVs", "cuv", "i", kCreate},
    {"constructionHistory", "ch", "b", kCreate},
};

const Command kPolyCommands[] = {
    {"polyCube", kCubeFlags, countOf(kCubeFlags), runCube, "Makes a box."},
    {"polyPlane", kPlaneFlags, countOf(kPlaneFlags), runPlane, "Makes a plane."},
    {"polyCylinder", kCylinderFlags, countOf(kCylinderFlags), runCylinder, "Makes a cylinder."},
};

}  // namespace

CommandTable polyCommands() {
    return {kPolyCommands, std::size(kPolyCommands)};
}

}  // namespace torvel
