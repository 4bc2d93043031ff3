#include "files/ma/writer.h"

#include <algorithm>

#include "files/ma/block_writer.h"
#include "files/ma/statement.h"
#include "nodes/ik/handle.h"

namespace torvel {
namespace {

class SceneWriter {
  public:
    using Wanted = std::function<bool(const Node&)>;

    explicit SceneWriter(const Scene& scene, const Wanted* wanted = nullptr)
        : m_scene(scene), m_wanted(wanted), m_units(FileUnits::of(scene.document().unitsText)) {}

    std::string run();

  private:
    void head();
    void dagNodes();
    void instances();
    void otherNodes();
    void defaultNodes();
    void connections();
    void lines(const std::vector<std::string>& texts);
    void block(const Node& node);
    bool isSelected(const Node& node) const;
    const std::string& nodeName(NodeHandle handle);
    std::string connection(const Scene::Connection& c);

    bool isWanted(const Node& node) const { return !m_wanted || (*m_wanted)(node); }
    bool reaches(NodeHandle handle) const;

    const Scene& m_scene;
    const Wanted* m_wanted;  ///< null: all
    const FileUnits m_units;
    std::string m_out;
    std::vector<const Node*> m_dag;    ///< parents first, siblings in order
    std::vector<std::string> m_names;  ///< by node index; empty until asked for
};

void SceneWriter::lines(const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
        m_out += text + "\n";
}

void SceneWriter::head() {
    m_out += "//Maya ASCII 2024 scene\n//Codeset: UTF-8\n";
    lines(m_scene.document().referenceText);
    if (m_scene.document().requiresText.empty())
        m_out += "requires maya \"2024\";\n";
    lines(m_scene.document().requiresText);
    m_out += (m_scene.document().unitsText.empty() ? "currentUnit -l centimeter -a degree -t film;"
                                                   : m_scene.document().unitsText) +
             "\n";
    lines(m_scene.document().fileInfoText);
}

// Default nodes that files select instead of making them.
bool SceneWriter::isSelected(const Node& node) const {
    return node.isDefault && !node.isDag() && m_scene.typeName(node.self) != "lightLinker";
}

const std::string& SceneWriter::nodeName(NodeHandle handle) {
    if (handle.index >= m_names.size())
        m_names.resize(handle.index + 1);
    std::string& name = m_names[handle.index];
    if (name.empty()) {
        const Node& node = *m_scene.node(handle);
        name = (node.isDefault && !node.isDag() ? ":" : "") +
               (m_wanted ? m_scene.names().fullPath(handle) : m_scene.names().shortest(handle));
    }
    return name;
}

void SceneWriter::block(const Node& node) {
    const bool isTop = node.parents.empty() || node.parents.front() == m_scene.world();
    m_out += "createNode " + m_scene.typeName(node.self) +
             (node.isDefault || node.isShared ? " -s" : "") + " -n " + inQuotes(node.name) +
             (isTop ? "" : " -p " + inQuotes(nodeName(node.parents.front()))) + ";\n";
    BlockWriter(m_scene, m_units, m_out).write(node, true);
    lines(node.keptHead);
}

// Each node stands below its first parent; further parents follow as instances.
void SceneWriter::dagNodes() {
    std::vector<NodeHandle> stack{m_scene.world()};
    while (!stack.empty()) {
        const Node& node = *m_scene.node(stack.back());
        stack.pop_back();
        if (node.self != m_scene.world() && isWanted(node)) {
            m_dag.push_back(&node);
            block(node);
        }
        for (std::size_t i = node.children.size(); i-- > 0;)
            if (m_scene.node(node.children[i])->parents.front() == node.self)
                stack.push_back(node.children[i]);
    }
}

void SceneWriter::instances() {
    for (const Node* node : m_dag)
        for (std::size_t i = 1; i < node->parents.size(); ++i)
            if (isWanted(*m_scene.node(node->parents[i])))
                m_out += "parent -s -nc -r -add " + inQuotes(m_scene.names().fullPath(node->self)) +
                         " " + inQuotes(nodeName(node->parents[i])) + " ;\n";
}

void SceneWriter::otherNodes() {
    for (NodeHandle handle : m_scene.allNodes()) {
        const Node& node = *m_scene.node(handle);
        if (!node.isDag() && !isSelected(node) && isWanted(node))
            block(node);
    }
}

void SceneWriter::defaultNodes() {
    for (NodeHandle handle : m_scene.allNodes()) {
        const Node& node = *m_scene.node(handle);
        if (!isSelected(node))
            continue;
        const std::size_t before = m_out.size();
        m_out += "select -ne :" + node.name + ";\n";
        const std::size_t empty = m_out.size();
        BlockWriter(m_scene, m_units, m_out).write(node, false);
        lines(node.keptHead);
        const bool madeBySelect =
            node.type->name == "unknown";  // it is there only if the file names it
        if (m_out.size() == empty && !madeBySelect)
            m_out.resize(before);
    }
}

// Whether a connection may name the node; those among nodes that every scene has are no news.
bool SceneWriter::reaches(NodeHandle handle) const {
    const Node& node = *m_scene.node(handle);
    return isWanted(node) || node.isDefault || node.isShared;
}

std::string SceneWriter::connection(const Scene::Connection& c) {
    const AttrInfo& info = m_scene.info(c.target);
    const bool next = info.is(kNextAvailable) && m_scene.isElement(c.target);
    const Plug target = next ? m_scene.parentPlug(c.target) : c.target;
    const Slot* slot = m_scene.peekSlot(c.target);
    return "connectAttr " +
           inQuotes(nodeName(c.source.node) + "." + m_scene.attrPath(c.source, false)) + " " +
           inQuotes(nodeName(c.target.node) + "." + m_scene.attrPath(target, false)) +
           (next ? " -na" : "") + (slot && (slot->state & kLocked) ? " -l on" : "") + ";\n";
}

void SceneWriter::connections() {
    std::vector<Scene::Connection> all = m_scene.allConnections();
    std::stable_sort(
        all.begin(), all.end(),
        [](const Scene::Connection& a, const Scene::Connection& b) { return a.order < b.order; });
    for (const Scene::Connection& c : all)
        if (reaches(c.source.node) && reaches(c.target.node))
            m_out += connection(c);
}

std::string SceneWriter::run() {
    solveAllHandles(m_scene);  // joints of handles are saved as they are shown
    head();
    dagNodes();
    instances();
    otherNodes();
    if (!m_wanted)
        defaultNodes();
    connections();
    lines(m_scene.document().trailingText);
    m_out += "// End of scene\n";
    return std::move(m_out);
}

}  // namespace

std::string sceneToText(const Scene& scene) {
    return SceneWriter(scene).run();
}

std::string nodesToText(const Scene& scene, const std::function<bool(const Node&)>& wanted) {
    return SceneWriter(scene, &wanted).run();
}

}  // namespace torvel
