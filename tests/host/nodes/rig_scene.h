#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "files/ma/reader.h"
#include "node_scene.h"

namespace torvel::test {

/// What is known about an ikHandle that does not answer to its file in every way.
struct HandleException {
    const char* handle;
    enum Kind { OutOfReach, NotEvaluated } kind;
    double degrees;  ///< how far the joints may stand off what is stored
    const char* reason;
};

/// What is known about one rig that others made: a fact that was not given is not looked at.
struct Rig {
    const char* file;

    int atBindPose = 0;         ///< joints that stand where their bindPose says
    bool inverseBinds = false;  ///< bindPreMatrix is the inverse of bindPose, for some joints
    int bound = 0;              ///< skinned joints, all of them standing where they were bound
    int poseMembers = 0;        ///< of all dagPoses, with channels held; none has moved
    int lastRotations = 0;      ///< of parent and orient constraints that drive something
    std::vector<std::string> lastMisses{};  ///< those whose lastTargetRotate does not come out
    std::map<std::string, int> rests{};     ///< how many rest values for each reason
    std::vector<std::string> posedSince{};  ///< those that no such reason explains
    int rotatePlane = 0, singleChain = 0, otherSolvers = 0;  ///< ikHandles
    std::vector<HandleException> exceptions{};

    bool hasHandles() const { return rotatePlane + singleChain + otherSolvers > 0; }
};
inline std::ostream& operator<<(std::ostream& out, const Rig& rig) {
    return out << rig.file;
}

const std::vector<Rig>& allRigs();

/// The rigs for which `fact` is true.
template <class Fact>
std::vector<Rig> rigsWith(Fact&& fact) {
    std::vector<Rig> out;
    for (const Rig& rig : allRigs())
        if (fact(rig))
            out.push_back(rig);
    return out;
}

/// A scene filled from a rig of the folder that TORVEL_RIGS names. A test of a rig that is not at
/// hand is skipped; its body is not run then.
class RigScene : public NodeScene {
  protected:
    void open(const std::string& file);
    std::vector<NodeHandle> allOf(const char* type) const;
    /// Three numbers as the file gives them, nothing evaluated.
    V3d stored(NodeHandle node, const char* attr) const;
};

/// The same once for each rig of an instantiation.
class EachRig : public RigScene, public ::testing::WithParamInterface<Rig> {
  protected:
    void SetUp() override { open(GetParam().file); }
};

}  // namespace torvel::test
