#pragma once

#include <map>
#include <string>
#include <vector>

#include <QPointer>

#include "base/status.h"

class QMenu;
class QObject;

namespace torvel {

enum class UiKind { Window, Menu, MenuItem, Layout, Control, Collection };

/// A text or callable that a part of the interface runs.
struct UiCommand {
    std::string text;
    bool python = true;  ///< the language of the text
};

/// One named part of the user interface. A sub-menu is a MenuItem whose object is a QMenu; any
/// other item is a QAction.
struct UiElement {
    std::string name;
    UiKind kind = UiKind::Window;
    QPointer<QObject> object;
    int parent = 0;          ///< id of the element above; 0 for a window
    std::string type;        ///< the command that made it ("textField"); empty for menus and items
    std::string command;     ///< text that an item runs
    std::string sourceType;  ///< "python" or "mel"
    std::string label;
    std::string annotation;
    bool divider = false;
    std::map<std::string, UiCommand>
        commands;  ///< of layouts, controls, windows, by long flag name
};

/// Names and paths of the windows, menus, items, layouts and controls that scripts see, and where
/// the next one goes. Paths read "MayaWindow|TorvelPlugin|menuItem3". Names are unique below one
/// parent; a short name finds an element anywhere as long as it is the only one.
class UiTree {
  public:
    static constexpr int kNone = 0;

    /// Adds an element; an empty name is generated from `stem` and the first free number
    /// ("menuItem1"). "Object's name 'x' is not unique." when the parent has one of that name
    /// already.
    Status add(UiElement element, const std::string& stem, int& made);
    /// By short name, path tail or full path. "Object 'x' not found." / "Object's name 'x' is not
    /// unique."
    Status find(const std::string& text, int& found) const;
    /// Same without texts: kNone when none or several.
    int lookUp(const std::string& text) const;
    /// Takes the element and all below out of the tree at once and deletes their objects when Qt is
    /// idle. Where it was the current parent, the element above it is now.
    void remove(int id);

    const UiElement* element(int id) const;  ///< null when it or its object is gone
    UiElement* element(int id);
    std::string fullPath(int id) const;
    std::vector<int> children(int id) const;  ///< in the order of their making
    /// The menu that items go into: of a Menu or a sub-menu item; null for anything else.
    QMenu* menuOf(int id) const;

    /// The element that stands for the object; kNone for a foreign one.
    int idOf(const QObject* object) const;

    /// Where menus, layouts and controls go; the main window unless a script chose another.
    int currentParent() const;
    void setCurrentParent(int id) { m_currentParent = id; }
    /// Where items go; kNone when there is none (any more).
    int currentMenu() const { return element(m_currentMenu) ? m_currentMenu : kNone; }
    void setCurrentMenu(int id) { m_currentMenu = id; }
    /// Where radio buttons belong to; kNone when there is none (any more).
    int currentCollection() const {
        return element(m_currentCollection) ? m_currentCollection : kNone;
    }
    void setCurrentCollection(int id) { m_currentCollection = id; }
    /// The window made last; kNone when it is gone.
    int lastWindow() const { return element(m_lastWindow) ? m_lastWindow : kNone; }
    void setLastWindow(int id) { m_lastWindow = id; }

  private:
    std::vector<int> matches(const std::string& text) const;
    bool isTaken(const std::string& name, int parent) const;
    std::string generated(const std::string& stem) const;

    std::map<int, UiElement> m_elements;
    int m_next = 1;
    int m_currentParent = kNone;
    int m_currentMenu = kNone;
    int m_currentCollection = kNone;
    int m_lastWindow = kNone;
};

}  // namespace torvel
