#include "api/curve_points.h"

#include "api/bridge.h"

namespace torvel::api {

namespace {

void moveOffsets(Scene& graph, const Plug& offsets, const std::vector<V3d>& from, const std::vector<V3d>& to)
{
    for (std::size_t i = 0; i < to.size(); ++i) {
        if (to[i] == from[i])
            continue;
        const Plug offset = graph.element(offsets, static_cast<std::int32_t>(i));
        graph.setVec3(offset, graph.vec3(offset) + to[i] - from[i]);
    }
}

void moveStored(Scene& graph, const Plug& stored, const NurbsCurveData& old, const std::vector<V3d>& from,
                const std::vector<V3d>& to)
{
    auto moved = std::make_shared<NurbsCurveData>(old);
    for (std::size_t i = 0; i < to.size(); ++i)
        moved->cvs[i] = to[i] == from[i] ? old.cvs[i] : old.cvs[i] + to[i] - from[i];
    graph.setData(stored, moved);
}

}  // namespace

Status moveCurvePoints(NodeHandle shape, const std::vector<V3d>& points)
{
    Scene& graph = *scene();
    const auto shown = graph.dataAs<NurbsCurveData>(graph.findPlug(shape, "local"));
    if (!shown || shown->cvs.size() != points.size())
        return Status::failure("the curve has another number of vertices");
    const Plug stored = graph.findPlug(shape, "cached");
    const auto old = graph.dataAs<NurbsCurveData>(stored);
    const bool history = !graph.source(graph.findPlug(shape, "create")).isNull();
    if (!history && old && old->cvs.size() == points.size()) {
        moveStored(graph, stored, *old, shown->cvs, points);
        return Status::ok();
    }
    const Plug offsets = graph.findPlug(shape, "controlPoints");
    if (offsets.isNull())
        return Status::failure("the curve has no controlPoints");
    moveOffsets(graph, offsets, shown->cvs, points);
    return Status::ok();
}

}  // namespace torvel::api
