// Text, held as UTF-8.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MString {
  public:
    MString();
    // Bytes in the encoding of the locale; a null pointer gives the empty text.
    MString(const char* text);
    MString(const wchar_t* text);
    // The first `count` bytes or characters, which may include zeros.
    MString(const char* text, int count);
    MString(const wchar_t* text, int count);
    MString(const MString& other);
    ~MString();

    MString& operator=(const MString& other);
    MString& operator=(const char* text);
    MString& operator=(double value);

    // Numbers are written as C's "%g" writes them, in every function that takes one.
    MString& operator+=(const MString& other);
    MString& operator+=(const char* text);
    MString& operator+=(double value);
    MString& operator+=(int value);
    MString& operator+=(unsigned int value);
    MString& operator+=(float value);

    bool operator==(const MString& other) const;
    bool operator==(const char* text) const;
    bool operator!=(const MString& other) const;
    bool operator!=(const char* text) const;

    MString operator+(const MString& other) const;
    MString operator+(const char* text) const;
    MString operator+(double value) const;

    // Point into this object and hold until it changes or ends; never null. `length` receives the
    // count of bytes (characters for wide text).
    const char* asChar() const;
    const char* asChar(int& length) const;
    const char* asUTF8() const;
    const char* asUTF8(int& length) const;
    const wchar_t* asWChar() const;
    const wchar_t* asWChar(int& length) const;

    MStatus set(const char* text);
    MStatus set(const char* text, int count);
    MStatus set(double value);
    // `precision` digits after the point.
    MStatus set(double value, int precision);
    MStatus setUTF8(const char* text);
    MStatus setWChar(const wchar_t* text);
    MStatus setWChar(const wchar_t* text, int count);
    void clear();

    // Bytes.
    unsigned int length() const;
    // Characters.
    int numChars() const;
    bool isEmpty() const;

    // Position of the first or last occurrence, -1 when absent. The forms without W count bytes,
    // those with W count characters.
    int index(char c) const;
    int rindex(char c) const;
    int indexW(char c) const;
    int indexW(wchar_t c) const;
    int indexW(const MString& text) const;
    int rindexW(char c) const;
    int rindexW(wchar_t c) const;
    int rindexW(const MString& text) const;

    // From `start` to `end` inclusive, in bytes or characters. An end past the text is clipped; a
    // start outside it or past the end gives the empty text.
    MString substring(int start, int end) const;
    MString substringW(int start, int end) const;

    // Replaces every occurrence in place. An empty `from` is refused.
    MStatus substitute(const MString& from, const MString& to);
    // Replaces the contents of `parts` by the non-empty pieces between separators.
    MStatus split(char separator, MStringArray& parts) const;

    // In place; letters of ASCII only.
    MString& toUpperCase();
    MString& toLowerCase();
    // The whole text is one number. asInt and asDouble read 0 from any other text.
    bool isDouble() const;
    double asDouble() const;
    bool isInt() const;
    int asInt() const;

  private:
    friend struct MApiBridge;
    void assign(const char* text, unsigned int count);
    void append(const char* text, unsigned int count);
    void reserve(unsigned int count);

    char* fText;
    unsigned int fLength;
    unsigned int fCapacity;
    mutable wchar_t* fWide;
};

MAYA_API_EXPORT MString operator+(const char* left, const MString& right);

MAYA_API_NAMESPACE_CLOSE
