// How much longer reading a scene takes than a bare scan of the same text that converts its numbers
// and nothing else. SCENE_READ_VERTICES (default 1000000) and SCENE_READ_JOINTS (default 1000) set
// the size of the made file.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "script/session.h"
#include "files/file_io.h"
#include "files/scene_files.h"

namespace {

int setting(const char* name, int fallback) {
    const char* text = std::getenv(name);
    return text ? std::atoi(text) : fallback;
}

void append(std::string& out, double value) {
    char text[40];
    out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string joints(int count) {
    std::string out;
    for (int j = 0; j < count; ++j) {
        out += "createNode joint -n \"j" + std::to_string(j) + "\"" +
               (j % 50 ? " -p \"j" + std::to_string(j - 1) + "\"" : "") + ";\n";
        out += "\tsetAttr \".t\" -type \"double3\" 1.25 " + std::to_string(j) + " 0.5 ;\n";
        out += "\tsetAttr \".r\" -type \"double3\" 10.5 -20.25 " + std::to_string(j) + " ;\n";
    }
    return out;
}

template <class Row>
void statements(std::string& out, const char* name, const char* tail, int count, int step,
                Row row) {
    for (int from = 0; from < count; from += step) {
        const int to = std::min(count, from + step) - 1;
        out += "\tsetAttr \"." + std::string(name) + "[" + std::to_string(from) + ":" +
               std::to_string(to) + "]" + tail + "\"";
        for (int i = from; i <= to; ++i)
            row(i);
        out += ";\n";
    }
}

// A grid of points with four influences each.
std::string madeScene(int vertices, int jointCount) {
    std::string out = "//Maya ASCII 2024 scene\nrequires maya \"2024\";\n" + joints(jointCount) +
                      "createNode transform -n \"body\";\ncreateNode mesh -n \"bodyShape\" -p "
                      "\"body\";\n\tsetAttr -s " +
                      std::to_string(vertices) + " \".vt\";\n";
    statements(out, "vt", "", vertices, 166, [&](int i) {
        out += i % 3 ? " " : "\n\t\t";
        append(out, std::sin(i * 0.37) * 100.0);
        out += ' ';
        append(out, std::cos(i * 0.11) * 50.0);
        out += ' ';
        append(out, i * 0.001);
    });
    const int edges = vertices - 1;
    out += "\tsetAttr -s " + std::to_string(edges) + " \".ed\";\n";
    statements(out, "ed", "", edges, 166, [&](int i) {
        out += (i % 8 ? " " : "\n\t\t") + std::to_string(i) + ' ' + std::to_string(i + 1) + " 0";
    });
    out += "createNode skinCluster -n \"skin\";\n\tsetAttr -s " + std::to_string(vertices) +
           " \".wl\";\n";
    statements(out, "wl", ".w", vertices, 500, [&](int i) {
        out += "\n\t\t4";
        for (int k = 0; k < 4; ++k) {
            out += ' ' + std::to_string((i + k * 3) % jointCount) + ' ';
            append(out, 0.1 + 0.1 * k + 1e-9 * (i % 1000));
        }
    });
    return out + "// End of scene\n";
}

const std::string& sceneFile() {
    static const std::string path = [] {
        const auto file = std::filesystem::temp_directory_path() / "torvel_scene_read_bench.ma";
        const std::string text =
            madeScene(setting("SCENE_READ_VERTICES", 1000000), setting("SCENE_READ_JOINTS", 1000));
        std::string loss;
        return torvel::replaceFile(file.string(), text, loss) ? file.string() : std::string();
    }();
    return path;
}

double scan(const std::string& text) {
    double sum = 0.0;
    const char* end = text.data() + text.size();
    for (const char* at = text.data(); at != end;) {
        double value = 0.0;
        const std::from_chars_result r = std::from_chars(at, end, value);
        if (r.ec == std::errc())
            sum += value;
        at = r.ptr == at ? at + 1 : r.ptr;
    }
    return sum;
}

void bareScan(benchmark::State& state) {
    for (auto _ : state) {
        std::string text;
        if (!torvel::loadFile(sceneFile(), text))
            state.SkipWithError("no file");
        benchmark::DoNotOptimize(scan(text));
        state.SetBytesProcessed(state.bytes_processed() + static_cast<std::int64_t>(text.size()));
    }
}

// Pairs of scan and read, so that both see the same machine; "ratio" is the result.
void openAgainstScan(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    double scanned = 0.0, opened = 0.0;
    for (auto _ : state) {
        const auto start = Clock::now();
        std::string text;
        if (!torvel::loadFile(sceneFile(), text))
            state.SkipWithError("no file");
        benchmark::DoNotOptimize(scan(text));
        text = std::string();
        const auto middle = Clock::now();
        torvel::Session session;
        if (const torvel::Status status = torvel::openScene(session, sceneFile()); !status)
            state.SkipWithError(status.text().c_str());
        scanned += std::chrono::duration<double>(middle - start).count();
        opened += std::chrono::duration<double>(Clock::now() - middle).count();
    }
    state.counters["ratio"] = opened / scanned;
    state.counters["megabytes"] =
        static_cast<double>(std::filesystem::file_size(sceneFile())) / 1e6;
}

BENCHMARK(bareScan)->Unit(benchmark::kMillisecond);
BENCHMARK(openAgainstScan)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
