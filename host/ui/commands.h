#pragma once

#include <cstddef>

#include "script/command.h"

namespace torvel {

/// setParent, menu, menuItem, deleteUI, window, showWindow, radioCollection. Layouts and controls
/// are in control_type.h, dialogs in dialog_state.h. They work on the session's main window;
/// without one each of them fails: "menu: there is no user interface (--no-ui)".
///
/// Windows, menus, items, layouts and controls are named as given or by number ("menuItem1"); what
/// is made is returned with its full path ("MayaWindow|TorvelPlugin|menuItem1"). An item's command
/// is a callable, or a text in the language of its caller unless sourceType ("python", "mel") says
/// otherwise; one that fails prints its error and raises nothing in Qt.
extern const Command kUiCommands[];
extern const std::size_t kUiCommandCount;

// One function for each command; commands.cpp holds their rows.
Status runSetParent(const CommandCall& call, Value& result);
Status runMenu(const CommandCall& call, Value& result);
Status runMenuItem(const CommandCall& call, Value& result);
Status runDeleteUi(const CommandCall& call, Value& result);
Status runWindow(const CommandCall& call, Value& result);
Status runShowWindow(const CommandCall& call, Value& result);
Status runWindowPref(const CommandCall& call, Value& result);
Status runRadioCollection(const CommandCall& call, Value& result);

}  // namespace torvel
