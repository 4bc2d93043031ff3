#pragma once

#include "graph/scene.h"

namespace torvel {

/// Connects two plugs as connectAttr does: a unitConversion node goes between angles or times and
/// plain numbers (one for three numbers of one kind, else child by child). `force` replaces what
/// feeds the target, a compound above it or a child of it. Refused for a locked target, for one
/// that is fed already (without force) and for types that do not fit.
Status connectPlugs(Scene& scene, const Plug& source, const Plug& target, bool force);

/// Breaks what feeds exactly this plug; a unitConversion that feeds nothing else goes, too. Nothing
/// when free.
void disconnectInput(Scene& scene, const Plug& target);

/// What feeds the plug, looking through unitConversion nodes; null when nothing does.
Plug sourceBehindConversions(const Scene& scene, const Plug& target);

}  // namespace torvel
