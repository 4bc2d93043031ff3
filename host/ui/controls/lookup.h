#pragma once

#include "script/command.h"
#include "ui/controls/tree.h"

class QWidget;

namespace torvel {

// What the UI commands share.

/// The tree of the main window; "menu: there is no user interface (--no-ui)" without one.
Status uiTree(const CommandCall& call, UiTree*& tree);
/// The one positional name, found and of that kind; "Object 'x' not found." otherwise.
Status namedElement(const CommandCall& call, UiTree& tree, UiKind kind, int& id);
/// True when the call's one name stands for an element of that kind.
bool namedElementExists(const CommandCall& call, UiTree& tree, UiKind kind);
/// Refuses a size or a place beyond what a screen can show: "window: the flag 'width' takes at most
/// 16384 pixels".
Status checkPixels(const CommandCall& call, const FlagUse& use);
/// The positional name for a new element; empty when none was given.
Status newName(const CommandCall& call, std::string& name);

/// A window below the main one that a plug-in made by itself, known by its object name; null when
/// there is none.
QWidget* foreignWindow(const Session& session, const std::string& name);
/// The window around an element: itself or the first one above it; kNone when there is none.
int windowOf(const UiTree& tree, int id);

/// True for an option menu, whose items stand in a field instead of a menu.
bool isOptionMenu(const UiTree& tree, int id);
/// The widget whose actions are its items; null for anything else.
QWidget* optionMenu(const UiTree& tree, int id);

}  // namespace torvel
