#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "files/ma/reader.h"
#include "files/ma/writer.h"
#include "graph/scene.h"
#include "nodes/core/default_nodes.h"
#include "nodes/node_table.h"

/// What the fuzzers share: scenes from texts, and the property that every scene has to keep.
namespace torvel::fuzz {

/// Stops the fuzzer with a sentence; what it was given is kept by libFuzzer.
[[noreturn]] inline void fail(const std::string& why) {
    std::fprintf(stderr, "property broken: %s\n", why.c_str());
    std::abort();
}

/// A scene over all node types with its default nodes.
struct FreshScene {
    Log log;
    Scene scene{nodeTypes(), log};
    FreshScene() { createDefaultNodes(scene); }
};

/// Pulls every attribute of every node; of arrays, the elements that there are.
inline void evaluateAll(Scene& scene) {
    for (NodeHandle handle : scene.allNodes()) {
        const Node& node = *scene.node(handle);
        for (std::size_t i = 0; i < node.attrCount(); ++i) {
            const AttrInfo& info = node.attr(static_cast<AttrIndex>(i));
            const Plug plug(handle, static_cast<AttrIndex>(i));
            if (info.arrayDepth == 0)
                scene.evaluate(plug);
            else if (info.isArray() && info.arrayDepth == 1 && !info.is(kBulk))
                for (std::int32_t index : scene.elementIndices(plug))
                    scene.evaluate(scene.element(plug, index));
        }
    }
}

/// Where two texts part: the last line they share and a little of both from there on.
inline std::string firstDifference(const std::string& a, const std::string& b) {
    std::size_t at = 0;
    while (at < a.size() && at < b.size() && a[at] == b[at])
        ++at;
    const std::size_t line = at == 0 ? std::string::npos : a.rfind('\n', at - 1);
    const std::size_t start = line == std::string::npos ? 0 : line + 1;
    return "\n--- " + a.substr(start, 200) + "\n+++ " + b.substr(start, 200);
}

/// What was saved opens again, and saved once more is the same text.
inline void expectStable(Scene& scene) {
    const std::string first = sceneToText(scene);
    FreshScene second;
    OpenReport report;
    if (const Status read = readSceneText(second.scene, first, "saved.ma", report); !read)
        fail("what was saved cannot be read: " + read.text());
    const std::string again = sceneToText(second.scene);
    if (again != first)
        fail("saved twice, two texts:" + firstDifference(first, again));
}

}  // namespace torvel::fuzz
