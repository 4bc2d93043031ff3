#include "api/selection_list.h"

#include <algorithm>

#include <maya/MItSelectionList.h>
#include <maya/MStringArray.h>
#include <maya/MUuid.h>

#include "edit/components.h"

namespace torvel::api {

namespace {

/// "node.attribute" with exactly one matching node.
bool plugNamed(const std::string& text, SelectionItem& item) {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos)
        return false;
    const NodeHandle node = scene()->names().lookUp(text.substr(0, dot));
    if (!sceneNode(node))
        return false;
    item.node = node;
    item.plug = scene()->findPlug(node, text.substr(dot + 1));
    return !item.plug.isNull();
}

}  // namespace

bool itemsNamed(const std::string& text, std::vector<SelectionItem>& items) {
    if (!scene())
        return false;
    SelectionItem one;
    if (plugNamed(text, one)) {
        items.push_back(one);
        return true;
    }
    std::vector<SelectionItem> components;
    if (torvel::componentItems(*scene(), text, components)) {
        items.insert(items.end(), components.begin(), components.end());
        return !components.empty();
    }
    const std::vector<NodeHandle> found = scene()->names().find(text);
    for (const NodeHandle node : found)
        items.push_back({node, {}, {}, 0});
    return !found.empty();
}

std::string nameOf(const SelectionItem& item) {
    if (!sceneNode(item.node))
        return {};
    if (!item.plug.isNull())
        return scene()->plugName(item.plug);
    const std::string name = scene()->names().shortest(torvel::componentOwner(*scene(), item));
    return item.component.empty() ? name : name + "." + item.component;
}

MStatus dependNodeOf(const SelectionItem& item, MObject& node) {
    const bool good = sceneNode(item.node) != nullptr;
    node = good ? Bridge::object(item.node) : MObject();
    return good ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus dagPathOf(const SelectionItem& item, MDagPath& path) {
    const bool good = dagNode(item.node) && item.plug.isNull();
    path = good ? Bridge::path(item.node, item.instance) : MDagPath();
    return good ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus plugOf(const SelectionItem& item, MPlug& plug) {
    const bool good = plugNode(item.plug) != nullptr;
    plug = good ? Bridge::plug(item.plug) : MPlug();
    return good ? MStatus::kSuccess : MStatus::kFailure;
}

}  // namespace torvel::api

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::SelectionItem;

void MSelectionList::Data::add(const SelectionItem& item, bool merge) {
    if (!merge || std::find(items.begin(), items.end(), item) == items.end())
        items.push_back(item);
}

MSelectionList::MSelectionList() : fData(new Data) {}

MSelectionList::MSelectionList(const MSelectionList& other) : fData(new Data(*other.fData)) {}

MSelectionList::~MSelectionList() {
    delete fData;
}

MSelectionList& MSelectionList::operator=(const MSelectionList& other) {
    if (&other != this)
        *fData = *other.fData;
    return *this;
}

MStatus MSelectionList::add(const MObject& object, const bool mergeWithExisting) {
    if (!sceneNode(object))
        return MStatus::kInvalidParameter;
    fData->add({MApiBridge::handle(object), {}, {}, 0}, mergeWithExisting);
    return MStatus::kSuccess;
}

MStatus MSelectionList::add(const MDagPath& path, const MObject& component,
                            const bool mergeWithExisting) {
    if (!path.isValid() || !MApiBridge::isBlank(component))
        return MStatus::kInvalidParameter;
    fData->add({MApiBridge::handle(path), {}, {}, MApiBridge::instance(path)}, mergeWithExisting);
    return MStatus::kSuccess;
}

MStatus MSelectionList::add(const MString& match, const bool) {
    return itemsNamed(MApiBridge::text(match), fData->items) ? MStatus::kSuccess
                                                             : MStatus::kInvalidParameter;
}

MStatus MSelectionList::add(const MPlug& plug, const bool mergeWithExisting) {
    const torvel::Plug inner = MApiBridge::plug(plug);
    if (!plugNode(inner))
        return MStatus::kInvalidParameter;
    fData->add({inner.node, inner, {}, 0}, mergeWithExisting);
    return MStatus::kSuccess;
}

MStatus MSelectionList::add(const MUuid& uuid, bool mergeWithExisting) {
    MStatus status = MStatus::kInvalidParameter;
    if (!scene() || !uuid.valid())
        return status;
    scene()->forEachNode([&](const torvel::Node& node) {
        if (!node.uuid.empty() && MUuid(MApiBridge::text(node.uuid)) == uuid) {
            fData->add({node.self, {}, {}, 0}, mergeWithExisting);
            status = MStatus::kSuccess;
        }
    });
    return status;
}

unsigned int MSelectionList::length(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return static_cast<unsigned int>(fData->items.size());
}

bool MSelectionList::isEmpty(MStatus* ReturnStatus) const {
    return length(ReturnStatus) == 0;
}

MStatus MSelectionList::clear() {
    fData->items.clear();
    return MStatus::kSuccess;
}

MStatus MSelectionList::remove(unsigned int index) {
    if (index >= fData->items.size())
        return MStatus::kInvalidParameter;
    fData->items.erase(fData->items.begin() + index);
    return MStatus::kSuccess;
}

MStatus MSelectionList::getDependNode(unsigned int index, MObject& node) const {
    return index < fData->items.size() ? dependNodeOf(fData->items[index], node)
                                       : MStatus(MStatus::kInvalidParameter);
}

MStatus MSelectionList::getDagPath(unsigned int index, MDagPath& path, MObject& component) const {
    // By default this is the shared null object, which nobody may write to.
    if (&component != &MObject::kNullObj)
        component = MObject();
    return index < fData->items.size() ? dagPathOf(fData->items[index], path)
                                       : MStatus(MStatus::kInvalidParameter);
}

MStatus MSelectionList::getPlug(unsigned int index, MPlug& plug) const {
    return index < fData->items.size() ? plugOf(fData->items[index], plug)
                                       : MStatus(MStatus::kInvalidParameter);
}

MStatus MSelectionList::getSelectionStrings(unsigned int index, MStringArray& strings) const {
    strings.clear();
    if (index >= fData->items.size())
        return MStatus::kInvalidParameter;
    return strings.append(MApiBridge::text(nameOf(fData->items[index])));
}

MStatus MSelectionList::getSelectionStrings(MStringArray& strings) const {
    strings.clear();
    for (const SelectionItem& item : fData->items)
        strings.append(MApiBridge::text(nameOf(item)));
    return MStatus::kSuccess;
}

bool MSelectionList::hasItem(const MObject& object, MStatus* ReturnStatus) const {
    const torvel::NodeHandle handle = MApiBridge::handle(object);
    if (!check(ReturnStatus, sceneNode(handle)))
        return false;
    return std::any_of(fData->items.begin(), fData->items.end(), [&](const SelectionItem& item) {
        return item.node == handle && item.plug.isNull();
    });
}

std::vector<SelectionItem>& MApiBridge::items(MSelectionList& list) {
    return list.fData->items;
}

const std::vector<SelectionItem>& MApiBridge::items(const MSelectionList& list) {
    return list.fData->items;
}

// --- MItSelectionList ----------------------------------------------------------------------------

struct MItSelectionList::Data {
    std::vector<SelectionItem> items;
    MFn::Type filter;
    std::size_t at = 0;

    const SelectionItem* current() const { return at < items.size() ? &items[at] : nullptr; }
    void settle() {
        while (at < items.size() && !passes(items[at].node, filter))
            ++at;
    }
};

MItSelectionList::MItSelectionList(const MSelectionList& list, MFn::Type filter,
                                   MStatus* ReturnStatus)
    : fData(new Data{MApiBridge::items(list), filter, 0}) {
    report(ReturnStatus, MStatus::kSuccess);
    fData->settle();
}

MItSelectionList::~MItSelectionList() {
    delete fData;
}

bool MItSelectionList::isDone(MStatus* ReturnStatus) {
    report(ReturnStatus, MStatus::kSuccess);
    return !fData->current();
}

MStatus MItSelectionList::next() {
    if (!fData->current())
        return MStatus::kFailure;
    ++fData->at;
    fData->settle();
    return MStatus::kSuccess;
}

MStatus MItSelectionList::reset() {
    fData->at = 0;
    fData->settle();
    return MStatus::kSuccess;
}

MStatus MItSelectionList::setFilter(MFn::Type filter) {
    fData->filter = filter;
    return reset();
}

MStatus MItSelectionList::getDependNode(MObject& node) {
    const SelectionItem* item = fData->current();
    return item ? dependNodeOf(*item, node) : MStatus(MStatus::kFailure);
}

MStatus MItSelectionList::getDagPath(MDagPath& path) {
    const SelectionItem* item = fData->current();
    return item ? dagPathOf(*item, path) : MStatus(MStatus::kFailure);
}

MStatus MItSelectionList::getDagPath(MDagPath& path, MObject& component) {
    if (&component != &MObject::kNullObj)
        component = MObject();
    return getDagPath(path);
}

MStatus MItSelectionList::getPlug(MPlug& plug) {
    const SelectionItem* item = fData->current();
    return item ? plugOf(*item, plug) : MStatus(MStatus::kFailure);
}

MAYA_API_NAMESPACE_CLOSE
