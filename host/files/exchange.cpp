#include "files/exchange.h"

#include <algorithm>
#include <filesystem>

#include "files/file_io.h"
#include "files/ma/reader.h"
#include "files/ma/writer.h"
#include "files/scene_files.h"
#include "script/session.h"

namespace torvel {
namespace {

bool isTop(const Scene& scene, const Node& node) {
    return node.isDag() && node.parents.front() == scene.world();
}

// Whether the scene has a node that a new one of this kind and place could not share the name with.
bool isTaken(const Scene& scene, const std::string& name, bool isDag, bool isTopNode) {
    const std::vector<NodeHandle> found = scene.names().find(name);
    return std::any_of(found.begin(), found.end(), [&](NodeHandle handle) {
        const Node& node = *scene.node(handle);
        return !isDag || !node.isDag() || (isTopNode && isTop(scene, node));
    });
}

bool hasNamespace(const Scene& scene, const std::string& name) {
    bool has = false;
    scene.forEachNode([&](const Node& node) {
        has = has || node.name.compare(0, name.size() + 1, name + ":") == 0;
    });
    return has;
}

std::string numbered(const std::string& stem,
                     const std::function<bool(const std::string&)>& taken) {
    std::string name = stem;
    for (int number = 1; taken(name); ++number)
        name = stem + std::to_string(number);
    return name;
}

// Nodes of a file on their way into a scene.
class Import {
  public:
    Import(const Scene& scene, Scene& fresh) : m_scene(scene), m_fresh(fresh) {}

    // A shared node of the file means the scene's own one, where there is one.
    bool isNew(const Node& node) const {
        if (node.isDefault)
            return false;
        const NodeHandle known = node.isShared
                                     ? m_scene.names().lookUp(m_fresh.names().fullPath(node.self))
                                     : NodeHandle();
        return known.isNull() || m_scene.typeName(known) != m_fresh.typeName(node.self);
    }

    void rename(const ImportNames& names) {
        std::string space = names.nameSpace;
        if (!space.empty() && !names.mergeNamespace)
            space = numbered(space, [&](const std::string& s) { return hasNamespace(m_scene, s); });
        for (NodeHandle handle : m_fresh.allNodes()) {
            const Node& node = *m_fresh.node(handle);
            if (!isNew(node) || handle == m_fresh.world())
                continue;
            const bool isDag = node.isDag(), top = isDag && isTop(m_fresh, node);
            const auto taken = [&](const std::string& n) {
                return isTaken(m_scene, n, isDag, top);
            };
            std::string wanted = space.empty() ? node.name : space + ":" + node.name;
            if (space.empty() && (names.all || taken(wanted)))
                wanted = names.prefix + "_" + wanted;
            if (wanted != node.name || taken(wanted))
                m_fresh.rename(handle, numbered(wanted, taken));
        }
    }

  private:
    const Scene& m_scene;
    Scene& m_fresh;
};

// Reads the nodes of a text that fits the scene: it keeps its own units, file infos and references.
Status addNodes(Scene& scene, const std::string& text, const std::string& name) {
    const Document before = scene.document();
    std::vector<std::string> needs = before.requiresText;
    OpenReport ignored;
    const Status status = readSceneText(scene, text, name, ignored);
    for (const std::string& need : scene.document().requiresText)
        if (std::find(needs.begin(), needs.end(), need) == needs.end())
            needs.push_back(need);
    scene.changeDocument([&](Document& document) {
        document.unitsText = before.unitsText;
        document.fileInfoText = before.fileInfoText;
        document.referenceText = before.referenceText;
        document.requiresText = needs;
        document.modified = true;
    });
    return status;
}

// The nodes that a part of a scene needs to be whole.
class Part {
  public:
    explicit Part(const Scene& scene) : m_scene(scene) {}

    void addWithAllBelow(NodeHandle handle) {
        const std::size_t first = m_nodes.size();
        add(handle);
        for (std::size_t i = first; i < m_nodes.size(); ++i)
            for (NodeHandle child : m_scene.node(m_nodes[i])->children)
                add(child);
    }

    void addWhatFeedsThem() {
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            const Node& node = *m_scene.node(m_nodes[i]);
            for (NodeHandle parent : node.parents)
                add(parent);
            for (const Scene::Connection& c : m_scene.incoming(node.self))
                if (!isMembership(c.target))
                    add(c.source.node);
            for (const Scene::Connection& c : m_scene.outgoing(node.self))
                if (m_scene.isType(c.target.node, "shadingEngine") && isMembership(c.target))
                    add(c.target.node);
        }
    }

    bool has(const Node& node) const {
        return node.self.index < m_has.size() && m_has[node.self.index];
    }
    bool isEmpty() const { return m_nodes.empty(); }

  private:
    bool isMembership(const Plug& plug) const {
        const std::string& name = m_scene.info(plug).longName;
        return name == "dagSetMembers" || name == "dnSetMembers";
    }

    void add(NodeHandle handle) {
        const Node& node = *m_scene.node(handle);
        if (node.isDefault || has(node))
            return;
        m_has.resize(std::max<std::size_t>(m_has.size(), handle.index + 1));
        m_has[handle.index] = true;
        m_nodes.push_back(handle);
    }

    const Scene& m_scene;
    std::vector<bool> m_has;
    std::vector<NodeHandle> m_nodes;
};

Status writeText(Session& session, const std::string& path, const std::string& text) {
    std::string loss;
    const std::string full = absolutePath(path);
    const Status status = replaceFile(full, text, loss);
    if (status && !loss.empty())
        session.log().write(Channel::Warning, full + " was saved, but " + loss);
    return status;
}

}  // namespace

Status importScene(Session& session, const std::string& path, const ImportNames& wish,
                   std::vector<NodeHandle>& made) {
    Scene& scene = session.scene();
    Scene fresh(scene.types(), scene.log());
    OpenReport report;
    if (const Status status = readSceneFile(path, fresh, report); !status)
        return status;
    ImportNames names = wish;
    const std::filesystem::path file(path);
    if (names.prefix.empty())
        names.prefix = Names::legal(file.stem().string());
    if (names.prefix.empty())
        names.prefix = "imported";
    Import import(scene, fresh);
    std::vector<bool> isNew;
    fresh.forEachNode([&](const Node& node) {
        isNew.resize(std::max<std::size_t>(isNew.size(), node.self.index + 1));
        isNew[node.self.index] = import.isNew(node);
    });
    import.rename(names);
    const std::string text =
        nodesToText(fresh, [&](const Node& node) { return isNew[node.self.index]; });
    const std::uint64_t last = scene.node(scene.allNodes().back())->created;
    const Status status = addNodes(scene, text, file.filename().string());
    for (NodeHandle handle : scene.allNodes())
        if (scene.node(handle)->created > last)
            made.push_back(handle);
    if (!status) {
        scene.deleteNodes(made);
        made.clear();
        return status;
    }
    tellReport(session, report, file.filename().string());
    return status;
}

Status exportAll(Session& session, const std::string& path) {
    return writeText(session, path, sceneToText(session.scene()));
}

Status exportSelected(Session& session, const std::string& path) {
    const Scene& scene = session.scene();
    Part part(scene);
    for (const SelectionItem& item : scene.selection().items())
        part.addWithAllBelow(item.node);
    if (part.isEmpty())
        return Status::failure("Nothing is selected to be exported.");
    part.addWhatFeedsThem();
    return writeText(session, path,
                     nodesToText(scene, [&part](const Node& node) { return part.has(node); }));
}

}  // namespace torvel
