#include "api/command_result.h"

#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>

#include "api/script_result.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Value;

namespace {

MCommandResult::Type listType(const Value::List& list) {
    bool whole = true;
    for (const Value& item : list) {
        if (item.isString())
            return MCommandResult::kStringArray;
        if (item.isTuple())
            return MCommandResult::kVectorArray;
        whole = whole && !item.isDouble();
    }
    return whole ? MCommandResult::kIntArray : MCommandResult::kDoubleArray;
}

MCommandResult::Type typeOf(const Value& value) {
    if (value.isString())
        return MCommandResult::kString;
    if (value.isList())
        return value.list().empty() ? MCommandResult::kStringArray : listType(value.list());
    if (value.isTuple())
        return value.tuple().items.size() == 3 ? MCommandResult::kVector
                                               : MCommandResult::kDoubleArray;
    if (value.isDouble())
        return MCommandResult::kDouble;
    return value.isNumber() ? MCommandResult::kInt : MCommandResult::kInvalid;
}

MStatus outcome(bool fits) {
    return fits ? MStatus::kSuccess : MStatus::kFailure;
}

}  // namespace

MCommandResult::MCommandResult(MStatus* ReturnStatus) : fData(new Data) {
    report(ReturnStatus, MStatus::kSuccess);
}

MCommandResult::~MCommandResult() {
    delete fData;
}

MCommandResult::Type MCommandResult::resultType(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return typeOf(fData->value);
}

MString MCommandResult::stringResult(MStatus* ReturnStatus) const {
    MString text;
    report(ReturnStatus, getResult(text).statusCode());
    return text;
}

MStatus MCommandResult::getResult(int& result) const {
    return outcome(asInt(fData->value, result));
}

MStatus MCommandResult::getResult(double& result) const {
    return outcome(asNumber(fData->value, result));
}

MStatus MCommandResult::getResult(MIntArray& result) const {
    std::vector<int> items;
    if (!fData->value.isList() || !asInts(fData->value, items))
        return MStatus::kFailure;
    result.clear();
    for (const int item : items)
        result.append(item);
    return MStatus::kSuccess;
}

MStatus MCommandResult::getResult(MDoubleArray& result) const {
    std::vector<double> items;
    if (fData->value.isNumber() || fData->value.isNone() || !asNumbers(fData->value, items))
        return MStatus::kFailure;
    result.clear();
    for (const double item : items)
        result.append(item);
    return MStatus::kSuccess;
}

MStatus MCommandResult::getResult(MString& result) const {
    if (!fData->value.isString())
        return MStatus::kFailure;
    result = MApiBridge::text(fData->value.string());
    return MStatus::kSuccess;
}

MStatus MCommandResult::getResult(MStringArray& result) const {
    std::vector<std::string> texts;
    if (!fData->value.isList() || !asTexts(fData->value, texts))
        return MStatus::kFailure;
    result.clear();
    for (const std::string& text : texts)
        result.append(MApiBridge::text(text));
    return MStatus::kSuccess;
}

torvel::Value& MApiBridge::value(MCommandResult& result) {
    return result.fData->value;
}

MAYA_API_NAMESPACE_CLOSE
