#include <algorithm>

#include <maya/MCommandResult.h>
#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include "api/bridge.h"
#include "api/command_result.h"
#include "api/script_run.h"
#include "api/selection_list.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Channel;
using torvel::SelectionItem;
using torvel::Session;
using torvel::Value;

namespace {

constexpr ScriptLanguage kMel = ScriptLanguage::Mel;
constexpr ScriptLanguage kPython = ScriptLanguage::Python;

void show(Channel channel, const MString& text) {
    if (Session* session = Session::current())
        session->log().write(channel, MApiBridge::text(text));
}

template <class List, class Item>
void replace(List& list, const std::vector<Item>& items) {
    list.clear();
    for (const Item& item : items)
        list.append(item);
}

void replace(MStringArray& list, const std::vector<std::string>& items) {
    list.clear();
    for (const std::string& item : items)
        list.append(MApiBridge::text(item));
}

MStatus run(const Script& script) {
    return runScript(script, [](const Value&, Value&) { return true; });
}

MStatus run(const Script& script, int& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        const bool fits = asInt(value, result);
        recorded = fits ? Value(result) : Value();
        return fits;
    });
}

MStatus run(const Script& script, double& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        const bool fits = asNumber(value, result);
        recorded = fits ? Value(result) : Value();
        return fits;
    });
}

MStatus run(const Script& script, MIntArray& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        std::vector<int> items;
        if (!asInts(value, items))
            return false;
        recorded = Value(Value::List(items.begin(), items.end()));
        replace(result, items);
        return true;
    });
}

MStatus run(const Script& script, MDoubleArray& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        std::vector<double> items;
        if (!asNumbers(value, items))
            return false;
        recorded = Value::doubles(items);
        replace(result, items);
        return true;
    });
}

MStatus run(const Script& script, MString& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        std::string text;
        if (!asText(value, script.language, text))
            return false;
        recorded = Value(text);
        result = MApiBridge::text(text);
        return true;
    });
}

MStatus run(const Script& script, MStringArray& result) {
    return runScript(script, [&](const Value& value, Value& recorded) {
        std::vector<std::string> texts;
        if (!asTexts(value, texts))
            return false;
        recorded = Value::strings(texts);
        replace(result, texts);
        return true;
    });
}

MString runForText(const Script& script, MStatus* ReturnStatus) {
    std::string text;
    const MStatus status = runScript(script, [&](const Value& value, Value& recorded) {
        text = shown(value, script.language);
        recorded = Value(text);
        return true;
    });
    report(ReturnStatus, status.statusCode());
    return MApiBridge::text(text);
}

}  // namespace

// --- messages and selection ----------------------------------------------------------------------

void MGlobal::displayInfo(const MString& text) {
    show(Channel::Info, text);
}

void MGlobal::displayWarning(const MString& text) {
    show(Channel::Warning, text);
}

void MGlobal::displayError(const MString& text) {
    show(Channel::Error, text);
}

// The program's selection is always in the order of selecting.
MStatus MGlobal::getActiveSelectionList(MSelectionList& dest, bool) {
    dest.clear();
    if (!scene())
        return MStatus::kFailure;
    MApiBridge::items(dest) = scene()->selection().items();
    return MStatus::kSuccess;
}

MStatus MGlobal::setActiveSelectionList(const MSelectionList& source, ListAdjustment adjustment) {
    if (!scene())
        return MStatus::kFailure;
    const std::vector<SelectionItem> given = MApiBridge::items(source);
    std::vector<SelectionItem> items = scene()->selection().items();
    const std::vector<SelectionItem> before = items;
    const auto holds = [](const std::vector<SelectionItem>& list, const SelectionItem& item) {
        return std::find(list.begin(), list.end(), item) != list.end();
    };
    if (adjustment == kReplaceList)
        items.clear();
    else if (adjustment != kAddToList)
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [&](const SelectionItem& i) { return holds(given, i); }),
                    items.end());
    std::vector<SelectionItem> fresh;
    for (const SelectionItem& item : given) {
        const bool wanted =
            adjustment != kRemoveFromList && !(adjustment == kXORWithList && holds(before, item));
        if (wanted && sceneNode(item.node) && !holds(items, item) && !holds(fresh, item))
            fresh.push_back(item);
    }
    items.insert(adjustment == kAddToHeadOfList ? items.begin() : items.end(), fresh.begin(),
                 fresh.end());
    scene()->selection().replace(items);
    return MStatus::kSuccess;
}

MStatus MGlobal::getSelectionListByName(const MString& name, MSelectionList& list) {
    list.clear();
    return list.add(name);
}

// --- scripts -------------------------------------------------------------------------------------

MStatus MGlobal::executeCommand(const MString& command, bool displayEnabled, bool undoEnabled) {
    return run({kMel, "plain", command, displayEnabled, undoEnabled});
}

MStatus MGlobal::executeCommand(const MString& command, int& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "int", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, MIntArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "intArray", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, double& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "double", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, MDoubleArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "doubleArray", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, MString& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "string", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, MStringArray& result, bool displayEnabled,
                                bool undoEnabled) {
    return run({kMel, "stringArray", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executeCommand(const MString& command, MCommandResult& result, bool displayEnabled,
                                bool undoEnabled) {
    return runScript({kMel, "commandResult", command, displayEnabled, undoEnabled},
                     [&](const Value& value, Value& recorded) {
                         MApiBridge::value(result) = value;
                         recorded = Value(shown(value, kMel));
                         return true;
                     });
}

MString MGlobal::executeCommandStringResult(const MString& command, bool displayEnabled,
                                            bool undoEnabled, MStatus* ReturnStatus) {
    return runForText({kMel, "stringResult", command, displayEnabled, undoEnabled}, ReturnStatus);
}

MStatus MGlobal::executePythonCommand(const MString& command, bool displayEnabled,
                                      bool undoEnabled) {
    return run({kPython, "plain", command, displayEnabled, undoEnabled});
}

MStatus MGlobal::executePythonCommand(const MString& command, int& result, bool displayEnabled,
                                      bool undoEnabled) {
    return run({kPython, "int", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executePythonCommand(const MString& command, MIntArray& result,
                                      bool displayEnabled, bool undoEnabled) {
    return run({kPython, "intArray", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executePythonCommand(const MString& command, double& result, bool displayEnabled,
                                      bool undoEnabled) {
    return run({kPython, "double", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executePythonCommand(const MString& command, MDoubleArray& result,
                                      bool displayEnabled, bool undoEnabled) {
    return run({kPython, "doubleArray", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executePythonCommand(const MString& command, MString& result, bool displayEnabled,
                                      bool undoEnabled) {
    return run({kPython, "string", command, displayEnabled, undoEnabled}, result);
}

MStatus MGlobal::executePythonCommand(const MString& command, MStringArray& result,
                                      bool displayEnabled, bool undoEnabled) {
    return run({kPython, "stringArray", command, displayEnabled, undoEnabled}, result);
}

MString MGlobal::executePythonCommandStringResult(const MString& command, bool displayEnabled,
                                                  bool undoEnabled, MStatus* ReturnStatus) {
    return runForText({kPython, "stringResult", command, displayEnabled, undoEnabled},
                      ReturnStatus);
}

MAYA_API_NAMESPACE_CLOSE
