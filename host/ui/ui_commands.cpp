#include "ui/ui_commands.h"

namespace torvel {

namespace {

constexpr FlagRow kSetParentFlags[] = {
    {"menu", "m"},
    {"topLevel", "top"},
    {"upLevel", "u"},
};

constexpr FlagRow kMenuFlags[] = {
    {"label", "l", "s"},
    {"tearOff", "to", "b", kCreate | kQuery},
    {"exists", "ex", "", kCreate | kQuery},
    {"parent", "p", "s", kCreate},
    {"enable", "en", "b"},
    {"deleteAllItems", "dai", "", kEdit},
    {"itemArray", "ia", "", kQuery},
    {"numberOfItems", "ni", "", kQuery},
};

constexpr FlagRow kMenuItemFlags[] = {
    {"label", "l", "s"},
    {"command", "c", "s"},
    {"sourceType", "stp", "s", kCreate | kEdit},
    {"divider", "d", "b", kCreate | kQuery},
    {"dividerLabel", "dl", "s"},
    {"subMenu", "sm", "b", kCreate | kQuery},
    {"tearOff", "to", "b", kCreate},
    {"parent", "p", "s", kCreate},
    {"enable", "en", "b"},
    {"checkBox", "cb", "b"},
    {"annotation", "ann", "s"},
    {"exists", "ex", "", kCreate | kQuery},
};

constexpr FlagRow kDeleteUiFlags[] = {
    {"menu", "m", "", kCreate},
    {"menuItem", "mi", "", kCreate},
    {"window", "wnd", "", kCreate},
    {"control", "ctl", "", kCreate},
};

}  // namespace

const Command kUiCommands[] = {
    {"setParent", kSetParentFlags, countOf(kSetParentFlags), runSetParent,
     "Chooses the window, or with -menu the menu, that new parts go into"},
    {"menu", kMenuFlags, countOf(kMenuFlags), runMenu, "Menu in a window's menu bar"},
    {"menuItem", kMenuItemFlags, countOf(kMenuItemFlags), runMenuItem, "Item of a menu"},
    {"deleteUI", kDeleteUiFlags, countOf(kDeleteUiFlags), runDeleteUi,
     "Deletes windows, menus or menu items"},
};
const std::size_t kUiCommandCount = sizeof(kUiCommands) / sizeof(kUiCommands[0]);

}  // namespace torvel
