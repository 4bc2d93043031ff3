// The windows of the two weight tools, and what the Script Editor shows of prints.
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTableWidget>
#include <QTreeWidget>

#include "host/ui/scripted_desktop.h"

namespace torvel {
namespace {

// A strip from x = -1 to 1 over spine (0), L_arm (1) and R_arm (-1); the right half belongs to
// L_arm.
class SkinWindows : public test::ScriptedDesktop {
  protected:
    SkinWindows() {
        py("cmds.joint(name='spine', p=(0, 0, 0))\ncmds.joint(name='L_arm', p=(1, 0, 0))\n"
           "cmds.select('spine')\ncmds.joint(name='R_arm', p=(-1, 0, 0))\n"
           "cmds.polyPlane(name='strip', width=2, height=1, sx=2, sy=1)\n"
           "cmds.skinCluster('spine', 'L_arm', 'R_arm', 'strip', tsb=True, name='skin')\n"
           "cmds.skinPercent('skin', 'strip.vtx[*]', tv=[('spine', 1)])\n"
           "cmds.skinPercent('skin', 'strip.vtx[2]', 'strip.vtx[5]', tv=[('L_arm', 1)])\n"
           "cmds.select(clear=True)");
    }
    std::string weight(const char* joint, int point) {
        return py("cmds.skinPercent('skin', 'strip.vtx[" + std::to_string(point) +
                  "]', q=True, t='" + joint + "')");
    }
};

TEST_F(SkinWindows, MirrorOptionsCountAndPairBeforeTheyWrite) {
    EXPECT_EQ(mel("MirrorSkinWeightsOptions;"), "None");
    auto* options = find("mirrorSkinWeightsOptions");
    EXPECT_TRUE(options->isVisible());
    EXPECT_EQ(options->findChild<QLabel*>("preview")->text(),
              "2 points will be written, 2 stay, 2 lie on the plane.");
    const auto* pairs = options->findChild<QTreeWidget*>();
    ASSERT_EQ(pairs->topLevelItemCount(), 3);
    EXPECT_EQ(pairs->topLevelItem(1)->text(0), "L_arm");
    EXPECT_EQ(pairs->topLevelItem(1)->text(1), "R_arm");
    EXPECT_EQ(weight("R_arm", 0), "0");
    options->findChild<QPushButton*>("apply")->click();
    EXPECT_EQ(weight("R_arm", 0), "1");
    EXPECT_EQ(weight("R_arm", 3), "1");
    EXPECT_EQ(weight("L_arm", 2), "1");
    EXPECT_EQ(weight("spine", 1), "1");
    EXPECT_EQ(lines.back(), "Mirrored the weights of 2 points of skin.");
    EXPECT_TRUE(options->isVisible());
    options->findChild<QPushButton*>("mirror")->click();
    EXPECT_FALSE(options->isVisible());
}

TEST_F(SkinWindows, TheOtherDirectionAndPlaneAreCounted) {
    py("cmds.MirrorSkinWeightsOptions()");
    auto* options = find("mirrorSkinWeightsOptions");
    options->findChild<QCheckBox*>("direction")->click();
    options->findChild<QPushButton*>("apply")->click();
    EXPECT_EQ(weight("L_arm", 2), "0");
    options->findChild<QRadioButton*>("planeXZ")->click();
    EXPECT_EQ(options->findChild<QLabel*>("preview")->text(),
              "0 points will be written, 0 stay, 6 lie on the plane.");
    EXPECT_FALSE(options->findChild<QPushButton*>("apply")->isEnabled());
}

TEST_F(SkinWindows, PaintingNeedsTheToolAndItsSettings) {
    EXPECT_EQ(py("cmds.currentCtx()"), "selectSuperContext");
    py("cmds.ArtPaintSkinWeightsTool()\ncmds.toolPropertyWindow()");
    EXPECT_EQ(py("cmds.currentCtx()"), "artAttrSkinContext");
    auto* settings = find("paintSkinWeights");
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->findChild<QLabel*>("summary")->text(),
              "No vertices of the skin are selected.");
    EXPECT_FALSE(settings->findChild<QPushButton*>("paint")->isEnabled());
    py("cmds.select('strip.vtx[0:1]')");
    settle();
    EXPECT_TRUE(settings->findChild<QPushButton*>("paint")->isEnabled());
    settings->findChild<QListWidget*>("influences")->setCurrentRow(2);
    settings->findChild<QDoubleSpinBox*>("value")->setValue(0.25);
    settings->findChild<QPushButton*>("paint")->click();
    EXPECT_EQ(weight("R_arm", 0), "0.25");
    EXPECT_EQ(weight("spine", 0), "0.75");
    EXPECT_EQ(weight("R_arm", 2), "0");
    EXPECT_EQ(lines.back(), "Painted R_arm on 2 vertices.");
    EXPECT_EQ(settings->findChild<QLabel*>("summary")->text(),
              "2 vertices, weights 0.250 to 0.250, mean 0.250");
}

TEST_F(SkinWindows, WeightsAreTypedIntoTheTable) {
    py("cmds.select('strip')\ncmds.ArtPaintSkinWeightsToolOptions()");
    auto* settings = find("paintSkinWeights");
    settings->findChild<QRadioButton*>("allPoints")->click();
    settings->findChild<QListWidget*>("influences")->setCurrentRow(1);
    auto* table = settings->findChild<QTableWidget*>();
    ASSERT_EQ(table->rowCount(), 6);
    EXPECT_EQ(table->item(2, 1)->text(), "1.0000");
    table->item(1, 1)->setText("0.4");
    EXPECT_EQ(weight("L_arm", 1), "0.4");
    EXPECT_EQ(weight("spine", 1), "0.6");
    table->item(1, 1)->setText("no number");
    EXPECT_EQ(table->item(1, 1)->text(), "0.4000");
}

TEST_F(SkinWindows, AHeldInfluenceCannotBePainted) {
    py("cmds.ArtPaintSkinWeightsToolOptions()");
    auto* settings = find("paintSkinWeights");
    settings->findChild<QRadioButton*>("allPoints")->click();
    settings->findChild<QCheckBox*>("hold")->click();
    EXPECT_EQ(py("cmds.getAttr('spine.liw')"), "True");
    EXPECT_FALSE(settings->findChild<QPushButton*>("paint")->isEnabled());
    EXPECT_EQ(settings->findChild<QListWidget*>("influences")->item(0)->text(), "spine  (held)");
    EXPECT_EQ(py("str(sorted(cmds.ls('*.liw')))"),
              "['L_arm.lockInfluenceWeights', 'R_arm.lockInfluenceWeights', "
              "'spine.lockInfluenceWeights']");
}

TEST_F(SkinWindows, TheWindowsOutliveTheirScene) {
    py("cmds.ArtPaintSkinWeightsToolOptions()\ncmds.MirrorSkinWeightsOptions()");
    py("cmds.delete('strip')\ncmds.delete('spine')");
    settle();
    EXPECT_EQ(find("paintSkinWeights")->findChild<QLabel*>("summary")->text(),
              "The scene has no skin of a mesh.");
    find("mirrorSkinWeightsOptions")->findChild<QPushButton*>("apply")->click();
    py("cmds.file(new=True, force=True)");
    settle();
    fails("cmds.MirrorSkinWeights()", "MirrorSkinWeights: the scene has no skin of a mesh");
}

TEST_F(SkinWindows, ToolsAreKnownByNameAndContext) {
    EXPECT_EQ(py("str(cmds.setToolTo('Move'))"), "None");
    EXPECT_EQ(py("cmds.currentCtx()"), "moveSuperContext");
    py("cmds.setToolTo('RotateSuperContext')");
    EXPECT_EQ(py("cmds.currentCtx()"), "RotateSuperContext");
    fails("cmds.setToolTo('Dance')", "setToolTo: there is no tool 'Dance'");
    py("cmds.toolPropertyWindow()");
    EXPECT_TRUE(find("toolSettings")->isVisible());
}

using Prints = test::ScriptedDesktop;

TEST_F(Prints, StandInOrderAmongTheOtherLines) {
    auto* shown = window->findChild<QPlainTextEdit*>();
    shown->clear();
    py("print('one')\ncmds.warning('two')\nprint('th', end='')\nprint('ree')\nprint('')\n"
       "print('four\\nfive', 6)");
    mel("print \"seven\\n\";");
    py("import sys\nsys.stdout.write('open')\ncmds.warning('closes it')");
    EXPECT_EQ(shown->toPlainText(),
              "one\n# Warning: two\nthree\n\nfour\nfive 6\nseven\nopen\n# Warning: closes it");
}

}  // namespace
}  // namespace torvel
