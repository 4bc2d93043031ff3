#include "graph/selection.h"

#include <algorithm>

#include "graph/journal.h"

namespace torvel {

void Selection::tell() {
    m_scene.tell([](SceneListener& l) { l.selectionChanged(); });
}

void Selection::record() const {
    if (m_scene.journal().isOn())
        m_scene.journal().add(edit::Chosen{m_items});
}

std::vector<NodeHandle> Selection::nodes() const {
    std::vector<NodeHandle> out;
    for (const SelectionItem& item : m_items)
        if (item.component.empty() && item.plug.isNull())
            out.push_back(item.node);
    return out;
}

void Selection::replace(std::vector<SelectionItem> items) {
    record();
    m_items.clear();
    for (SelectionItem& item : items)
        if (m_scene.isValid(item.node) &&
            std::find(m_items.begin(), m_items.end(), item) == m_items.end())
            m_items.push_back(std::move(item));
    tell();
}

void Selection::replaceNodes(const std::vector<NodeHandle>& nodes) {
    std::vector<SelectionItem> items;
    items.reserve(nodes.size());
    for (NodeHandle node : nodes)
        items.push_back({node, {}, {}, 0});
    replace(std::move(items));
}

void Selection::add(const SelectionItem& item) {
    if (!m_scene.isValid(item.node) ||
        std::find(m_items.begin(), m_items.end(), item) != m_items.end())
        return;
    record();
    m_items.push_back(item);
    tell();
}

void Selection::remove(const SelectionItem& item) {
    const auto it = std::find(m_items.begin(), m_items.end(), item);
    if (it == m_items.end())
        return;
    record();
    m_items.erase(it);
    tell();
}

void Selection::clear() {
    if (m_items.empty())
        return;
    record();
    m_items.clear();
    tell();
}

void Selection::forget(NodeHandle node) {
    hilited.erase(std::remove(hilited.begin(), hilited.end(), node), hilited.end());
    const auto gone = [node](const SelectionItem& item) { return item.node == node; };
    if (std::none_of(m_items.begin(), m_items.end(), gone))
        return;
    record();
    m_items.erase(std::remove_if(m_items.begin(), m_items.end(), gone), m_items.end());
    tell();
}

}  // namespace torvel
