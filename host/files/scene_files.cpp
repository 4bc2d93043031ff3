#include "files/scene_files.h"

#include <filesystem>

#include "script/session.h"
#include "files/file_io.h"
#include "files/ma/reader.h"
#include "files/ma/writer.h"
#include "graph/journal.h"
#include "files/ma/text_codes.h"
#include "files/script_nodes.h"
#include "files/trusted_folders.h"
#include "nodes/core/default_nodes.h"

namespace torvel {

Status readSceneFile(const std::string& path, Scene& fresh, OpenReport& report) {
    const std::string full = absolutePath(path);
    std::string text;
    if (const Status status = loadFile(full, text); !status)
        return status;
    report.codes = toUtf8(text);
    createDefaultNodes(fresh);
    return readSceneText(fresh, text, std::filesystem::path(full).filename().string(), report);
}

void tellReport(Session& session, const OpenReport& report, const std::string& name) {
    if (const std::string told = report.text(); !told.empty())
        session.log().write(report.hasDoubts() ? Channel::Warning : Channel::Info,
                            name + ": " + told);
}

Status openScene(Session& session, const std::string& path, bool runsScriptNodes) {
    const std::string full = absolutePath(path);
    Scene& scene = session.scene();
    Scene fresh(scene.types(), scene.log());
    fresh.succeed(scene);
    OpenReport report;
    if (const Status status = readSceneFile(full, fresh, report); !status)
        return status;
    fresh.changeDocument([&](Document& document) { document.fileName = full; });
    fresh.setModified(false);
    runClosingScripts(session);
    scene.takeContents(fresh);
    session.sceneTrusted = runsScriptNodes && (session.trust || isTrustedPlace(full));
    if (session.sceneTrusted)
        report.scripts -= openingScriptCount(session);
    tellReport(session, report, std::filesystem::path(full).filename().string());
    runOpeningScripts(session);
    return Status::ok();
}

void newScene(Session& session) {
    runClosingScripts(session);
    Scene& scene = session.scene();
    scene.clear();
    createDefaultNodes(scene);
    scene.setModified(false);
    scene.journal().clear();
}

Status saveScene(Scene& scene, const std::string& path) {
    const std::string full = absolutePath(path);
    std::string loss;
    if (const Status status = replaceFile(full, sceneToText(scene), loss); !status)
        return status;
    if (!loss.empty())
        scene.log().write(Channel::Warning, full + " was saved, but " + loss);
    scene.changeDocument([&](Document& document) { document.fileName = full; });
    scene.setModified(false);
    return Status::ok();
}

}  // namespace torvel
