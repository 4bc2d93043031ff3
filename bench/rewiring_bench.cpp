// One visit of the rewiring loop through the public classes: elementByPhysicalIndex + connectedTo.
#include <benchmark/benchmark.h>

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "app/host_setup.h"
#include "script/session.h"

namespace {

constexpr int kJoints = 1000;

// A cluster with an influence for each of a thousand joints, wired as a bind does it.
torvel::NodeHandle makeCluster(torvel::Scene& scene) {
    torvel::NodeHandle cluster, joint;
    torvel::ignore(scene.createNode("skinCluster", "cluster", {}, cluster));
    for (int i = 0; i < kJoints; ++i) {
        torvel::ignore(scene.createNode("joint", "joint1", {}, joint));
        torvel::ignore(scene.connect(scene.findPlug(joint, "worldMatrix[0]"),
                                     scene.findPlug(cluster, "matrix[" + std::to_string(i) + "]")));
    }
    return cluster;
}

void visit(benchmark::State& state) {
    torvel::Session session;
    torvel::setUpSession(session);
    makeCluster(session.scene());
    MSelectionList list;
    MGlobal::getSelectionListByName("cluster", list);
    MObject node;
    list.getDependNode(0, node);
    const MPlug matrix = MFnDependencyNode(node).findPlug("matrix", true);
    MPlugArray sources;
    for (auto _ : state) {
        for (unsigned int i = 0; i < matrix.numElements(); ++i) {
            matrix.elementByPhysicalIndex(i).connectedTo(sources, true, false);
            benchmark::DoNotOptimize(sources.length());
        }
    }
    state.counters["ns per visit"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * kJoints * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(visit);

}  // namespace
