#pragma once

#include <string>

#include "graph/plug.h"

namespace torvel {

/// Told after each change of a scene. All members do nothing by default.
class SceneListener {
  public:
    virtual ~SceneListener() = default;
    virtual void nodeCreated(NodeHandle) {}
    virtual void nodeDeleted(NodeHandle) {}  ///< just before it goes
    virtual void nodeRenamed(NodeHandle, const std::string& /*oldName*/) {}
    virtual void nodeReparented(NodeHandle) {}
    virtual void nodeFactsChanged(NodeHandle) {}  ///< lock, uuid, kept texts (NodeFacts)
    virtual void valueChanged(const Plug&) {}
    virtual void stateChanged(const Plug&) {}  ///< locked, keyable, in the channel box
    virtual void attributeAdded(const Plug&) {}
    virtual void attributeRemoved(const Plug&) {}  ///< just before it goes
    virtual void elementAdded(const Plug&) {}
    virtual void elementRemoved(const Plug&) {}
    virtual void connectionChanged(const Plug& /*source*/, const Plug& /*target*/, bool /*made*/) {}
    virtual void documentChanged() {}
    virtual void selectionChanged() {}
    virtual void sceneCleared() {}
};

}  // namespace torvel
