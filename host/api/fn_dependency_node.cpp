#include <maya/MFnDependencyNode.h>
#include <maya/MPlug.h>
#include <maya/MTypeId.h>
#include <maya/MUuid.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;
using torvel::Plug;

MFnDependencyNode::MFnDependencyNode() = default;

MFnDependencyNode::MFnDependencyNode(MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kDependencyNode).statusCode());
}

MFnDependencyNode::MFnDependencyNode(const MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kDependencyNode).statusCode());
}

MFnDependencyNode::~MFnDependencyNode() = default;

MFn::Type MFnDependencyNode::type() const {
    return MFn::kDependencyNode;
}

MObject MFnDependencyNode::create(const MString& type, MStatus* ReturnStatus) {
    return create(type, MString(), ReturnStatus);
}

MObject MFnDependencyNode::create(const MString& type, const MString& name, MStatus* ReturnStatus) {
    NodeHandle made;
    const bool good = createNode(MApiBridge::text(type), MApiBridge::text(name), {}, made).isOk();
    attach(MApiBridge::object(made), this->type());
    return check(ReturnStatus, good) ? MApiBridge::object(made) : MObject();
}

// The host's types have names only.
MObject MFnDependencyNode::create(const MTypeId&, MStatus* ReturnStatus) {
    report(ReturnStatus, MStatus::kInvalidParameter);
    return MObject();
}

MString MFnDependencyNode::name(MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    return check(ReturnStatus, node) ? MApiBridge::text(node->name) : MString();
}

MString MFnDependencyNode::typeName(MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    return check(ReturnStatus, node) ? MApiBridge::text(scene()->typeName(node->self)) : MString();
}

MString MFnDependencyNode::setName(const MString& name, bool, MStatus* ReturnStatus) {
    const Node* node = sceneNode(fObject);
    if (!check(ReturnStatus, node))
        return MString();
    const bool fixed =
        node->self == scene()->world() || torvel::Names::legal(MApiBridge::text(name)).empty();
    if (check(ReturnStatus, !fixed))
        scene()->rename(node->self, MApiBridge::text(name));
    return MApiBridge::text(node->name);
}

MUuid MFnDependencyNode::uuid(MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    return check(ReturnStatus, node) ? MUuid(MApiBridge::text(node->uuid)) : MUuid();
}

MPlug MFnDependencyNode::findPlug(const MString& attribute, bool, MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    if (!check(ReturnStatus, node))
        return MPlug();
    const Plug plug = scene()->findPlug(node->self, MApiBridge::text(attribute));
    return check(ReturnStatus, !plug.isNull()) ? MApiBridge::plug(plug) : MPlug();
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, bool, MStatus* ReturnStatus) const {
    const MPlug plug(fObject, attribute);
    check(ReturnStatus, !plug.isNull());
    return plug;
}

MObject MFnDependencyNode::attribute(const MString& attribute, MStatus* ReturnStatus) const {
    return findPlug(attribute, false, ReturnStatus).attribute();
}

bool MFnDependencyNode::hasAttribute(const MString& attribute, MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    return check(ReturnStatus, node) &&
           node->findAttr(MApiBridge::text(attribute)) != torvel::kNoAttr;
}

bool MFnDependencyNode::hasUniqueName(MStatus* ReturnStatus) const {
    const Node* node = sceneNode(fObject);
    return check(ReturnStatus, node) && scene()->names().find(node->name).size() == 1;
}

MAYA_API_NAMESPACE_CLOSE
