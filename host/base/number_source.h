#pragma once

#include <charconv>
#include <string_view>

namespace torvel {

/// Reads numbers and words from a text in place, without allocation; the fast path of the scene
/// reader. Words may stand in double quotes (returned without them, escapes not resolved).
class NumberSource {
  public:
    explicit NumberSource(std::string_view text)
        : m_at(text.data()), m_end(text.data() + text.size()) {}

    void skipBlanks() {
        while (m_at != m_end &&
               (*m_at == ' ' || *m_at == '\t' || *m_at == '\n' || *m_at == '\r' || *m_at == '\f'))
            ++m_at;
    }
    bool atEnd() {
        skipBlanks();
        return m_at == m_end;
    }
    /// False at the end or when no number stands here ("nan", "inf" and what no double can hold
    /// count as no number).
    bool number(double& value) {
        skipBlanks();
        const char* at = (m_at != m_end && *m_at == '+') ? m_at + 1 : m_at;
        if (at == m_end || *at == 'n' || *at == 'N' || *at == 'i' || *at == 'I')
            return false;
        const std::from_chars_result r = std::from_chars(at, m_end, value);
        if (r.ec == std::errc::result_out_of_range) {
            const std::string_view text(at, static_cast<std::size_t>(r.ptr - at));
            if (text.find("e-") == std::string_view::npos &&
                text.find("E-") == std::string_view::npos)
                return false;
            value = 0.0;  // too small to tell from it
        } else if (r.ec != std::errc()) {
            return false;
        }
        m_at = r.ptr;
        return value - value == 0.0;
    }
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
    const char* m_at;
    const char* m_end;
};

}  // namespace torvel
