#include "app/options.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <CLI/CLI.hpp>

#include "base/version.h"
#include "commands/host/render.h"

namespace torvel {

namespace {

struct StepTexts {
    std::vector<std::string> mel, python, files;
};

CLI::Option* repeatable(CLI::App& app, const char* name, std::vector<std::string>& target,
                        const char* help) {
    return app.add_option(name, target, help)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

const CLI::Validator kNamed(
    [](std::string& text) { return text.empty() ? "the name is empty" : ""; }, "");

CLI::Option* file(CLI::App& app, const char* name, std::string& target, const char* help,
                  const char* kind) {
    return app.add_option(name, target, help)->type_name(kind)->check(kNamed);
}

void addPlainOptions(CLI::App& app, Options& o) {
    app.add_option("scene", o.scene, "Scene to open (.ma)")->check(kNamed);
    app.add_flag("--batch", o.batch, "Work without a screen and end after the work");
    app.add_flag("--no-ui", o.noUi, "Like --batch, and without any main window");
    repeatable(app, "--plugin", o.plugins, "Plug-in to load, by name or path (repeatable)")
        ->type_name("NAME|PATH");
    app.add_flag("--no-plugin", o.noPlugin, "Leave the bundled plug-in out");
    file(app, "--save", o.save, "Save the scene here at the end, unless a script failed",
         "FILE.ma");
    app.add_flag("--save-anyway", o.saveAnyway,
                 "Save after a failed script, too, but never over the scene that was opened");
    file(app, "--trace", o.trace, "Write what plug-ins run and show, as JSON lines", "FILE");
    app.add_flag("--network", o.network, "Let --batch reach the network");
    repeatable(app, "--answer", o.answers,
               "Button, and text, that the next dialog takes (repeatable)")
        ->type_name("BUTTON[=TEXT]");
    app.add_flag("--trust", o.trust, "Run the script nodes of the scenes that are opened");
    repeatable(app, "--trust-folder", o.trustFolders,
               "Run those of scenes below this folder, from now on (repeatable)")
        ->type_name("FOLDER")
        ->check(kNamed);
}

void addVerifyOptions(CLI::App& app, Options& o) {
    const char* group = "Verify";
    app.add_flag("--verify", o.verify,
                 "Compare the scene before and after the scripts; 4 on a difference")
        ->group(group);
    app.add_option("--verify-points", o.limits.points, "Largest move of a vertex")
        ->capture_default_str()
        ->group(group);
    app.add_option("--verify-weights", o.limits.weights, "Largest change of a skin weight")
        ->capture_default_str()
        ->group(group);
    app.add_option("--verify-matrices", o.limits.matrices,
                   "Largest change in a joint's world matrix")
        ->capture_default_str()
        ->group(group);
    app.add_option("--verify-nodes", o.limits.nodes,
                   "Most nodes that may come or go (-1: not judged)")
        ->capture_default_str()
        ->group(group);
    app.add_option("--verify-connections", o.limits.connections,
                   "Most connections that may come or go (-1: not judged)")
        ->capture_default_str()
        ->group(group);
    file(app, "--verify-json", o.verifyJson, "Write the comparison here, too", "FILE")
        ->group(group);
}

void addCheckOptions(CLI::App& app, Options& o) {
    const char* group = "Check";
    app.add_flag("--check", o.check,
                 "List what the skeleton tools would lose or refuse on the scene; 1 on a finding")
        ->group(group);
    file(app, "--check-json", o.checkJson, "Write the findings here, too", "FILE")->group(group);
}

void addRenderOptions(CLI::App& app, Options& o) {
    const char* group = "Picture";
    file(app, "--render", o.render, "Draw the scene here at the end", "FILE.png")->group(group);
    app.add_option("--view", o.view, "persp, front, side or top")
        ->check(CLI::IsMember({"persp", "front", "side", "top"}))
        ->capture_default_str()
        ->group(group);
    app.add_option("--size", o.size, "Width and height of the picture")
        ->type_name("WxH")
        ->capture_default_str()
        ->group(group);
    app.add_option("--frames", o.frames, "A picture for each of these frames, FILE.0001.png ...")
        ->type_name("A:B")
        ->group(group);
    app.add_flag("--wire", o.wire, "Draw meshes as wires")->group(group);
}

// CLI11 keeps each option's values in order and the options' order of use; together they give the
// steps.
void addSteps(const CLI::App& app, const StepTexts& texts, std::vector<ScriptStep>& steps) {
    std::map<std::string, std::size_t> used;
    const auto take = [&](const std::string& name, const std::vector<std::string>& from,
                          ScriptStep::Kind kind) {
        const std::size_t at = used[name]++;
        if (at < from.size())
            steps.push_back({kind, from[at]});
    };
    for (const CLI::Option* option : app.parse_order()) {
        const std::string name = option->get_name();
        if (name == "--command")
            take(name, texts.mel, ScriptStep::Kind::Mel);
        else if (name == "--python")
            take(name, texts.python, ScriptStep::Kind::Python);
        else if (name == "--script")
            take(name, texts.files, ScriptStep::Kind::File);
    }
}

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

std::string pictureFault(const Options& o) {
    QSize size;
    int first = 0, last = 0;
    if (!pictureSize(o.size, size))
        return "--size takes WxH with sides of 1 to 16384, not " + o.size;
    if (!o.frames.empty() && !frameRange(o.frames, first, last))
        return "--frames takes A:B, from a lower to a higher number, not " + o.frames;
    if (!o.frames.empty() && tooManyFrames(first, last))
        return "--frames takes at most " + std::to_string(kMostFrames) + " frames, not " + o.frames;
    return o.render.empty() || endsWith(o.render, ".png")
               ? ""
               : "--render takes a .png file, not " + o.render;
}

std::string saveFault(const Options& o) {
    return endsWith(o.save, ".mb")
               ? "--save writes Maya ASCII, which is no .mb file: name a .ma file instead of " +
                     o.save
               : "";
}

// What is written may not be what is read: opening it for writing empties it.
std::string clash(const Options& o) {
    for (const std::string& written : {o.trace, o.verifyJson, o.checkJson, o.render}) {
        if (sameFile(written, o.scene))
            return written + " is the scene: it would be overwritten";
        for (const ScriptStep& step : o.steps)
            if (step.kind == ScriptStep::Kind::File && sameFile(written, step.text))
                return written + " is a script: it would be overwritten";
    }
    return {};
}

ParsedOptions refusal(const std::string& text) {
    ParsedOptions parsed;
    parsed.code = 2;
    parsed.text = "torvel-host: " + text + "\nTry torvel-host --help.\n";
    return parsed;
}

std::string badScript(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        const std::string suffix =
            file.size() > 3 ? file.substr(file.rfind('.') + 1) : std::string();
        if (suffix != "py" && suffix != "mel")
            return file;
    }
    return {};
}

}  // namespace

bool sameFile(const std::string& a, const std::string& b) {
    namespace fs = std::filesystem;
    if (a.empty() || b.empty())
        return false;
    std::error_code missing, ignored;
    const bool same = fs::equivalent(a, b, missing);
    return missing ? fs::absolute(a, ignored).lexically_normal() ==
                         fs::absolute(b, ignored).lexically_normal()
                   : same;
}

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
    const auto bar = std::find(arguments.begin(), arguments.end(), "--");
    std::vector<std::string> own(arguments.begin(), bar);
    ParsedOptions parsed;
    Options& o = parsed.options;
    if (bar != arguments.end())
        o.scriptArguments.assign(bar + 1, arguments.end());

    CLI::App app{"An open stand-in for Maya: scenes, scripts and plug-ins, on a screen or in batch",
                 "torvel-host"};
    StepTexts texts;
    addPlainOptions(app, o);
    repeatable(app, "--command", texts.mel, "MEL text to run (repeatable)")->type_name("MEL");
    repeatable(app, "--python", texts.python, "Python text to run (repeatable)")->type_name("TEXT");
    repeatable(app, "--script", texts.files, "Script to run (repeatable)")
        ->type_name("FILE.py|FILE.mel");
    addVerifyOptions(app, o);
    addCheckOptions(app, o);
    addRenderOptions(app, o);
    app.set_version_flag("--version", std::string("torvel-host ") + versionText());
    app.footer(
        "Scripts run in the order given, after the scene is open; what follows -- is sys.argv for "
        "them.\n"
        "Exit codes: 0 done, 1 a script failed, something could not be written or --check found "
        "something, 2 wrong use or a JSON file that cannot be written, 3 the scene cannot be read, "
        "4 --verify found a difference, 130 and 143 stopped by SIGINT or SIGTERM.");
    try {
        std::reverse(own.begin(), own.end());
        app.parse(own);
    } catch (const CLI::CallForHelp&) {
        parsed.text = app.help();
        return parsed;
    } catch (const CLI::CallForVersion&) {
        parsed.text = std::string("torvel-host ") + versionText() + "\n";
        return parsed;
    } catch (const CLI::ParseError& error) {
        return refusal(error.what());
    }
    if (const std::string file = badScript(texts.files); !file.empty())
        return refusal("--script takes .py and .mel files, not " + file);
    addSteps(app, texts, o.steps);
    for (const auto& fault : {pictureFault(o), saveFault(o), clash(o)})
        if (!fault.empty())
            return refusal(fault);
    if (o.scene.empty() && (o.check || !o.checkJson.empty()))
        return refusal("--check needs a scene");
    o.check = o.check || !o.checkJson.empty();
    o.batch = o.batch || o.noUi || o.check;
    o.verify = o.verify || !o.verifyJson.empty();
    parsed.run = true;
    return parsed;
}

}  // namespace torvel
