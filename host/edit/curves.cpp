#include "edit/curves.h"

#include "nodes/transform/transform.h"

namespace torvel {

Status makeCurveNodes(Scene& scene, const std::string& name, const std::string& shapeName,
                      NodeHandle& transform, NodeHandle& shape) {
    if (Status made = scene.createNode("transform", name, {}, transform); !made)
        return made;
    const Status made = scene.createNode("nurbsCurve", shapeName, transform, shape);
    if (!made)
        scene.deleteNodes({transform});
    return made;
}

std::string freeShapeName(const Scene& scene, const std::string& stem, const std::string& number) {
    const std::string wanted = stem + number;
    return scene.names().find(wanted).empty() ? wanted : scene.names().numbered(stem);
}

NodeHandle curveShapeOf(const Scene& scene, NodeHandle node) {
    if (!scene.isValid(node) || scene.isType(node, "nurbsCurve"))
        return scene.isValid(node) ? node : NodeHandle();
    for (NodeHandle child : scene.node(node)->children)
        if (scene.isType(child, "nurbsCurve") &&
            scene.number(Plug(child, dagAttrs().intermediateObject)) == 0.0)
            return child;
    return {};
}

std::shared_ptr<NurbsCurveData> appended(const NurbsCurveData& curve,
                                         const std::vector<V3d>& points) {
    if (curve.form == 2)
        return nullptr;
    auto out = std::make_shared<NurbsCurveData>(curve);
    out->cvs.insert(out->cvs.end(), points.begin(), points.end());
    out->spans = static_cast<int>(out->cvs.size()) - out->degree;
    out->form = 0;
    std::vector<double>& knots = out->knots;
    const std::size_t count = knots.size() + points.size();
    const auto degree = static_cast<std::size_t>(curve.degree);
    const double end = knots.back();
    std::size_t repeats = 0;  // of the last knot
    for (; repeats + 1 < degree && knots[knots.size() - 2] == end; ++repeats)
        knots.pop_back();
    const double step = knots.size() > 1 ? end - knots[knots.size() - 2] : 1.0;
    while (knots.size() + repeats < count)
        knots.push_back(knots.back() + step);
    knots.resize(count, knots.back());
    return out;
}

}  // namespace torvel
