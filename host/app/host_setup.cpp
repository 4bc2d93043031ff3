#include "app/host_setup.h"

#include "api/plugin_commands.h"
#include "app/coverage.h"
#include "app/measure_commands.h"
#include "commands/session.h"
#include "commands/tables.h"
#include "files/file_commands.h"
#include "mel/mel_language.h"
#include "python/python_language.h"
#include "ui/control_type.h"
#include "ui/dialog_state.h"
#include "ui/render.h"
#include "ui/tool_commands.h"
#include "ui/ui_commands.h"

namespace torvel {

void setUpSession(Session& session) {
    addSceneCommands(session);
    const CommandTable tables[] = {
        coverageCommands(),
        fileCommands(),
        melCommands(),
        pythonCommands(),
        {kPluginCommands, kPluginCommandCount},
        {kUiCommands, kUiCommandCount},
        controlCommands(),
        dialogCommands(),
        toolCommands(),
        renderCommands(),
        {kMeasureCommands, kMeasureCommandCount},
    };
    for (const CommandTable& table : tables)
        session.addCommands(table.rows, table.count);
    setUpMel(session);
    setUpPython(session);
}

}  // namespace torvel
