#pragma once

#include "base/log.h"
#include "graph/connections.h"

namespace torvel {

struct WriterTable;

/// The fifth layer of a scene: what plugs hold and what readers get from them. Values in internal
/// units: radians, centimetres, time in frames.
class Values : public Connections {
  public:
    Log& log() const { return m_log; }

    // Getters evaluate what feeds the plug. A plug of another kind gives 0 / null / identity.
    double number(const Plug& plug) const;
    V3d vec3(const Plug& compound) const;
    M44d matrix(const Plug& plug) const;
    PayloadPtr data(const Plug& plug) const;
    std::string text(const Plug& plug) const;
    template <class T>
    std::shared_ptr<const T> dataAs(const Plug& plug) const {
        return std::dynamic_pointer_cast<const T>(data(plug));
    }
    /// The stored value, without evaluating or following connections.
    double storedNumber(const Plug& plug) const;
    PayloadPtr storedData(const Plug& plug) const;
    /// What the plug would show without its writer: the value of its source, or the number last set
    /// by hand. Sources are not evaluated. The stored number of a plug that nobody writes.
    double ownNumber(const Plug& plug) const;

    bool isLocked(const Plug& plug) const;  ///< itself, a compound above or the node
    bool isKeyable(const Plug& plug) const;
    bool isChannelBox(const Plug& plug) const;
    /// No lock and no connection on it, on a compound above or on a child.
    bool isSettable(const Plug& plug) const;

    /// Brings the plug up to date (iteratively; depth of the graph does not matter).
    void evaluate(const Plug& plug) const;
    /// The writer's output that writes this number; null when there is none.
    Plug writerOf(const Plug& plug) const;

  protected:
    Values(const TypeRegistry& types, Log& log);
    ~Values();
    virtual void bringUpToDate(const Plug& plug) const = 0;

    Log& m_log;
    std::unique_ptr<WriterTable> m_writers;
    bool m_writersStale = false;  ///< ties of writers must be found anew before the next evaluation
    mutable bool m_everEvaluated = false;  ///< false: no output is clean, so none can become dirty
};

}  // namespace torvel
