#include <algorithm>
#include <utility>

#include "graph/scene.h"

namespace torvel {

void Scene::succeed(const Scene& former) {
    m_generations = former.m_generations;
    clear();
}

void Scene::takeContents(Scene& other) {
    m_selection.clear();
    m_selection.hilited.clear();
    m_nodes.swap(other.m_nodes);
    m_generations.swap(other.m_generations);
    m_free.swap(other.m_free);
    std::swap(m_alive, other.m_alive);
    std::swap(m_creations, other.m_creations);
    std::swap(m_connections, other.m_connections);
    std::swap(m_visit, other.m_visit);
    m_structure = other.m_structure =
        std::max(m_structure, other.m_structure) + 1;  // no plan of either one holds
    std::swap(m_world, other.m_world);
    std::swap(m_time, other.m_time);
    fileName.swap(other.fileName);
    std::swap(modified, other.modified);
    requiresText.swap(other.requiresText);
    fileInfoText.swap(other.fileInfoText);
    referenceText.swap(other.referenceText);
    unitsText.swap(other.unitsText);
    trailingText.swap(other.trailingText);
    m_writers.swap(other.m_writers);
    m_writersStale = other.m_writersStale = true;
    m_names.clear();
    for (NodeHandle handle : allNodes())
        if (handle != m_world)
            m_names.added(handle, node(handle)->name);
    tell([](SceneListener& l) { l.sceneCleared(); });
}

}  // namespace torvel
