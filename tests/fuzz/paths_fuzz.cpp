// Resolves bytes as attribute paths and as names; what resolves has a name that resolves to it.
#include "fuzz_scene.h"

using namespace torvel;

namespace {

const char* const kNodes[] = {"a", "mesh1", "skin1", "pma", "pose1"};

struct Graph : fuzz::FreshScene {
    Graph() {
        NodeHandle made;
        ignore(scene.createNode("joint", "a", {}, made));
        ignore(scene.createNode("mesh", "mesh1", made, made));
        ignore(scene.createNode("skinCluster", "skin1", {}, made));
        ignore(scene.createNode("plusMinusAverage", "pma", {}, made));
        ignore(scene.createNode("dagPose", "pose1", {}, made));
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static Graph graph;
    const std::string text(reinterpret_cast<const char*>(data), size);
    graph.scene.names().find(text);
    Names::matches(text, "aNameThatIsLong");
    for (const char* name : kNodes) {
        const NodeHandle node = graph.scene.names().lookUp(name);
        const Plug plug = graph.scene.findPlug(node, text);
        if (plug.isNull())
            continue;
        const std::string path = graph.scene.attrPath(plug, true);
        if (graph.scene.findPlug(node, path) != plug)
            fuzz::fail(text + " resolves, its own name does not: " + path);
    }
    return 0;
}
