#include "app/host_setup.h"

#include "api/plugin_commands.h"
#include "script/session.h"
#include "commands/tables.h"
#include "files/file_commands.h"
#include "mel/language.h"
#include "python/language.h"
#include "ui/controls/control_type.h"
#include "ui/controls/dialog_state.h"
#include "ui/tools/commands.h"
#include "ui/commands.h"

namespace torvel {

void setUpSession(Session& session) {
    addSceneCommands(session);
    const CommandTable tables[] = {
        fileCommands(),
        melCommands(),
        pythonCommands(),
        {kPluginCommands, kPluginCommandCount},
        {kUiCommands, kUiCommandCount},
        controlCommands(),
        dialogCommands(),
        toolCommands(),
    };
    for (const CommandTable& table : tables)
        session.addCommands(table);
    setUpMel(session);
    setUpPython(session);
}

}  // namespace torvel
