// blendShape: adds the offsets of its targets, in-between shapes included, to the points that come
// in.
#include "nodes/deform/blend_shape.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/core/rows.h"
#include "nodes/deform/types.h"

namespace torvel {

double itemWeight(std::int32_t index) {
    return (index - 5000) / 1000.0;
}

std::vector<double> itemShares(const std::vector<ShapeItem>& items, double weight) {
    struct Stop {
        double weight;
        int item;  // -1: the unmoved shape
    };
    std::vector<double> shares(items.size(), 0.0);
    if (items.empty() || weight == 0.0)
        return shares;
    std::vector<Stop> stops{{0.0, -1}};
    for (std::size_t i = 0; i < items.size(); ++i)
        stops.push_back({items[i].weight, static_cast<int>(i)});
    std::sort(stops.begin(), stops.end(),
              [](const Stop& a, const Stop& b) { return a.weight < b.weight; });
    std::size_t right = 1;
    while (right + 1 < stops.size() && stops[right].weight < weight)
        ++right;
    const Stop &a = stops[right - 1], &b = stops[right];
    const bool beyond = weight < a.weight || weight > b.weight;
    const auto give = [&](const Stop& stop, double share) {
        if (stop.item >= 0)
            shares[static_cast<std::size_t>(stop.item)] = share;
    };
    if (beyond) {
        const Stop& last = a.item < 0 ? b : b.item < 0 ? a : weight > b.weight ? b : a;
        give(last, weight / last.weight);
    } else {
        give(a, (b.weight - weight) / (b.weight - a.weight));
        give(b, (weight - a.weight) / (b.weight - a.weight));
    }
    return shares;
}

namespace {

bool readNumber(std::string_view& text, std::size_t& out) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), out);
    if (read.ec != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return true;
}

// "3]", "2:5]" or "*]"
bool readRange(std::string_view text, std::size_t count, std::size_t& first, std::size_t& last) {
    if (text == "*]") {
        first = 0;
        last = count - 1;
        return count > 0;
    }
    if (!readNumber(text, first))
        return false;
    last = first;
    if (!text.empty() && text.front() == ':') {
        text.remove_prefix(1);
        if (!readNumber(text, last))
            return false;
    }
    return text == "]" && last >= first;
}

}  // namespace

std::vector<std::size_t> namedPoints(const std::vector<std::string>& components,
                                     std::size_t count) {
    std::vector<std::size_t> points;
    for (const std::string& text : components) {
        const std::size_t open = text.find('[');
        std::size_t first = 0, last = 0;
        if (open == std::string::npos ||
            !readRange(std::string_view(text).substr(open + 1), count, first, last))
            continue;
        for (std::size_t i = first; i <= last && i < count; ++i)
            points.push_back(i);
    }
    return points;
}

namespace {

constexpr AttrRow kBlendShapeAttrs[] = {
    attrRow("topologyCheck", "tc", AttrType::Bool, 1.0, 0, kFilterOutput),
    attrRow("supportNegativeWeights", "sn", AttrType::Bool),
    attrRow("weight", "w", AttrType::Float, 0.0, kArray | kKeyable, kFilterOutput),
    enumRow("origin", "or", "World:Local", 1.0),
    compoundRow("inputTarget", "it", AttrType::Compound, kArray, kFilterOutput),
    under("inputTarget", compoundRow("inputTargetGroup", "itg", AttrType::Compound, kArray)),
    under("inputTargetGroup", compoundRow("inputTargetItem", "iti", AttrType::Compound, kArray)),
    under("inputTargetItem", attrRow("inputGeomTarget", "igt", AttrType::Mesh, 0.0, kNotStored)),
    under("inputTargetItem", attrRow("inputPointsTarget", "ipt", AttrType::PointArray)),
    under("inputTargetItem", attrRow("inputComponentsTarget", "ict", AttrType::ComponentList)),
    under("inputTargetGroup", attrRow("targetWeights", "tw", AttrType::Float, 1.0, kArray)),
    under("inputTarget", attrRow("baseWeights", "bw", AttrType::Float, 1.0, kArray)),
    attrRow("midLayerId", "mlid", AttrType::Long),
    attrRow("midLayerParent", "mlpr", AttrType::Long),
    attrRow("parentDirectory", "pndr", AttrType::Long, 0.0, kArray, kFilterOutput),
    attrRow("targetVisibility", "tgvs", AttrType::Bool, 1.0, kArray, kFilterOutput),
    compoundRow("targetDirectory", "tgdt", AttrType::Compound, kArray, kFilterOutput),
    under("targetDirectory", attrRow("directoryName", "dtn", AttrType::String)),
    under("targetDirectory", attrRow("childIndices", "cid", AttrType::IntArray)),
    under("targetDirectory", attrRow("directoryVisibility", "dvs", AttrType::Bool, 1.0)),
    under("targetDirectory", attrRow("directoryParentVisibility", "dpvs", AttrType::Bool, 1.0)),
    under("targetDirectory", attrRow("directoryWeight", "dwgh", AttrType::Float, 1.0)),
    attrRow("deformationOrder", "dfo", AttrType::Short),
};

constexpr AffectRow kAffects[] = {{"originalGeometry", "outputGeometry"}};
constexpr TypeAttrs kShapes("blendShape", kGeometryFilter, kBlendShapeAttrs, kAffects);

struct ShapeAttrs {
    AttrIndex weight = kShapes["weight"], target = kShapes["inputTarget"],
              group = kShapes["inputTargetGroup"], item = kShapes["inputTargetItem"];
    AttrIndex geometry = kShapes["inputGeomTarget"], points = kShapes["inputPointsTarget"],
              components = kShapes["inputComponentsTarget"];
    AttrIndex targetWeights = kShapes["targetWeights"], baseWeights = kShapes["baseWeights"];
    AttrIndex directoryOf = kShapes["parentDirectory"], visible = kShapes["targetVisibility"],
              directory = kShapes["targetDirectory"], directoryWeight = kShapes["directoryWeight"];
    AttrIndex original = kShapes["originalGeometry"], envelope = kShapes["envelope"];
};
constexpr ShapeAttrs kAt{};

// Points of a mesh or a curve, double precision.
std::vector<V3d> pointsOf(const PayloadPtr& geometry) {
    std::vector<V3d> points;
    if (const auto* mesh = dynamic_cast<const MeshData*>(geometry.get()))
        points.assign(mesh->points.begin(), mesh->points.end());
    else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(geometry.get()))
        points = curve->cvs;
    return points;
}

PayloadPtr withPoints(const PayloadPtr& geometry, const std::vector<V3d>& points) {
    if (const auto* mesh = dynamic_cast<const MeshData*>(geometry.get())) {
        auto moved = std::make_shared<MeshData>();
        moved->topology = mesh->topology;
        moved->points.assign(points.begin(), points.end());
        return moved;
    }
    const auto* curve = dynamic_cast<const NurbsCurveData*>(geometry.get());
    if (!curve)
        return geometry;  // of a kind that is kept as text
    auto moved = std::make_shared<NurbsCurveData>(*curve);
    moved->cvs = points;
    return moved;
}

Plug below(Plug plug, AttrIndex attr, int level = -1, std::int32_t index = 0) {
    plug.attr = attr;
    if (level >= 0)
        plug.index[level] = index;
    return plug;
}

// A living target is compared with the shape before any deformer, a stored one brings its own
// offsets.
void readOffsets(Evaluation& e, const Plug& item, const std::vector<V3d>& base, ShapeItem& out) {
    const ShapeAttrs& at = kAt;
    if (const PayloadPtr shape = e.data(below(item, at.geometry))) {
        const std::vector<V3d> points = pointsOf(shape);
        for (std::size_t i = 0; i < std::min(points.size(), base.size()); ++i)
            if (points[i] != base[i])
                out.offsets.emplace_back(i, points[i] - base[i]);
        return;
    }
    const auto stored = e.dataAs<DoubleArrayData>(below(item, at.points));
    const auto components = e.dataAs<ComponentListData>(below(item, at.components));
    if (!stored || !components)
        return;
    const std::vector<std::size_t> named = namedPoints(components->items, base.size());
    for (std::size_t i = 0; i < named.size() && i * 4 + 2 < stored->items.size(); ++i) {
        const double* xyz = stored->items.data() + i * 4;
        out.offsets.emplace_back(named[i], V3d(xyz[0], xyz[1], xyz[2]));
    }
}

double weightOf(Evaluation& e, std::int32_t target) {
    const ShapeAttrs& at = kAt;
    QuickNode node(e);
    if (node.elementOr(at.visible, target, at.visible, 1.0) == 0.0)
        return 0.0;
    const auto directory =
        static_cast<std::int32_t>(node.elementOr(at.directoryOf, target, at.directoryOf, 0.0));
    return node.elementOr(at.weight, target, at.weight, 0.0) *
           node.elementOr(at.directory, directory, at.directoryWeight, 1.0);
}

// Painted weights by point; 1 where nothing was painted.
std::vector<double> painted(Evaluation& e, const Plug& array, std::size_t count) {
    std::vector<double> weights(count, 1.0);
    for (std::size_t i = 0; i < e.scene().elementCount(array); ++i) {
        const Plug element = e.scene().elementAt(array, i);
        const auto point = static_cast<std::size_t>(e.scene().logicalIndex(element));
        if (point < count)
            weights[point] = e.number(element);
    }
    return weights;
}

void addTarget(Evaluation& e, const Plug& group, double weight, const std::vector<V3d>& base,
               std::vector<V3d>& moves) {
    const ShapeAttrs& at = kAt;
    std::vector<ShapeItem> items;
    std::vector<Plug> plugs;
    for (const std::int32_t index : e.scene().elementIndices(below(group, at.item))) {
        if (itemWeight(index) == 0.0)
            continue;
        items.push_back({itemWeight(index), {}});
        plugs.push_back(below(group, at.item, 2, index));
    }
    const std::vector<double> shares = itemShares(items, weight);
    const std::vector<double> paint = painted(e, below(group, at.targetWeights), base.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (shares[i] == 0.0)
            continue;
        readOffsets(e, plugs[i], base, items[i]);
        for (const auto& [point, offset] : items[i].offsets)
            moves[point] += offset * (shares[i] * paint[point]);
    }
}

PayloadPtr blend(Evaluation& e, std::int32_t element, const PayloadPtr& geometry) {
    const ShapeAttrs& at = kAt;
    const PayloadPtr original = e.data(e.plug(at.original, element));
    std::vector<V3d> points = pointsOf(geometry);
    std::vector<V3d> base = original ? pointsOf(original) : points;
    if (base.size() != points.size())
        base = points;
    const Plug target = e.plug(at.target, element);
    std::vector<V3d> moves(points.size(), V3d(0.0));
    bool any = false;
    for (const std::int32_t index : e.scene().elementIndices(below(target, at.group))) {
        const double weight = weightOf(e, index);
        any = any || weight != 0.0;
        if (weight != 0.0)
            addTarget(e, below(target, at.group, 1, index), weight, base, moves);
    }
    if (!any)
        return geometry;
    const std::vector<double> paint = painted(e, below(target, at.baseWeights), points.size());
    const double envelope = e.number(at.envelope);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] += moves[i] * (paint[i] * envelope);
    return withPoints(geometry, points);
}

void blendShape(Evaluation& e) {
    evaluateFilter(e, blend);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kShapes, fn::kBlendShape, "kBlendShape", kDeformerType, blendShape)};

}  // namespace

TypeRows blendShapeTypes() {
    return family(kTypes);
}

}  // namespace torvel
