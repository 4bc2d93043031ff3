#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

// The tables of the commands that work on scenes, one for each family file.

CommandTable attributeCommands();      ///< getAttr setAttr
CommandTable attributeEditCommands();  ///< addAttr deleteAttr
CommandTable attributeInfoCommands();  ///< attributeQuery listAttr
CommandTable circleCommands();         ///< circle
CommandTable connectionCommands();     ///< connectAttr disconnectAttr isConnected connectionInfo
CommandTable constraintCommands();  ///< parentConstraint pointConstraint ... poleVectorConstraint
CommandTable createCommands();      ///< createNode group spaceLocator
CommandTable curveCommands();       ///< curve
CommandTable deleteCommands();      ///< delete
CommandTable duplicateCommands();   ///< duplicate
CommandTable freezeCommands();      ///< makeIdentity
CommandTable ikCommands();          ///< ikHandle
CommandTable keyCommands();         ///< setKeyframe cutKey setDrivenKeyframe
CommandTable keyEditCommands();     ///< keyframe keyTangent findKeyframe
CommandTable jointCommands();       ///< joint
CommandTable listCommands();        ///< ls objExists nodeType
CommandTable matchCommands();       ///< matchTransform
CommandTable
measureCommands();  ///< arclen exactWorldBoundingBox pointOnCurve pointPosition polyEvaluate
CommandTable miscCommands();       ///< about warning error undoInfo ...
CommandTable moveCommands();       ///< move rotate scale
CommandTable parentCommands();     ///< parent
CommandTable relationCommands();   ///< listRelatives listConnections listHistory
CommandTable renameCommands();     ///< rename lockNode namespace namespaceInfo
CommandTable selectCommands();     ///< select selectMode hilite
CommandTable setCommands();        ///< sets
CommandTable locatorCommands();    ///< spaceLocator
CommandTable shadingCommands();    ///< shadingNode
CommandTable timeCommands();       ///< currentTime currentUnit playbackOptions play
CommandTable transformCommands();  ///< xform

/// Adds every scene command to a session; once.
void addSceneCommands(Session& session);

}  // namespace torvel
