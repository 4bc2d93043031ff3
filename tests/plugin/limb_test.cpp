// The sample limb, whose joints hang on controls: what the tools carry over, and what they refuse.

#include <QTemporaryDir>

#include "plugin/fixtures/joint_frames.h"
#include "plugin/fixtures/rig_links.h"
#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

const std::string kUpper = "|shoulder|upper";
const std::string kElbow = kUpper + "|elbow";
const std::string kForearm = kElbow + "|forearm";
const std::string kWrist = kForearm + "|wrist";
const std::string kHand = kWrist + "|hand";
const std::string kTip = kHand + "|tip";
const std::string kSkin = "|skin|skinShape";

/// A driver and what it is moved by.
struct Move {
    const char* channels;
    const char* values;
};

constexpr Move kMoves[] = {
    {"ctrl_body.translate", "1, -2, 1.5"}, {"ctrl_body.rotate", "20, -15, 40"},
    {"ctrl_aim.translate", "2, 3, 8"},     {"ctrl_up.translate", "3, 14, 6"},
    {"ctrl_elbow.translate", "9, 7, 3"},   {"ctrl_a.rotate", "35, -10, 50"},
    {"ctrl_b.rotate", "-40, 25, 5"},       {"ctrl_grip.translate", "20, 9, 4"},
};

}  // namespace

class LimbTest : public PluginScene {
  public:
    void open() {
        python("cmds.file('" TORVEL_SCENES_DIR "/limb.ma', open=True, force=True)");
        forget();
    }

    /// 'z' freezes all, 'o' orients from the upper joint down, 'p' flips three joints.
    void click(char tool) {
        if (tool == 'z')
            freeze({kElbow}, true);
        else if (tool == 'o')
            orient(*this, {kUpper}, {'y', 'z', '+', "yxz", "zdown"}, true);
        else
            flip(*this, {kWrist, kUpper, kElbow}, 'x', 'z');
        Lines errors;
        for (const RecordEntry& entry : session().record().entries()) {
            if (!entry.isScript && entry.channel == Channel::Error)
                errors.push_back(entry.text);
        }
        EXPECT_EQ(errors, Lines());
    }

    /// The mesh after each move; each is taken back.
    std::vector<Points> moved() {
        std::vector<Points> all;
        for (const Move& move : kMoves) {
            const std::string channels = std::string("'") + move.channels + "'";
            python("before = cmds.getAttr(" + channels +
                   ")[0]\n"
                   "cmds.setAttr(" +
                   channels + ", " + move.values + ")");
            all.push_back(pointsOf(*this, kSkin));
            python("cmds.setAttr(" + channels + ", *before)");
        }
        return all;
    }

    void expectSameMoves(const std::vector<Points>& expected) {
        const std::vector<Points> actual = moved();
        for (std::size_t i = 0; i < expected.size(); ++i) {
            SCOPED_TRACE(kMoves[i].channels);
            expectPoints(actual[i], expected[i], 1e-4);
        }
    }

    void expectKept(const RigState& before, const Places& places) {
        const RigState after = stateOf(*this);
        EXPECT_EQ(after.weights, before.weights);
        EXPECT_EQ(after.influences, before.influences);
        expectSamePoints(after, before);
        expectSamePlaces(placesOf(*this), places);
    }
};

TEST_F(LimbTest, TheSampleStandsInItsBindPose) {
    open();
    const Points posed = pointsOf(*this, kSkin);
    python("cmds.dagPose('shoulder', restore=True, bindPose=True, g=True)");
    expectPoints(pointsOf(*this, kSkin), posed, 1e-6);
    for (const Points& points : moved())
        EXPECT_GT(deviation(points, posed), 0.001) << "every control moves the mesh";
    expectPoints(pointsOf(*this, kSkin), posed, 1e-6);
}

class LimbToolTest : public LimbTest, public ::testing::WithParamInterface<char> {};

TEST_P(LimbToolTest, TheControlsMoveTheMeshAsBefore) {
    open();
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    const std::vector<Points> motion = moved();
    click(GetParam());
    expectKept(before, places);
    expectSameMoves(motion);
}

TEST_P(LimbToolTest, WhatIsGoneAndWhatIsNew) {
    open();
    const Lines names = namesOf(*this);
    const Lines links = linksOf(*this);
    click(GetParam());
    const Lines after = linksOf(*this);
    EXPECT_EQ(missing(names, namesOf(*this)),
              Lines{"scaleConstraint " + kForearm + "|<scaleConstraint>"});
    EXPECT_EQ(missing(namesOf(*this), names), Lines{});

    const std::string scale = kForearm + "|<scaleConstraint>";
    const std::string control = "|controls|ctrl_scale";
    Lines gone{
        kForearm + ".parentInverseMatrix[0] > " + scale + ".constraintParentInverseMatrix",
        kForearm + ".segmentScaleCompensate > " + scale + ".constraintScaleCompensate",
        control + ".parentMatrix[0] > " + scale + ".target[0].targetParentMatrix",
        control + ".scale > " + scale + ".target[0].targetScale",
        scale + ".ctrl_scaleW0 > " + scale + ".target[0].targetWeight",
        scale + ".constraintScaleX > " + kForearm + ".scaleX",
        scale + ".constraintScaleY > " + kForearm + ".scaleY",
        scale + ".constraintScaleZ > " + kForearm + ".scaleZ",
        kHand + ".rotateY > " + kTip + ".rotateZ",
        kHand + ".rotateZ > unitConversion1.input",
    };
    const Lines joints{"|shoulder", kUpper, kElbow, kForearm, kWrist, kHand, kTip};
    for (std::size_t i = 0; i < joints.size(); ++i)
        gone.push_back(joints[i] + ".objectColorRGB > skinCluster1.influenceColor[" +
                       std::to_string(i) + "]");
    std::sort(gone.begin(), gone.end());
    EXPECT_EQ(missing(links, after), gone);
    EXPECT_EQ(missing(after, links), Lines{kHand + ".rotateY > " + kTip + ".rotateY"});
}

TEST_P(LimbToolTest, TheScaleConstraintIsRefusedInWords) {
    open();
    click(GetParam());
    const Lines said = messages();
    const std::string refusal = "warning: Tipo de constraint no manejado: kScaleConstraint";
    EXPECT_EQ(std::count(said.begin(), said.end(), refusal), 1);
    const Points rest = pointsOf(*this, kSkin);
    python("cmds.setAttr('ctrl_scale.scale', 2, 1.5, 1.5)");
    EXPECT_EQ(deviation(pointsOf(*this, kSkin), rest), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Tools, LimbToolTest, ::testing::Values('z', 'o', 'p'),
                         [](const ::testing::TestParamInfo<char>& info) {
                             return info.param == 'z'   ? "Freeze"
                                    : info.param == 'o' ? "Orient"
                                                        : "Flip";
                         });

// In the order of the joints, each told before it is made.
TEST_F(LimbTest, WhatIsSaidAndRun) {
    open();
    freeze({kElbow}, true);
    Lines all = transcript();
    const auto start = std::find(all.begin(), all.end(),
                                 "info: Procesando constraint: shoulder_parentConstraint1 tipo: "
                                 "kParentConstraint");
    ASSERT_NE(start, all.end());
    all.erase(all.begin(), start);
    const std::string copy = "|shoulder1|upper";
    const std::string elbow = copy + "|elbow";
    const std::string forearm = elbow + "|forearm";
    const std::string hand = forearm + "|wrist|hand";
    auto command = [](const std::string& text) {
        return Lines{"info: Ejecutando comando: " + text, "mel stringArray: " + text};
    };
    auto link = [](const std::string& from, const std::string& to) {
        const std::string ends = "\"" + from + "\" \"" + to + "\"";
        return "mel plain: if (!`isConnected " + ends + "`) { connectAttr -f " + ends + "; }";
    };
    Lines expected{all.front()};
    auto add = [&expected](const Lines& lines) {
        expected.insert(expected.end(), lines.begin(), lines.end());
    };
    add(command("parentConstraint -mo \"|controls|ctrl_body\" \"|shoulder1\""));
    add({"info: Procesando constraint: upper_aimConstraint1 tipo: kAimConstraint",
         "info: AimConstraint tiene worldUpMatrix conectado desde: ctrl_up.worldMatrix[0]"});
    add(command("aimConstraint -mo \"|controls|ctrl_aim\" \"" + copy + "\""));
    add({"info: Conectando worldUpMatrix de ctrl_up.worldMatrix[0] a upper_aimConstraint2",
         "mel plain: setAttr \"upper_aimConstraint2.worldUpType\" 1;",
         "info: Conectado worldUpMatrix en nuevo constraint: upper_aimConstraint2",
         "info: Procesando constraint: elbow_pointConstraint1 tipo: kPointConstraint"});
    add(command("pointConstraint -mo \"|controls|ctrl_elbow\" \"" + elbow + "\""));
    add({"info: Procesando constraint: forearm_orientConstraint1 tipo: kOrientConstraint"});
    add(command("orientConstraint -mo \"|controls|ctrl_a\" \"|controls|ctrl_b\" \"" + forearm +
                "\""));
    add({"info: Procesando constraint: forearm_scaleConstraint1 tipo: kScaleConstraint",
         "warning: Tipo de constraint no manejado: kScaleConstraint",
         "info: Procesando constraint: wrist_aimConstraint1 tipo: kAimConstraint",
         "info: AimConstraint sin worldUpMatrix conectado."});
    add(command("aimConstraint -mo \"|controls|ctrl_grip\" \"" + forearm + "|wrist\""));
    add({link(hand + ".rotateX", hand + "|tip.rotateX"),
         link(hand + ".rotateY", hand + "|tip.rotateY")});
    ASSERT_GE(all.size(), expected.size());
    all.resize(expected.size());
    EXPECT_EQ(all, expected);
}

class LimbSequenceTest : public LimbTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(LimbSequenceTest, LinksHoldAfterEachClickAndReload) {
    QTemporaryDir folder;
    open();
    const RigState before = stateOf(*this);
    const Places places = placesOf(*this);
    const std::vector<Points> motion = moved();
    Lines links;
    int clicks = 0;
    for (char tool : std::string(GetParam())) {
        SCOPED_TRACE("click " + std::to_string(clicks) + ", tool " + tool);
        click(tool);
        expectKept(before, places);
        const std::string path = folder.filePath("limb%1.ma").arg(clicks).toStdString();
        python("cmds.file(rename='" + path +
               "'); cmds.file(save=True, type='mayaAscii')\n"
               "cmds.file('" +
               path + "', open=True, force=True)");
        expectKept(before, places);
        python("cmds.dagPose('shoulder', restore=True, bindPose=True, g=True)");
        expectKept(before, places);
        expectSameMoves(motion);
        if (clicks > 0) {
            EXPECT_EQ(linksOf(*this), links) << "the first click took what it takes";
        }
        links = linksOf(*this);
        clicks += 1;
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, LimbSequenceTest,
                         ::testing::Values("zopzop", "zpozpo", "ozpozp", "opzopz", "pzopzo",
                                           "pozpoz"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });

}  // namespace torvel::test
