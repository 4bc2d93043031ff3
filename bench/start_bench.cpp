// The program from its start to its end, plug-in and both languages included; the first start warms
// the disk cache.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

namespace {

const std::string kProgram = TORVEL_BUILD_DIR "/host/app/torvel-host";

void start(benchmark::State& state, const char* arguments) {
    const std::string line =
        "QT_QPA_PLATFORM=offscreen '" + kProgram + "' --batch " + arguments + " >/dev/null 2>&1";
    if (std::system(line.c_str()) != 0) {
        state.SkipWithError("the program did not end well");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(std::system(line.c_str()));
}

BENCHMARK_CAPTURE(start, empty, "")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(start, leg, "'" TORVEL_SCENES_DIR "/leg.ma'")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
