#pragma once

#include "commands/command.h"
#include "ui/ui_tree.h"

namespace torvel {

// What the UI commands share.

/// The tree of the main window; "menu: there is no user interface (--no-ui)" without one.
Status uiTree(const CommandCall& call, UiTree*& tree);
/// The one positional name, found and of that kind; "Object 'x' not found." otherwise.
Status namedElement(const CommandCall& call, UiTree& tree, UiKind kind, int& id);
/// True when the call's one name stands for an element of that kind.
bool namedElementExists(const CommandCall& call, UiTree& tree, UiKind kind);
/// The positional name for a new element; empty when none was given.
Status newName(const CommandCall& call, std::string& name);

}  // namespace torvel
