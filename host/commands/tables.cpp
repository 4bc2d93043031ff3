#include "commands/tables.h"

#include "script/session.h"
#include "commands/skin/commands.h"

namespace torvel {

void addSceneCommands(Session& session) {
    const CommandTable tables[] = {
        attributeCommands(),
        attributeEditCommands(),
        connectionCommands(),
        constraintCommands(),
        createCommands(),
        deleteCommands(),
        duplicateCommands(),
        freezeCommands(),
        ikCommands(),
        jointCommands(),
        listCommands(),
        locatorCommands(),
        matchCommands(),
        miscCommands(),
        moveCommands(),
        parentCommands(),
        relationCommands(),
        renameCommands(),
        selectCommands(),
        setCommands(),
        shadingCommands(),
        transformCommands(),
        circleCommands(),
        curveCommands(),
        measureCommands(),
        {kSkinCommands, kSkinCommandCount},
        attributeInfoCommands(),
        keyCommands(),
        keyEditCommands(),
        timeCommands(),
        {kPolyCommands, kPolyCommandCount},
    };
    for (const CommandTable& table : tables)
        session.addCommands(table.rows, table.count);
}

}  // namespace torvel
