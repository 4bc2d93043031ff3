#pragma once

#include <string>
#include <vector>

namespace torvel {

/// What a scene file holds beside its nodes, and the file itself. Texts are kept statements, in
/// order.
struct Document {
    std::string fileName;  ///< full path; empty for an untitled scene
    bool modified = false;
    std::vector<std::string> requiresText;
    std::vector<std::string> fileInfoText;
    std::vector<std::string> referenceText;
    std::string unitsText;
    std::vector<std::string>
        trailingText;  ///< relationship and other statements to write after connections
};

}  // namespace torvel
