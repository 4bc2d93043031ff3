#include "nodes/deform/skin_deform.h"

#include <algorithm>
#include <cmath>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <Imath/ImathMatrixAlgo.h>

#include "nodes/deform/skin_lanes.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {
namespace {

constexpr double kSumTolerance = 1e-9;  // a list that sums to 1 within this needs no filling up
constexpr std::size_t kGrain = 4096;    // points of one piece of work

}  // namespace

std::shared_ptr<const CompiledWeights> compileWeights(const WeightList& weights, bool normalized) {
    auto made = std::make_shared<CompiledWeights>();
    made->vertices = weights.size();
    made->narrow = true;
    for (std::size_t v = 0; v < weights.size(); ++v)
        for (std::size_t i = 0; i < weights.count(v); ++i)
            made->missing = std::max(made->missing,
                                     static_cast<std::uint32_t>(weights.begin(v)[i].influence) + 1);
    const auto fill = [&](std::size_t v, auto&& take) {
        const double sum = weights.sum(v);
        const bool divide = normalized && sum > 0.0;
        for (std::size_t i = 0; i < weights.count(v); ++i)
            take(static_cast<std::uint32_t>(weights.begin(v)[i].influence),
                 divide ? weights.begin(v)[i].weight / sum : weights.begin(v)[i].weight);
        if (!divide && std::abs(1.0 - sum) > kSumTolerance)
            take(made->missing, 1.0 - sum);
    };
    for (std::size_t v = 0; made->narrow && v < weights.size(); ++v) {
        std::size_t used = 0;
        fill(v, [&](std::uint32_t, double) { ++used; });
        made->narrow = used <= CompiledWeights::kLanes;
    }
    made->narrow = made->narrow && made->missing < 65535;
    if (made->narrow) {
        made->index.assign(weights.size() * CompiledWeights::kLanes, 0);
        made->weight.assign(weights.size() * CompiledWeights::kLanes, 0.0f);
    }
    for (std::size_t v = 0; v < weights.size(); ++v) {
        std::size_t at = v * CompiledWeights::kLanes;
        made->start.push_back(made->wideIndex.size());
        fill(v, [&](std::uint32_t influence, double weight) {
            if (made->narrow) {
                made->index[at] = static_cast<std::uint16_t>(influence);
                made->weight[at++] = static_cast<float>(weight);
            } else {
                made->wideIndex.push_back(influence);
                made->wideWeight.push_back(static_cast<float>(weight));
            }
        });
    }
    made->start.push_back(made->wideIndex.size());
    if (made->narrow)
        made->start = {};
    return made;
}

namespace {

// The entries of one vertex, whatever the table looks like.
struct Entries {
    const CompiledWeights& table;

    template <class F>
    void each(std::size_t vertex, F&& f) const {
        if (vertex >= table.vertices) {
            f(table.missing, 1.0f);
        } else if (table.narrow) {
            for (std::size_t i = vertex * CompiledWeights::kLanes;
                 i < (vertex + 1) * CompiledWeights::kLanes; ++i)
                f(std::uint32_t(table.index[i]), table.weight[i]);
        } else {
            for (std::size_t i = table.start[vertex]; i < table.start[vertex + 1]; ++i)
                f(table.wideIndex[i], table.wideWeight[i]);
        }
    }
};

template <class F>
void overRange(std::size_t count, F&& work) {
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, count, kGrain),
                      [&](const tbb::blocked_range<std::size_t>& r) { work(r.begin(), r.end()); });
}

// --- linear ---
// J. P. Lewis, M. Cordner, N. Fong, "Pose Space Deformation" (SIGGRAPH 2000), section 2.

// What an influence adds to a point: p -> p * (G B M G^-1 - 1), four rows of four floats. A point
// whose influences all stand still is then left exactly where it is. An absent influence takes the
// point away.
struct alignas(16) OffsetMatrix {
    float rows[4][4];
};

OffsetMatrix offsetMatrix(const M44d& move, double factor) {
    OffsetMatrix out;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            out.rows[r][c] =
                c == 3 ? 0.0f : static_cast<float>((move[r][c] - (r == c ? 1.0 : 0.0)) * factor);
    return out;
}

std::vector<OffsetMatrix> offsetMatrices(const SkinSetup& setup, double factor) {
    M44d none;
    none.makeIdentity();
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 3; ++c)
            none[r][c] = 0.0;
    const M44d back = setup.geom.inverse();
    std::vector<OffsetMatrix> all(setup.weights->missing + 1u, offsetMatrix(none, factor));
    for (std::size_t i = 0; i < setup.weights->missing && i < setup.influences.size(); ++i)
        if (setup.influences[i].present)
            all[i] = offsetMatrix(setup.geom * setup.influences[i].move * back, factor);
    return all;
}

inline Lanes moved(const OffsetMatrix& m, Lanes x, Lanes y, Lanes z) {
    return (x * Lanes::load(m.rows[0]) + y * Lanes::load(m.rows[1])) +
           (z * Lanes::load(m.rows[2]) + Lanes::load(m.rows[3]));
}

void linearNarrow(const CompiledWeights& table, const OffsetMatrix* m, const V3f* in, V3f* out,
                  std::size_t from, std::size_t to) {
    const std::uint16_t* index = table.index.data() + from * CompiledWeights::kLanes;
    const float* weight = table.weight.data() + from * CompiledWeights::kLanes;
    for (std::size_t v = from; v < to;
         ++v, index += CompiledWeights::kLanes, weight += CompiledWeights::kLanes) {
        const V3f p = in[v];
        const Lanes x = Lanes::all(p.x), y = Lanes::all(p.y), z = Lanes::all(p.z);
        const Lanes w = Lanes::load(weight);
        const Lanes a = moved(m[index[0]], x, y, z) * w.spread<0>() +
                        moved(m[index[1]], x, y, z) * w.spread<1>();
        const Lanes b = moved(m[index[2]], x, y, z) * w.spread<2>() +
                        moved(m[index[3]], x, y, z) * w.spread<3>();
        alignas(16) const float start[4] = {p.x, p.y, p.z, 0.0f};
        (Lanes::load(start) + (a + b)).store3(&out[v].x);
    }
}

#ifdef TORVEL_HAS_FUSED_LANES

// The same with fused multiply-add: half the operations. Never mixed with the plain loop within one
// call.
TORVEL_FUSED void linearFused(const CompiledWeights& table, const OffsetMatrix* m, const V3f* in,
                              V3f* out, std::size_t from, std::size_t to) {
    const std::uint16_t* index = table.index.data() + from * CompiledWeights::kLanes;
    const float* weight = table.weight.data() + from * CompiledWeights::kLanes;
    for (std::size_t v = from; v < to;
         ++v, index += CompiledWeights::kLanes, weight += CompiledWeights::kLanes) {
        const V3f p = in[v];
        const __m128 x = _mm_set1_ps(p.x), y = _mm_set1_ps(p.y), z = _mm_set1_ps(p.z);
        __m128 sum[2] = {_mm_setr_ps(p.x, p.y, p.z, 0.0f), _mm_setzero_ps()};
        for (int i = 0; i < 4; ++i) {
            const float(&rows)[4][4] = m[index[i]].rows;
            __m128 moved = _mm_fmadd_ps(x, _mm_load_ps(rows[0]), _mm_load_ps(rows[3]));
            moved = _mm_fmadd_ps(y, _mm_load_ps(rows[1]), moved);
            moved = _mm_fmadd_ps(z, _mm_load_ps(rows[2]), moved);
            sum[i & 1] = _mm_fmadd_ps(moved, _mm_set1_ps(weight[i]), sum[i & 1]);
        }
        Lanes{_mm_add_ps(sum[0], sum[1])}.store3(&out[v].x);
    }
}

#endif

using NarrowLoop = void (*)(const CompiledWeights&, const OffsetMatrix*, const V3f*, V3f*,
                            std::size_t, std::size_t);

NarrowLoop narrowLoop() {
#ifdef TORVEL_HAS_FUSED_LANES
    static const bool fused = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    return fused ? linearFused : linearNarrow;
#else
    return linearNarrow;
#endif
}

void linearWide(const CompiledWeights& table, const OffsetMatrix* m, const V3f* in, V3f* out,
                std::size_t from, std::size_t to) {
    for (std::size_t v = from; v < to; ++v) {
        const V3f p = in[v];
        const Lanes x = Lanes::all(p.x), y = Lanes::all(p.y), z = Lanes::all(p.z);
        Lanes sum = Lanes::all(0.0f);
        Entries{table}.each(
            v, [&](std::uint32_t i, float w) { sum = sum + moved(m[i], x, y, z) * Lanes::all(w); });
        alignas(16) const float start[4] = {p.x, p.y, p.z, 0.0f};
        (Lanes::load(start) + sum).store3(&out[v].x);
    }
}

// Curves: few points, double precision.
void linearWide(const CompiledWeights& table, const OffsetMatrix* m, const V3d* in, V3d* out,
                std::size_t from, std::size_t to) {
    for (std::size_t v = from; v < to; ++v) {
        const V3d p = in[v];
        V3d sum(0.0);
        Entries{table}.each(v, [&](std::uint32_t i, float w) {
            for (int c = 0; c < 3; ++c)
                sum[c] += w * (p.x * m[i].rows[0][c] + p.y * m[i].rows[1][c] +
                               p.z * m[i].rows[2][c] + m[i].rows[3][c]);
        });
        out[v] = p + sum;
    }
}

template <class Point>
void deformLinear(const SkinSetup& setup, const Point* in, Point* out, std::size_t count) {
    const std::vector<OffsetMatrix> matrices = offsetMatrices(setup, setup.envelope);
    const CompiledWeights& table = *setup.weights;
    const NarrowLoop narrow = narrowLoop();
    overRange(count, [&](std::size_t from, std::size_t to) {
        if constexpr (sizeof(Point) == sizeof(V3f)) {
            if (table.narrow) {
                const std::size_t known = std::clamp(table.vertices, from, to);
                narrow(table, matrices.data(), in, out, from, known);
                from = known;
            }
        }
        linearWide(table, matrices.data(), in, out, from, to);
    });
}

// --- dual quaternions ---
// L. Kavan, S. Collins, J. Zara, C. O'Sullivan, "Skinning with Dual Quaternions" (I3D 2007).

struct DualQuaternion {
    Quatd real{0, 0, 0, 0};
    Quatd dual{0, 0, 0, 0};
};

struct RigidInfluence {
    bool present = false;
    DualQuaternion dq;
    M44d scale;  // what is left of the move before the rigid part: move = scale * rigid
};

RigidInfluence rigidInfluence(const SkinInfluence& influence) {
    RigidInfluence out;
    out.present = influence.present;
    M44d rigid = influence.move;
    V3d scale, shear;
    if (!Imath::extractAndRemoveScalingAndShear(rigid, scale, shear, false))
        rigid.makeIdentity();
    const V3d t(influence.move[3][0], influence.move[3][1], influence.move[3][2]);
    for (int c = 0; c < 3; ++c)
        rigid[3][c] = t[c];
    out.dq.real = Imath::extractQuat(rigid).normalized();
    // Rotation first, then translation: dual = 1/2 t * real in the order of column vectors.
    out.dq.dual = Quatd(0.0, t.x, t.y, t.z) * out.dq.real * 0.5;
    out.scale = influence.move * rigid.inverse();
    return out;
}

struct RigidSkin {
    std::vector<RigidInfluence> influences;
    M44d geom, back;
    bool keepScale = false;

    explicit RigidSkin(const SkinSetup& setup)
        : geom(setup.geom), back(setup.geom.inverse()), keepScale(setup.keepScale) {
        influences.resize(setup.weights->missing + 1u);
        for (std::size_t i = 0; i < setup.weights->missing && i < setup.influences.size(); ++i)
            if (setup.influences[i].present)
                influences[i] = rigidInfluence(setup.influences[i]);
    }
};

V3d turned(const Quatd& q, const V3d& p) {
    const V3d c = q.v.cross(p) + p * q.r;
    return p + q.v.cross(c) * 2.0;
}

double dot(const Quatd& a, const Quatd& b) {
    return a.r * b.r + (a.v ^ b.v);
}

// The blend (DLB) with every quaternion on the side of the heaviest one, which is the paper's
// pivot. The point itself comes back when no influence of it is there.
V3d rigidPoint(const RigidSkin& skin, const Entries& entries, std::size_t vertex,
               const V3d& point) {
    const Quatd* pivot = nullptr;
    float most = 0.0f;
    entries.each(vertex, [&](std::uint32_t i, float w) {
        if (skin.influences[i].present && w > most) {
            most = w;
            pivot = &skin.influences[i].dq.real;
        }
    });
    if (!pivot)
        return point;
    DualQuaternion blend;
    V3d p = point * skin.geom;
    V3d scaled(0.0);
    double used = 0.0;
    entries.each(vertex, [&](std::uint32_t i, float weight) {
        const RigidInfluence& influence = skin.influences[i];
        if (!influence.present || weight == 0.0f)
            return;
        const double w = dot(influence.dq.real, *pivot) < 0.0 ? -double(weight) : double(weight);
        blend.real = blend.real + influence.dq.real * w;
        blend.dual = blend.dual + influence.dq.dual * w;
        if (skin.keepScale)
            scaled += p * influence.scale * double(weight);
        used += weight;
    });
    const double length = std::sqrt(dot(blend.real, blend.real));
    if (length < 1e-12)
        return point;
    const Quatd real = blend.real * (1.0 / length), dual = blend.dual * (1.0 / length);
    if (skin.keepScale && used > 0.0)
        p = scaled * (1.0 / used);
    const V3d move = (dual * ~real).v * 2.0;
    return (turned(real, p) + move) * skin.back;
}

template <class Point>
void deformRigid(const SkinSetup& setup, const Point* in, Point* out, std::size_t count) {
    using T = typename Point::BaseType;
    const RigidSkin skin(setup);
    const Entries entries{*setup.weights};
    overRange(count, [&](std::size_t from, std::size_t to) {
        for (std::size_t v = from; v < to; ++v) {
            const V3d p(in[v]);
            const V3d q = p + (rigidPoint(skin, entries, v, p) - p) * setup.envelope;
            out[v] = Point(T(q.x), T(q.y), T(q.z));
        }
    });
}

template <class Point>
void deformBlended(const SkinSetup& setup, const Point* in, Point* out, std::size_t count) {
    using T = typename Point::BaseType;
    std::vector<Point> rigid(count);
    deformRigid(setup, in, rigid.data(), count);
    deformLinear(setup, in, out, count);
    if (!setup.blend)
        return;
    for (std::size_t v = 0; v < std::min(count, setup.blend->size()); ++v)
        out[v] = out[v] + (rigid[v] - out[v]) * T((*setup.blend)[v]);
}

template <class Point>
void deform(const SkinSetup& setup, const Point* in, Point* out, std::size_t count) {
    if (setup.method == 1)
        deformRigid(setup, in, out, count);
    else if (setup.method == 2)
        deformBlended(setup, in, out, count);
    else
        deformLinear(setup, in, out, count);
}

}  // namespace

void deformPoints(const SkinSetup& setup, const V3f* in, V3f* out, std::size_t count) {
    deform(setup, in, out, count);
}

void deformPoints(const SkinSetup& setup, const V3d* in, V3d* out, std::size_t count) {
    deform(setup, in, out, count);
}

}  // namespace torvel
