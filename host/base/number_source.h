#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

namespace torvel {

/// Reads numbers and words from a text in place, without allocation; the fast path of the scene
/// reader. Words may stand in double quotes (returned without them, escapes not resolved).
class NumberSource {
  public:
    /// What "inf", "nan" and other programs' words for them ("1.#INF", "-nan(ind)") are to
    /// number().
    enum class NonFinite { Refused, Counted };

    explicit NumberSource(std::string_view text, NonFinite words = NonFinite::Refused)
        : m_at(text.data()), m_end(text.data() + text.size()), m_words(words) {}

    void skipBlanks() {
        while (m_at != m_end &&
               (*m_at == ' ' || *m_at == '\t' || *m_at == '\n' || *m_at == '\r' || *m_at == '\f'))
            ++m_at;
    }
    bool atEnd() {
        skipBlanks();
        return m_at == m_end;
    }
    /// False at the end or when no number stands here; so is what no double can hold, and a word
    /// for an infinity or no number unless these are counted.
    bool number(double& value) {
        skipBlanks();
        const char* at = (m_at != m_end && *m_at == '+') ? m_at + 1 : m_at;
        const std::from_chars_result r = std::from_chars(at, m_end, value);
        const bool usual = r.ec == std::errc() && value - value == 0.0;
        if (!usual || (r.ptr != m_end && *r.ptr == '#'))
            return unusual(at, r, value);
        m_at = r.ptr;
        return true;
    }
    /// Infinities and words for no number that were read.
    std::size_t nonFinite() const { return m_nonFinite; }
    bool integer(long long& value) {
        skipBlanks();
        const std::from_chars_result r = std::from_chars(m_at, m_end, value);
        if (r.ec != std::errc())
            return false;
        m_at = r.ptr;
        return true;
    }
    std::string_view word() {
        skipBlanks();
        if (m_at != m_end && *m_at == '"') {
            const char* start = ++m_at;
            while (m_at != m_end && *m_at != '"')
                m_at += (*m_at == '\\' && m_at + 1 != m_end) ? 2 : 1;
            const std::string_view text(start, static_cast<std::size_t>(m_at - start));
            if (m_at != m_end)
                ++m_at;
            return text;
        }
        const char* start = m_at;
        while (m_at != m_end && *m_at != ' ' && *m_at != '\t' && *m_at != '\n' && *m_at != '\r')
            ++m_at;
        return {start, static_cast<std::size_t>(m_at - start)};
    }
    const char* position() const { return m_at; }
    std::string_view rest() const { return {m_at, static_cast<std::size_t>(m_end - m_at)}; }

  private:
    bool unusual(const char* at, std::from_chars_result r, double& value) {
        if (r.ec == std::errc::result_out_of_range) {
            const std::string_view text(at, static_cast<std::size_t>(r.ptr - at));
            if (text.find("e-") == text.npos && text.find("E-") == text.npos)
                return false;
            value = 0.0;  // too small to tell from it
            m_at = r.ptr;
            return true;
        }
        if (r.ec != std::errc() || m_words == NonFinite::Refused)
            return false;
        if (r.ptr != m_end && *r.ptr == '#') {  // "-1.#IND" and its like
            const std::string_view word(r.ptr + 1, static_cast<std::size_t>(m_end - r.ptr - 1));
            const bool infinite = word.substr(0, 3) == "INF";
            const bool none = word.substr(0, 3) == "IND" || word.find("NAN") == 1;
            if (!infinite && !none)
                return false;
            value = std::copysign(infinite ? std::numeric_limits<double>::infinity()
                                           : std::numeric_limits<double>::quiet_NaN(),
                                  value);
            const std::size_t end = word.find_first_not_of("INFDQSA0");
            m_at = r.ptr + 1 + (end == word.npos ? word.size() : end);
        } else {
            m_at = r.ptr;
        }
        ++m_nonFinite;
        return true;
    }

    const char* m_at;
    const char* m_end;
    NonFinite m_words;
    std::size_t m_nonFinite = 0;
};

}  // namespace torvel
