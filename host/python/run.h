#pragma once

#include "python/ref.h"

#include <string>
#include <string_view>

#include "base/status.h"
#include "base/value.h"

namespace torvel {
class Session;
}

namespace torvel::py {

struct TextRange {
    std::size_t begin = 0, end = 0;

    bool isEmpty() const { return begin == end; }
};

/// Where the last statement of a text stands when it can be a bare expression; empty otherwise.
/// Looks at the text only: the compiler decides in the end.
TextRange lastExpression(std::string_view text);

/// Runs a text in `__main__`; with `wantResult` the value of a last expression is delivered (see
/// resultOf). A failure is printed to the log and returned. Call with the lock held.
Status runText(Session& session, const std::string& text, const char* fileName, bool wantResult,
               Value& result);

/// Prints the pending exception to the log as "# Error: RuntimeError: file <maya console> line 1:
/// text", with the traceback below when it has several levels, and clears it. The status has the
/// first line without
/// "# Error: ". SystemExit with no or zero code is a success.
Status reportError(Session& session);

/// The dictionary of `__main__`, borrowed.
PyObject* mainDictionary();

}  // namespace torvel::py
