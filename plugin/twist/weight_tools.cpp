// What opens Maya's own weight tools, and the animation that shows the weights at work.

#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "twist/twist_window.h"

void TwistWindow::paintWeights() {
    const MString script =
        "cmds.ArtPaintSkinWeightsTool()\n"
        "cmds.toolPropertyWindow()\n";
    MGlobal::executePythonCommand(script, false, false);
}

void TwistWindow::mirrorWeights() {
    const MString script =
        "import maya.mel as mel\n"
        "mel.eval('MirrorSkinWeightsOptions;')\n";
    MGlobal::executePythonCommand(script, false, false);
}

// The keys go on the first child of the twist joint's parent, but are cut from all its children.
void TwistWindow::testTwist() {
    const MString script =
        "all_twist = cmds.ls('*_twist')\n"
        "if not all_twist:\n"
        "   cmds.warning('No hay huesos twist creados')\n"
        "else:\n"
        "   for i in all_twist:\n"
        "      iPadre = cmds.listRelatives(i,p=True)\n"
        "      iBrother = cmds.listRelatives(iPadre, c=True)[0]\n"
        "      cmds.playbackOptions(minTime=0, maxTime=135)\n"
        "      cmds.playbackOptions(e=True, maxPlaybackSpeed=1.0)\n"
        "      cmds.currentTime(0)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateX', v=0, t=0)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateX', v=40, t=15)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateX', v=-40, t=30)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateX', v=0, t=45)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateY', v=0, t=45)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateY', v=40, t=60)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateY', v=-40, t=75)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateY', v=0, t=90)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateZ', v=0, t=90)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateZ', v=40, t=105)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateZ', v=-40, t=120)\n"
        "      cmds.setKeyframe(iBrother, attribute='rotateZ', v=0, t=135)\n"
        "   cmds.play(forward=True, wait=True)\n"
        "   for i in all_twist:\n"
        "      iPadre = cmds.listRelatives(i,p=True)\n"
        "      iBrother = cmds.listRelatives(iPadre, c=True)\n"
        "      cmds.cutKey(iBrother, attribute='rotate', clear=True)\n"
        "   cmds.currentTime(0)\n";
    MGlobal::executePythonCommand(script, false, false);
}
