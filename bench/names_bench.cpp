// How opening and saving grow with the number of nodes that bear one name, stand in one chain or
// feed each other in a row. Divide the time by the count: it must stay the same down a column.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "files/file_io.h"
#include "files/ma/writer.h"
#include "files/scene_files.h"
#include "script/session.h"

namespace {

std::string created(const std::string& name, const std::string& parent = {}) {
    return "createNode transform -n \"" + name + "\"" +
           (parent.empty() ? "" : " -p \"" + parent + "\"") + ";\n\tsetAttr \".tx\" 1;\n";
}

std::string numbered(const char* stem, int number) {
    return stem + std::to_string(number);
}

// One name under as many parents.
std::string cousins(int count) {
    std::string out;
    for (int i = 0; i < count; ++i)
        out += created(numbered("g", i)) + created("same", numbered("g", i));
    return out;
}

// One name at one place: all but the first get a number.
std::string namesakes(int count) {
    std::string out;
    for (int i = 0; i < count; ++i)
        out += created("same");
    return out;
}

std::string chain(int count) {
    std::string out = created("j0");
    for (int i = 1; i < count; ++i)
        out += created(numbered("j", i), numbered("j", i - 1));
    return out;
}

std::string links(int count, bool backwards) {
    std::string nodes, out;
    for (int i = 0; i < count; ++i)
        nodes += created(numbered("a", i));
    for (int i = 1; i < count; ++i) {
        const int at = backwards ? count - i : i;
        out += "connectAttr \"a" + std::to_string(at - 1) + ".tx\" \"a" + std::to_string(at) +
               ".tx\";\n";
    }
    return nodes + out;
}

std::string forwardLinks(int count) {
    return links(count, false);
}

std::string backwardLinks(int count) {
    return links(count, true);
}

// Nested equal names, each named by its whole path: the text itself grows with the square.
std::string nested(int count) {
    std::string out, path;
    for (int i = 0; i < count; ++i) {
        out += created("same", path);
        path += "|same";
    }
    return out;
}

using Maker = std::string (*)(int);

// The file that a maker's text stands in while it lives.
class MadeFile {
  public:
    MadeFile(benchmark::State& state, Maker make)
        : m_path((std::filesystem::temp_directory_path() / "torvel_names_bench.ma").string()) {
        std::string loss;
        const std::string text =
            "//Maya ASCII 2024 scene\n" + make(static_cast<int>(state.range(0))) + "// End\n";
        if (!torvel::replaceFile(m_path, text, loss))
            state.SkipWithError("the scene cannot be written");
    }
    ~MadeFile() { std::filesystem::remove(m_path); }

    const std::string& path() const { return m_path; }

  private:
    std::string m_path;
};

void open(benchmark::State& state, Maker make) {
    torvel::Session session;
    const MadeFile file(state, make);
    for (auto _ : state)
        if (!torvel::openScene(session, file.path()))
            state.SkipWithError("the scene cannot be read");
}

void save(benchmark::State& state, Maker make) {
    torvel::Session session;
    const MadeFile file(state, make);
    if (!torvel::openScene(session, file.path()))
        state.SkipWithError("the scene cannot be read");
    for (auto _ : state)
        benchmark::DoNotOptimize(torvel::sceneToText(session.scene()));
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Unit(benchmark::kMillisecond)->Arg(12500)->Arg(50000);
}

void pathSizes(benchmark::internal::Benchmark* bench) {
    bench->Unit(benchmark::kMillisecond)->Arg(250)->Arg(500);
}

BENCHMARK_CAPTURE(open, cousins, cousins)->Apply(sizes);
BENCHMARK_CAPTURE(open, namesakes, namesakes)->Apply(sizes);
BENCHMARK_CAPTURE(open, chain, chain)->Apply(sizes);
BENCHMARK_CAPTURE(open, forwardLinks, forwardLinks)->Apply(sizes);
BENCHMARK_CAPTURE(open, backwardLinks, backwardLinks)->Apply(sizes);
BENCHMARK_CAPTURE(open, nested, nested)->Apply(pathSizes);
BENCHMARK_CAPTURE(save, cousins, cousins)->Apply(sizes);
BENCHMARK_CAPTURE(save, namesakes, namesakes)->Apply(sizes);
BENCHMARK_CAPTURE(save, chain, chain)->Apply(sizes);
BENCHMARK_CAPTURE(save, forwardLinks, forwardLinks)->Apply(sizes);
BENCHMARK_CAPTURE(save, nested, nested)->Apply(pathSizes);

}  // namespace
