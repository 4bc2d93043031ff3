// Constraints of rigs that others made, against the results which those files hold.
#include "nodes/constraint/math.h"
#include "rig_scene.h"

namespace torvel::test {

/// One stored result beside the one computed.
struct StoredResult {
    std::string constraint;
    const char* attr;
    double distance;  ///< of positions and scales; of rotations: largest difference of the matrices
};

class ConstraintRigs : public EachRig {
  protected:
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

class LastRotations : public ConstraintRigs {};

TEST_P(LastRotations, AreWhatTheTargetsGive) {
    std::vector<StoredResult> results;
    compareRotations(results);
    EXPECT_EQ(static_cast<int>(results.size()), GetParam().lastRotations);
    EXPECT_EQ(misses(results, 1e-5), GetParam().lastMisses);
}

INSTANTIATE_TEST_SUITE_P(Stored, LastRotations, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return rig.lastRotations > 0;
                         })));

/// Rest values are what came out when a constraint was made. The rig went on from there, so a
/// difference is explained when the value comes out again with the constraint as it was then.
class RestValues : public ConstraintRigs {
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
    EXPECT_EQ(counts, GetParam().rests);
    EXPECT_EQ(posed, GetParam().posedSince);
}

INSTANTIATE_TEST_SUITE_P(Stored, RestValues, ::testing::ValuesIn(rigsWith([](const Rig& rig) {
                             return !rig.rests.empty();
                         })));

}  // namespace torvel::test
