// Constraints of rigs that others made, against the results which those files hold. TORVEL_RIGS
// names their folder.
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "files/ma/reader.h"
#include "node_scene.h"
#include "nodes/constraint/math.h"
#include "nodes/core/default_nodes.h"

namespace torvel::test {

/// One stored result beside the one computed.
struct StoredResult {
    std::string constraint;
    const char* attr;
    double distance;  ///< of positions and scales; of rotations: largest difference of the matrices
};

class ConstraintRigs : public NodeScene {
  protected:
    bool open(const std::string& name) {
        const char* folder = std::getenv("TORVEL_RIGS");
        std::ifstream file(std::string(folder ? folder : "") + "/" + name, std::ios::binary);
        if (!folder || !file)
            return false;
        std::ostringstream text;
        text << file.rdbuf();
        createDefaultNodes(scene);
        OpenReport report;
        const Status status = readSceneText(scene, text.str(), name, report);
        EXPECT_TRUE(status) << status.text();
        return true;
    }

    V3d stored(NodeHandle node, const char* attr) const {
        const Plug vector = scene.findPlug(node, attr);
        return {scene.storedNumber(scene.child(vector, 0)),
                scene.storedNumber(scene.child(vector, 1)),
                scene.storedNumber(scene.child(vector, 2))};
    }
    double turnBetween(NodeHandle node, const V3d& a, const V3d& b) const {
        const int order = static_cast<int>(scene.number(plug(node, "constraintRotateOrder")));
        const M44d x = eulerMatrix(a, order), y = eulerMatrix(b, order);
        double most = 0.0;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                most = std::max(most, std::fabs(x[i][j] - y[i][j]));
        return most;
    }

    // The last target rotation is taken before the first evaluation: evaluating writes it anew.
    StoredResult rotationOf(NodeHandle node, const V3d& last) const {
        const char* output =
            scene.isType(node, "orientConstraint") ? "lastTargetRotate" : "constraintRotate";
        scene.evaluate(plug(node, "constraintRotate"));
        return {scene.node(node)->name, "lr", turnBetween(node, last, get(node, output))};
    }
    void compareRotations(std::vector<StoredResult>& out) const {
        std::vector<std::pair<NodeHandle, V3d>> before;
        for (NodeHandle node : scene.allNodes())
            if (scene.isType(node, "parentConstraint") || scene.isType(node, "orientConstraint"))
                if (drivesSomething(node, "constraintRotate"))
                    before.emplace_back(node, stored(node, "lastTargetRotate"));
        for (const auto& [node, last] : before)
            out.push_back(rotationOf(node, last));
    }
    bool drivesSomething(NodeHandle node, const char* output) const {
        const Plug vector = plug(node, output);
        for (int i = 0; i < 3; ++i)
            if (!scene.targets(scene.child(vector, i)).empty())
                return true;
        return !scene.targets(vector).empty();
    }

    /// Names of those farther away than `tolerance`, with what was compared.
    static std::vector<std::string> misses(const std::vector<StoredResult>& all, double tolerance) {
        std::vector<std::string> names;
        for (const StoredResult& r : all)
            if (!(r.distance <= tolerance)) {
                names.push_back(r.constraint);
                std::printf("%s.%s is off by %.3g\n", r.constraint.c_str(), r.attr, r.distance);
            }
        return names;
    }
};

struct RigCount {
    const char* file;
    std::size_t compared;
    std::vector<std::string> misses;  ///< with the reason beside each group
};
void PrintTo(const RigCount& rig, std::ostream* out) {
    *out << rig.file;
}

struct RestCount {
    const char* file;
    std::map<std::string, int> counts;  ///< how many results for each reason
    std::vector<std::string> posed;     ///< those that no such reason explains
};
void PrintTo(const RestCount& rig, std::ostream* out) {
    *out << rig.file;
}

class LastRotations : public ConstraintRigs, public ::testing::WithParamInterface<RigCount> {};

TEST_P(LastRotations, AreWhatTheTargetsGive) {
    if (!open(GetParam().file))
        GTEST_SKIP() << GetParam().file << " is not at hand (TORVEL_RIGS)";
    std::vector<StoredResult> results;
    compareRotations(results);
    EXPECT_EQ(results.size(), GetParam().compared);
    EXPECT_EQ(misses(results, 1e-5), GetParam().misses);
}

// The hands of MetaWired hang below arms that an IK solver turned to its own tolerance.
INSTANTIATE_TEST_SUITE_P(Stored, LastRotations,
                         ::testing::Values(RigCount{"rig01.ma", 138, {}},
                                           RigCount{"ForeArmRollJoints.ma", 3, {}},
                                           RigCount{"digitigrade_leg_mod_example.ma", 21, {}},
                                           RigCount{"MetaRig_baseTests_MetaWired.ma",
                                                    9,
                                                    {"Character1_LeftHand_orientConstraint1",
                                                     "Character1_RightHand_orientConstraint1"}},
                                           RigCount{"UsdExportEulerFilterTest.ma", 1, {}}));

/// Rest values are what came out when a constraint was made. The rig went on from there, so a
/// difference is explained when the value comes out again with the constraint as it was then.
class RestValues : public ConstraintRigs, public ::testing::WithParamInterface<RestCount> {
  protected:
    struct Kind {
        const char *type, *output, *rest;
    };
    static constexpr Kind kKinds[] = {
        {"parentConstraint", "constraintTranslate", "restTranslate"},
        {"parentConstraint", "constraintRotate", "restRotate"},
        {"pointConstraint", "constraintTranslate", "restTranslate"},
        {"orientConstraint", "constraintRotate", "restRotate"},
        {"aimConstraint", "constraintRotate", "restRotate"},
        {"scaleConstraint", "constraintScale", "restScale"},
        {"poleVectorConstraint", "constraintTranslate", "restTranslate"}};

    double distance(NodeHandle node, const Kind& kind) const {
        const V3d wanted = stored(node, kind.rest), got = get(node, kind.output);
        return std::string_view(kind.output) == "constraintRotate" ? turnBetween(node, wanted, got)
                                                                   : (wanted - got).length();
    }
    /// An input without its connection for as long as this lives.
    class Cut {
      public:
        Cut(Scene& scene, const Plug& input)
            : m_scene(scene), m_input(input), m_source(scene.source(input)) {
            if (!m_source.isNull())
                m_done = scene.disconnect(m_source, input).isOk();
        }
        ~Cut() {
            EXPECT_TRUE(m_done);
            if (!m_source.isNull())
                m_done = m_scene.connect(m_source, m_input).isOk();
        }
        Cut(const Cut&) = delete;

      private:
        Scene& m_scene;
        Plug m_input, m_source;
        bool m_done = true;
    };
    double underTheWorld(NodeHandle node, const Kind& kind) {
        const Plug input = plug(node, "constraintParentInverseMatrix");
        const Cut cut(scene, input);
        scene.setMatrix(input, M44d());
        return distance(node, kind);
    }
    /// All targets with the same weight, as they are made.
    double withEqualWeights(NodeHandle node, const Kind& kind) {
        std::vector<std::unique_ptr<Cut>> cuts;
        for (const std::int32_t i : scene.elementIndices(plug(node, "target"))) {
            const Plug weight =
                plug(node, ("target[" + std::to_string(i) + "].targetWeight").c_str());
            cuts.push_back(std::make_unique<Cut>(scene, weight));
            scene.setNumber(weight, 1.0);
        }
        return distance(node, kind);
    }
    /// What it takes to get the stored value again.
    std::string reason(NodeHandle node, const Kind& kind) {
        constexpr double kNear = 2e-3;
        if (distance(node, kind) <= kNear)
            return "agrees";
        if (underTheWorld(node, kind) <= kNear)
            return "parented later";
        if (withEqualWeights(node, kind) <= kNear)
            return "weighted later";
        return "posed since";
    }
};

TEST_P(RestValues, ComeOutOfTheConstraintAsItWasMade) {
    if (!open(GetParam().file))
        GTEST_SKIP() << GetParam().file << " is not at hand (TORVEL_RIGS)";
    std::map<std::string, int> counts;
    std::vector<std::string> posed;
    for (const Kind& kind : kKinds)
        for (NodeHandle node : scene.allNodes())
            if (scene.isType(node, kind.type) && drivesSomething(node, kind.output)) {
                const std::string why = reason(node, kind),
                                  name = scene.node(node)->name + "." + kind.rest;
                ++counts[why];
                if (why != "agrees")
                    std::printf("%s: %s (now %.3g away)\n", name.c_str(), why.c_str(),
                                distance(node, kind));
                if (why == "posed since")
                    posed.push_back(name);
            }
    EXPECT_EQ(counts, GetParam().counts);
    EXPECT_EQ(posed, GetParam().posed);
}

// Posed since: poles and feet that were moved after they were bound to their controls, and an
// animated cube.
INSTANTIATE_TEST_SUITE_P(
    Stored, RestValues,
    ::testing::Values(
        RestCount{
            "rig01.ma", {{"agrees", 198}, {"parented later", 88}, {"weighted later", 24}}, {}},
        RestCount{"ForeArmRollJoints.ma", {{"agrees", 6}}, {}},
        RestCount{"digitigrade_leg_mod_example.ma", {{"agrees", 76}, {"parented later", 1}}, {}},
        RestCount{"MetaRig_baseTests_MetaWired.ma",
                  {{"agrees", 9}, {"parented later", 1}, {"posed since", 4}},
                  {"Character1_LeftFoot_orientConstraint1.restRotate",
                   "Character1_RightFoot_orientConstraint1.restRotate",
                   "ikHandle1_poleVectorConstraint1.restTranslate",
                   "ikHandle2_poleVectorConstraint1.restTranslate"}},
        RestCount{"UsdExportEulerFilterTest.ma",
                  {{"agrees", 1}, {"posed since", 1}},
                  {"pCube1_parentConstraint1.restRotate"}},
        RestCount{
            "IKFK.ma", {{"posed since", 1}}, {"ikHandle1_poleVectorConstraint1.restTranslate"}}));

}  // namespace torvel::test
