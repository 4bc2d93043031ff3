#pragma once

#include <bitset>
#include <cstddef>
#include <string_view>
#include <vector>

namespace torvel::mel {

/// A POSIX extended regular expression: literals, ., [...] with classes such as [:alpha:], ( ), |,
/// *, +, ?, {m,n}, ^, $, \ before a character that is meant as it stands. Bytes are compared.
///
/// All paths through the expression are followed side by side, so that a search costs at most text
/// length times pattern size (after K. Thompson, "Regular Expression Search Algorithm", 1968).
class Pattern {
  public:
    enum class Result { Found, None, TooCostly };

    /// False for what is no expression, or is nested or repeated beyond reason (200 levels, 10,000
    /// steps).
    bool parse(std::string_view text);
    /// The match that begins first, the longest of those. TooCostly after a hundred million steps.
    Result find(std::string_view text, std::size_t& begin, std::size_t& end) const;

    enum class Op : unsigned char { Set, Split, Jump, Begin, End, Match };
    /// Targets count from the step itself.
    struct Step {
        Op op = Op::Match;
        int first = 1, second = 1;
        std::bitset<256> set;
    };

  private:
    std::vector<Step> m_steps;
};

}  // namespace torvel::mel
