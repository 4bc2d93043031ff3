// One handle moved and its chain read again through the graph: dirtying, solving, the matrices down
// to the end joint.
#include <benchmark/benchmark.h>

#include <string>

#include "nodes/node_table.h"
#include "nodes/transform/transform.h"

namespace {

using torvel::NodeHandle;
using torvel::Plug;
using torvel::Scene;
using torvel::V3d;

struct Rig {
    torvel::Log log;
    Scene scene{torvel::nodeTypes(), log};
    NodeHandle end, handle;

    NodeHandle make(const char* type, const std::string& name, NodeHandle parent = {}) {
        NodeHandle made;
        torvel::ignore(scene.createNode(type, name, parent, made));
        return made;
    }
    void link(NodeHandle from, const char* source, NodeHandle to, const char* target) {
        torvel::ignore(scene.connect(scene.findPlug(from, source), scene.findPlug(to, target)));
    }
    // `joints` turn; one more stands at the end. Bones of length 1, a bend of 30 degrees in all.
    explicit Rig(int joints) {
        std::vector<NodeHandle> chain;
        for (int i = 0; i <= joints; ++i) {
            const NodeHandle above = chain.empty() ? NodeHandle() : chain.back();
            chain.push_back(make("joint", "j" + std::to_string(i), above));
            if (i == 0)
                continue;
            scene.setVec3(scene.findPlug(chain.back(), "translate"), V3d(1, 0, 0));
            scene.setVec3(scene.findPlug(chain.back(), "jointOrient"), V3d(0, 0, 0.5 / joints));
            link(above, "scale", chain.back(), "inverseScale");
        }
        end = chain.back();
        const NodeHandle effector = make("ikEffector", "effector", chain[chain.size() - 2]);
        for (const char* attr : {"translateX", "translateY", "translateZ"})
            link(end, attr, effector, attr);
        handle = make("ikHandle", "handle");
        link(chain.front(), "message", handle, "startJoint");
        link(effector, "handlePath", handle, "endEffector");
        link(make("ikRPsolver", "solver"), "message", handle, "ikSolver");
    }
};

void moveAndRead(benchmark::State& state) {
    const int joints = static_cast<int>(state.range(0));
    Rig rig(joints);
    const Plug x = rig.scene.findPlug(rig.handle, "translateX"),
               y = rig.scene.findPlug(rig.handle, "translateY");
    rig.scene.setNumber(y, 0.3 * joints);
    int step = 0;
    double miss = 0.0;
    for (auto _ : state) {
        const double at = joints * (0.5 + 0.001 * (++step % 300));
        rig.scene.setNumber(x, at);
        const V3d end = torvel::worldPosition(rig.scene, rig.end);
        benchmark::DoNotOptimize(end);
        miss = std::max(miss, (end - V3d(at, 0.3 * joints, 0)).length());
    }
    state.counters["miss"] = miss;
}

}  // namespace

BENCHMARK(moveAndRead)->Arg(2)->Arg(20)->Unit(benchmark::kMicrosecond);
