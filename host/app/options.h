#pragma once

#include <string>
#include <vector>

#include "commands/host/verify.h"

namespace torvel {

/// One of the texts to run, in the order of the command line.
struct ScriptStep {
    enum class Kind { Mel, Python, File };
    Kind kind = Kind::Python;
    std::string text;  ///< the text itself, or the path of the file
};

struct Options {
    std::string scene;
    bool batch = false;
    bool noUi = false;
    bool noPlugin = false;
    bool trust = false;                     ///< scenes may run their own script nodes
    std::vector<std::string> trustFolders;  ///< to be listed as trusted from now on
    bool network = false;                   ///< batch only; with a screen the network is there
    std::vector<std::string> answers;       ///< of dialogs, "BUTTON" or "BUTTON=TEXT"
    bool verify = false;
    VerifyLimits limits;
    std::string verifyJson;
    bool check = false;  ///< list what the skeleton tools would lose; implies batch
    std::string checkJson;
    std::string save;
    bool saveAnyway = false;  ///< after a failed script, too; never over the scene itself
    std::string trace;
    std::string render;          ///< picture of the scene at the end; empty: none
    std::string view = "persp";  ///< of the picture
    std::string size = "960x540";
    std::string frames;  ///< "A:B" for a sequence; empty: one picture
    bool wire = false;
    std::vector<std::string> plugins;
    std::vector<ScriptStep> steps;
    std::vector<std::string> scriptArguments;  ///< what follows "--"
};

struct ParsedOptions {
    bool run = false;  ///< false: leave with `code` after printing `text`
    int code = 0;      ///< 0 for --help and --version, 2 for a wrong use
    std::string text;  ///< for standard output when code is 0, for standard error otherwise
    Options options;
};

/// True when two paths lead to one file, or would if it were there; false for an empty one.
bool sameFile(const std::string& a, const std::string& b);

/// Reads a command line; `arguments` without the program's name.
ParsedOptions parseOptions(const std::vector<std::string>& arguments);

}  // namespace torvel
