#pragma once

#include <vector>

#include <maya/MSelectionList.h>

#include "api/bridge.h"
#include "graph/selection.h"

MAYA_API_NAMESPACE_OPEN

struct MSelectionList::Data {
    std::vector<torvel::SelectionItem> items;

    void add(const torvel::SelectionItem& item, bool merge);
};

MAYA_API_NAMESPACE_CLOSE

namespace torvel::api {

/// All items that a name, path, pattern or "node.attribute" stands for; false, and nothing
/// appended, when there is none.
bool itemsNamed(const std::string& text, std::vector<SelectionItem>& items);
/// How a script would name the item; empty for a deleted node.
std::string nameOf(const SelectionItem& item);

MStatus dependNodeOf(const SelectionItem& item, MObject& node);
/// Fails and leaves an invalid path for an item that is no DAG node.
MStatus dagPathOf(const SelectionItem& item, MDagPath& path);
MStatus plugOf(const SelectionItem& item, MPlug& plug);

}  // namespace torvel::api
