#include "files/script_nodes.h"

#include <filesystem>

#include "script/session.h"

namespace torvel {

namespace {

enum ScriptType { kOpenClose = 1, kGuiOpenClose = 2, kSceneConfiguration = 6 };

struct NodeScript {
    NodeHandle node;
    std::string text;
    bool isPython = false;
};

bool runsAtOpening(const Session& session, int type) {
    return type == kOpenClose || type == kSceneConfiguration ||
           (type == kGuiOpenClose && !session.batch);
}

bool runsAtClosing(const Session& session, int type) {
    return type == kOpenClose || (type == kGuiOpenClose && !session.batch);
}

std::vector<NodeScript> scriptsOf(const Session& session, const Scene& scene, const char* attr,
                                  bool (*runs)(const Session&, int)) {
    std::vector<NodeScript> out;
    scene.forEachNode([&](const Node& node) {
        if (!node.type->derivesFrom("script"))
            return;
        const int type = static_cast<int>(scene.number(scene.findPlug(node.self, "scriptType")));
        NodeScript script{node.self, scene.text(scene.findPlug(node.self, attr)),
                          scene.number(scene.findPlug(node.self, "sourceType")) == 1.0};
        if (runs(session, type) && !script.text.empty())
            out.push_back(std::move(script));
    });
    return out;
}

void runScripts(Session& session, const std::vector<NodeScript>& scripts) {
    for (const NodeScript& script : scripts) {
        const Scene& scene = session.scene();
        // One before it may have deleted it, or opened another scene.
        if (!scene.isValid(script.node) || scene.typeName(script.node) != "script")
            continue;
        const std::string file = std::filesystem::path(scene.document().fileName).filename().string();
        session.log().write(Channel::Info, (file.empty() ? "untitled" : file) +
                                               ": running its script node '" +
                                               scene.names().shortest(script.node) + "' (" +
                                               (script.isPython ? "Python" : "MEL") + ")");
        Language* language = script.isPython ? session.python : session.mel;
        Value ignored;
        if (language)
            ignore(language->run(script.text, ignored));
    }
}

}  // namespace

std::size_t openingScriptCount(Session& session) {
    return scriptsOf(session, session.scene(), "before", runsAtOpening).size();
}

void runOpeningScripts(Session& session) {
    if (session.sceneTrusted)
        runScripts(session, scriptsOf(session, session.scene(), "before", runsAtOpening));
}

void runClosingScripts(Session& session) {
    if (!session.sceneTrusted)
        return;
    session.sceneTrusted = false;  // first: a script may close the scene itself
    runScripts(session, scriptsOf(session, session.scene(), "after", runsAtClosing));
}

}  // namespace torvel
