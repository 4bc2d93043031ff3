#pragma once

#include "graph/scene.h"

namespace torvel {

/// Whether a connection from `source` to `target` would close a ring of plain plugs: one without an
/// output in it, at any level of compounds and elements. Costs as much as the smaller of the two
/// sides: what feeds the source, and what the target feeds.
bool closesPlainRing(const Scene& scene, const Plug& source, const Plug& target);

}  // namespace torvel
