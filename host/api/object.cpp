#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include <maya/MStatus.h>
#include <maya/MUuid.h>

#include "api/bridge.h"
#include "api/plugin_loader.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;

// --- MStatus -------------------------------------------------------------------------------------

MString MStatus::errorString() const {
    static const char* const texts[] = {
        "(kSuccess): Success",
        "(kFailure): Unexpected internal failure",
        "(kInsufficientMemory): Insufficient memory",
        "(kInvalidParameter): Invalid parameter",
        "(kLicenseFailure): No licence",
        "(kUnknownParameter): Unknown parameter",
        "(kNotImplemented): Not implemented",
        "(kNotFound): Not found",
        "(kEndOfFile): End of file",
    };
    return MString(texts[fCode]);
}

void MStatus::perror(const char* text) const {
    std::fprintf(stderr, "%s: %s\n", text ? text : "", errorString().asChar());
}

void MStatus::perror(const MString& text) const {
    perror(text.asChar());
}

// --- MObject -------------------------------------------------------------------------------------

MObject MObject::kNullObj;

MObject::MObject() : fIndex(0), fGeneration(0), fAttribute(0), fKind(0) {}

bool MObject::hasFn(MFn::Type type) const {
    switch (fKind) {
        case MApiBridge::kAttribute:
            return !isNull() && (type == MFn::kAttribute || type == MFn::kBase);
        case MApiBridge::kPlugin: return !isNull() && (type == MFn::kPlugin || type == MFn::kBase);
        default: return torvel::api::hasFn(MApiBridge::handle(*this), type);
    }
}

bool MObject::isNull() const {
    switch (fKind) {
        case MApiBridge::kAttribute: return plugNode(MApiBridge::attributePlug(*this)) == nullptr;
        case MApiBridge::kPlugin: return torvel::Plugins::current().record(fIndex) == nullptr;
        default: return sceneNode(*this) == nullptr;
    }
}

MFn::Type MObject::apiType() const {
    if (isNull())
        return MFn::kInvalid;
    if (fKind != MApiBridge::kNode)
        return fKind == MApiBridge::kAttribute ? MFn::kAttribute : MFn::kPlugin;
    return static_cast<MFn::Type>(sceneNode(*this)->type->apiType);
}

const char* MObject::apiTypeStr() const {
    return fKind == MApiBridge::kNode ? torvel::api::apiTypeStr(MApiBridge::handle(*this))
                                      : typeName(apiType());
}

bool MObject::operator==(const MObject& other) const {
    const bool same = fIndex == other.fIndex && fGeneration == other.fGeneration &&
                      fAttribute == other.fAttribute && fKind == other.fKind;
    return same || (isNull() && other.isNull());
}

bool MObject::operator!=(const MObject& other) const {
    return !(*this == other);
}

// --- MUuid ---------------------------------------------------------------------------------------

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    const int letter = std::toupper(static_cast<unsigned char>(c));
    return letter >= 'A' && letter <= 'F' ? letter - 'A' + 10 : -1;
}

bool readUuid(const std::string& text, unsigned char (&bytes)[16]) {
    if (text.size() != 36)
        return false;
    std::size_t at = 0;
    for (unsigned char& byte : bytes) {
        if ((at == 8 || at == 13 || at == 18 || at == 23) && text[at++] != '-')
            return false;
        const int high = hexDigit(text[at]);
        const int low = hexDigit(text[at + 1]);
        if (high < 0 || low < 0)
            return false;
        byte = static_cast<unsigned char>(high * 16 + low);
        at += 2;
    }
    return true;
}

}  // namespace

MUuid::MUuid() {
    std::memset(fBytes, 0, sizeof(fBytes));
}

MUuid::MUuid(const MString& text) : MUuid() {
    unsigned char bytes[16];
    if (readUuid(MApiBridge::text(text), bytes))
        std::memcpy(fBytes, bytes, sizeof(fBytes));
}

bool MUuid::operator==(const MUuid& other) const {
    return std::memcmp(fBytes, other.fBytes, sizeof(fBytes)) == 0;
}

bool MUuid::operator!=(const MUuid& other) const {
    return !(*this == other);
}

bool MUuid::valid() const {
    return *this != MUuid();
}

MString MUuid::asString() const {
    std::string text;
    for (int i = 0; i < 16; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02X", static_cast<unsigned int>(fBytes[i]));
        text += i == 4 || i == 6 || i == 8 || i == 10 ? "-" : "";
        text += digits;
    }
    return MApiBridge::text(text);
}

MAYA_API_NAMESPACE_CLOSE
