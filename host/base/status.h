#pragma once

#include <string>
#include <utility>

namespace torvel {

/// Outcome of an operation inside the host: success, or one sentence that names the node,
/// attribute, command or flag at fault. Never thrown; the language bridges turn it into an
/// exception of the given class.
class [[nodiscard]] Status {
  public:
    /// Which exception class a script sees. `Reported` means that the real text went out as a
    /// warning already.
    enum class Kind { Ok, Runtime, Value, Type, Reported };

    static Status ok() { return Status(); }
    /// RuntimeError of the script languages.
    static Status failure(std::string text) { return Status(Kind::Runtime, std::move(text)); }
    /// ValueError: an object that was not found or is ambiguous.
    static Status notFound(std::string text) { return Status(Kind::Value, std::move(text)); }
    /// TypeError: a wrong flag or argument.
    static Status usage(std::string text) { return Status(Kind::Type, std::move(text)); }

    Status() = default;
    bool isOk() const { return m_kind == Kind::Ok; }
    explicit operator bool() const { return isOk(); }
    Kind kind() const { return m_kind; }
    const std::string& text() const { return m_text; }

  private:
    Status(Kind kind, std::string text) : m_kind(kind), m_text(std::move(text)) {}

    Kind m_kind = Kind::Ok;
    std::string m_text;
};

/// Drops a status on purpose, visibly.
inline void ignore(const Status&) {}

}  // namespace torvel
