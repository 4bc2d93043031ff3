// The three tools on rigs that others made and whose bound joints hang on controls, IK chains and
// utility nodes: what is kept, and what is gone for a reason that can be named.

#include <map>
#include <regex>
#include <set>

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/real_rig.h"
#include "plugin/fixtures/rig_links.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

using Counts = std::map<std::string, int>;

/// A rig, and what a click costs it, counted in its file.
struct Rig {
    const char* file;
    const char* top;       ///< of the bound skeleton
    const char* selected;  ///< a joint below it
    Counts nodes;          ///< by type
    Counts links;          ///< between nodes that both stay, by attributes
};

const Rig kRigs[] = {
    {"rig01.ma",
     "|Rig_GRP|Root",
     "|Rig_GRP|Root|Pelvis",
     {
         {"aimConstraint", 4},      // the roll drivers aim at joints of the skeleton
         {"ikHandle", 1},           // the spine's chain is part of the skeleton
         {"orientConstraint", 4},   // snapping locators that follow its joints
         {"parentConstraint", 22},  // controls and groups that follow its joints
         {"pointConstraint", 28},   // 24 roll joints driven within the skeleton, 4 locators
         {"scaleConstraint", 1},    // of its top
         {"unitConversion", 24},    // on the way to the roll joints' rotation
     },
     {
         {"message > JOINTS[]", 55},  // lists of the rig's own bookkeeping nodes
         {"message > ROOT[]", 1},
         {"message > ORIENTCONSTRAINT[]", 16},
         {"message > POINTCONSTRAINT[]", 16},
         {"di > drawOverride", 80},  // the layer of the joints
         {"objectColorRGB > influenceColor[]", 75},
         {"IKFK > weight", 32},  // two weights of both constraints at 16 joints
         {"output1D > weight", 32},
         {"translateX > translateX", 1},  // into the effector
         {"translateY > translateY", 1},
         {"translateZ > translateZ", 1},
     }},
    {"digitigrade_leg_mod_example.ma",
     "|main_skeletalMeshGrp|root_jnt",
     "|main_skeletalMeshGrp|root_jnt|pelvis_jnt",
     {
         {"parentConstraint", 1},  // the leg's rig follows the pelvis
         {"scaleConstraint", 7},   // of six joints, and the leg's rig again
         {"unitConversion", 5},    // on the way to the rotation of blended joints
     },
     {
         {"output > translate", 5},  // of blended joints
         {"di > drawOverride", 1},
         {"objectColorRGB > influenceColor[]", 8},
     }},
};

void PrintTo(const Rig& rig, std::ostream* out) {
    *out << rig.file;
}

std::string nodeOf(const std::string& plug) {
    return plug.substr(0, plug.find('.'));
}

/// "|a|b.matrix[3] > c.W" as "matrix[] > W"; the weight of a constraint is named after its target.
std::string attributesOf(const std::string& link) {
    static const std::regex indices("\\[[0-9]+\\]");
    static const std::regex weight("> [A-Za-z_0-9]+W[0-9]+$");
    const std::size_t arrow = link.find(" > ");
    const std::string from = link.substr(link.find('.') + 1, arrow - link.find('.') - 1);
    const std::string to = link.substr(link.find('.', arrow) + 1);
    const std::string both = std::regex_replace(from + " > " + to, indices, "[]");
    return std::regex_replace(both, weight, "> weight");
}

Counts typesOf(const Lines& names) {
    Counts counts;
    for (const std::string& name : names)
        counts[name.substr(0, name.find(' '))] += 1;
    return counts;
}

/// Links that did not go with a node.
Counts looseLinks(const Lines& links, const Lines& goneNames) {
    std::set<std::string> nodes;
    for (const std::string& name : goneNames)
        nodes.insert(name.substr(name.find(' ') + 1));
    Counts counts;
    for (const std::string& link : links) {
        const std::string from = nodeOf(link);
        const std::string to = nodeOf(link.substr(link.find(" > ") + 3));
        if (nodes.count(from) + nodes.count(to) == 0)
            counts[attributesOf(link)] += 1;
    }
    return counts;
}

}  // namespace

class ConstrainedRigTest : public RealRig,
                           public ::testing::WithParamInterface<std::tuple<Rig, char>> {
  public:
    const Rig& rig() { return std::get<0>(GetParam()); }
    void click() {
        const char tool = std::get<1>(GetParam());
        if (tool == 'z')
            freeze({rig().selected}, true);
        else if (tool == 'o')
            orient(*this, {rig().selected}, kAxisRows[0], true);
        else
            flip(*this, {rig().selected}, 'x', 'y');
    }
};

TEST_P(ConstrainedRigTest, WhatIsKeptAndWhatIsGone) {
    const std::string path = rigPath(rig().file);
    if (path.empty())
        GTEST_SKIP() << rig().file << " is not at hand (TORVEL_RIGS)";
    open(path);
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    const Lines names = namesOf(*this);
    const Lines links = linksOf(*this);
    click();
    const Lines gone = missing(names, namesOf(*this));
    EXPECT_EQ(typesOf(gone), rig().nodes);
    EXPECT_EQ(missing(namesOf(*this), names), Lines());
    EXPECT_EQ(looseLinks(missing(links, linksOf(*this)), gone), rig().links);
    EXPECT_EQ(missing(linksOf(*this), links), Lines());
    const RigState after = stateOf(*this);
    EXPECT_EQ(after.weights, before.weights);
    EXPECT_EQ(after.influences, before.influences);
    expectSamePoints(after, before);
    expectSamePlaces(placesOf(*this), places);
}

INSTANTIATE_TEST_SUITE_P(Tools, ConstrainedRigTest,
                         ::testing::Combine(::testing::ValuesIn(kRigs),
                                            ::testing::Values('z', 'o', 'p')),
                         [](const ::testing::TestParamInfo<std::tuple<Rig, char>>& info) {
                             const std::string file = std::get<0>(info.param).file;
                             const char tool = std::get<1>(info.param);
                             return file.substr(0, file.find('.')) + (tool == 'z'   ? "_Freeze"
                                                                      : tool == 'o' ? "_Orient"
                                                                                    : "_Flip");
                         });

}  // namespace torvel::test
