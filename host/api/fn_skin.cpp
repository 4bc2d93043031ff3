#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <maya/MDagPath.h>
#include <maya/MDagPathArray.h>
#include <maya/MFnGeometryFilter.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MObjectArray.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;
using torvel::Plug;
using torvel::Scene;

namespace {

enum class Way { In, Out };

/// Names under which nodes of types that the host does not have take and hand on geometry.
bool isGeometryName(const std::string& name) {
    static const char* const names[] = {
        "ip", "ig", "input",  "inputGeometry",  "inputPolymesh", "inMesh",
        "op", "og", "output", "outputGeometry", "out",           "outMesh"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool carriesGeometry(const Plug& plug) {
    const torvel::AttrInfo& info = scene()->info(plug);
    return info.is(torvel::kGeometryIn | torvel::kGeometryOut) ||
           (info.is(torvel::kOpaque) && isGeometryName(info.longName));
}

/// Plugs at the other end of what takes geometry into the node or out of it. Several pieces run
/// side by side through one deformer, told apart by the first index.
std::vector<Plug> beyondNode(const Plug& arrived, Way way) {
    std::vector<Plug> ends;
    const bool in = way == Way::In;
    for (const Scene::Connection& link :
         in ? scene()->incoming(arrived.node) : scene()->outgoing(arrived.node)) {
        const Plug& near = in ? link.target : link.source;
        const bool otherPiece =
            near.index[0] >= 0 && arrived.index[0] >= 0 && near.index[0] != arrived.index[0];
        if (carriesGeometry(near) && !otherPiece)
            ends.push_back(in ? link.source : link.target);
    }
    return ends;
}

/// The shape that these plugs belong to, or the first one behind the deformers they belong to; null
/// when there is none.
NodeHandle shapeBehind(const std::vector<Plug>& ends, Way way, std::vector<NodeHandle>& seen) {
    for (const Plug& end : ends)
        if (const Node* node = sceneNode(end.node); node && node->type->is(torvel::kShapeType))
            return node->self;
    for (const Plug& end : ends) {
        if (!sceneNode(end.node) || std::find(seen.begin(), seen.end(), end.node) != seen.end())
            continue;
        seen.push_back(end.node);
        if (const NodeHandle shape = shapeBehind(beyondNode(end, way), way, seen); !shape.isNull())
            return shape;
    }
    return {};
}

NodeHandle shapeAt(const Plug& plug, Way way) {
    std::vector<NodeHandle> seen{plug.node};
    if (way == Way::Out)
        return shapeBehind(scene()->targets(plug), way, seen);
    const Plug source = scene()->effectiveSource(plug);
    return source.isNull() ? NodeHandle() : shapeBehind({source}, way, seen);
}

/// What connects at element `logical`: for inputs the geometry child of the compound element.
Plug geometryPlug(const Plug& element, Way way) {
    if (way == Way::Out)
        return element;
    const torvel::AttrInfo& info = scene()->info(element);
    const Node* node = sceneNode(element.node);
    for (const torvel::AttrIndex child : info.children)
        if (node->attr(child).longName == "inputGeometry")
            return scene()->child(element, node->attr(child).childNumber);
    return element;
}

MStatus collectShapes(const MObject& deformer, const char* attribute, Way way,
                      MObjectArray& objects) {
    objects.clear();
    const Node* node = sceneNode(deformer);
    const Plug array = node ? scene()->findPlug(node->self, attribute) : Plug();
    if (array.isNull())
        return MStatus::kInvalidParameter;
    for (const std::int32_t logical : scene()->elementIndices(array)) {
        const NodeHandle shape = shapeAt(geometryPlug(scene()->element(array, logical), way), way);
        if (!shape.isNull())
            objects.append(MApiBridge::object(shape));
    }
    return MStatus::kSuccess;
}

}  // namespace

// --- MFnGeometryFilter ---------------------------------------------------------------------------

MFnGeometryFilter::MFnGeometryFilter() = default;

MFnGeometryFilter::MFnGeometryFilter(MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kGeometryFilt).statusCode());
}

MFnGeometryFilter::MFnGeometryFilter(const MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kGeometryFilt).statusCode());
}

MFnGeometryFilter::~MFnGeometryFilter() = default;

MFn::Type MFnGeometryFilter::type() const {
    return MFn::kGeometryFilt;
}

MStatus MFnGeometryFilter::getInputGeometry(MObjectArray& objects) const {
    return collectShapes(fObject, "input", Way::In, objects);
}

MStatus MFnGeometryFilter::getOutputGeometry(MObjectArray& objects) const {
    return collectShapes(fObject, "outputGeometry", Way::Out, objects);
}

// --- MFnSkinCluster ------------------------------------------------------------------------------

MFnSkinCluster::MFnSkinCluster() = default;

MFnSkinCluster::MFnSkinCluster(MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kSkinClusterFilter).statusCode());
}

MFnSkinCluster::MFnSkinCluster(const MObject& object, MStatus* ReturnStatus) {
    report(ReturnStatus, attach(object, MFn::kSkinClusterFilter).statusCode());
}

MFnSkinCluster::~MFnSkinCluster() = default;

MFn::Type MFnSkinCluster::type() const {
    return MFn::kSkinClusterFilter;
}

unsigned int MFnSkinCluster::influenceObjects(MDagPathArray& paths, MStatus* ReturnStatus) const {
    paths.clear();
    const Node* node = sceneNode(fObject);
    const Plug matrix = node ? scene()->findPlug(node->self, "matrix") : Plug();
    if (!check(ReturnStatus, !matrix.isNull()))
        return 0;
    const std::size_t count = scene()->elementCount(matrix);
    for (std::size_t i = 0; i < count; ++i) {
        const Plug source = scene()->source(scene()->elementAt(matrix, i));
        if (!dagNode(source.node))
            continue;
        // worldMatrix[i] of instance number i.
        const int instance = source.index[0] > 0 ? source.index[0] : 0;
        paths.append(MApiBridge::path(source.node, instance));
    }
    return paths.length();
}

MAYA_API_NAMESPACE_CLOSE
