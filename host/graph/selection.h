#pragma once

#include <string>
#include <vector>

#include "graph/plug.h"

namespace torvel {

class Scene;

/// One selected thing: a node, a plug of it, or components of a shape ("vtx[0:3]").
struct SelectionItem {
    NodeHandle node;
    Plug plug;              ///< null unless a plug is selected
    std::string component;  ///< empty unless components are selected
    int instance = 0;

    friend bool operator==(const SelectionItem& a, const SelectionItem& b) {
        return a.node == b.node && a.plug == b.plug && a.component == b.component &&
               a.instance == b.instance;
    }
};

/// Ordered selection without repeats. Deleted nodes leave by themselves.
class Selection {
  public:
    explicit Selection(Scene& scene) : m_scene(scene) {}

    const std::vector<SelectionItem>& items() const { return m_items; }
    std::vector<NodeHandle> nodes() const;  ///< of whole-node items
    void replace(std::vector<SelectionItem> items);
    void replace(NodeHandle node) { replace(std::vector<SelectionItem>{{node, {}, {}, 0}}); }
    void replaceNodes(const std::vector<NodeHandle>& nodes);
    void add(const SelectionItem& item);
    void remove(const SelectionItem& item);
    void clear();
    void forget(NodeHandle node);  ///< a node that goes
    /// Selection mode: components or objects; hilited objects in component mode.
    bool componentMode = false;
    std::vector<NodeHandle> hilited;

  private:
    void tell();
    void record() const;
    Scene& m_scene;
    std::vector<SelectionItem> m_items;
};

}  // namespace torvel
