#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "graph/scene.h"

namespace torvel {

/// What the user is told once after a scene was opened.
struct OpenReport {
    static constexpr std::size_t kShownLines = 20;

    std::vector<std::string> skipped;  ///< "line 12: ...", the first kShownLines of them
    std::size_t skippedCount = 0;
    std::vector<std::string> references;      ///< paths of files that were not read in
    std::map<std::string, std::size_t> kept;  ///< node types kept without evaluation: how many
    std::size_t keptBetween = 0;              ///< of those: on the way from a skin to a mesh
    std::size_t scripts = 0;                  ///< script nodes kept and not run
    std::string codes;          ///< about the text's code page; empty when all is well
    std::size_t nonFinite = 0;  ///< infinite and undefined numbers read
    bool noEndLine = false;     ///< the text has no "// End of" line: perhaps it was cut off

    void skip(std::size_t line, const std::string& why);
    /// Counts what the scene holds: kept nodes, those between skin and mesh, script nodes.
    void countNodes(const Scene& scene);
    /// Something was left out or may be damaged.
    bool hasDoubts() const { return skippedCount || noEndLine || nonFinite || !codes.empty(); }
    /// Lines joined by newlines; empty when there is nothing to tell.
    std::string text() const;
};

}  // namespace torvel
