#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/status.h"
#include "base/value.h"
#include "graph/plug.h"

namespace torvel {

class Scene;
class Session;

enum Mode : unsigned { kCreate = 1, kEdit = 2, kQuery = 4, kAllModes = 7 };

/// One flag of a command. `args` has one letter for each argument:
///   s text, i integer, d number, a angle (degrees unless "45deg"), l length, b on/off, t time, ?
///   any value.
/// An empty text: a switch (takes a bool from Python). `*` as last letter: any number of values in
/// one use.
struct FlagRow {
    const char* longName;
    const char* shortName;
    const char* args = "";
    unsigned modes = kAllModes;
    bool multiUse = false;
    bool queryTakesValue = false;  ///< the flag needs its value in query mode, too
};

/// One use of a flag with its values.
struct FlagUse {
    const FlagRow* row = nullptr;
    std::vector<Value> values;
    bool on = true;  ///< a switch given as False is dropped by the parser, never seen here
};

/// A parsed call. Flags and counts are checked already; objects are the positional values as given.
class CommandCall {
  public:
    CommandCall(Session& session, std::string_view name) : m_session(session), m_name(name) {}

    Session& session() const { return m_session; }
    Scene& scene() const;
    const std::string& name() const { return m_name; }
    Mode mode() const { return m_mode; }
    bool isQuery() const { return m_mode == kQuery; }
    bool isEdit() const { return m_mode == kEdit; }
    bool isCreate() const { return m_mode == kCreate; }

    bool has(std::string_view longName) const { return use(longName) != nullptr; }
    const FlagUse* use(std::string_view longName) const;  ///< last use, null when absent
    std::vector<const FlagUse*> uses(std::string_view longName) const;
    std::string text(std::string_view longName, std::string fallback = {}) const;
    double number(std::string_view longName, double fallback = 0.0, std::size_t at = 0) const;
    int integer(std::string_view longName, int fallback = 0) const;
    /// A switch or an on/off flag; `fallback` when absent.
    bool flag(std::string_view longName, bool fallback = false) const;

    const std::vector<Value>& args() const { return m_args; }  ///< positional values, flattened
    std::vector<std::string> texts() const;                    ///< positional texts
    /// Positional objects resolved; none given: the selected nodes. "No object matches name: x"
    /// etc.
    Status objectsOrSelection(std::vector<NodeHandle>& out) const;
    Status objects(std::vector<NodeHandle>& out) const;  ///< without the selection
    Status resolve(const std::string& text,
                   NodeHandle& out) const;  ///< blanks around the name ignored
    /// "node.attr..." resolved; the node part may be a path.
    Status resolvePlug(const std::string& text, Plug& out) const;

    /// "name: text"
    Status fail(const std::string& text) const;

    // filled by the call parser
    Mode m_mode = kCreate;
    std::vector<FlagUse> m_flags;
    std::vector<Value> m_args;

  private:
    Session& m_session;
    std::string m_name;
};

/// One command as data: name, flags, one function. `run` leaves `result` none for "nothing
/// returned".
struct Command {
    const char* name;
    const FlagRow* flags;
    std::size_t flagCount;
    Status (*run)(const CommandCall& call, Value& result);
    const char* help = "";
};

/// The rows of one family of commands.
struct CommandTable {
    const Command* rows;
    std::size_t count;
};

/// One named argument as a language hands it over: flag name without dash and its raw value(s).
struct RawFlag {
    std::string name;
    std::vector<Value>
        values;  ///< MEL: exactly what followed; Python: the value, lists kept as one Value
    bool fromPython = false;
};

/// Checks names, modes, counts and types against the command's rows and fills `call`. Texts of the
/// errors: "Invalid flag 'x'" , "Flag 'x' must be passed a boolean argument" ...
Status parseCall(const Command& command, const std::vector<RawFlag>& flags, std::vector<Value> args,
                 CommandCall& call);

/// kQuery for the flags q and query, kEdit for e and edit, as long as the command has no flag of
/// its own by that name; kCreate for any other.
Mode modeOfFlag(const Command& command, std::string_view flag);

/// Number of arguments that a MEL flag eats: -1 unknown flag, given the mode (query flags eat none
/// unless queryTakesValue).
int melArgumentCount(const Command& command, std::string_view flag, bool query);

template <std::size_t N>
constexpr std::size_t countOf(const FlagRow (&)[N]) {
    return N;
}

}  // namespace torvel
