#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/value.h"

namespace torvel::api {

enum class ScriptLanguage { Mel, Python };

// What a script gave back, as the type that the caller asked for. False, and `out` untouched, when
// it does not fit.

/// Text, number or on/off as text; nothing gives an empty text.
bool asText(const Value& value, ScriptLanguage language, std::string& out);
/// A list of texts; one text gives one element, nothing gives none.
bool asTexts(const Value& value, std::vector<std::string>& out);
bool asInt(const Value& value, int& out);
bool asNumber(const Value& value, double& out);
/// A list, a tuple or a single number; nothing gives none.
bool asInts(const Value& value, std::vector<int>& out);
bool asNumbers(const Value& value, std::vector<double>& out);

/// Any value as the language itself would show it: texts inside lists are quoted in Python. Nothing
/// gives an empty text.
std::string shown(const Value& value, ScriptLanguage language);

}  // namespace torvel::api
