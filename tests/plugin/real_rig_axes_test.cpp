// Orient Joints and Flip on whole rigs: our samples and those that others made.

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/real_rig.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

bool contains(const Lines& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

std::string bindLine(const std::string& root, const std::string& mesh) {
    return "python plain: cmds.skinCluster('" + root + "', '" + mesh +
           "', bindMethod=0, skinMethod=0, normalizeWeights=1)";
}

}  // namespace

class RealRigAxesTest : public RealRig, public ::testing::WithParamInterface<const char*> {
  public:
    /// Opens the rig in its bind pose; false when it is not at hand.
    bool start() {
        const std::string sample = std::string(TORVEL_SCENES_DIR) + "/" + GetParam();
        const std::string path = std::filesystem::exists(sample) ? sample : rigPath(GetParam());
        if (path.empty())
            return false;
        open(path);
        const Lines joints = influences();
        python("cmds.dagPose('" + joints.front() + "', restore=True, bindPose=True, g=True)");
        m_top = topOf(joints.front());
        m_rest = restShapes();
        m_before = stateOf(*this);
        m_places = placesOf(*this);
        m_frames = framesOf(*this);
        m_selection.clear();
        for (const auto& [path, frame] : m_frames) {
            if (topOf(path) == m_top)
                m_selection.push_back(path);
        }
        forget();
        return true;
    }

    /// The highest joint above a joint through joints alone.
    std::string topOf(const std::string& path) {
        const std::string parent = path.substr(0, path.rfind('|'));
        return isJointPath(parent) ? topOf(parent) : path;
    }
    bool isJointPath(const std::string& path) {
        return !path.empty() && scene().typeName(node(path)) == "joint";
    }

    /// A flipped top is sent where it stands, and then to its parent again: at the world to one
    /// without a name.
    Lines errorsOfFlip() {
        const std::string start = "# Error: ";
        const std::string there = "RuntimeError: file <maya console> line 1: Maya command error";
        const std::string noName =
            "ValueError: file <maya console> line 1: No object matches name: ";
        return {start + there, start + (m_top.rfind('|') == 0 ? noName : there)};
    }
    /// Without those of a mesh that is reached from two clusters and bound a second time.
    Lines errors() {
        Lines texts;
        for (const RecordEntry& entry : session().record().entries()) {
            const bool again = entry.text.find("is already connected") != std::string::npos;
            if (!entry.isScript && entry.fromScript && entry.channel == Channel::Error && !again)
                texts.push_back(entry.text);
        }
        return texts;
    }
    /// Names, weights, influences, places and meshes; bound meshes in their rest shape.
    void expectKept() {
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.nodes, m_before.nodes);
        EXPECT_EQ(after.weights, m_before.weights);
        EXPECT_EQ(after.influences, m_before.influences);
        expectSamePlaces(placesOf(*this), m_places);
        const std::string top = m_top.substr(m_top.rfind('|') + 1);
        for (const auto& [mesh, points] : after.meshes) {
            const bool wasBound = contains(scripts(), bindLine(top, mesh));
            SCOPED_TRACE(mesh);
            expectPoints(points, wasBound ? m_rest.at(mesh) : m_before.meshes.at(mesh), 1e-5);
        }
    }

    /// The first child joint in the order of the scene; empty for an end joint.
    std::string firstChild(const std::string& path) {
        for (NodeHandle child : scene().node(node(path))->children) {
            if (scene().typeName(child) == "joint")
                return scene().names().fullPath(child);
        }
        return {};
    }

    bool isAimed(const std::string& path, bool children) {
        for (std::string at = path; at.size() > m_top.size(); at.resize(at.rfind('|'))) {
            if (contains(m_selection, at))
                return true;
            if (!children)
                return false;
        }
        return false;
    }

    void expectOriented(const AxisRow& row, bool children) {
        const Places places = placesOf(*this);
        for (const auto& [path, frame] : framesOf(*this)) {
            SCOPED_TRACE(path);
            const std::string child = firstChild(path);
            const V3d bone = child.empty() ? V3d(0, 0, 0) : places.at(child) - places.at(path);
            if (!isAimed(path, children) || bone.length() < 1e-10) {
                expectSameFrame(frame, m_frames.at(path), path);
                continue;
            }
            m_aimed += 1;
            if (std::fabs(bone.normalized()[row.up[0] - 'x']) < 0.9999)
                expectAimed(frame, row.order, row.up, bone);
            else
                EXPECT_LE((frame.axes[row.order[0] - 'x'] - bone.normalized()).length(), 1e-9);
        }
    }

    Lines m_selection;
    Frames m_frames;
    int m_aimed = 0;

  private:
    std::string m_top;
    RigState m_before;
    Places m_places;
    std::map<std::string, Points> m_rest;
};

TEST_P(RealRigAxesTest, OrientInEveryRow) {
    for (const AxisRow& row : kAxisRows) {
        for (bool children : {true, false}) {
            SCOPED_TRACE(nameOf(row) + (children ? " with children" : ""));
            if (!start())
                GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
            orient(*this, m_selection, row, children);
            expectKept();
            EXPECT_EQ(errors(), Lines());
            expectOriented(row, children);
        }
    }
    EXPECT_GT(m_aimed, 0);
}

TEST_P(RealRigAxesTest, FlipOfEveryPair) {
    for (const char* pair : {"xy", "xz", "yx", "yz", "zx", "zy"}) {
        SCOPED_TRACE(pair);
        if (!start())
            GTEST_SKIP() << GetParam() << " is not at hand (TORVEL_RIGS)";
        flip(*this, m_selection, pair[0], pair[1]);
        expectKept();
        EXPECT_EQ(errors(), errorsOfFlip());
        for (const auto& [path, frame] : framesOf(*this)) {
            if (contains(m_selection, path))
                expectFlipped(frame, m_frames.at(path), pair[0], pair[1], path);
            else
                expectSameFrame(frame, m_frames.at(path), path);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, RealRigAxesTest,
                         ::testing::Values("leg.ma", "arm.ma", "UsdExportSkeletonAtSceneRoot.ma",
                                           "plane_skinned.ma", "bindTransformsExport.ma",
                                           "rig_rlessard_example01.ma"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             name.resize(name.rfind('.'));
                             return name;
                         });

}  // namespace torvel::test
