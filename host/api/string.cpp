#include <charconv>
#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include "api/utf8.h"
#include "base/value.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;

namespace {

std::string_view view(const MString& text) {
    return {text.asChar(), text.length()};
}

std::string_view viewOf(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

unsigned int sizeOf(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

std::string_view given(const char* text, int count) {
    return text && count > 0 ? std::string_view(text, static_cast<std::size_t>(count))
                             : std::string_view();
}

std::wstring_view given(const wchar_t* text, int count) {
    return text && count > 0 ? std::wstring_view(text, static_cast<std::size_t>(count))
                             : std::wstring_view();
}

std::wstring_view viewOf(const wchar_t* text) {
    return text ? std::wstring_view(text) : std::wstring_view();
}

int position(std::size_t found) {
    return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

int characterPosition(std::string_view text, std::size_t found) {
    return found == std::string_view::npos ? -1 : characterOfByte(text, found);
}

template <class Number>
bool readWhole(std::string_view text, Number& value) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    return !text.empty() && read.ec == std::errc() && read.ptr == end;
}

}  // namespace

// --- making and ending ---------------------------------------------------------------------------

MString::MString() : fText(nullptr), fLength(0), fCapacity(0), fWide(nullptr) {}

MString::MString(const char* text) : MString() {
    set(text);
}

MString::MString(const wchar_t* text) : MString() {
    setWChar(text);
}

MString::MString(const char* text, int count) : MString() {
    set(text, count);
}

MString::MString(const wchar_t* text, int count) : MString() {
    setWChar(text, count);
}

MString::MString(const MString& other) : MString() {
    assign(other.asChar(), other.fLength);
}

MString::~MString() {
    delete[] fText;
    delete[] fWide;
}

void MString::reserve(unsigned int count) {
    if (count <= fCapacity && fText)
        return;
    const unsigned int grown = count > fCapacity * 2 ? count : fCapacity * 2;
    char* text = new char[grown + 1u];
    if (fLength)
        std::memcpy(text, fText, fLength);
    text[fLength] = '\0';
    delete[] fText;
    fText = text;
    fCapacity = grown;
}

void MString::assign(const char* text, unsigned int count) {
    // The source may lie inside this very text.
    if (count > fCapacity || !fText) {
        MString fresh;
        fresh.reserve(count);
        char* taken = fresh.fText;
        fresh.fText = fText;
        fText = taken;
        fCapacity = fresh.fCapacity;
        std::memcpy(fText, text, count);
    } else {
        std::memmove(fText, text, count);
    }
    fLength = count;
    fText[count] = '\0';
}

void MString::append(const char* text, unsigned int count) {
    const bool inside = fText && text >= fText && text <= fText + fLength;
    const std::size_t offset = inside ? static_cast<std::size_t>(text - fText) : 0;
    reserve(fLength + count);
    std::memmove(fText + fLength, inside ? fText + offset : text, count);
    fLength += count;
    fText[fLength] = '\0';
}

// --- assigning and joining -----------------------------------------------------------------------

MString& MString::operator=(const MString& other) {
    if (&other != this)
        assign(other.asChar(), other.fLength);
    return *this;
}

MString& MString::operator=(const char* text) {
    set(text);
    return *this;
}

MString& MString::operator=(double value) {
    set(value);
    return *this;
}

MString& MString::operator+=(const MString& other) {
    append(other.asChar(), other.fLength);
    return *this;
}

MString& MString::operator+=(const char* text) {
    append(text ? text : "", sizeOf(viewOf(text)));
    return *this;
}

MString& MString::operator+=(double value) {
    const std::string text = torvel::textOfDouble(value);
    append(text.data(), sizeOf(text));
    return *this;
}

MString& MString::operator+=(int value) {
    const std::string text = std::to_string(value);
    append(text.data(), sizeOf(text));
    return *this;
}

MString& MString::operator+=(unsigned int value) {
    const std::string text = std::to_string(value);
    append(text.data(), sizeOf(text));
    return *this;
}

MString& MString::operator+=(float value) {
    return *this += static_cast<double>(value);
}

bool MString::operator==(const MString& other) const {
    return view(*this) == view(other);
}

bool MString::operator==(const char* text) const {
    return view(*this) == viewOf(text);
}

bool MString::operator!=(const MString& other) const {
    return !(*this == other);
}

bool MString::operator!=(const char* text) const {
    return !(*this == text);
}

MString MString::operator+(const MString& other) const {
    MString joined;
    joined.reserve(fLength + other.fLength);
    joined += *this;
    joined += other;
    return joined;
}

MString MString::operator+(const char* text) const {
    MString joined;
    joined.reserve(fLength + sizeOf(viewOf(text)));
    joined += *this;
    joined += text;
    return joined;
}

MString MString::operator+(double value) const {
    MString joined(*this);
    joined += value;
    return joined;
}

MString operator+(const char* left, const MString& right) {
    return MString(left) + right;
}

// --- reading -------------------------------------------------------------------------------------

const char* MString::asChar() const {
    return fText ? fText : "";
}

const char* MString::asChar(int& length) const {
    length = static_cast<int>(fLength);
    return asChar();
}

const char* MString::asUTF8() const {
    return asChar();
}

const char* MString::asUTF8(int& length) const {
    return asChar(length);
}

const wchar_t* MString::asWChar() const {
    int length = 0;
    return asWChar(length);
}

const wchar_t* MString::asWChar(int& length) const {
    const std::wstring wide = wideFromUtf8(view(*this));
    delete[] fWide;
    fWide = new wchar_t[wide.size() + 1];
    std::wmemcpy(fWide, wide.c_str(), wide.size() + 1);
    length = static_cast<int>(wide.size());
    return fWide;
}

unsigned int MString::length() const {
    return fLength;
}

int MString::numChars() const {
    return characterCount(view(*this));
}

bool MString::isEmpty() const {
    return fLength == 0;
}

// --- setting -------------------------------------------------------------------------------------

// The host runs in a UTF-8 locale, so text of the locale and UTF-8 are the same bytes.
MStatus MString::set(const char* text) {
    assign(text ? text : "", sizeOf(viewOf(text)));
    return MStatus::kSuccess;
}

MStatus MString::set(const char* text, int count) {
    const std::string_view bytes = given(text, count);
    assign(bytes.empty() ? "" : bytes.data(), sizeOf(bytes));
    return MStatus::kSuccess;
}

MStatus MString::set(double value) {
    const std::string text = torvel::textOfDouble(value);
    assign(text.data(), sizeOf(text));
    return MStatus::kSuccess;
}

MStatus MString::set(double value, int precision) {
    if (precision < 0 || precision > 60)
        return MStatus::kInvalidParameter;
    const std::string text = fmt::format("{:.{}f}", value, precision);
    assign(text.data(), static_cast<unsigned int>(text.size()));
    return MStatus::kSuccess;
}

MStatus MString::setUTF8(const char* text) {
    return set(text);
}

MStatus MString::setWChar(const wchar_t* text) {
    const std::string bytes = utf8FromWide(viewOf(text));
    assign(bytes.data(), sizeOf(bytes));
    return MStatus::kSuccess;
}

MStatus MString::setWChar(const wchar_t* text, int count) {
    const std::string bytes = utf8FromWide(given(text, count));
    assign(bytes.data(), sizeOf(bytes));
    return MStatus::kSuccess;
}

void MString::clear() {
    assign("", 0);
}

// --- searching and cutting -----------------------------------------------------------------------

int MString::index(char c) const {
    return position(view(*this).find(c));
}

int MString::rindex(char c) const {
    return position(view(*this).rfind(c));
}

int MString::indexW(char c) const {
    return characterPosition(view(*this), view(*this).find(c));
}

int MString::rindexW(char c) const {
    return characterPosition(view(*this), view(*this).rfind(c));
}

int MString::indexW(wchar_t c) const {
    return indexW(MString(&c, 1));
}

int MString::rindexW(wchar_t c) const {
    return rindexW(MString(&c, 1));
}

int MString::indexW(const MString& text) const {
    return characterPosition(view(*this), view(*this).find(view(text)));
}

int MString::rindexW(const MString& text) const {
    return characterPosition(view(*this), view(*this).rfind(view(text)));
}

MString MString::substring(int start, int end) const {
    const int last = end < static_cast<int>(fLength) ? end : static_cast<int>(fLength) - 1;
    return start < 0 || start > last ? MString() : MString(fText + start, last - start + 1);
}

MString MString::substringW(int start, int end) const {
    if (start < 0 || start > end || start >= static_cast<int>(fLength))
        return MString();
    const std::string_view text = view(*this);
    const std::size_t first = byteOfCharacter(text, start);
    const int count =
        (end < static_cast<int>(fLength) ? end : static_cast<int>(fLength)) - start + 1;
    const std::size_t last = first + byteOfCharacter(text.substr(first), count);
    return MString(asChar() + first, static_cast<int>(last - first));
}

MStatus MString::substitute(const MString& from, const MString& to) {
    if (from.isEmpty())
        return MStatus::kInvalidParameter;
    const std::string_view text = view(*this);
    std::string replaced;
    std::size_t at = 0;
    for (std::size_t found; (found = text.find(view(from), at)) != text.npos;
         at = found + from.length()) {
        replaced += text.substr(at, found - at);
        replaced += view(to);
    }
    replaced += text.substr(at);
    assign(replaced.data(), sizeOf(replaced));
    return MStatus::kSuccess;
}

MStatus MString::split(char separator, MStringArray& parts) const {
    const MString whole(*this);  // `parts` may hold this very text
    const std::string_view text = view(whole);
    parts.clear();
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = text.find(separator, at);
        end = end == text.npos ? text.size() : end;
        if (end > at)
            parts.append(MString(text.data() + at, static_cast<int>(end - at)));
        at = end + 1;
    }
    return MStatus::kSuccess;
}

MString& MString::toUpperCase() {
    for (unsigned int i = 0; i < fLength; ++i)
        if (fText[i] >= 'a' && fText[i] <= 'z')
            fText[i] = static_cast<char>(fText[i] - 'a' + 'A');
    return *this;
}

MString& MString::toLowerCase() {
    for (unsigned int i = 0; i < fLength; ++i)
        if (fText[i] >= 'A' && fText[i] <= 'Z')
            fText[i] = static_cast<char>(fText[i] - 'A' + 'a');
    return *this;
}

bool MString::isDouble() const {
    double value = 0.0;
    return readWhole(view(*this), value);
}

double MString::asDouble() const {
    double value = 0.0;
    return readWhole(view(*this), value) ? value : 0.0;
}

bool MString::isInt() const {
    int value = 0;
    return readWhole(view(*this), value);
}

int MString::asInt() const {
    int value = 0;
    return readWhole(view(*this), value) ? value : 0;
}

MAYA_API_NAMESPACE_CLOSE
