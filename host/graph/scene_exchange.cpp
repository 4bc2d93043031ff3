#include <utility>

#include "graph/journal.h"
#include "graph/scene.h"
#include "graph/writers.h"

namespace torvel {

void Scene::succeed(const Scene& former) {
    m_lastGeneration = former.m_lastGeneration;
    clear();
}

void Scene::takeContents(Scene& other) {
    m_journal->clear();
    other.m_journal->clear();
    m_selection.clear();
    m_selection.hilited.clear();
    exchangeNodes(other);
    std::swap(m_connections, other.m_connections);
    std::swap(m_document, other.m_document);
    m_writers.swap(other.m_writers);
    m_writersStale = other.m_writersStale = true;
    m_everEvaluated = other.m_everEvaluated = true;
    m_names.clear();
    for (NodeHandle handle : allNodes())
        if (handle != m_world)
            m_names.added(*node(handle));
    tell([](SceneListener& l) { l.sceneCleared(); });
}

}  // namespace torvel
