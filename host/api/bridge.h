#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "script/session.h"
#include "graph/scene.h"

MAYA_API_NAMESPACE_OPEN

/// Turns the opaque members of the API's values into the graph's own types and back. Nothing here
/// checks that a handle is alive; `sceneNode` and its like do.
struct MApiBridge {
    enum Kind : unsigned int { kNode, kAttribute, kPlugin };

    // --- objects ---------------------------------------------------------------------------------
    static MObject make(unsigned int kind, torvel::NodeHandle handle, unsigned int attribute) {
        MObject object;
        if (handle.isNull())
            return object;
        object.fIndex = handle.index;
        object.fGeneration = handle.generation;
        object.fAttribute = attribute;
        object.fKind = kind;
        return object;
    }
    static MObject object(torvel::NodeHandle handle) { return make(kNode, handle, 0); }
    static MObject attribute(const torvel::Plug& plug) {
        return make(kAttribute, plug.node, plug.attr);
    }
    static MObject plugin(unsigned int number) { return make(kPlugin, {number, 1}, 0); }

    /// Never named anything, as the null object; a deleted node is not blank.
    static bool isBlank(const MObject& object) { return object.fGeneration == 0; }
    static unsigned int kind(const MObject& object) { return object.fKind; }
    /// Null unless the object is a node.
    static torvel::NodeHandle handle(const MObject& object) {
        return object.fKind == kNode ? raw(object) : torvel::NodeHandle{};
    }
    static torvel::NodeHandle raw(const MObject& object) {
        return {object.fIndex, object.fGeneration};
    }
    /// The plug of an attribute object on the node it was asked from; null for other objects.
    static torvel::Plug attributePlug(const MObject& object) {
        return object.fKind == kAttribute ? torvel::Plug(raw(object), object.fAttribute)
                                          : torvel::Plug();
    }
    /// 0 unless the object is a plug-in.
    static unsigned int pluginNumber(const MObject& object) {
        return object.fKind == kPlugin ? object.fIndex : 0;
    }

    // --- plugs -----------------------------------------------------------------------------------
    static torvel::Plug plug(const MPlug& source) {
        torvel::Plug result;
        std::memcpy(static_cast<void*>(&result), source.fData, sizeof(result));
        return result;
    }
    static void set(MPlug& target, const torvel::Plug& source) {
        std::memcpy(target.fData, &source, sizeof(source));
    }
    static MPlug plug(const torvel::Plug& source) {
        MPlug result;
        set(result, source);
        return result;
    }

    // --- paths -----------------------------------------------------------------------------------
    static torvel::NodeHandle handle(const MDagPath& path) {
        return path.fState ? torvel::NodeHandle{path.fIndex, path.fGeneration}
                           : torvel::NodeHandle{};
    }
    static int instance(const MDagPath& path) { return static_cast<int>(path.fInstance); }
    static MDagPath path(torvel::NodeHandle handle, int instance = 0) {
        MDagPath result;
        if (handle.isNull() || instance < 0)
            return result;
        result.fIndex = handle.index;
        result.fGeneration = handle.generation;
        result.fInstance = static_cast<unsigned int>(instance);
        result.fState = 1;
        return result;
    }

    // --- texts -----------------------------------------------------------------------------------
    static MString text(const std::string& source) {
        MString result;
        result.assign(source.data(), static_cast<unsigned int>(source.size()));
        return result;
    }
    static std::string text(const MString& source) {
        return std::string(source.asChar(), source.length());
    }

    /// What a selection list holds; defined with MSelectionList.
    static std::vector<torvel::SelectionItem>& items(MSelectionList& list);
    static const std::vector<torvel::SelectionItem>& items(const MSelectionList& list);

    static torvel::Value& value(MCommandResult& result);
    /// The list of arguments that a command receives.
    static void fill(MArgList& list, const std::vector<torvel::Value>& args);

    /// The growing lists' own members, for the shared code behind them.
    template <class List>
    static auto& data(List& list) {
        return list.fData;
    }
    template <class List>
    static auto& length(List& list) {
        return list.fLength;
    }
    template <class List>
    static auto& capacity(List& list) {
        return list.fCapacity;
    }
};

MAYA_API_NAMESPACE_CLOSE

static_assert(sizeof(torvel::Plug) <= sizeof(MPlug), "a plug of the graph has to fit into MPlug");

namespace torvel::api {

using Bridge = MApiBridge;

inline void report(MStatus* status, MStatus::MStatusCode code) {
    if (status)
        *status = code;
}

/// Reports success or `otherwise` and hands the test on.
inline bool check(MStatus* status, bool good,
                  MStatus::MStatusCode otherwise = MStatus::kInvalidParameter) {
    report(status, good ? MStatus::kSuccess : otherwise);
    return good;
}

inline MStatus statusOf(const Status& status) {
    return status.isOk() ? MStatus(MStatus::kSuccess) : MStatus(MStatus::kFailure);
}

/// Null while no session lives.
inline Scene* scene() {
    Session* session = Session::current();
    return session ? &session->scene() : nullptr;
}

/// Null for a null, deleted or foreign handle.
inline Node* sceneNode(NodeHandle handle) {
    Scene* current = handle.isNull() ? nullptr : scene();
    return current ? current->node(handle) : nullptr;
}

inline Node* sceneNode(const MObject& object) {
    return sceneNode(Bridge::handle(object));
}

/// Null unless the node lives and is part of the DAG (the world counts).
Node* dagNode(NodeHandle handle);

/// The node of a plug whose attribute exists; null otherwise.
inline Node* plugNode(const Plug& plug) {
    Node* node = sceneNode(plug.node);
    return node && plug.attr < node->attrCount() ? node : nullptr;
}

/// Whether a live node has the function set; every node passes kDependencyNode and kBase.
bool hasFn(NodeHandle handle, MFn::Type type);
/// As hasFn; kInvalid passes every live node.
bool passes(NodeHandle handle, MFn::Type filter);

/// The node's `intermediateObject`.
bool isIntermediate(const Node& node);

/// Name of a type such as "kJoint"; "kInvalid" for a number without a name.
const char* typeName(int apiType);
/// The same for a live node, from its type's own table; "kInvalid" otherwise.
const char* apiTypeStr(NodeHandle handle);

/// Makes a node under `parent` (null: the world). A shape without a parent gets a transform, which
/// is returned; `shape` then receives the shape itself.
Status createNode(const std::string& type, const std::string& name, NodeHandle parent,
                  NodeHandle& made, NodeHandle* shape = nullptr);

}  // namespace torvel::api
