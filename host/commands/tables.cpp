#include "commands/tables.h"

#include "commands/session.h"
#include "commands/skin_commands.h"

namespace torvel {

void addSceneCommands(Session& session)
{
    const CommandTable tables[] = {
        attributeCommands(), attributeEditCommands(), connectionCommands(), createCommands(),
        deleteCommands(),    duplicateCommands(),     freezeCommands(),     jointCommands(),
        listCommands(),      matchCommands(),         miscCommands(),       moveCommands(),
        parentCommands(),    relationCommands(),      renameCommands(),     selectCommands(),
        setCommands(),       transformCommands(),     {kSkinCommands, kSkinCommandCount},
        {kPolyCommands, kPolyCommandCount},
    };
    for (const CommandTable& table : tables)
        session.addCommands(table.rows, table.count);
}

}  // namespace torvel
