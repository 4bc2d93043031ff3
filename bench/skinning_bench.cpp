// How near the skin's inner loop comes to what the memory of this machine allows. A vertex stands
// for 56 bytes: its point in and out (24), four weights (16), four influence numbers (16).
#include <benchmark/benchmark.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>

#include <chrono>
#include <cmath>

#include "nodes/deform/skin_deform.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {
namespace {

constexpr std::size_t kVertices = 1000000;
constexpr std::size_t kJoints = 100;
constexpr double kBytesOfVertex = 56.0;

struct Workload {
    WeightList weights;
    SkinSetup setup;
    std::vector<V3f> in, out;

    Workload() {
        for (std::size_t v = 0; v < kVertices; ++v) {
            const auto first = static_cast<std::int32_t>(v * kJoints / kVertices);
            std::vector<SkinWeight> list;
            for (std::int32_t i = 0; i < 4; ++i)
                list.push_back({(first + i * 3) % static_cast<std::int32_t>(kJoints), 0.25});
            weights.assign(v, std::move(list));
            in.push_back(V3f(static_cast<float>(v % 1000), static_cast<float>(v / 1000), 1.0f));
        }
        out.resize(kVertices);
        for (std::size_t j = 0; j < kJoints; ++j) {
            M44d move;
            move.setAxisAngle(V3d(0, 1, 1).normalized(), 0.01 * static_cast<double>(j));
            setup.influences.push_back({true, move});
        }
        setup.weights = &weights.compiled(false);
    }
};

Workload& workload() {
    static Workload work;
    return work;
}

using Clock = std::chrono::steady_clock;

// Bytes a second of a[i] = b[i] + s * c[i] over arrays far larger than the caches, best of several
// rounds.
double triadBandwidth(int threads) {
    constexpr std::size_t kCount = 16u << 20;
    static std::vector<float> a(kCount), b(kCount, 1.0f), c(kCount, 2.0f);
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism,
                                    static_cast<std::size_t>(threads));
    double best = 0.0;
    for (int round = 0; round < 8; ++round) {
        const auto start = Clock::now();
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, kCount, kCount / 8),
                          [&](const auto& r) {
                              for (std::size_t i = r.begin(); i < r.end(); ++i)
                                  a[i] = b[i] + 3.0f * c[i];
                          });
        benchmark::DoNotOptimize(a.data());
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        best = std::max(best, 3.0 * sizeof(float) * kCount / seconds);
    }
    return best;
}

void skin(benchmark::State& state) {
    const int threads = static_cast<int>(state.range(0));
    Workload& work = workload();
    SkinSetup setup = work.setup;
    setup.method = static_cast<int>(state.range(1));
    const double floor = triadBandwidth(threads);
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism,
                                    static_cast<std::size_t>(threads));
    double best = 1e300;
    for (auto round : state) {
        static_cast<void>(round);
        const auto start = Clock::now();
        deformPoints(setup, work.in.data(), work.out.data(), kVertices);
        benchmark::DoNotOptimize(work.out.data());
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    state.counters["Mvertices/s"] = kVertices / best / 1e6;
    state.counters["triad GB/s"] = floor / 1e9;
    state.counters["of memory limit"] = kBytesOfVertex * kVertices / best / floor;
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kVertices));
}

BENCHMARK(skin)
    ->ArgNames({"threads", "dualQuaternion"})
    ->Args({1, 0})
    ->Args({2, 0})
    ->Args({1, 1})
    ->Args({2, 1})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace torvel
