#pragma once

#include <cstddef>

#include "commands/command.h"

namespace torvel {

/// The tables of the commands that work on scenes, one for each family file.
struct CommandTable
{
    const Command* rows;
    std::size_t count;
};

CommandTable attributeCommands();    ///< getAttr setAttr
CommandTable attributeEditCommands();///< addAttr deleteAttr attributeQuery listAttr
CommandTable connectionCommands();   ///< connectAttr disconnectAttr isConnected connectionInfo
CommandTable createCommands();       ///< createNode group shadingNode spaceLocator
CommandTable deleteCommands();       ///< delete
CommandTable duplicateCommands();    ///< duplicate
CommandTable freezeCommands();       ///< makeIdentity
CommandTable jointCommands();        ///< joint
CommandTable listCommands();         ///< ls objExists nodeType
CommandTable matchCommands();        ///< matchTransform
CommandTable miscCommands();         ///< about warning error undoInfo ...
CommandTable moveCommands();         ///< move rotate scale
CommandTable parentCommands();       ///< parent
CommandTable relationCommands();     ///< listRelatives listConnections listHistory
CommandTable renameCommands();       ///< rename lockNode namespace namespaceInfo
CommandTable selectCommands();       ///< select selectMode hilite
CommandTable setCommands();          ///< sets
CommandTable transformCommands();    ///< xform

/// Adds every scene command to a session; once.
void addSceneCommands(Session& session);

}  // namespace torvel
