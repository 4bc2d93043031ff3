#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif
#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
/// Marks a function that may use fused multiply-add; to be called only where the processor has it.
#define TORVEL_FUSED __attribute__((target("avx2,fma")))
#define TORVEL_HAS_FUSED_LANES
#endif

/// Four floats that are worked on at once.
namespace torvel {

#if defined(__SSE2__) || defined(_M_X64)

struct Lanes {
    __m128 v;

    static Lanes load(const float* p) { return {_mm_loadu_ps(p)}; }
    static Lanes all(float f) { return {_mm_set1_ps(f)}; }
    friend Lanes operator+(Lanes a, Lanes b) { return {_mm_add_ps(a.v, b.v)}; }
    friend Lanes operator*(Lanes a, Lanes b) { return {_mm_mul_ps(a.v, b.v)}; }
    template <int N>
    Lanes spread() const {
        return {_mm_shuffle_ps(v, v, _MM_SHUFFLE(N, N, N, N))};
    }
    void store3(float* p) const {
        _mm_storel_pi(reinterpret_cast<__m64*>(p), v);
        _mm_store_ss(p + 2, _mm_movehl_ps(v, v));
    }
};

#else

struct Lanes {
    float v[4];

    static Lanes load(const float* p) { return {{p[0], p[1], p[2], p[3]}}; }
    static Lanes all(float f) { return {{f, f, f, f}}; }
    friend Lanes operator+(Lanes a, Lanes b) {
        return {{a.v[0] + b.v[0], a.v[1] + b.v[1], a.v[2] + b.v[2], a.v[3] + b.v[3]}};
    }
    friend Lanes operator*(Lanes a, Lanes b) {
        return {{a.v[0] * b.v[0], a.v[1] * b.v[1], a.v[2] * b.v[2], a.v[3] * b.v[3]}};
    }
    template <int N>
    Lanes spread() const {
        return all(v[N]);
    }
    void store3(float* p) const {
        p[0] = v[0];
        p[1] = v[1];
        p[2] = v[2];
    }
};

#endif

}  // namespace torvel
