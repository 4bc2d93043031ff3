#pragma once

#include <string>
#include <string_view>

#include "base/status.h"
#include "files/ma/open_report.h"
#include "graph/scene.h"

namespace torvel {

/// Reads the text of a Maya ASCII file into a scene that holds nothing but its default nodes. The
/// text is data: a closed list of statements, none of which runs anything. A failure names the file
/// and the line ("rig.ma line 12: ..."); the scene is then good for nothing but deletion. `name` is
/// the name used in such sentences.
Status readSceneText(Scene& scene, std::string_view text, const std::string& name,
                     OpenReport& report);

}  // namespace torvel
