#include "files/file_commands.h"

#include <filesystem>

#include "script/session.h"
#include "files/exchange.h"
#include "files/file_io.h"
#include "files/scene_files.h"

namespace torvel {
namespace {

const FlagRow kFileFlags[] = {
    {"newFile", "new", "", kCreate},
    {"open", "o", "", kCreate},
    {"save", "s", "", kCreate},
    {"rename", "rn", "s", kCreate},
    {"force", "f", "", kCreate},
    {"executeScriptNodes", "esn", "b", kCreate},
    {"type", "typ", "s"},
    {"sceneName", "sn", "", kQuery},
    {"shortName", "shn", "", kQuery},
    {"modified", "mf", "b"},
    {"anyModified", "amf", "", kQuery},
    {"exists", "ex", "", kQuery},
    // Taken for the scripts that give them; they change nothing here.
    {"options", "op", "s"},
    {"prompt", "pmt", "b"},
    {"ignoreVersion", "iv", "", kCreate},
    {"loadReferenceDepth", "lrd", "s", kCreate},
    {"import", "i", "", kCreate},
    {"exportAll", "ea", "", kCreate},
    {"exportSelected", "es", "", kCreate},
    {"returnNewNodes", "rnn", "", kCreate},
    {"namespace", "ns", "s", kCreate},
    {"mergeNamespacesOnClash", "mnc", "b", kCreate},
    {"renameAll", "ra", "b", kCreate},
    {"renamingPrefix", "rpr", "s", kCreate},
    {"preserveReferences", "pr", "", kCreate},  // always kept: they are not read in
    // Refused by name.
    {"reference", "r", "", kCreate},
    {"removeReference", "rr", "", kCreate},
    {"loadReference", "lr", "s", kCreate},
    {"unloadReference", "ur", "s", kCreate},
};

const char* const kRefused[] = {"reference", "removeReference", "loadReference", "unloadReference"};

std::string firstText(const CommandCall& call) {
    const std::vector<std::string> texts = call.texts();
    return texts.empty() ? std::string() : texts.front();
}

Status checkType(const CommandCall& call) {
    const std::string type = call.text("type", "mayaAscii");
    if (type == "mayaAscii" || type == "Maya ASCII")
        return Status::ok();
    return call.fail("the file type '" + type + "' is not supported; only mayaAscii is");
}

Status query(const CommandCall& call, Value& result) {
    const std::string& path = call.scene().document().fileName;
    if (call.has("sceneName"))
        result = Value(path);
    else if (call.has("shortName"))
        result = Value(std::filesystem::path(path).filename().string());
    else if (call.has("modified") || call.has("anyModified"))
        result = Value(call.scene().document().modified);
    else if (call.has("type"))
        result = Value(Value::List{Value("mayaAscii")});
    else if (call.has("exists"))
        result = Value(std::filesystem::exists(firstText(call)));
    else
        return call.fail("nothing to query: give sceneName, shortName, modified, type or exists");
    return Status::ok();
}

Status open(const CommandCall& call, Value& result) {
    const std::string path = firstText(call);
    if (path.empty())
        return call.fail("open needs the path of a file");
    if (const Status status =
            openScene(call.session(), path, call.flag("executeScriptNodes", true));
        !status)
        return status;
    result = Value(call.scene().document().fileName);
    return Status::ok();
}

Status save(const CommandCall& call, Value& result) {
    const std::string path = call.scene().document().fileName;
    if (path.empty())
        return call.fail("the scene has no name; give it one with rename");
    if (const Status status = saveScene(call.scene(), path); !status)
        return status;
    result = Value(call.scene().document().fileName);
    return Status::ok();
}

Status import(const CommandCall& call, Value& result) {
    const std::string path = firstText(call);
    if (path.empty())
        return call.fail("import needs the path of a file");
    ImportNames names;
    names.nameSpace = Names::legal(call.text("namespace"));
    names.prefix = Names::legal(call.text("renamingPrefix"));
    names.all = call.flag("renameAll");
    names.mergeNamespace = call.flag("mergeNamespacesOnClash");
    if (names.nameSpace.empty() && !call.text("namespace").empty())
        return call.fail("'" + call.text("namespace") + "' is no legal namespace");
    std::vector<NodeHandle> made;
    if (const Status status = importScene(call.session(), path, names, made); !status)
        return status;
    result = Value(absolutePath(path));
    if (call.has("returnNewNodes")) {
        Value::List list;
        for (NodeHandle handle : made)
            list.push_back(Value(call.scene().names().shortest(handle)));
        result = Value(std::move(list));
    }
    return Status::ok();
}

Status exportTo(const CommandCall& call, Value& result) {
    const std::string path = firstText(call);
    if (path.empty())
        return call.fail("export needs the path of a file");
    const Status status = call.has("exportAll") ? exportAll(call.session(), path)
                                                : exportSelected(call.session(), path);
    if (status)
        result = Value(absolutePath(path));
    return status;
}

Status run(const CommandCall& call, Value& result) {
    if (call.isQuery())
        return query(call, result);
    for (const char* flag : kRefused)
        if (call.has(flag))
            return call.fail(std::string("flag '") + flag + "' is not supported");
    if (const Status status = checkType(call); !status)
        return status;
    if (call.has("import"))
        return import(call, result);
    if (call.has("exportAll") || call.has("exportSelected"))
        return exportTo(call, result);
    const bool replaces = call.has("newFile") || call.has("open");
    if (replaces && call.scene().document().modified && !call.has("force"))
        return Status::failure("Unsaved changes.");
    if (call.has("open"))
        return open(call, result);
    if (call.has("newFile")) {
        newScene(call.session());
        result = Value("untitled");
        return Status::ok();
    }
    if (call.has("rename")) {
        call.scene().changeDocument(
            [&](Document& document) { document.fileName = absolutePath(call.text("rename")); });
        result = Value(call.scene().document().fileName);
    }
    if (call.has("modified"))
        call.scene().setModified(call.flag("modified"));
    if (call.has("save"))
        return save(call, result);
    const bool did = call.has("rename") || call.has("modified") || call.has("type");
    return did ? Status::ok()
               : call.fail("nothing to do: give newFile, open, save, rename, import or export");
}

const Command kFileCommands[] = {{"file", kFileFlags, countOf(kFileFlags), run,
                                  "Makes, opens and saves scenes as Maya ASCII files."}};

}  // namespace

CommandTable fileCommands() {
    return {kFileCommands, std::size(kFileCommands)};
}

}  // namespace torvel
