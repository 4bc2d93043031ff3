#pragma once

#include <string>

#include "base/status.h"

namespace torvel {

class Scene;
class Session;
struct OpenReport;

/// Opens a Maya ASCII file in place of the scene and tells in the log, once, what was kept and what
/// was left out. The scripts of a trusted scene run (script_nodes.h), with `runsScriptNodes` those
/// of the new one, too. After a failure (it names the file and, inside it, the line) the former
/// scene is as it was.
Status openScene(Session& session, const std::string& path, bool runsScriptNodes = true);
/// Reads a Maya ASCII file into an empty scene, its default nodes made before. The failure names
/// file and line; the scene is good for nothing then.
Status readSceneFile(const std::string& path, Scene& fresh, OpenReport& report);
/// Tells in the log what there is to tell about a file that was read.
void tellReport(Session& session, const OpenReport& report, const std::string& name);
/// An empty, untitled scene with its default nodes.
void newScene(Session& session);
/// Writes the scene to a file (see replaceFile) and makes that the scene's file. What the file
/// loses by it (other hard links, its owner) is told in the log. After a failure the old file is as
/// it was.
Status saveScene(Scene& scene, const std::string& path);

}  // namespace torvel
