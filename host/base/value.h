#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace torvel {

/// What travels between commands and the script languages: nothing, a scalar, a text or a list of
/// such. A double3 comes as Tuple (Python: (x, y, z)); a matrix as a list of 16 doubles.
class Value {
  public:
    using List = std::vector<Value>;
    struct Tuple {
        std::vector<double> items;
    };
    using Storage =
        std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Tuple>;

    Value() = default;
    Value(bool v) : m_data(v) {}
    Value(int v) : m_data(static_cast<std::int64_t>(v)) {}
    Value(std::int64_t v) : m_data(v) {}
    Value(double v) : m_data(v) {}
    Value(const char* v) : m_data(std::string(v)) {}
    Value(std::string v) : m_data(std::move(v)) {}
    Value(List v) : m_data(std::move(v)) {}
    Value(Tuple v) : m_data(std::move(v)) {}

    static Value strings(const std::vector<std::string>& items) {
        return Value(List(items.begin(), items.end()));
    }
    static Value doubles(const std::vector<double>& items) {
        return Value(List(items.begin(), items.end()));
    }

    bool isNone() const { return std::holds_alternative<std::monostate>(m_data); }
    bool isBool() const { return std::holds_alternative<bool>(m_data); }
    bool isInt() const { return std::holds_alternative<std::int64_t>(m_data); }
    bool isDouble() const { return std::holds_alternative<double>(m_data); }
    bool isString() const { return std::holds_alternative<std::string>(m_data); }
    bool isList() const { return std::holds_alternative<List>(m_data); }
    bool isTuple() const { return std::holds_alternative<Tuple>(m_data); }
    bool isNumber() const { return isBool() || isInt() || isDouble(); }

    /// Numeric value of a bool, int or double; 0 for anything else.
    double number() const;
    std::int64_t integer() const { return static_cast<std::int64_t>(number()); }
    bool truth() const { return isString() ? !string().empty() : number() != 0.0; }
    const std::string& string() const { return std::get<std::string>(m_data); }
    const List& list() const { return std::get<List>(m_data); }
    List& list() { return std::get<List>(m_data); }
    const Tuple& tuple() const { return std::get<Tuple>(m_data); }
    const Storage& storage() const { return m_data; }

  private:
    Storage m_data;
};

/// Text of a double as the API and the script texts show it: %g.
std::string textOfDouble(double value);

}  // namespace torvel
