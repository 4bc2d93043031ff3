#include <algorithm>

#include <maya/MPlug.h>
#include <maya/MPlugArray.h>

#include "api/array.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::AttrInfo;
using torvel::Node;
using torvel::Plug;
using PlugList = Array<MPlugArray, MPlug>;

namespace {

/// The attribute of a live plug; null otherwise.
const AttrInfo* infoOf(const Plug& plug) {
    const Node* node = plugNode(plug);
    return node ? &node->attr(plug.attr) : nullptr;
}

bool isLiveArray(const Plug& plug) {
    return infoOf(plug) && scene()->isArrayPlug(plug);
}

bool isLiveCompound(const Plug& plug) {
    const AttrInfo* info = infoOf(plug);
    return info && !info->children.empty() && !scene()->isArrayPlug(plug);
}

/// Writes item number `at`, growing the list only beyond what it holds.
void put(MPlugArray& list, unsigned int at, const Plug& plug) {
    PlugList::reserve(list, at + 1);
    MApiBridge::set(PlugList::data(list)[at], plug);
    PlugList::length(list) = at + 1;
}

}  // namespace

MPlug::MPlug() {
    MApiBridge::set(*this, Plug());
    fData[7] = 0;
}

MPlug::MPlug(const MObject& node, const MObject& attribute) : MPlug() {
    const Plug own = MApiBridge::attributePlug(attribute);
    const Node* target = sceneNode(node);
    const Node* owner = plugNode(own);
    if (target && owner)
        MApiBridge::set(*this, scene()->findPlug(target->self, owner->attr(own.attr).longName));
}

bool MPlug::isNull(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return plugNode(MApiBridge::plug(*this)) == nullptr;
}

MString MPlug::name(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const Node* owner = plugNode(plug);
    if (!check(ReturnStatus, owner))
        return MString();
    return MApiBridge::text(owner->name + "." + scene()->attrPath(plug, true));
}

MObject MPlug::node(MStatus* ReturnStatus) const {
    const Node* owner = plugNode(MApiBridge::plug(*this));
    return check(ReturnStatus, owner) ? MApiBridge::object(owner->self) : MObject();
}

MObject MPlug::attribute(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    return check(ReturnStatus, plugNode(plug)) ? MApiBridge::attribute(plug) : MObject();
}

bool MPlug::isArray(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    return check(ReturnStatus, plugNode(plug)) && scene()->isArrayPlug(plug);
}

bool MPlug::isElement(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    return check(ReturnStatus, plugNode(plug)) && scene()->isElement(plug);
}

unsigned int MPlug::numElements(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    return check(ReturnStatus, isLiveArray(plug))
               ? static_cast<unsigned int>(scene()->elementCount(plug))
               : 0;
}

unsigned int MPlug::evaluateNumElements(MStatus* ReturnStatus) {
    const Plug plug = MApiBridge::plug(*this);
    if (!check(ReturnStatus, isLiveArray(plug)))
        return 0;
    scene()->evaluate(plug);
    return static_cast<unsigned int>(scene()->elementCount(plug));
}

// Rewiring a skin visits joints times influences elements: what is known is not asked twice here.
MPlug MPlug::elementByPhysicalIndex(unsigned int physicalIndex, MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const torvel::Scene* graph = scene();
    const bool isArray = graph && graph->isArrayPlug(plug);
    const Plug element = isArray ? graph->elementAt(plug, physicalIndex) : Plug();
    check(ReturnStatus, !element.isNull());
    return MApiBridge::plug(element);
}

MPlug MPlug::elementByLogicalIndex(unsigned int logicalIndex, MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const bool good = isLiveArray(plug) && logicalIndex <= 0x7fffffffu;
    return check(ReturnStatus, good)
               ? MApiBridge::plug(scene()->element(plug, static_cast<int>(logicalIndex)))
               : MPlug();
}

unsigned int MPlug::logicalIndex(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const bool good = plugNode(plug) && scene()->isElement(plug);
    return check(ReturnStatus, good) ? static_cast<unsigned int>(scene()->logicalIndex(plug)) : 0;
}

bool MPlug::isCompound(MStatus* ReturnStatus) const {
    const AttrInfo* info = infoOf(MApiBridge::plug(*this));
    return check(ReturnStatus, info) && !info->children.empty();
}

bool MPlug::isChild(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const AttrInfo* info = infoOf(plug);
    return check(ReturnStatus, info) && info->parent != torvel::kNoAttr &&
           !scene()->isElement(plug);
}

unsigned int MPlug::numChildren(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const bool good = isLiveCompound(plug);
    return check(ReturnStatus, good) ? static_cast<unsigned int>(infoOf(plug)->children.size()) : 0;
}

MPlug MPlug::child(unsigned int index, MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const bool good = isLiveCompound(plug) && index < infoOf(plug)->children.size();
    return check(ReturnStatus, good)
               ? MApiBridge::plug(scene()->child(plug, static_cast<int>(index)))
               : MPlug();
}

MPlug MPlug::child(const MObject& attribute, MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    const Plug wanted = MApiBridge::attributePlug(attribute);
    const AttrInfo* child = infoOf(wanted);
    if (check(ReturnStatus, isLiveCompound(plug) && child))
        for (const torvel::AttrIndex index : infoOf(plug)->children)
            if (plugNode(plug)->attr(index).longName == child->longName)
                return MApiBridge::plug(
                    scene()->child(plug, plugNode(plug)->attr(index).childNumber));
    report(ReturnStatus, MStatus::kInvalidParameter);
    return MPlug();
}

bool MPlug::connectedTo(MPlugArray& array, bool asDst, bool asSrc, MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    PlugList::length(array) = 0;
    if (!check(ReturnStatus, plugNode(plug)))
        return false;
    const torvel::Scene& graph = *scene();
    unsigned int count = 0;
    if (asDst)
        if (const Plug source = graph.source(plug); !source.isNull())
            put(array, count++, source);
    if (asSrc)
        for (const Plug& target : graph.targets(plug))
            put(array, count++, target);
    return count > 0;
}

bool MPlug::isConnected(MStatus* ReturnStatus) const {
    const Plug plug = MApiBridge::plug(*this);
    if (!check(ReturnStatus, plugNode(plug)))
        return false;
    return !scene()->source(plug).isNull() || !scene()->targets(plug).empty();
}

bool MPlug::operator==(const MPlug& other) const {
    return MApiBridge::plug(*this) == MApiBridge::plug(other);
}

bool MPlug::operator!=(const MPlug& other) const {
    return !(*this == other);
}

bool MPlug::operator==(const MObject& attribute) const {
    const AttrInfo* own = infoOf(MApiBridge::plug(*this));
    const AttrInfo* other = infoOf(MApiBridge::attributePlug(attribute));
    return own && other && own->longName == other->longName;
}

bool MPlug::operator!=(const MObject& attribute) const {
    return !(*this == attribute);
}

MAYA_API_NAMESPACE_CLOSE
