#pragma once

#include <string>
#include <vector>

#include "base/status.h"
#include "base/value.h"

struct _object;

namespace torvel {

class Session;

/// Keeps a Python callable and returns the text that stands for it in a Value: a Python expression
/// that calls it with the one argument False, as a button does. Call with the lock held.
std::string addCallback(_object* callable);
/// Borrowed; null for an unknown number.
_object* callbackObject(long number);
bool isCallback(const std::string& text);
/// Lets the callable go; any other text is ignored.
void removeCallback(const std::string& text);

/// Calls a kept callable; see Language::runCallback.
Status runCallback(Session& session, const std::string& text, const std::vector<Value>& args);

}  // namespace torvel
