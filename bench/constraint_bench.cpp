// What one evaluation costs: a constraint with one target, and a joint's world matrix in a
// hierarchy of a thousand.
#include <ctime>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "app/host_setup.h"
#include "script/session.h"
#include "graph/scene.h"
#include "nodes/transform/transform.h"

namespace {

using torvel::NodeHandle;
using torvel::Plug;
using torvel::Scene;
using torvel::Value;

constexpr int kPairs = 200;  // a large rig
constexpr int kJoints = 1000;

// Of this thread alone: what else the machine does is no part of it.
double seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

struct Constrained {
    NodeHandle driver;
    Plug output;
};

// A driver below a group, a joint below a joint, and the constraint that ties them.
Constrained makePair(torvel::Session& session, const char* command, int number) {
    Scene& scene = session.scene();
    NodeHandle group, driver, parent, joint, constraint;
    torvel::ignore(scene.createNode("transform", "group" + std::to_string(number), {}, group));
    torvel::ignore(scene.createNode("transform", "driver" + std::to_string(number), group, driver));
    torvel::ignore(scene.createNode("joint", "parent" + std::to_string(number), {}, parent));
    torvel::ignore(scene.createNode("joint", "joint" + std::to_string(number), parent, joint));
    scene.setVec3(scene.findPlug(group, "rotate"), {0.3, -0.2, 0.9});
    scene.setVec3(scene.findPlug(driver, "translate"), {1.0 + number, 2.0, 3.0});
    scene.setVec3(scene.findPlug(parent, "rotate"), {0.1, 0.7, -0.4});
    scene.setVec3(scene.findPlug(joint, "jointOrient"), {0.0, 0.5, 0.2});
    Value result;
    const torvel::Status made =
        session.call(command, {{"maintainOffset", {}, false}},
                     {"driver" + std::to_string(number), "joint" + std::to_string(number)}, result);
    if (!made || !scene.names().findOne(result.list()[0].string(), constraint))
        std::fprintf(stderr, "%s: %s\n", command, made.text().c_str());
    const char* output = scene.isType(constraint, "pointConstraint")   ? "constraintTranslate"
                         : scene.isType(constraint, "scaleConstraint") ? "constraintScale"
                                                                       : "constraintRotate";
    return {driver, scene.findPlug(constraint, output)};
}

// Only the evaluation is timed: the drivers have moved before.
void constraint(benchmark::State& state, const char* command) {
    torvel::Session session;
    torvel::setUpSession(session);
    Scene& scene = session.scene();
    std::vector<Constrained> pairs;
    for (int i = 0; i < kPairs; ++i)
        pairs.push_back(makePair(session, command, i));
    double turn = 0.0;
    for (auto _ : state) {
        turn += 0.001;
        for (const Constrained& pair : pairs) {
            scene.setNumber(scene.findPlug(pair.driver, "translateY"), turn);
            scene.setNumber(scene.findPlug(pair.driver, "rotateX"), turn);
            scene.setNumber(scene.findPlug(pair.driver, "scaleX"), 1.0 + turn);
        }
        const double start = seconds();
        for (const Constrained& pair : pairs)
            scene.evaluate(pair.output);
        state.SetIterationTime((seconds() - start) / kPairs);
    }
}
BENCHMARK_CAPTURE(constraint, parent, "parentConstraint")
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);
BENCHMARK_CAPTURE(constraint, point, "pointConstraint")
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);
BENCHMARK_CAPTURE(constraint, orient, "orientConstraint")
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);
BENCHMARK_CAPTURE(constraint, aim, "aimConstraint")
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);
BENCHMARK_CAPTURE(constraint, scale, "scaleConstraint")
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);

// Ten roots with chains of twenty below each, every joint turned and linked to its parent's scale.
void worldMatrices(benchmark::State& state) {
    torvel::Session session;
    torvel::setUpSession(session);
    Scene& scene = session.scene();
    std::vector<NodeHandle> roots;
    std::vector<Plug> worlds;
    NodeHandle at;
    for (int i = 0; i < kJoints; ++i) {
        const bool isRoot = i % 100 == 0, newChain = i % 20 == 1;
        const NodeHandle parent = isRoot ? NodeHandle() : newChain ? roots.back() : at;
        torvel::ignore(scene.createNode("joint", "joint" + std::to_string(i), parent, at));
        scene.setVec3(scene.findPlug(at, "translate"), {1.0, 0.1, 0.0});
        scene.setVec3(scene.findPlug(at, "rotate"), {0.1, 0.0, 0.05});
        scene.setVec3(scene.findPlug(at, "jointOrient"), {0.0, 0.3, 0.0});
        if (isRoot)
            roots.push_back(at);
        else
            torvel::ignore(
                scene.connect(scene.findPlug(parent, "scale"), scene.findPlug(at, "inverseScale")));
        worlds.push_back(scene.findPlug(at, "worldMatrix[0]"));
    }
    double turn = 0.0;
    const bool timed = state.range(0) != 0;
    for (auto _ : state) {
        turn += 0.001;
        double start = seconds();
        for (NodeHandle root : roots)
            scene.setNumber(scene.findPlug(root, "rotateZ"), turn);
        if (!timed)
            start = seconds();
        for (const Plug& world : worlds)
            scene.evaluate(world);
        state.SetIterationTime((seconds() - start) / kJoints);
    }
}
BENCHMARK(worldMatrices)
    ->ArgName("withTurning")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(300)
    ->Unit(benchmark::kNanosecond);

}  // namespace
