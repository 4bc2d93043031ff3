#include "app/rig_check.h"

#include <gtest/gtest.h>

#include "app/host_setup.h"
#include "script/session.h"

namespace torvel {
namespace {

// A bound chain hip > knee > ankle, six units of which the leg is four, with nothing to find.
const char* const kRig =
    "from maya import cmds\n"
    "cmds.file(new=True, force=True)\n"
    "cmds.joint(name='hip')\n"
    "cmds.joint(name='knee', position=(0, -2, 0))\n"
    "cmds.joint(name='ankle', position=(0, -4, 0))\n"
    "cmds.polyPlane(name='leg')\n"
    "cmds.skinCluster('hip', 'leg')\n";

struct Row {
    const char* does;      ///< to the rig
    const char* findings;  ///< "rule: nodes; rule: nodes"
    const char* binds;     ///< "mesh: what the closing bind does; ..."; empty: not looked at
};

const Row kRows[] = {
    {"", "", "legShape: taken up"},
    {"cmds.setAttr('knee.rotateZ', 30)", "posed-away: knee ankle; posed: knee ankle", ""},
    // 1e-5 of the rig's size is about 4e-5.
    {"cmds.setAttr('knee.translateY', -2.00001)", "", ""},
    {"cmds.setAttr('knee.translateY', -2.0001)", "posed-away: knee ankle; posed: knee ankle", ""},
    {"cmds.createNode('unknown', name='motor')\n"
     "cmds.addAttr('motor', longName='turn', attributeType='double', defaultValue=30)\n"
     "cmds.connectAttr('motor.turn', 'knee.rotateZ')",
     "pose-unknown: knee ankle", ""},
    {"for name in 'control', 'hand': cmds.createNode('transform', name=name)\n"
     "cmds.parentConstraint('control', 'hip')\n"
     "cmds.scaleConstraint('control', 'knee')\n"
     "cmds.createNode('poleVectorConstraint', name='pole', parent='knee')\n"
     "cmds.orientConstraint('hip', 'ankle')\n"
     "cmds.pointConstraint('ankle', 'hand')",
     "lost-constraint: knee_scaleConstraint1 pole; driver-within: ankle_orientConstraint1; "
     "outside-constraint: hand_pointConstraint1",
     ""},
    {"cmds.ikHandle(startJoint='hip', endEffector='ankle', name='reach')", "ik: reach", ""},
    {"cmds.createNode('transform', name='shoe', parent='ankle')", "geometry-below: shoe", ""},
    {"cmds.parent(cmds.polyCube(name='shoe')[0], 'ankle')",
     "geometry-below: shoe; history-below: shoeShape", ""},
    {"cmds.createNode('transform', name='chr')\n"
     "cmds.createNode('transform', name='hip', parent='chr')",
     "namesake: chr|hip",
     "legShape: refused, the top joint's name is ambiguous: it stays detached"},
    {"cmds.createNode('transform', name='tempOldSkeletonGroup')",
     "parking-group: tempOldSkeletonGroup", ""},
    {"cmds.createNode('joint', name='tail')\n"
     "for plug in 'tail.rotateY', 'knee.rotate': cmds.setAttr(plug, lock=True)",
     "locked-rotation: knee; locked-rotation: tail", ""},
    {"cmds.createNode('unknown', name='wobble')\n"
     "for name in 'ig', 'og': cmds.addAttr('wobble', longName=name, dataType='mesh')\n"
     "cmds.connectAttr('skinCluster1.outputGeometry[0]', 'wobble.ig')\n"
     "cmds.connectAttr('wobble.og', 'legShape.inMesh', force=True)",
     "not-evaluated: wobble", "legShape: taken up"},
    {"cmds.polyCube(name='boot')\n"
     "cmds.connectAttr('initialShadingGroup.memberWireframeColor',\n"
     "                 'bootShape.instObjGroups[0].objectGroups[0].objectGrpColor')",
     "through-shading: bootShape", "legShape: taken up; bootShape: given a skin of its own"},
    {"cmds.createNode('transform', name='show')\n"
     "cmds.parent('knee', 'show', addObject=True)",
     "instance: knee", ""},
    {"cmds.select('hip')\n"
     "cmds.joint(name='eye', position=(0, 3, 0))\n"
     "cmds.skinCluster('eye', cmds.polyCube(name='ball')[0], toSelectedBones=True)\n"
     "cmds.disconnectAttr('bindPose1.message', 'skinCluster2.bindPose')",
     "unreached-skin: skinCluster2", "legShape: taken up; ballShape: taken up"},
    {"cmds.createNode('transform', name='ankle', parent=cmds.createNode('transform', name='x'))\n"
     "cmds.parent('x|ankle', world=True)",
     "name-at-top: |ankle", ""},
    {"cmds.skinCluster('hip', cmds.circle(name='ring')[0])", "skin-without-mesh: skinCluster2",
     "legShape: taken up"},
    {"cmds.setAttr('skinCluster1.skinningMethod', 1)", "skin-method: skinCluster1",
     "legShape: taken up, made linear and interactive"},
};

struct RigCheck : ::testing::Test {
    RigCheck() { setUpSession(session); }
    std::string ask(const std::string& expression) {
        Value answer;
        EXPECT_TRUE(session.python->run(expression + "\n", answer));
        return answer.isString() ? answer.string() : std::string();
    }
    RigReport report() {
        RigReport found;
        EXPECT_TRUE(checkRigs(session, TORVEL_BUILD_DIR "/plugin/scripts", found));
        return found;
    }

    Session session;
};

TEST_F(RigCheck, EachLossIsFoundAndNothingElse) {
    report();
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.does);
        ask(std::string(kRig) + row.does);
        EXPECT_EQ(ask("'; '.join(f['rule'] + ': ' + ' '.join(f['nodes']) for f in "
                      "torvel_check.check())"),
                  row.findings);
        if (*row.binds) {
            EXPECT_EQ(ask("'; '.join(b['mesh'] + ': ' + b['does'] for b in "
                          "torvel_check.closing_binds())"),
                      row.binds);
        }
    }
}

TEST_F(RigCheck, TheReportHasLinesAndJson) {
    ask(kRig);
    EXPECT_EQ(report().text, "nothing to report\n");
    ask("cmds.createNode('transform', name='tempOldSkeletonGroup')\n"
        "for i in range(9): cmds.createNode('transform', name='shoe%d' % i, parent='hip')");
    const RigReport found = report();
    EXPECT_EQ(found.findings, 2);
    EXPECT_NE(found.text.find("  shoe0 shoe1 shoe2 shoe3 shoe4 shoe5 shoe6 shoe7 and 1 more\n"
                              "hip  [parking-group]  Freeze Rotations, Orient Joints, Flip "
                              "Orientation\n"),
              std::string::npos);
    EXPECT_EQ(found.text.substr(found.text.size() - 11), "2 findings\n");
    EXPECT_NE(found.json.find("\"rule\": \"parking-group\""), std::string::npos);
    EXPECT_NE(found.json.find("\"skeleton\": \"hip\""), std::string::npos);
}

}  // namespace
}  // namespace torvel
