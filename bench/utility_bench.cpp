// What a visit of a utility node costs: a driver moves, every node that hangs on it becomes dirty
// and is pulled again. Told are the evaluation alone (limit: 0.2 microseconds) and the whole with
// the dirtying, each the best of all rounds.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include "graph/evaluation.h"
#include "nodes/animation/anim_curve.h"
#include "nodes/node_table.h"

namespace torvel {
namespace {

constexpr int kNodes = 1000;

struct Case {
    const char* type;
    const char* source;  ///< of the driver, a transform
    const char* input;
    const char* output;
};

const Case kCases[] = {
    {"reverse", "tx", "inputX", "outputX"},
    {"multiplyDivide", "tx", "input1X", "outputX"},
    {"multiplyDivide", "t", "input1", "output"},
    {"plusMinusAverage", "tx", "input1D[0]", "output1D"},
    {"condition", "tx", "firstTerm", "outColorR"},
    {"distanceBetween", "t", "point1", "distance"},
    {"blendColors", "t", "color1", "output"},
    {"blendTwoAttr", "tx", "input[1]", "output"},
    {"blendWeighted", "tx", "input[1]", "output"},
    {"clamp", "t", "input", "output"},
    {"setRange", "t", "value", "outValue"},
    {"remapValue", "tx", "inputValue", "outValue"},
    {"unitConversion", "tx", "input", "output"},
    {"addDoubleLinear", "tx", "input1", "output"},
    {"multDoubleLinear", "tx", "input1", "output"},
    {"composeMatrix", "t", "inputTranslate", "outputMatrix"},
    {"decomposeMatrix", "opm", "inputMatrix", "outputTranslate"},
    {"multMatrix", "opm", "matrixIn[1]", "matrixSum"},
    {"inverseMatrix", "opm", "inputMatrix", "outputMatrix"},
    {"pickMatrix", "opm", "inputMatrix", "outputMatrix"},
    {"blendMatrix", "opm", "target[0].targetMatrix", "outputMatrix"},
    {"wtAddMatrix", "opm", "wtMatrix[0].matrixIn", "matrixSum"},
    {"pairBlend", "t", "inTranslate1", "outTranslate"},
    {"choice", "tx", "input[0]", "output"},
    {"animCurveUU", "tx", "input", "output"},
};

struct Graph {
    Log log;
    Scene scene{nodeTypes(), log};
    NodeHandle driver;
    std::vector<Plug> outputs;

    explicit Graph(const Case& c) {
        ignore(scene.createNode("transform", "driver", {}, driver));
        for (int i = 0; i < kNodes; ++i) {
            NodeHandle node;
            ignore(scene.createNode(c.type, "", {}, node));
            ignore(scene.connect(scene.findPlug(driver, c.source), scene.findPlug(node, c.input)));
            if (std::string(c.type) == "animCurveUU")
                setKeys(scene, node, {{0, 0}, {500, 10}, {1000, 0}, {1500, 20}});
            outputs.push_back(scene.findPlug(node, c.output));
        }
    }
    void move(double value, bool isMatrix) {
        if (!isMatrix)
            return scene.setNumber(scene.findPlug(driver, "tx"), value);
        M44d m;
        m[3][0] = value;
        scene.setMatrix(scene.findPlug(driver, "opm"), m);
    }
};

void visit(benchmark::State& state, const Case* c) {
    using Clock = std::chrono::steady_clock;
    Graph graph(*c);
    const bool isMatrix = std::string(c->source) == "opm";
    double value = 0.0, evaluation = 1e300, whole = 1e300;
    for (auto round : state) {
        static_cast<void>(round);
        const auto start = Clock::now();
        graph.move(value += 1.0, isMatrix);
        const auto dirty = Clock::now();
        for (const Plug& output : graph.outputs)
            graph.scene.evaluate(output);
        const auto end = Clock::now();
        evaluation = std::min(evaluation, std::chrono::duration<double>(end - dirty).count());
        whole = std::min(whole, std::chrono::duration<double>(end - start).count());
    }
    state.counters["us/evaluation"] = evaluation * 1e6 / kNodes;
    state.counters["us/with dirtying"] = whole * 1e6 / kNodes;
}

const bool kRegistered = [] {
    for (const Case& c : kCases)
        benchmark::RegisterBenchmark((std::string(c.type) + "/" + c.source).c_str(), visit, &c)
            ->Unit(benchmark::kMicrosecond);
    return true;
}();

}  // namespace
}  // namespace torvel
