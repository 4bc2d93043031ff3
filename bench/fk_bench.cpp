// The FK click: joints in chains of a given length under one root, to the placed controls.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPushButton>

#include "app/host_setup.h"
#include "script/session.h"
#include "control/control_window.h"
#include "graph/scene.h"
#include "nodes/transform/transform.h"

namespace {

using torvel::NodeHandle;
using torvel::Scene;

std::vector<NodeHandle> makeJoints(Scene& scene, int count, int chainLength) {
    std::vector<NodeHandle> joints(1);
    torvel::ignore(scene.createNode("joint", "root", {}, joints[0]));
    for (int i = 1; i < count; ++i) {
        const bool newChain = (i - 1) % chainLength == 0;
        NodeHandle joint;
        torvel::ignore(scene.createNode("joint", "link" + std::to_string(i),
                                        newChain ? joints[0] : joints.back(), joint));
        scene.setVec3(scene.findPlug(joint, "translate"),
                      {newChain ? 0.2 * i : 0.0, newChain ? 0.0 : 1.0, 0.0});
        scene.setVec3(scene.findPlug(joint, "jointOrient"), {0.1, 0.0, 0.05});
        joints.push_back(joint);
    }
    return joints;
}

void fkClick(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0)),
              chainLength = static_cast<int>(state.range(1));
    double miss = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        auto session = std::make_unique<torvel::Session>();
        torvel::setUpSession(*session);
        Scene& scene = session->scene();
        const std::vector<NodeHandle> joints = makeJoints(scene, count, chainLength);
        const torvel::V3d before = torvel::worldPosition(scene, joints.back());
        torvel::Value none;
        torvel::ignore(session->python->run("import maya.cmds as cmds", none));
        scene.selection().replaceNodes(joints);
        auto* window = new ControlWindow(nullptr);
        state.ResumeTiming();

        window->btn_FKsystem->click();
        const torvel::V3d after = torvel::worldPosition(scene, joints.back());

        state.PauseTiming();
        miss = std::max(miss, (after - before).length());
        state.counters["controls"] = static_cast<double>(scene.selection().nodes().size());
        delete window;
        session.reset();
        state.ResumeTiming();
    }
    state.counters["miss"] = miss;
}
BENCHMARK(fkClick)
    ->Args({200, 20})
    ->Args({200, 200})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
