#include "mel/pattern.h"

#include <algorithm>
#include <cctype>

namespace torvel::mel {

namespace {

constexpr int kMostLevels = 200;
constexpr int kMostRepeats = 1000;
constexpr std::size_t kMostSteps = 10000;
constexpr std::size_t kMostWork = 100000000;

using Step = Pattern::Step;
using Op = Pattern::Op;
using Steps = std::vector<Step>;

Step jump(Op op, int first, int second = 1) {
    Step step;
    step.op = op;
    step.first = first;
    step.second = second;
    return step;
}

int sizeOf(const Steps& steps) {
    return static_cast<int>(steps.size());
}

void append(Steps& steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
}

struct CharClass {
    std::string_view name;
    int (*has)(int);
};
constexpr CharClass kClasses[] = {
    {"alpha", std::isalpha}, {"digit", std::isdigit}, {"alnum", std::isalnum},
    {"upper", std::isupper}, {"lower", std::islower}, {"space", std::isspace},
    {"punct", std::ispunct}, {"blank", std::isblank}, {"xdigit", std::isxdigit},
    {"cntrl", std::iscntrl}, {"graph", std::isgraph}, {"print", std::isprint},
};

// Each function reads one part of the grammar and gives its steps; `m_good` falls for good at the
// first fault.
class Parser {
  public:
    explicit Parser(std::string_view text) : m_text(text) {}

    bool run(Steps& steps) {
        steps = alternatives();
        steps.push_back(jump(Op::Match, 0));
        return m_good && m_at == m_text.size();
    }

  private:
    bool atEnd() const { return m_at >= m_text.size(); }
    bool next(char c) { return !atEnd() && m_text[m_at] == c; }
    bool take(char c) { return next(c) && ++m_at; }
    Steps fail() {
        m_good = false;
        m_at = m_text.size();
        return {};
    }

    Steps alternatives() {
        if (++m_level > kMostLevels)
            return fail();
        std::vector<Steps> branches{branch()};
        while (take('|'))
            branches.push_back(branch());
        --m_level;
        Steps all;
        for (std::size_t i = branches.size(); i-- > 0;) {
            const Steps& one = branches[i];
            if (i + 1 == branches.size()) {
                all = one;
                continue;
            }
            Steps joined{jump(Op::Split, 1, sizeOf(one) + 2)};
            append(joined, one);
            joined.push_back(jump(Op::Jump, sizeOf(all) + 1));
            append(joined, all);
            all = std::move(joined);
        }
        return all;
    }

    Steps branch() {
        Steps steps;
        while (m_good && !atEnd() && !next('|') && !next(')')) {
            append(steps, repeated(atom()));
            if (steps.size() > kMostSteps)
                return fail();
        }
        return steps;
    }

    Steps atom() {
        const char c = m_text[m_at++];
        switch (c) {
            case '(': {
                Steps inner = alternatives();
                return take(')') ? inner : fail();
            }
            case '[': return bracket();
            case '.': return {any()};
            case '^': return {jump(Op::Begin, 1)};
            case '$': return {jump(Op::End, 1)};
            case '*':
            case '+':
            case '?':
            case '{': return fail();
            case '\\': return atEnd() ? fail() : Steps{one(m_text[m_at++])};
            default: return {one(c)};
        }
    }

    static Step one(char c) {
        Step step = jump(Op::Set, 1);
        step.set.set(static_cast<unsigned char>(c));
        return step;
    }
    static Step any() {
        Step step = jump(Op::Set, 1);
        step.set.set();
        return step;
    }

    Steps repeated(Steps part) {
        for (;;) {
            int least = 0, most = -1;
            if (take('+'))
                least = 1;
            else if (take('?'))
                most = 1;
            else if (take('{') ? !interval(least, most) : !take('*'))
                return m_good ? part : fail();
            part = times(part, least, most);
        }
    }

    // "3}", "3,}" or "3,5}"
    bool interval(int& least, int& most) {
        m_good = number(least);
        most = least;
        if (m_good && take(',')) {
            most = -1;
            if (!next('}'))
                m_good = number(most) && most >= least;
        }
        m_good = m_good && take('}');
        return m_good;
    }

    bool number(int& value) {
        value = 0;
        const std::size_t from = m_at;
        while (!atEnd() && m_text[m_at] >= '0' && m_text[m_at] <= '9' && value <= kMostRepeats)
            value = value * 10 + (m_text[m_at++] - '0');
        return m_at > from && value <= kMostRepeats;
    }

    Steps times(const Steps& part, int least, int most) {
        const int size = sizeOf(part);
        const int copies = most < 0 ? least + 1 : most;
        if ((part.size() + 2) * static_cast<std::size_t>(copies) > kMostSteps)
            return fail();
        Steps all;
        for (int i = 0; i < least; ++i)
            append(all, part);
        if (most < 0) {
            all.push_back(jump(Op::Split, 1, size + 2));
            append(all, part);
            all.push_back(jump(Op::Jump, -(size + 1)));
        }
        for (int i = least; i < most; ++i) {
            all.push_back(jump(Op::Split, 1, size + 1));
            append(all, part);
        }
        return all;
    }

    Steps bracket() {
        Step step = jump(Op::Set, 1);
        const bool inverted = take('^');
        bool first = true;
        for (; atEnd() || first || !next(']'); first = false) {
            if (atEnd() || !bracketItem(step))
                return fail();
        }
        ++m_at;
        if (inverted)
            step.set.flip();
        return {step};
    }

    // A class, a range or one character; a bracket or hyphen that begins or ends the list stands
    // for itself.
    bool bracketItem(Step& step) {
        if (m_text.substr(m_at, 2) == "[:")
            return bracketClass(step);
        const auto low = static_cast<unsigned char>(m_text[m_at++]);
        auto high = low;
        if (next('-') && m_at + 1 < m_text.size() && m_text[m_at + 1] != ']') {
            high = static_cast<unsigned char>(m_text[m_at + 1]);
            m_at += 2;
        }
        for (unsigned c = low; c <= high; ++c)
            step.set.set(c);
        return low <= high;
    }

    bool bracketClass(Step& step) {
        const std::size_t end = m_text.find(":]", m_at);
        const std::string_view name =
            end == std::string_view::npos ? "" : m_text.substr(m_at + 2, end - m_at - 2);
        for (const CharClass& known : kClasses)
            if (known.name == name) {
                for (int c = 0; c < 128; ++c)
                    if (known.has(c))
                        step.set.set(static_cast<std::size_t>(c));
                m_at = end + 2;
                return true;
            }
        return false;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    int m_level = 0;
    bool m_good = true;
};

// Where the search stands in the pattern, and where in the text each of these ways began. Ways that
// began earlier come first.
class Search {
  public:
    Search(const Steps& steps, std::string_view text)
        : m_steps(steps), m_text(text), m_seen(steps.size(), 0) {}

    Pattern::Result run(std::size_t& begin, std::size_t& end) {
        std::vector<Way> now, then;
        for (std::size_t at = 0; at <= m_text.size(); ++at) {
            if (m_work > kMostWork)
                return Pattern::Result::TooCostly;
            then.clear();
            ++m_turn;
            for (const Way& way : now)
                if (at > 0 &&
                    m_steps[way.step].set.test(static_cast<unsigned char>(m_text[at - 1])))
                    follow(way.step + 1, way.begin, at, then);
            if (!m_found)
                follow(0, at, at, then);
            else if (then.empty())
                break;
            now.swap(then);
        }
        begin = m_begin;
        end = m_end;
        return m_found ? Pattern::Result::Found : Pattern::Result::None;
    }

  private:
    struct Way {
        std::size_t step, begin;
    };

    // Steps that take no character are walked at once.
    void follow(std::size_t first, std::size_t begin, std::size_t at, std::vector<Way>& out) {
        if (m_found && begin > m_begin)
            return;
        m_open.assign(1, first);
        while (!m_open.empty()) {
            const std::size_t step = m_open.back();
            m_open.pop_back();
            if (m_seen[step] == m_turn)
                continue;
            m_seen[step] = m_turn;
            ++m_work;
            const auto to = [&](int distance) {
                m_open.push_back(step + static_cast<std::size_t>(distance));
            };
            switch (m_steps[step].op) {
                case Op::Set: out.push_back({step, begin}); break;
                case Op::Split: to(m_steps[step].second); [[fallthrough]];
                case Op::Jump: to(m_steps[step].first); break;
                case Op::Begin:
                    if (at == 0)
                        to(1);
                    break;
                case Op::End:
                    if (at == m_text.size())
                        to(1);
                    break;
                case Op::Match:
                    m_found = true;
                    m_begin = begin;
                    m_end = at;
                    break;
            }
        }
    }

    const Steps& m_steps;
    std::string_view m_text;
    std::vector<std::size_t> m_seen;  // the turn in which a step was reached last
    std::vector<std::size_t> m_open;
    std::size_t m_turn = 0, m_work = 0;
    bool m_found = false;
    std::size_t m_begin = 0, m_end = 0;
};

}  // namespace

bool Pattern::parse(std::string_view text) {
    return Parser(text).run(m_steps) && m_steps.size() <= kMostSteps;
}

Pattern::Result Pattern::find(std::string_view text, std::size_t& begin, std::size_t& end) const {
    return Search(m_steps, text).run(begin, end);
}

}  // namespace torvel::mel
