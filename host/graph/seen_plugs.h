#pragma once

#include <memory>
#include <unordered_set>

#include "graph/plug.h"

namespace torvel {

struct PlugHash {
    std::size_t operator()(const Plug& plug) const {
        std::size_t hash = (static_cast<std::size_t>(plug.node.index) << 20) ^ plug.attr;
        for (const std::int32_t index : plug.index)
            hash = hash * 0x9E3779B97F4A7C15ull + static_cast<std::uint32_t>(index);
        return hash ^ (hash >> 29);
    }
};

/// Plugs that a walk has met, so that rings and ways that meet again cost linear time. The first
/// questions are answered with no and remembered nowhere: nearly every walk is shorter.
class SeenPlugs {
  public:
    bool again(const Plug& plug) {
        if (m_asked < kFree) {
            ++m_asked;
            return false;
        }
        if (!m_seen)
            m_seen = std::make_unique<std::unordered_set<Plug, PlugHash>>();
        return !m_seen->insert(plug).second;
    }
    void forget() {
        m_asked = 0;
        if (m_seen)
            m_seen.reset();
    }

  private:
    static constexpr int kFree = 64;
    int m_asked = 0;
    std::unique_ptr<std::unordered_set<Plug, PlugHash>> m_seen;
};

}  // namespace torvel
