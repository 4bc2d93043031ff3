#include "api/command.h"

#include <exception>
#include <memory>

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>

#include "api/bridge.h"
#include "api/script_result.h"

namespace torvel::api {

namespace {

/// Where the running command's result goes; a command may run another one inside.
Value* g_result = nullptr;

class ResultScope {
  public:
    explicit ResultScope(Value& result) : m_outer(g_result) { g_result = &result; }
    ~ResultScope() { g_result = m_outer; }
    ResultScope(const ResultScope&) = delete;
    ResultScope& operator=(const ResultScope&) = delete;

  private:
    Value* m_outer;
};

Status runChecked(const std::string& name, MCreatorFunction creator,
                  const std::vector<Value>& args) {
    const std::unique_ptr<MPxCommand> command(static_cast<MPxCommand*>(creator()));
    if (!command)
        return Status::failure(name + ": the plug-in made no command");
    MArgList list;
    Bridge::fill(list, args);
    return command->doIt(list) ? Status::ok() : Status::failure(name + ": the command failed");
}

}  // namespace

Status runPluginCommand(const std::string& name, MCreatorFunction creator,
                        const std::vector<Value>& args, Value& result) {
    const ResultScope scope(result);
    try {
        return runChecked(name, creator, args);
    } catch (const std::exception& fault) {
        return Status::failure(name + ": " + fault.what());
    } catch (...) {
        return Status::failure(name + ": the command failed");
    }
}

}  // namespace torvel::api

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Channel;
using torvel::Session;
using torvel::Value;

namespace {

void show(Channel channel, const MString& text) {
    if (Session* session = Session::current())
        session->log().write(channel, MApiBridge::text(text));
}

void give(Value value) {
    if (g_result)
        *g_result = std::move(value);
}

}  // namespace

// --- MPxCommand ----------------------------------------------------------------------------------

MPxCommand::MPxCommand() = default;

MPxCommand::~MPxCommand() = default;

MStatus MPxCommand::doIt(const MArgList&) {
    return MStatus::kFailure;
}

MStatus MPxCommand::undoIt() {
    return MStatus::kFailure;
}

MStatus MPxCommand::redoIt() {
    return MStatus::kFailure;
}

bool MPxCommand::isUndoable() const {
    return false;
}

bool MPxCommand::hasSyntax() const {
    return false;
}

void MPxCommand::displayInfo(const MString& text) {
    show(Channel::Info, text);
}

void MPxCommand::displayWarning(const MString& text) {
    show(Channel::Warning, text);
}

void MPxCommand::displayError(const MString& text) {
    show(Channel::Error, text);
}

void MPxCommand::clearResult() {
    give(Value());
}

void MPxCommand::setResult(const MString& value) {
    give(Value(MApiBridge::text(value)));
}

void MPxCommand::setResult(const MStringArray& value) {
    Value::List list;
    for (const MString& item : value)
        list.emplace_back(MApiBridge::text(item));
    give(Value(std::move(list)));
}

void MPxCommand::setResult(double value) {
    give(Value(value));
}

void MPxCommand::setResult(int value) {
    give(Value(value));
}

void MPxCommand::setResult(bool value) {
    give(Value(value));
}

// --- MArgList ------------------------------------------------------------------------------------

struct MArgList::Data {
    std::vector<Value> args;

    const Value* at(unsigned int index) const {
        return index < args.size() ? &args[index] : nullptr;
    }
};

MArgList::MArgList() : fData(new Data) {}

MArgList::MArgList(const MArgList& other) : fData(new Data(*other.fData)) {}

MArgList::~MArgList() {
    delete fData;
}

MArgList& MArgList::operator=(const MArgList& other) {
    if (&other != this)
        *fData = *other.fData;
    return *this;
}

unsigned int MArgList::length(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return static_cast<unsigned int>(fData->args.size());
}

bool MArgList::asBool(unsigned int index, MStatus* ReturnStatus) const {
    const Value* value = fData->at(index);
    return check(ReturnStatus, value && value->isNumber()) && value->truth();
}

int MArgList::asInt(unsigned int index, MStatus* ReturnStatus) const {
    int number = 0;
    const Value* value = fData->at(index);
    return check(ReturnStatus, value && torvel::api::asInt(*value, number)) ? number : 0;
}

double MArgList::asDouble(unsigned int index, MStatus* ReturnStatus) const {
    const Value* value = fData->at(index);
    return check(ReturnStatus, value && value->isNumber()) ? value->number() : 0.0;
}

MString MArgList::asString(unsigned int index, MStatus* ReturnStatus) const {
    std::string text;
    const Value* value = fData->at(index);
    const bool good = value && !value->isNone() && asText(*value, ScriptLanguage::Mel, text);
    return check(ReturnStatus, good) ? MApiBridge::text(text) : MString();
}

void MApiBridge::fill(MArgList& list, const std::vector<Value>& args) {
    list.fData->args = args;
}

// --- MSyntax -------------------------------------------------------------------------------------

MSyntax::MSyntax() = default;

MSyntax::MSyntax(const MSyntax&) = default;

MSyntax::~MSyntax() = default;

MSyntax& MSyntax::operator=(const MSyntax&) = default;

MAYA_API_NAMESPACE_CLOSE
