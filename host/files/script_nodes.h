#pragma once

#include <cstddef>

namespace torvel {

class Session;

/// Nodes of type "script" hold texts of a scene. They are run only in a trusted scene
/// (`session.sceneTrusted`): one opened with `session.trust` set, or from a trusted folder
/// (trusted_folders.h). Each is named in the log before it runs.
///
/// Opening runs `before` of the types Open/Close, GUI Open/Close (with a screen) and Scene
/// Configuration, in the order of the file; closing runs `after` of the first two. The other types
/// (on demand, UI configuration, rendering, time) are kept and never run here. A script that fails
/// has printed its error; the others run all the same.
void runOpeningScripts(Session& session);
/// Once for each scene: it is trusted no longer.
void runClosingScripts(Session& session);

/// How many script nodes of the scene opening runs.
std::size_t openingScriptCount(Session& session);

}  // namespace torvel
