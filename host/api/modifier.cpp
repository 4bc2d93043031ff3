#include <algorithm>
#include <functional>
#include <vector>

#include <maya/MDGModifier.h>
#include <maya/MDagModifier.h>
#include <maya/MTypeId.h>

#include "api/bridge.h"
#include "graph/journal.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::EditScope;
using torvel::NodeHandle;
using torvel::Plug;
using torvel::Scene;
using torvel::Status;

struct MDGModifier::Data {
    struct Step {
        std::function<Status(Scene&)> apply;
        std::function<Status(Scene&)> revert;  ///< empty: cannot be undone
    };

    MStatus run();
    MStatus revert();
    void add(std::function<Status(Scene&)> apply, std::function<Status(Scene&)> revert = nullptr) {
        queue.push_back({std::move(apply), std::move(revert)});
    }

    std::vector<Step> queue;
    std::vector<Step> done;  ///< the steps of the last run that succeeded
};

MStatus MDGModifier::Data::run() {
    std::vector<Step> steps;
    steps.swap(queue);
    if (steps.empty())
        return MStatus::kSuccess;
    done.clear();
    if (!scene())
        return MStatus::kFailure;
    const EditScope scope(*scene(), "MDGModifier");
    MStatus result;
    for (Step& step : steps) {
        const MStatus status = statusOf(step.apply(*scene()));
        if (status)
            done.push_back(std::move(step));
        else if (result)
            result = status;
    }
    return result;
}

MStatus MDGModifier::Data::revert() {
    const bool possible = scene() && std::all_of(done.begin(), done.end(), [](const Step& step) {
                              return step.revert != nullptr;
                          });
    if (!possible)
        return MStatus::kNotImplemented;
    std::vector<Step> steps;
    steps.swap(done);
    const EditScope scope(*scene(), "MDGModifier");
    MStatus result;
    for (std::size_t i = steps.size(); i-- > 0;)
        if (!statusOf(steps[i].revert(*scene())))
            result = MStatus::kFailure;
    return result;
}

// --- MDGModifier ---------------------------------------------------------------------------------

MDGModifier::MDGModifier() : fData(new Data) {}

MDGModifier::~MDGModifier() {
    delete fData;
}

MStatus MDGModifier::connect(const MPlug& source, const MPlug& destination) {
    const Plug from = MApiBridge::plug(source);
    const Plug to = MApiBridge::plug(destination);
    if (!plugNode(from) || !plugNode(to))
        return MStatus::kInvalidParameter;
    if (!scene()->checkConnection(from, to))
        return MStatus::kFailure;
    fData->add([from, to](Scene& graph) { return graph.connect(from, to); },
               [from, to](Scene& graph) { return graph.disconnect(from, to); });
    return MStatus::kSuccess;
}

MStatus MDGModifier::connect(const MObject& sourceNode, const MObject& sourceAttribute,
                             const MObject& destinationNode, const MObject& destinationAttribute) {
    return connect(MPlug(sourceNode, sourceAttribute),
                   MPlug(destinationNode, destinationAttribute));
}

MStatus MDGModifier::disconnect(const MPlug& source, const MPlug& destination) {
    const Plug from = MApiBridge::plug(source);
    const Plug to = MApiBridge::plug(destination);
    if (!plugNode(from) || !plugNode(to))
        return MStatus::kInvalidParameter;
    fData->add([from, to](Scene& graph) { return graph.disconnect(from, to); },
               [from, to](Scene& graph) { return graph.connect(from, to); });
    return MStatus::kSuccess;
}

MStatus MDGModifier::disconnect(const MObject& sourceNode, const MObject& sourceAttribute,
                                const MObject& destinationNode,
                                const MObject& destinationAttribute) {
    return disconnect(MPlug(sourceNode, sourceAttribute),
                      MPlug(destinationNode, destinationAttribute));
}

MStatus MDGModifier::renameNode(const MObject& node, const MString& newName) {
    const NodeHandle handle = MApiBridge::handle(node);
    const std::string name = MApiBridge::text(newName);
    if (!sceneNode(handle) || handle == scene()->world() || torvel::Names::legal(name).empty())
        return MStatus::kInvalidParameter;
    fData->add([handle, name](Scene& graph) {
        if (!graph.isValid(handle))
            return Status::failure("the node to rename is gone");
        graph.rename(handle, name);
        return Status::ok();
    });
    return MStatus::kSuccess;
}

MStatus MDGModifier::deleteNode(const MObject& node) {
    const NodeHandle handle = MApiBridge::handle(node);
    if (!sceneNode(handle) || handle == scene()->world() || sceneNode(handle)->isDefault)
        return MStatus::kInvalidParameter;
    fData->add([handle](Scene& graph) {
        if (!graph.isValid(handle))
            return Status::failure("the node to delete is gone");
        graph.deleteNodes({handle});
        return Status::ok();
    });
    return MStatus::kSuccess;
}

MStatus MDGModifier::doIt() {
    return fData->run();
}

MStatus MDGModifier::undoIt() {
    return fData->revert();
}

// --- MDagModifier --------------------------------------------------------------------------------

MDagModifier::MDagModifier() = default;

MDagModifier::~MDagModifier() = default;

MObject MDagModifier::createNode(const MString& type, const MObject& parent,
                                 MStatus* ReturnStatus) {
    const std::string typeText = MApiBridge::text(type);
    const torvel::NodeType* row = scene() ? scene()->types().find(typeText) : nullptr;
    const bool placed = MApiBridge::isBlank(parent) || dagNode(MApiBridge::handle(parent));
    NodeHandle made;
    const bool good =
        row && row->is(torvel::kDagType) && placed &&
        torvel::api::createNode(typeText, {}, MApiBridge::handle(parent), made).isOk();
    return check(ReturnStatus, good) ? MApiBridge::object(made) : MObject();
}

// The host's types have names only.
MObject MDagModifier::createNode(const MTypeId&, const MObject&, MStatus* ReturnStatus) {
    report(ReturnStatus, MStatus::kInvalidParameter);
    return MObject();
}

MStatus MDagModifier::reparentNode(const MObject& node, const MObject& newParent) {
    const torvel::Node* moved = dagNode(MApiBridge::handle(node));
    if (!moved || moved->self == scene()->world())
        return MStatus::kInvalidParameter;
    const bool toWorld = MApiBridge::isBlank(newParent);
    const NodeHandle parent = toWorld ? scene()->world() : MApiBridge::handle(newParent);
    const bool placed =
        toWorld || parent == scene()->world() || torvel::api::hasFn(parent, MFn::kTransform);
    const bool loose = toWorld && moved->type->is(torvel::kShapeType);
    if (!placed || loose || scene()->isAncestor(moved->self, parent))
        return MStatus::kInvalidParameter;
    const NodeHandle child = moved->self;
    fData->add([child, parent](Scene& graph) { return graph.reparent(child, parent); });
    return MStatus::kSuccess;
}

MAYA_API_NAMESPACE_CLOSE
