#include <maya/MFnBase.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;

MFnBase::MFnBase() = default;

MFnBase::~MFnBase() = default;

MFn::Type MFnBase::type() const {
    return MFn::kBase;
}

bool MFnBase::hasObj(MFn::Type type) const {
    return fObject.hasFn(type);
}

bool MFnBase::hasObj(const MObject& object) const {
    return object.hasFn(type());
}

MObject MFnBase::object(MStatus* ReturnStatus) const {
    return check(ReturnStatus, !fObject.isNull()) ? fObject : MObject();
}

MStatus MFnBase::setObject(MObject& object) {
    return attach(object, type());
}

MStatus MFnBase::setObject(const MObject& object) {
    return attach(object, type());
}

MStatus MFnBase::attach(const MObject& object, MFn::Type required) {
    const bool good = object.hasFn(required);
    fObject = good ? object : MObject();
    return good ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

bool MFnBase::isValid(MFn::Type type) {
    return type > MFn::kInvalid && type < MFn::kLast;
}

const char* MFnBase::typeString(MFn::Type type) {
    return typeName(type);
}

MAYA_API_NAMESPACE_CLOSE
