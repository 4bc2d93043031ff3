#include "ui/commands.h"

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
    {"menu", "m", "", kCreate},     {"menuItem", "mi", "", kCreate},
    {"window", "wnd", "", kCreate}, {"control", "ctl", "", kCreate},
    {"layout", "lay", "", kCreate}, {"radioCollection", "rc", "", kCreate},
};

constexpr FlagRow kWindowFlags[] = {
    {"exists", "ex", "", kCreate | kQuery},
    {"title", "t", "s"},
    {"iconName", "in", "s"},
    {"widthHeight", "wh", "ii"},
    {"width", "w", "i"},
    {"height", "h", "i"},
    {"topLeftCorner", "tlc", "ii"},
    {"topEdge", "te", "i"},
    {"leftEdge", "le", "i"},
    {"sizeable", "s", "b"},
    {"resizeToFitChildren", "rtf", "b", kCreate | kEdit},
    {"visible", "vis", "b"},
    {"iconify", "i", "b", kEdit | kQuery},
    {"retain", "ret", "", kCreate},
    {"closeCommand", "cc", "s", kCreate | kEdit},
    {"minimizeCommand", "mnc", "s", kCreate | kEdit},
    {"restoreCommand", "rc", "s", kCreate | kEdit},
    // Every window has a bar for menus, buttons to fold and close it, and the desktop's frame.
    {"menuBar", "mb", "b", kCreate},
    {"menuBarVisible", "mbv", "b", kCreate | kEdit},
    {"titleBar", "tb", "b", kCreate},
    {"minimizeButton", "mnb", "b", kCreate},
    {"maximizeButton", "mxb", "b", kCreate},
    {"toolbox", "tlb", "b", kCreate},
    {"numberOfMenus", "nm", "", kQuery},
    {"menuArray", "ma", "", kQuery},
};

constexpr FlagRow kWindowPrefFlags[] = {
    {"exists", "ex", "", kCreate},
    {"remove", "r", "", kCreate},
    {"removeAll", "ra", "", kCreate},
};

constexpr FlagRow kRadioCollectionFlags[] = {
    {"exists", "ex", "", kCreate | kQuery},
    {"parent", "p", "s", kCreate},
    {"global", "gl", "", kCreate},
    {"select", "sl", "s", kEdit | kQuery},
    {"collectionItemArray", "cia", "", kQuery},
    {"numberOfCollectionItems", "nci", "", kQuery},
};

}  // namespace

const Command kUiCommands[] = {
    {"setParent", kSetParentFlags, countOf(kSetParentFlags), runSetParent,
     "Chooses the window, or with -menu the menu, that new parts go into"},
    {"menu", kMenuFlags, countOf(kMenuFlags), runMenu, "Menu in a window's menu bar"},
    {"menuItem", kMenuItemFlags, countOf(kMenuItemFlags), runMenuItem, "Item of a menu"},
    {"deleteUI", kDeleteUiFlags, countOf(kDeleteUiFlags), runDeleteUi,
     "Deletes windows, layouts, controls, menus or menu items"},
    {"window", kWindowFlags, countOf(kWindowFlags), runWindow,
     "Window, hidden until showWindow, deleted when it is closed"},
    {"showWindow", nullptr, 0, runShowWindow, "Shows and raises a window"},
    {"windowPref", kWindowPrefFlags, countOf(kWindowPrefFlags), runWindowPref,
     "Kept places of windows: there are none"},
    {"radioCollection", kRadioCollectionFlags, countOf(kRadioCollectionFlags), runRadioCollection,
     "Radio buttons of which one is on"},
};
const std::size_t kUiCommandCount = sizeof(kUiCommands) / sizeof(kUiCommands[0]);

}  // namespace torvel
