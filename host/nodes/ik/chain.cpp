#include "nodes/ik/chain.h"

#include <algorithm>
#include <cmath>

namespace torvel {
namespace {

constexpr double kNothing =
    1e-12;  // lengths below this part of the chain's length have no direction
constexpr double kStraight = 1e-8;  // sine of a bend that counts as none

M33d scaled(const V3d& scale, const M33d& m) {
    M33d out = m;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            out[i][j] *= scale[i];
    return out;
}

M33d fromRows(const V3d& a, const V3d& b, const V3d& c) {
    return {a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z};
}

V3d squareTo(const V3d& unit) {
    const V3d helper = std::fabs(unit.x) < 0.9 ? V3d(1, 0, 0) : V3d(0, 1, 0);
    return unit.cross(helper).normalized();
}

// Rodrigues' rotation formula.
V3d turned(const V3d& v, const V3d& axis, double sine, double cosine) {
    return v * cosine + axis.cross(v) * sine + axis * (axis.dot(v) * (1.0 - cosine));
}

V3d turned(const V3d& v, const V3d& axis, double angle) {
    return turned(v, axis, std::sin(angle), std::cos(angle));
}

class Solve {
  public:
    Solve(const IkChain& chain, const IkGoal& goal, IkScratch& scratch)
        : m_chain(chain), m_goal(goal), m_s(scratch), m_count(chain.links.size()) {}

    void run(std::vector<M33d>& turns) {
        restPose();
        findBends();
        m_wanted = m_goal.position.length();
        bend();
        turns.resize(m_count);
        for (std::size_t k = 1; k < m_count; ++k)
            turns[k] = m_s.turns[k] != 0.0
                           ? m_chain.links[k].rest * turnAbout(m_s.axes[k], m_s.turns[k])
                           : m_chain.links[k].rest;
        turns[0] = m_chain.links[0].rest * rootTurn(endPoint());
    }

  private:
    void restPose() {
        m_s.pre.resize(m_count);
        m_s.frames.resize(m_count);
        m_s.points.resize(m_count + 1);
        m_s.axes.assign(m_count, V3d(0.0));
        m_s.bends.assign(m_count, 0.0);
        m_s.turns.assign(m_count, 0.0);
        for (std::size_t k = 0; k < m_count; ++k)
            m_s.pre[k] = scaled(m_chain.links[k].scale, m_chain.links[k].rest);
        m_s.frames[0] = m_s.pre[0];
        m_s.points[0] = V3d(0.0);
        for (std::size_t k = 1; k < m_count; ++k) {
            m_s.points[k] = m_chain.links[k].offset * m_s.frames[k - 1] + m_s.points[k - 1];
            m_s.frames[k] = m_s.pre[k] * (m_chain.links[k].after * m_s.frames[k - 1]);
        }
        m_s.points[m_count] = m_chain.end * m_s.frames[m_count - 1] + m_s.points[m_count - 1];
        m_length = 0.0;
        for (std::size_t k = 0; k < m_count; ++k)
            m_length += (m_s.points[k + 1] - m_s.points[k]).length();
    }

    // Bend axes and angles are taken in the frame that the joint turns in, whatever scale stands
    // above it.
    void findBends() {
        V3d sum(0.0), largest(0.0);
        for (std::size_t k = 1; k < m_count; ++k) {
            const V3d u = m_s.points[k] - m_s.points[k - 1], w = m_s.points[k + 1] - m_s.points[k];
            const V3d normal = u.cross(w);
            if (normal.length() <= kStraight * u.length() * w.length() || normal.length() == 0.0)
                continue;
            sum += normal;
            if (normal.length2() > largest.length2())
                largest = normal;
            const M33d toInner = (m_chain.links[k].after * m_s.frames[k - 1]).inverse();
            const V3d innerU = u * toInner, innerW = w * toInner, axis = innerU.cross(innerW);
            if (axis.length() == 0.0)
                continue;
            m_s.bends[k] = std::atan2(axis.length(), innerU.dot(innerW));
            m_s.axes[k] = axis.normalized();
        }
        m_normal = sum.length() > 1e-6 * largest.length() ? sum.normalized() : largest.normalized();
    }

    V3d endPoint() const {
        V3d at = m_chain.end;
        for (std::size_t k = m_count - 1; k > 0; --k) {
            at = at * m_s.pre[k];
            if (m_s.turns[k] != 0.0)
                at = turned(at, m_s.axes[k], m_s.turns[k]);
            at = at * m_chain.links[k].after + m_chain.links[k].offset;
        }
        return at * m_s.pre[0];
    }

    double overshoot(double factor) {
        for (std::size_t k = 1; k < m_count; ++k)
            m_s.turns[k] = (factor - 1.0) * m_s.bends[k];
        return endPoint().length() - m_wanted;
    }

    void bend() {
        double sharpest = 0.0, sum = 0.0;
        for (double angle : m_s.bends) {
            sharpest = std::max(sharpest, angle);
            sum += angle;
        }
        if (sharpest == 0.0)
            return;
        if (overshoot(0.0) <= 0.0)
            return;  // out of reach: straight
        if (m_count == 2 && bendTwoBones())
            return;
        const double folded = kPi / sharpest, ring = std::min(folded, 2.0 * kPi / sum);
        if (overshoot(ring) <= 0.0)
            search(ring);
        else if (overshoot(folded) <= 0.0)
            search(folded);
    }

    // The law of cosines in the triangle of two bones and the wanted length; false where scales
    // make the second bone's length change.
    bool bendTwoBones() {
        const double a = m_s.points[1].length(), b = (m_s.points[2] - m_s.points[1]).length();
        const double cosine = (m_wanted * m_wanted - a * a - b * b) / (2.0 * a * b);
        m_s.turns[1] = std::acos(std::clamp(cosine, -1.0, 1.0)) - m_s.bends[1];
        const double reached = std::max(m_wanted, std::fabs(a - b));
        return std::fabs(endPoint().length() - reached) <= 1e-9 * m_length;
    }

    // Regula falsi between straight (too long) and `high` (too short), the kept end's value halved:
    // the Illinois method, M. Dowell and P. Jarratt, BIT 11 (1971).
    void search(double high) {
        double low = 0.0, fLow = overshoot(low), fHigh = overshoot(high);
        int side = 0;
        for (int i = 0; i < 100 && high - low > 1e-15 * high; ++i) {
            double middle =
                fLow > fHigh ? (low * fHigh - high * fLow) / (fHigh - fLow) : 0.5 * (low + high);
            if (!(middle > low && middle < high))
                middle = 0.5 * (low + high);
            const double f = overshoot(middle);
            if (std::fabs(f) <= 1e-13 * m_length)
                return;
            if (f > 0.0) {
                low = middle;
                fLow = f;
                fHigh = side == 1 ? 0.5 * fHigh : fHigh;
                side = 1;
            } else {
                high = middle;
                fHigh = f;
                fLow = side == -1 ? 0.5 * fLow : fLow;
                side = -1;
            }
        }
    }

    M33d rootTurn(const V3d& end) const {
        const M33d start = m_goal.hasPole ? M33d() : m_goal.start;
        const double least = kNothing * m_length;
        if (m_wanted <= least || end.length() <= least)
            return start;
        const V3d from = (end * start).normalized(), to = m_goal.position / m_wanted;
        if (!m_goal.hasPole)
            return start * shortestTurn(from, to);
        const V3d side = from.cross(m_normal), wanted = m_goal.pole - to * m_goal.pole.dot(to);
        const bool hasSides = side.length() > kStraight &&
                              wanted.length() > kStraight * m_goal.pole.length() &&
                              m_goal.pole.length() > 0.0;
        if (!hasSides)
            return shortestTurn(from, to) * turnAbout(to, m_goal.twist);
        const V3d s = side.normalized(), w = turned(wanted.normalized(), to, m_goal.twist);
        return fromRows(from, s, from.cross(s)).transposed() * fromRows(to, w, to.cross(w));
    }

    const IkChain& m_chain;
    const IkGoal& m_goal;
    IkScratch& m_s;
    std::size_t m_count;
    double m_length = 0.0;
    double m_wanted = 0.0;
    V3d m_normal{0.0};
};

}  // namespace

M33d turnAbout(const V3d& axis, double angle) {
    const double s = std::sin(angle), c = std::cos(angle);
    return fromRows(turned(V3d(1, 0, 0), axis, s, c), turned(V3d(0, 1, 0), axis, s, c),
                    turned(V3d(0, 0, 1), axis, s, c));
}

M33d shortestTurn(const V3d& from, const V3d& to) {
    const V3d axis = from.cross(to);
    const double sine = axis.length(), cosine = from.dot(to);
    if (sine > kNothing)
        return turnAbout(axis / sine, std::atan2(sine, cosine));
    return cosine > 0.0 ? M33d() : turnAbout(squareTo(from), kPi);
}

void solveIkChain(const IkChain& chain, const IkGoal& goal, IkScratch& scratch,
                  std::vector<M33d>& turns) {
    turns.clear();
    if (!chain.links.empty())
        Solve(chain, goal, scratch).run(turns);
}

}  // namespace torvel
