// The clicks that keep the skin, to the finished mesh: joints in chains of 20 under one root, one
// cluster.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <map>

#include <QApplication>
#include <QPushButton>

#include "app/host_setup.h"
#include "script/session.h"
#include "graph/scene.h"
#include "nodes/shape/mesh.h"
#include "skeleton/skeleton_window.h"

namespace {

using torvel::NodeHandle;
using torvel::Scene;
using torvel::Value;

Value call(torvel::Session& session, const char* name, std::vector<Value> args,
           std::vector<torvel::RawFlag> flags = {}) {
    Value result;
    const torvel::Status status = session.call(name, flags, std::move(args), result);
    if (!status)
        std::fprintf(stderr, "%s: %s\n", name, status.text().c_str());
    return result;
}

void makeJoints(Scene& scene, int count) {
    NodeHandle root, at;
    torvel::ignore(scene.createNode("joint", "root", {}, root));
    for (int i = 1; i < count; ++i) {
        const bool newChain = (i - 1) % 20 == 0;
        torvel::ignore(
            scene.createNode("joint", "link" + std::to_string(i), newChain ? root : at, at));
        scene.setVec3(scene.findPlug(at, "translate"),
                      {newChain ? 0.02 * i : 0.0, newChain ? 0.0 : 1.0, 0.0});
        scene.setVec3(scene.findPlug(at, "rotate"), {0.1, 0.0, 0.05});
    }
}

using Button = QPushButton* SkeletonWindow::*;

using Seconds = std::chrono::duration<double>;

/// Shortest time of one tool by joints and side of the mesh.
using Times = std::map<std::pair<int, int>, double>;

void noteTime(Times& times, int joints, int side, double spent) {
    const auto known = times.emplace(std::make_pair(joints, side), spent);
    known.first->second = std::min(known.first->second, spent);
}

// The powers with which the time grows from the small to the large sizes: 1 is in proportion.
void reportGrowth(benchmark::State& state, const Times& times) {
    if (times.size() < 4)
        return;
    const double large = times.at({1000, 999});
    state.counters["joint_power"] = std::log(large / times.at({200, 999})) / std::log(5.0);
    state.counters["vertex_power"] = std::log(large / times.at({1000, 316})) / std::log(10.0);
}

void editClick(benchmark::State& state, Button button, Times* times) {
    const int joints = static_cast<int>(state.range(0)), side = static_cast<int>(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        auto owned = std::make_unique<torvel::Session>();
        torvel::Session& session = *owned;
        torvel::setUpSession(session);
        Scene& scene = session.scene();
        makeJoints(scene, joints);
        call(session, "polyPlane", {},
             {{"subdivisionsX", {side}, false}, {"subdivisionsY", {side}, false}});
        call(session, "skinCluster", {"root", "pPlane1"}, {{"maximumInfluences", {4}, false}});
        call(session, "select", {"link1"});
        NodeHandle shape;
        torvel::ignore(scene.names().findOne("pPlaneShape1", shape));
        benchmark::DoNotOptimize(torvel::meshPoints(scene, shape));
        auto* window = new SkeletonWindow(nullptr);
        state.ResumeTiming();
        const auto began = std::chrono::steady_clock::now();

        (window->*button)->click();
        auto mesh = torvel::meshPoints(scene, shape);
        benchmark::DoNotOptimize(mesh.get());

        noteTime(*times, joints, side, Seconds(std::chrono::steady_clock::now() - began).count());
        state.PauseTiming();
        state.counters["vertices"] = mesh ? static_cast<double>(mesh->points.size()) : 0.0;
        mesh.reset();
        delete window;
        owned.reset();
        state.ResumeTiming();
    }
    reportGrowth(state, *times);
}

Times freezeTimes, orientTimes, flipTimes;

void atEverySize(benchmark::internal::Benchmark* bench) {
    bench->Args({200, 316})->Args({1000, 316})->Args({200, 999})->Args({1000, 999});
    bench->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3)->ReportAggregatesOnly(true);
}
BENCHMARK_CAPTURE(editClick, freeze, static_cast<Button>(&SkeletonWindow::btn_freezeRot),
                  &freezeTimes)
    ->Apply(atEverySize);
BENCHMARK_CAPTURE(editClick, orient, static_cast<Button>(&SkeletonWindow::btn_OrientJoints),
                  &orientTimes)
    ->Apply(atEverySize);
BENCHMARK_CAPTURE(editClick, flip, static_cast<Button>(&SkeletonWindow::btn_flipOrient), &flipTimes)
    ->Apply(atEverySize);

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
