#include <deque>
#include <vector>

#include <maya/MDagPath.h>
#include <maya/MItDag.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;

/// Nodes met so far in one list; each knows the entry above it, so a path can be rebuilt also below
/// instances.
struct MItDag::Data {
    struct Entry {
        NodeHandle node;
        int above;
        unsigned int depth;
        bool instanced;
    };

    void start(const MDagPath& root, TraversalType wanted, MFn::Type wantedFilter);
    void step(bool intoCurrent);
    void expand(int entry);
    const Node* node() const {
        return current < 0 ? nullptr : dagNode(entries[static_cast<std::size_t>(current)].node);
    }
    MDagPath path() const;

    std::vector<Entry> entries;
    std::deque<int> waiting;
    std::vector<NodeHandle> rootPath;  ///< above the root
    TraversalType traversal = kDepthFirst;
    MFn::Type filter = MFn::kInvalid;
    int current = -1;
    bool pruned = false;
};

void MItDag::Data::start(const MDagPath& root, TraversalType wanted, MFn::Type wantedFilter) {
    entries.clear();
    waiting.clear();
    traversal = wanted;
    filter = wantedFilter;
    current = -1;
    pruned = false;
    if (!root.isValid())
        return;
    const NodeHandle handle = MApiBridge::handle(root);
    const int instance = MApiBridge::instance(root);
    rootPath = scene()->path(handle, instance);
    if (!rootPath.empty())
        rootPath.pop_back();
    entries.push_back({handle, -1, 0, instance > 0});
    waiting.push_back(0);
    step(false);
}

void MItDag::Data::expand(int entry) {
    const Entry above = entries[static_cast<std::size_t>(entry)];
    const Node* node = dagNode(above.node);
    if (!node)
        return;
    const int first = static_cast<int>(entries.size());
    for (const NodeHandle child : node->children) {
        const Node* below = dagNode(child);
        const bool instanced = above.instanced || (below && below->parents.size() > 1);
        entries.push_back({child, entry, above.depth + 1, instanced});
    }
    const int end = static_cast<int>(entries.size());
    if (traversal == kBreadthFirst)
        for (int i = first; i < end; ++i)
            waiting.push_back(i);
    else
        for (int i = end; i-- > first;)
            waiting.push_front(i);
}

void MItDag::Data::step(bool intoCurrent) {
    if (intoCurrent && current >= 0)
        expand(current);
    pruned = false;
    while (!waiting.empty()) {
        current = waiting.front();
        waiting.pop_front();
        if (!node())
            continue;
        if (passes(node()->self, filter))
            return;
        expand(current);
    }
    current = -1;
}

MDagPath MItDag::Data::path() const {
    if (!node())
        return MDagPath();
    const Entry& entry = entries[static_cast<std::size_t>(current)];
    if (!entry.instanced)
        return MApiBridge::path(entry.node);
    std::vector<NodeHandle> below;
    for (int i = current; i >= 0; i = entries[static_cast<std::size_t>(i)].above)
        below.push_back(entries[static_cast<std::size_t>(i)].node);
    std::vector<NodeHandle> nodes(rootPath);
    for (std::size_t i = below.size(); i-- > 0;)
        if (below[i] != scene()->world())
            nodes.push_back(below[i]);
    return MApiBridge::path(entry.node, scene()->instanceNumber(nodes));
}

MItDag::MItDag(TraversalType traversal, MFn::Type filter, MStatus* ReturnStatus) : fData(new Data) {
    const torvel::Scene* graph = scene();
    const bool good = graph && traversal != kInvalidType;
    if (check(ReturnStatus, good))
        fData->start(MApiBridge::path(graph->world()), traversal, filter);
}

MItDag::~MItDag() {
    delete fData;
}

MStatus MItDag::reset(const MObject& root, TraversalType traversal, MFn::Type filter) {
    MDagPath path;
    MDagPath::getAPathTo(root, path);
    return reset(path, traversal, filter);
}

MStatus MItDag::reset(const MDagPath& root, TraversalType traversal, MFn::Type filter) {
    const bool good = root.isValid() && traversal != kInvalidType;
    fData->start(good ? root : MDagPath(), traversal, filter);
    return good ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus MItDag::reset() {
    const torvel::Scene* graph = scene();
    return reset(graph ? MApiBridge::path(graph->world()) : MDagPath());
}

bool MItDag::isDone(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return fData->current < 0;
}

MStatus MItDag::next() {
    if (fData->current < 0)
        return MStatus::kFailure;
    fData->step(!fData->pruned);
    return MStatus::kSuccess;
}

MStatus MItDag::prune() {
    if (fData->current < 0)
        return MStatus::kFailure;
    fData->pruned = true;
    return MStatus::kSuccess;
}

MObject MItDag::currentItem(MStatus* ReturnStatus) {
    const Node* node = fData->node();
    return check(ReturnStatus, node, MStatus::kFailure) ? MApiBridge::object(node->self)
                                                        : MObject();
}

MStatus MItDag::getPath(MDagPath& path) const {
    path = fData->path();
    return path.isValid() ? MStatus::kSuccess : MStatus::kFailure;
}

MString MItDag::fullPathName(MStatus* ReturnStatus) const {
    return fData->path().fullPathName(ReturnStatus);
}

unsigned int MItDag::depth(MStatus* ReturnStatus) const {
    const bool good = fData->current >= 0;
    return check(ReturnStatus, good, MStatus::kFailure)
               ? fData->entries[static_cast<std::size_t>(fData->current)].depth
               : 0;
}

MAYA_API_NAMESPACE_CLOSE
