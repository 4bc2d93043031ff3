#include "ui/controls/tree.h"

#include <set>
#include <utility>

#include <QAction>
#include <QMenu>
#include <QWidget>

#include "script/callbacks.h"

namespace torvel {

namespace {

// Takes the object off the screen now; Qt deletes it once no slot of it can be running any more.
void retire(QObject* object) {
    if (auto* menu = qobject_cast<QMenu*>(object)) {
        QAction* entry = menu->menuAction();
        for (QWidget* widget : entry->associatedWidgets())
            widget->removeAction(entry);
        menu->hide();
    } else if (auto* action = qobject_cast<QAction*>(object)) {
        for (QWidget* widget : action->associatedWidgets())
            widget->removeAction(action);
    } else if (auto* widget = qobject_cast<QWidget*>(object)) {
        widget->hide();
    }
    object->setObjectName(QString());
    object->deleteLater();
}

// "a|b" is the end of "w|a|b", "b|c" is not the end of "ab|c".
bool isTail(const std::string& path, const std::string& text) {
    if (text.size() > path.size() ||
        path.compare(path.size() - text.size(), text.size(), text) != 0)
        return false;
    return text.size() == path.size() || path[path.size() - text.size() - 1] == '|';
}

}  // namespace

Status UiTree::add(UiElement element, const std::string& stem, int& made) {
    if (element.name.empty())
        element.name = generated(stem);
    if (element.name.find('|') != std::string::npos)
        return Status::failure("Object's name '" + element.name + "' is not legal.");
    if (isTaken(element.name, element.parent))
        return Status::failure("Object's name '" + element.name + "' is not unique.");
    if (element.object)
        element.object->setObjectName(QString::fromStdString(element.name));
    made = m_next++;
    m_elements.emplace(made, std::move(element));
    return Status::ok();
}

Status UiTree::find(const std::string& text, int& found) const {
    const std::vector<int> all = matches(text);
    if (all.empty())
        return Status::failure("Object '" + text + "' not found.");
    if (all.size() > 1)
        return Status::failure("Object's name '" + text + "' is not unique.");
    found = all.front();
    return Status::ok();
}

int UiTree::lookUp(const std::string& text) const {
    const std::vector<int> all = matches(text);
    return all.size() == 1 ? all.front() : kNone;
}

void UiTree::remove(int id) {
    for (int below : children(id))
        remove(below);
    const auto it = m_elements.find(id);
    if (it == m_elements.end())
        return;
    if (id == m_currentParent)
        m_currentParent = it->second.parent;
    const UiElement gone = std::move(it->second);
    m_elements.erase(it);
    // Letting a callable go may run a script, which may delete further elements.
    dropCallback(gone.command);
    for (const auto& [flag, command] : gone.commands)
        dropCallback(command.text);
    if (gone.object)
        retire(gone.object);
}

const UiElement* UiTree::element(int id) const {
    const auto it = m_elements.find(id);
    return it != m_elements.end() && it->second.object ? &it->second : nullptr;
}

UiElement* UiTree::element(int id) {
    return const_cast<UiElement*>(static_cast<const UiTree*>(this)->element(id));
}

std::string UiTree::fullPath(int id) const {
    const UiElement* one = element(id);
    if (!one)
        return {};
    return one->parent == kNone ? one->name : fullPath(one->parent) + "|" + one->name;
}

std::vector<int> UiTree::children(int id) const {
    std::vector<int> found;
    for (const auto& [each, one] : m_elements)
        if (one.parent == id)
            found.push_back(each);
    return found;
}

QMenu* UiTree::menuOf(int id) const {
    const UiElement* one = element(id);
    return one ? qobject_cast<QMenu*>(one->object.data()) : nullptr;
}

int UiTree::idOf(const QObject* object) const {
    for (const auto& [id, one] : m_elements)
        if (object && one.object == object)
            return id;
    return kNone;
}

int UiTree::currentParent() const {
    return element(m_currentParent) ? m_currentParent : lookUp("MayaWindow");
}

std::vector<int> UiTree::matches(const std::string& text) const {
    std::vector<int> found;
    if (text.empty())
        return found;
    for (const auto& [id, one] : m_elements) {
        const std::string path = fullPath(id);
        if (!path.empty() && path == text)
            return {id};
        if (isTail(path, text))
            found.push_back(id);
    }
    return found;
}

bool UiTree::isTaken(const std::string& name, int parent) const {
    for (const auto& [id, one] : m_elements)
        if (one.object && one.parent == parent && one.name == name)
            return true;
    return false;
}

std::string UiTree::generated(const std::string& stem) const {
    std::set<std::string> used;
    for (const auto& [id, one] : m_elements)
        if (one.object && one.name.compare(0, stem.size(), stem) == 0)
            used.insert(one.name);
    int number = 1;
    while (used.count(stem + std::to_string(number)) > 0)
        ++number;
    return stem + std::to_string(number);
}

}  // namespace torvel
