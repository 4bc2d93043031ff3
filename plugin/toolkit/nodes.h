#pragma once

// Single nodes and lists of nodes: names, look-up by name, parent, mesh shape, selection.
// The null object is the answer for a node that was not found.

#include <string>

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

/// The objects as a selection list, in array order, repeats kept. Prints nothing.
MSelectionList objectsToSelectionList(const MObjectArray& objects);

/// One object per item, in selection order; a plug or component gives its node. Prints nothing.
MObjectArray selectionToArray(const MSelectionList& selection);

/// Whether an element equals `object`; the null object equals a null element.
bool arrayContains(const MObjectArray& array, const MObject& object);

/// Reports name and type of each selected node as one info line, in selection order.
void printSelection();

/// Short name of a DAG node, or its full path. A node outside the DAG, the null object included,
/// gives an empty text and an error line, although it may have a name.
MString getNodeName(const MObject& node, const bool& fullPath = false);

/// The first node that bears the name; when several do, the order is that of the look-up.
/// Null object and an error line when there is none.
MObject getObjectByName(const MString& name);

/// The first parent of a DAG node: the world for a top-level node. Null object, with an error line,
/// for a node outside the DAG; null in silence when there is no parent.
MObject getParentNode(const MObject& node);

/// The first child that is a mesh, intermediate or not; null object in silence when there is none.
/// A node outside the DAG and an unreadable child each give an error line.
MObject getMeshChild(const MObject& transform);

/// Whether the text ends with the suffix, case sensitive. An empty suffix always fits.
bool endsWith(const MString& text, const std::string& suffix);
