// What Freeze, Orient and Flip leave of a rig: one table of rigs and clicks. Names, weights,
// influences, the mesh and the joints' places stay; only axes and rotations change, as asked.

#include <QTemporaryDir>

#include "plugin/fixtures/rig_compare.h"
#include "plugin/fixtures/rig_links.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

/// A rig, and the moves of its joints or controls that bend the mesh.
struct Rig {
    std::string make;
    std::string mesh;  ///< "" for a bare skeleton
    Lines moves;
};

const std::map<std::string, Rig> kRigs = {
    {"leg", {"rigs.leg()", "|leg|legShape", {"rigs.turn('|hip|knee', 40)"}}},
    {"chain",
     {"rigs.chain('hip', 'knee', 'ankle', 'toe'); rigs.bind('|hip', 'leg')",
      "|leg|legShape",
      {"rigs.turn('|hip|knee', 40)"}}},
    {"group",
     {"rigs.group('chr'); cmds.setAttr('chr.translate', 1, 2, 3)\n"
      "cmds.setAttr('chr.rotate', 15, 35, -20)\n"
      "rigs.chain('hip', 'knee', 'ankle', parent='|chr'); rigs.bind('|chr|hip', 'leg')",
      "|leg|legShape",
      {"rigs.turn('|chr|hip|knee', 40)"}}},
    {"bare", {"rigs.chain('hip', 'knee', 'ankle', 'toe')", "", {}}},
    {"linked",
     {"rigs.chain('hip', 'knee', 'ankle'); rigs.chain('twist', parent='|hip|knee')\n"
      "cmds.setAttr('|hip|knee.rotate', 0, 0, 0)\n"
      "cmds.setAttr('|hip|knee|twist.rotate', 0, 0, 0)\n"
      "cmds.connectAttr('|hip|knee.rotateX', '|hip|knee|twist.rotateX')\n"
      "rigs.bind('|hip', 'leg')",
      "|leg|legShape",
      {}}},
    {"sample",
     {"cmds.file('" TORVEL_SCENES_DIR "/leg.ma', open=True, force=True)",
      "|leg|legShape",
      {"rigs.turn('|hip|knee', 30)"}}},
    {"limb",
     {"cmds.file('" TORVEL_SCENES_DIR "/limb.ma', open=True, force=True)",
      "|skin|skinShape",
      {"rigs.move('ctrl_body.translate', 1, -2, 1.5)", "rigs.move('ctrl_body.rotate', 20, -15, 40)",
       "rigs.move('ctrl_aim.translate', 2, 3, 8)", "rigs.move('ctrl_up.translate', 3, 14, 6)",
       "rigs.move('ctrl_elbow.translate', 9, 7, 3)", "rigs.move('ctrl_a.rotate', 35, -10, 50)",
       "rigs.move('ctrl_b.rotate', -40, 25, 5)", "rigs.move('ctrl_grip.translate', 20, 9, 4)"}}},
};

/// A button on a selection, in each of its choices.
struct Click {
    const char* name;
    char tool;  ///< 'z' Freeze, 'o' Orient in each of the twelve rows, 'p' Flip of each pair
    const char* rig;
    bool box;  ///< all of the hierarchy; with children
    Lines selection;
    Lines axes;    ///< joints whose axes are to change, by path
    Lines frozen;  ///< joints that lose their rotation
};

const std::string kHip = "|hip", kKnee = "|hip|knee", kAnkle = "|hip|knee|ankle",
                  kToe = "|hip|knee|ankle|toe", kGrouped = "|chr|hip";
const Lines kLeg{kHip, kKnee, kAnkle}, kAll{kHip, kKnee, kAnkle, kToe};
const Lines kGroup{kGrouped, kGrouped + "|knee", kGrouped + "|knee|ankle"};

const Click kClicks[] = {
    {"freeze_all_from_top", 'z', "leg", true, {kHip}, {}, kLeg},
    {"freeze_all_from_end", 'z', "leg", true, {kAnkle}, {}, kLeg},
    {"freeze_end", 'z', "leg", false, {kAnkle}, {}, {kAnkle}},
    {"freeze_takes_what_is_below", 'z', "leg", false, {kKnee}, {}, {kKnee, kAnkle}},
    {"freeze_every_joint", 'z', "leg", false, {kAnkle, kKnee, kHip}, {}, {kKnee, kAnkle}},
    {"freeze_top_without_namesake", 'z', "leg", false, {kHip}, {}, {}},
    {"orient_middle", 'o', "chain", false, {kKnee}, {kKnee}, kAll},
    {"orient_with_children", 'o', "chain", true, {kKnee}, {kKnee, kAnkle}, kAll},
    // The top of a skinned skeleton keeps its axes: its copy has no namesake.
    {"orient_every_joint", 'o', "chain", false, kAll, {kKnee, kAnkle}, kAll},
    {"orient_grouped", 'o', "group", true, {kGroup[1]}, {kGroup[1]}, kGroup},
    {"orient_bare_with_children", 'o', "bare", true, {kHip}, kLeg, kAll},
    {"orient_bare_top", 'o', "bare", false, {kHip}, {kHip}, kAll},
    {"flip_top", 'p', "chain", false, {kHip}, {kHip}, kAll},
    {"flip_middle", 'p', "chain", false, {kKnee}, {kKnee}, kAll},
    {"flip_end", 'p', "chain", false, {kToe}, {kToe}, kAll},
    {"flip_two", 'p', "chain", false, {kAnkle, kKnee}, {kKnee, kAnkle}, kAll},
    {"flip_every_joint", 'p', "chain", false, kAll, kAll, kAll},
    // Rotations of other joints stay.
    {"flip_bare_middle", 'p', "bare", false, {kKnee}, {kKnee}, {kKnee}},
};

constexpr const char* kPairs[] = {"xy", "xz", "yx", "yz", "zx", "zy"};

/// A click in one of its choices.
struct Choice {
    const Click* click;
    AxisRow row;  ///< for Flip its two letters alone count

    std::string name() const {
        const std::string pair{row.primary, row.secondary};
        return click->name + (click->tool == 'z'   ? std::string()
                              : click->tool == 'p' ? "_" + pair
                                                   : "_" + nameOf(row));
    }
};

void PrintTo(const Choice& choice, std::ostream* out) {
    *out << choice.name();
}

std::vector<Choice> allChoices() {
    std::vector<Choice> all;
    for (const Click& click : kClicks) {
        if (click.tool == 'z')
            all.push_back({&click, kAxisRows[0]});
        if (click.tool == 'o') {
            for (const AxisRow& row : kAxisRows)
                all.push_back({&click, row});
        }
        if (click.tool == 'p') {
            for (const char* pair : kPairs)
                all.push_back({&click, {pair[0], pair[1], '+', "", ""}});
        }
    }
    return all;
}

/// " word(a b)" in the order of the paths, as differences() writes it.
std::string part(const char* word, Lines paths) {
    std::sort(paths.begin(), paths.end());
    std::string names;
    for (const std::string& path : paths)
        names += (names.empty() ? "" : " ") + path.substr(path.rfind('|') + 1);
    return paths.empty() ? "" : std::string(" ") + word + "(" + names + ")";
}

}  // namespace

class ToolFixture : public PluginScene {
  public:
    void make(const Rig& rig) {
        python(rig.make);
        forget();
    }
    void press(char tool, const Lines& selection, bool box, const AxisRow& row) {
        if (tool == 'z')
            freeze(selection, box);
        else if (tool == 'o')
            orient(*this, selection, row, box);
        else
            flip(*this, selection, row.primary, row.secondary);
    }

    /// The mesh after each move; each is taken back.
    std::vector<Points> moved(const Rig& rig) {
        std::vector<Points> all;
        for (const std::string& move : rig.moves) {
            python(move);
            all.push_back(pointsOf(*this, rig.mesh));
            python("rigs.back()");
        }
        return all;
    }
    void expectSameMoves(const Rig& rig, const std::vector<Points>& expected) {
        const std::vector<Points> actual = moved(rig);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            SCOPED_TRACE(rig.moves[i]);
            expectPoints(actual[i], expected[i], 1e-4);
        }
    }
    Lines errors() {
        Lines lines;
        for (const RecordEntry& entry : session().record().entries()) {
            if (!entry.isScript && entry.channel == Channel::Error)
                lines.push_back(entry.text);
        }
        return lines;
    }
};

class ToolResultTest : public ToolFixture, public ::testing::WithParamInterface<Choice> {
  public:
    const Click& click() { return *GetParam().click; }
    const Rig& rig() { return kRigs.at(click().rig); }
    void press() {
        ToolFixture::press(click().tool, click().selection, click().box, GetParam().row);
    }

    /// What a click may change, as differences() writes it.
    std::string expectedChange() {
        const std::string text =
            (click().tool == 'p' ? part("matrices", click().axes) : std::string()) +
            part("axes", click().axes) + part("rotations", click().frozen);
        return text.empty() ? "nothing" : text.substr(1);
    }

    void expectAxes(const RigSnapshot& before) {
        for (const std::string& path : click().axes) {
            const Frame frame = rotationFrame(*this, path);
            const AxisRow& row = GetParam().row;
            if (click().tool == 'p')
                expectFlipped(frame, before.frames.at(path), row.primary, row.secondary, path);
            else
                expectAimed(frame, row.order, row.up,
                            before.places.at(childOf(path)) - before.places.at(path));
        }
    }
    std::string childOf(const std::string& path) {
        return path + "|" + pythonText("cmds.listRelatives('" + path + "', type='joint')[0]");
    }
};

TEST_P(ToolResultTest, OnlyAxesAndRotationsChange) {
    make(rig());
    const RigSnapshot before = snapshotOf(*this);
    const std::vector<Points> motion = moved(rig());
    press();
    if (click().tool != 'p' && !rig().mesh.empty()) {
        EXPECT_EQ(errors(), Lines());
    }
    const RigSnapshot once = snapshotOf(*this);
    EXPECT_EQ(differences(once, before), expectedChange());
    expectFrozen(*this, click().frozen);
    expectAxes(before);
    expectSameMoves(rig(), motion);
    press();
    // A second half turn takes the first one back.
    if (click().tool == 'p')
        EXPECT_EQ(differences(snapshotOf(*this), before),
                  part("rotations", click().frozen).substr(1));
    else
        EXPECT_EQ(differences(snapshotOf(*this), once), "nothing");
}

// Orient and Flip go back to the bind pose by themselves. Freeze takes the pose for the new one and
// the mesh its rest shape.
TEST_P(ToolResultTest, AwayFromTheBindPose) {
    if (rig().mesh.empty())
        return;
    make(rig());
    const RigSnapshot rest = snapshotOf(*this);
    const std::vector<Points> motion = moved(rig());
    EXPECT_GT(deviation(motion[0], rest.state.meshes.at(rig().mesh)), 0.01)
        << "the pose has to bend";
    python(rig().moves[0] + "\nrigs.settle()");
    const RigSnapshot posed = snapshotOf(*this);
    press();
    const RigSnapshot after = snapshotOf(*this);
    if (click().tool != 'z') {
        EXPECT_EQ(differences(after, rest), expectedChange());
        expectSameMoves(rig(), motion);
        return;
    }
    EXPECT_EQ(differences(after, posed), "points(legShape)" + part("rotations", click().frozen));
    expectSamePoints(after.state, rest.state);
}

INSTANTIATE_TEST_SUITE_P(Clicks, ToolResultTest, ::testing::ValuesIn(allChoices()),
                         [](const ::testing::TestParamInfo<Choice>& info) {
                             return info.param.name();
                         });

namespace {

/// The selections that each tool gets on a rig, one click after another.
struct Sequence {
    const char* rig;
    const char* root;
    Lines freeze, orient, flip;
    const AxisRow* orientRow;  ///< null: another one with each click, and links are not compared
    const char* kept;          ///< what of lastingDifferences() the first click takes
};

const std::string kUpper = "|shoulder|upper", kElbow = kUpper + "|elbow";
constexpr AxisRow kLimbRow = {'y', 'z', '+', "yxz", "zdown"};

const Sequence kSequences[] = {
    {"leg", "hip", {kKnee}, {kKnee}, {kAnkle, kKnee}, nullptr, "nothing"},
    {"linked", "hip", {kKnee}, {kKnee}, {kAnkle, kKnee}, nullptr, "nothing"},
    {"sample", "hip", {kKnee}, {kKnee}, {kAnkle, kKnee}, nullptr, "nothing"},
    // Its scale constraint goes, the others are numbered anew.
    {"limb",
     "shoulder",
     {kElbow},
     {kUpper},
     {kElbow + "|forearm|wrist", kUpper, kElbow},
     &kLimbRow,
     "nodes"},
};

constexpr const char* kOrders[] = {"zopzop", "zpozpo", "ozpozp", "opzopz",
                                   "pzopzo", "pozpoz", "zzoopp", "ppoozz"};

void PrintTo(const Sequence& sequence, std::ostream* out) {
    *out << sequence.rig;
}

}  // namespace

/// The tools after one another, with the scene saved and read again between clicks.
class ToolSequenceTest : public ToolFixture,
                         public ::testing::WithParamInterface<std::tuple<Sequence, const char*>> {
  public:
    const Sequence& sequence() { return std::get<0>(GetParam()); }

    void click(char tool, int count) {
        const AxisRow& row = sequence().orientRow && tool == 'o'
                                 ? *sequence().orientRow
                                 : kAxisRows[count % std::size(kAxisRows)];
        const AxisRow pair{sequence().orientRow || count % 2 == 0 ? 'x' : 'y', 'z', '+', "", ""};
        press(tool,
              tool == 'z'   ? sequence().freeze
              : tool == 'o' ? sequence().orient
                            : sequence().flip,
              true, tool == 'p' ? pair : row);
        EXPECT_EQ(errors(), Lines());
    }
    void saveAndReload(int count) {
        const std::string path = m_folder.filePath("rig%1.ma").arg(count).toStdString();
        python("cmds.file(rename='" + path +
               "'); cmds.file(save=True, type='mayaAscii')\n"
               "cmds.file(new=True, force=True); cmds.file('" +
               path + "', open=True, force=True)");
    }
    void expectPoseIsHeld() {
        const RigSnapshot before = snapshotOf(*this);
        python(std::string("cmds.dagPose('") + sequence().root +
               "', restore=True, bindPose=True, g=True)");
        EXPECT_EQ(differences(snapshotOf(*this), before), "nothing");
    }

  private:
    QTemporaryDir m_folder;
};

TEST_P(ToolSequenceTest, TheRigHoldsAfterEachClickAndReload) {
    const Rig& rig = kRigs.at(sequence().rig);
    make(rig);
    expectPoseIsHeld();
    const RigSnapshot before = snapshotOf(*this);
    const std::vector<Points> motion = moved(rig);
    for (const Points& points : motion)
        EXPECT_GT(deviation(points, before.state.meshes.at(rig.mesh)), 0.001)
            << "every move counts";
    Lines links;
    int count = 0;
    for (char tool : std::string(std::get<1>(GetParam()))) {
        SCOPED_TRACE("click " + std::to_string(count) + ", tool " + tool);
        click(tool, count);
        EXPECT_EQ(lastingDifferences(snapshotOf(*this), before), sequence().kept);
        expectPoseIsHeld();
        saveAndReload(count);
        EXPECT_EQ(lastingDifferences(snapshotOf(*this), before), sequence().kept);
        expectPoseIsHeld();
        expectSameMoves(rig, motion);
        // The first click took what it takes.
        if (sequence().orientRow && count > 0) {
            EXPECT_EQ(missing(linksOf(*this), links), Lines());
            EXPECT_EQ(missing(links, linksOf(*this)), Lines());
        }
        links = linksOf(*this);
        count += 1;
    }
    if (std::string(sequence().rig) == "linked") {
        EXPECT_TRUE(
            python("cmds.isConnected('|hip|knee.rotateX', '|hip|knee|twist.rotateX')").truth());
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, ToolSequenceTest,
                         ::testing::Combine(::testing::ValuesIn(kSequences),
                                            ::testing::ValuesIn(kOrders)),
                         [](const ::testing::TestParamInfo<std::tuple<Sequence, const char*>>& i) {
                             return std::get<0>(i.param).rig + std::string("_") +
                                    std::get<1>(i.param);
                         });

/// A bound leg whose knee hangs on a driver.
class ConstrainedLegTest : public ToolFixture, public ::testing::WithParamInterface<const char*> {};

TEST_P(ConstrainedLegTest, TheMeshMovesWithTheDriverAsBeforeTheFreeze) {
    const std::string kind = GetParam();
    const Rig rig{
        "rigs.leg(); rigs.group('driver')\n"
        "cmds.xform('driver', t=(2, 3, 4), ro=(15, -25, 35))\n"
        "cmds." +
            kind + "('driver', '|hip|knee', mo=True)",
        "|leg|legShape",
        {"rigs.move('driver.translate', 1, 5, 4)\nrigs.move('driver.rotate', 40, -25, 60)"}};
    make(rig);
    const Points rest = pointsOf(*this, rig.mesh);
    const std::vector<Points> motion = moved(rig);
    EXPECT_GT(deviation(motion[0], rest), 1e-3);
    for (int click = 0; click < 2; ++click) {
        freeze({kHip}, true);
        expectPoints(pointsOf(*this, rig.mesh), rest, 1e-5);
        expectSameMoves(rig, motion);
    }
    EXPECT_EQ(pythonText("cmds.ls(type='constraint')"), "knee_" + kind + "1");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ConstrainedLegTest,
                         ::testing::Values("parentConstraint", "pointConstraint",
                                           "orientConstraint", "aimConstraint"));

}  // namespace torvel::test
