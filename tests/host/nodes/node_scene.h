#pragma once

#include <gtest/gtest.h>

#include "nodes/node_table.h"
#include "edit/placing.h"

namespace torvel::test {

/// A scene with the real node types.
class NodeScene : public ::testing::Test {
  protected:
    NodeHandle make(const char* type, const char* name, NodeHandle parent = {}) {
        NodeHandle made;
        const Status status = scene.createNode(type, name, parent, made);
        EXPECT_TRUE(status) << status.text();
        return made;
    }
    Plug plug(NodeHandle node, const char* attr) const {
        const Plug found = scene.findPlug(node, attr);
        EXPECT_FALSE(found.isNull()) << attr;
        return found;
    }
    void set(NodeHandle node, const char* attr, double value) {
        scene.setNumber(plug(node, attr), value);
    }
    void set(NodeHandle node, const char* attr, double x, double y, double z) {
        scene.setVec3(plug(node, attr), {x, y, z});
    }
    void setDegrees(NodeHandle node, const char* attr, double x, double y, double z) {
        set(node, attr, x * kDegToRad, y * kDegToRad, z * kDegToRad);
    }
    V3d get(NodeHandle node, const char* attr) const { return scene.vec3(plug(node, attr)); }
    V3d degrees(NodeHandle node, const char* attr) const { return get(node, attr) * kRadToDeg; }
    V3d position(NodeHandle node) const { return worldPosition(scene, node); }
    void link(NodeHandle from, const char* source, NodeHandle to, const char* target) {
        const Status status = scene.connect(plug(from, source), plug(to, target));
        EXPECT_TRUE(status) << status.text();
    }

    Log log;
    Scene scene{nodeTypes(), log};
    /// Writes the channels that a node must have for a local matrix, rotate and scale taking it.
    Status setLocalMatrix(NodeHandle node, const M44d& local) {
        return write(node, channelsFor(node, local));
    }
    Channels channelsFor(NodeHandle node, const M44d& local) {
        Channels channels = channelsOf(scene, node);
        channelsForLocalByRotate(channels, local);
        return channels;
    }
    Status write(NodeHandle node, const Channels& channels) {
        ChannelPlan plan;
        const Status planned = plan.plan(scene, node, channels);
        if (planned)
            plan.apply(scene);
        return planned;
    }
};

inline void expectNear(const V3d& got, const V3d& wanted, double tolerance = 1e-9) {
    EXPECT_LE((got - wanted).length(), tolerance) << got << " instead of " << wanted;
}

inline void expectNear(const M44d& got, const M44d& wanted, double tolerance = 1e-9) {
    EXPECT_TRUE(nearlyEqual(got, wanted, tolerance)) << got << " instead of\n" << wanted;
}

}  // namespace torvel::test
