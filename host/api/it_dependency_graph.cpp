#include <algorithm>
#include <deque>
#include <vector>

#include <maya/MItDependencyGraph.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;
using torvel::Plug;
using torvel::Scene;

/// Visited nodes carry the walk's stamp. Another walk between two steps overwrites stamps, which
/// shows in the numbers that the scene gives out; the nodes seen so far are then stamped anew.
struct MItDependencyGraph::Data {
    void start(NodeHandle root, const Plug& onlyPlug);
    void step();
    void expand(NodeHandle from);
    void freshStamp();
    bool claim(NodeHandle handle);
    bool isThroughPlug(const Plug& plug) const;

    MFn::Type filter = MFn::kInvalid;
    Direction direction = kDownstream;
    Traversal traversal = kDepthFirst;
    Plug rootPlug;  ///< null: every plug of the root is followed
    NodeHandle root;
    NodeHandle current;
    std::deque<NodeHandle> waiting;
    std::vector<NodeHandle> seen;
    std::uint64_t stamp = 0;
    std::uint64_t lastGiven = 0;
    bool pruned = false;
};

void MItDependencyGraph::Data::start(NodeHandle from, const Plug& onlyPlug) {
    root = from;
    rootPlug = onlyPlug;
    waiting.push_back(from);
    step();
}

void MItDependencyGraph::Data::freshStamp() {
    const std::uint64_t given = scene()->nextVisit();
    const bool alone = stamp != 0 && given == lastGiven + 1;
    lastGiven = given;
    if (alone)
        return;
    stamp = given;
    for (const NodeHandle handle : seen)
        if (Node* node = sceneNode(handle))
            node->visit = stamp;
}

/// Marks a node; false when it is gone or marked already.
bool MItDependencyGraph::Data::claim(NodeHandle handle) {
    Node* node = sceneNode(handle);
    if (!node || node->visit == stamp)
        return false;
    node->visit = stamp;
    seen.push_back(handle);
    return true;
}

/// The root's own plug, or a part of it.
bool MItDependencyGraph::Data::isThroughPlug(const Plug& plug) const {
    for (Plug at = plug; !at.isNull(); at = scene()->parentPlug(at))
        if (at == rootPlug)
            return true;
    return false;
}

void MItDependencyGraph::Data::expand(NodeHandle from) {
    const bool restricted = from == root && !rootPlug.isNull();
    const bool down = direction == kDownstream;
    std::vector<NodeHandle> next;
    for (const Scene::Connection& link : down ? scene()->outgoing(from) : scene()->incoming(from)) {
        if (restricted && !isThroughPlug(down ? link.source : link.target))
            continue;
        const NodeHandle beyond = down ? link.target.node : link.source.node;
        const Node* node = sceneNode(beyond);
        if (node && node->visit != stamp && (next.empty() || next.back() != beyond))
            next.push_back(beyond);
    }
    if (traversal == kBreadthFirst)
        waiting.insert(waiting.end(), next.begin(), next.end());
    else
        waiting.insert(waiting.begin(), next.begin(), next.end());
}

void MItDependencyGraph::Data::step() {
    freshStamp();
    if (!current.isNull() && !pruned && sceneNode(current))
        expand(current);
    pruned = false;
    current = {};
    while (!waiting.empty()) {
        const NodeHandle handle = waiting.front();
        waiting.pop_front();
        if (!claim(handle))
            continue;
        if (passes(handle, filter)) {
            current = handle;
            return;
        }
        expand(handle);
    }
}

MItDependencyGraph::MItDependencyGraph(MObject& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level level, MStatus* ReturnStatus)
    : fData(new Data) {
    fData->filter = filter;
    fData->direction = direction;
    fData->traversal = traversal;
    const Node* node = sceneNode(root);
    if (check(ReturnStatus, node) &&
        check(ReturnStatus, level == kNodeLevel, MStatus::kNotImplemented))
        fData->start(node->self, Plug());
}

MItDependencyGraph::MItDependencyGraph(MPlug& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level level, MStatus* ReturnStatus)
    : fData(new Data) {
    fData->filter = filter;
    fData->direction = direction;
    fData->traversal = traversal;
    const Plug plug = MApiBridge::plug(root);
    if (check(ReturnStatus, plugNode(plug)) &&
        check(ReturnStatus, level == kNodeLevel, MStatus::kNotImplemented))
        fData->start(plug.node, plug);
}

MItDependencyGraph::~MItDependencyGraph() {
    delete fData;
}

bool MItDependencyGraph::isDone(MStatus* ReturnStatus) {
    report(ReturnStatus, MStatus::kSuccess);
    return fData->current.isNull();
}

MStatus MItDependencyGraph::next() {
    if (fData->current.isNull())
        return MStatus::kFailure;
    if (!scene()) {
        fData->current = {};
        return MStatus::kFailure;
    }
    fData->step();
    return MStatus::kSuccess;
}

MStatus MItDependencyGraph::prune() {
    if (fData->current.isNull())
        return MStatus::kFailure;
    fData->pruned = true;
    return MStatus::kSuccess;
}

MObject MItDependencyGraph::currentItem(MStatus* ReturnStatus) {
    const Node* node = sceneNode(fData->current);
    return check(ReturnStatus, node, MStatus::kFailure) ? MApiBridge::object(node->self)
                                                        : MObject();
}

MAYA_API_NAMESPACE_CLOSE
