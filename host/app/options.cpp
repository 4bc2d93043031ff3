#include "app/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

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

void addPlainOptions(CLI::App& app, Options& o) {
    app.add_option("scene", o.scene, "Scene to open (.ma)");
    app.add_flag("--batch", o.batch, "Work without a screen and end after the work");
    app.add_flag("--no-ui", o.noUi, "Like --batch, and without any main window");
    repeatable(app, "--plugin", o.plugins, "Plug-in to load, by name or path (repeatable)")
        ->type_name("NAME|PATH");
    app.add_flag("--no-plugin", o.noPlugin, "Leave the bundled plug-in out");
    app.add_option("--save", o.save, "Save the scene here at the end")->type_name("FILE.ma");
    app.add_option("--trace", o.trace, "Write what plug-ins run and show, as JSON lines")
        ->type_name("FILE");
    app.add_flag("--network", o.network, "Let --batch reach the network");
    repeatable(app, "--answer", o.answers,
               "Button, and text, that the next dialog takes (repeatable)")
        ->type_name("BUTTON[=TEXT]");
    app.add_flag("--trust", o.trust, "Run the scene's own script nodes");
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
    app.add_option("--verify-json", o.verifyJson, "Write the comparison here, too")
        ->type_name("FILE")
        ->group(group);
}

void addCheckOptions(CLI::App& app, Options& o) {
    const char* group = "Check";
    app.add_flag("--check", o.check,
                 "List what the skeleton tools would lose or refuse on the scene; 1 on a finding")
        ->group(group);
    app.add_option("--check-json", o.checkJson, "Write the findings here, too")
        ->type_name("FILE")
        ->group(group);
}

void addRenderOptions(CLI::App& app, Options& o) {
    const char* group = "Picture";
    app.add_option("--render", o.render, "Draw the scene here at the end")
        ->type_name("FILE.png")
        ->group(group);
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

std::string pictureFault(const Options& o) {
    QSize size;
    int first = 0, last = 0;
    if (!pictureSize(o.size, size))
        return "--size takes WxH with sides of 1 to 16384, not " + o.size;
    if (!o.frames.empty() && !frameRange(o.frames, first, last))
        return "--frames takes A:B, from a lower to a higher number, not " + o.frames;
    const bool png = o.render.size() > 4 && o.render.compare(o.render.size() - 4, 4, ".png") == 0;
    return o.render.empty() || png ? "" : "--render takes a .png file, not " + o.render;
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
        "Exit codes: 0 done, 1 a script failed or --check found something, 2 wrong use, 3 the "
        "scene cannot be read, 4 "
        "--verify found a "
        "difference.");
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
    if (const std::string fault = pictureFault(o); !fault.empty())
        return refusal(fault);
    if (o.scene.empty() && (o.check || !o.checkJson.empty()))
        return refusal("--check needs a scene");
    addSteps(app, texts, o.steps);
    o.check = o.check || !o.checkJson.empty();
    o.batch = o.batch || o.noUi || o.check;
    o.verify = o.verify || !o.verifyJson.empty();
    parsed.run = true;
    return parsed;
}

}  // namespace torvel
