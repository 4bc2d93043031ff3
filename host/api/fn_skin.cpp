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

/// Next plug away from the deformer, null at a dead end. A plug that feeds several is followed to the first that ends in a
/// shape or is no shape's own copy.
Plug beyond(const Plug& plug, Way way)
{
    if (way == Way::In)
        return scene()->effectiveSource(plug);
    const std::vector<Plug>& targets = scene()->targets(plug);
    return targets.empty() ? Plug() : targets.front();
}

/// The attribute through which a node hands on what arrives at `plug` (or, inwards, takes what leaves there).
Plug through(const Plug& plug, Way way)
{
    const Node* node = sceneNode(plug.node);
    const std::uint32_t wanted = way == Way::In ? torvel::kGeometryIn : torvel::kGeometryOut;
    Plug fallback;
    for (torvel::AttrIndex i = 0; node && i < node->attrCount(); ++i) {
        const torvel::AttrInfo& info = node->attr(i);
        if (!info.is(wanted))
            continue;
        const Plug here = scene()->findPlug(node->self, info.longName);
        if (here.isNull())
            continue;
        // Several pieces of geometry run side by side through one deformer, by index.
        const Plug same = info.arrayDepth > 0 && plug.index[0] >= 0 ? scene()->element(here, plug.index[0]) : here;
        if (!beyond(same, way).isNull())
            return same;
        fallback = same;
    }
    return fallback;
}

/// Walks away from a plug of the deformer to a shape; null when none is reached.
NodeHandle shapeAt(Plug plug, Way way)
{
    // A chain that comes back to itself has to end, too.
    for (int steps = 0; steps < 1000; ++steps) {
        plug = beyond(plug, way);
        const Node* node = sceneNode(plug.node);
        if (!node)
            return {};
        if (node->type->is(torvel::kShapeType))
            return node->self;
        plug = through(plug, way);
    }
    return {};
}

/// What connects at element `logical`: for inputs the geometry child of the compound element.
Plug geometryPlug(const Plug& element, Way way)
{
    if (way == Way::Out)
        return element;
    const torvel::AttrInfo& info = scene()->info(element);
    const Node* node = sceneNode(element.node);
    for (const torvel::AttrIndex child : info.children)
        if (node->attr(child).longName == "inputGeometry")
            return scene()->child(element, node->attr(child).childNumber);
    return element;
}

MStatus collectShapes(const MObject& deformer, const char* attribute, Way way, MObjectArray& objects)
{
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

// --- MFnGeometryFilter -----------------------------------------------------------------------------------------------

MFnGeometryFilter::MFnGeometryFilter() = default;

MFnGeometryFilter::MFnGeometryFilter(MObject& object, MStatus* ReturnStatus)
{
    report(ReturnStatus, attach(object, MFn::kGeometryFilt).statusCode());
}

MFnGeometryFilter::MFnGeometryFilter(const MObject& object, MStatus* ReturnStatus)
{
    report(ReturnStatus, attach(object, MFn::kGeometryFilt).statusCode());
}

MFnGeometryFilter::~MFnGeometryFilter() = default;

MFn::Type MFnGeometryFilter::type() const { return MFn::kGeometryFilt; }

MStatus MFnGeometryFilter::getInputGeometry(MObjectArray& objects) const
{
    return collectShapes(fObject, "input", Way::In, objects);
}

MStatus MFnGeometryFilter::getOutputGeometry(MObjectArray& objects) const
{
    return collectShapes(fObject, "outputGeometry", Way::Out, objects);
}

// --- MFnSkinCluster --------------------------------------------------------------------------------------------------

MFnSkinCluster::MFnSkinCluster() = default;

MFnSkinCluster::MFnSkinCluster(MObject& object, MStatus* ReturnStatus)
{
    report(ReturnStatus, attach(object, MFn::kSkinClusterFilter).statusCode());
}

MFnSkinCluster::MFnSkinCluster(const MObject& object, MStatus* ReturnStatus)
{
    report(ReturnStatus, attach(object, MFn::kSkinClusterFilter).statusCode());
}

MFnSkinCluster::~MFnSkinCluster() = default;

MFn::Type MFnSkinCluster::type() const { return MFn::kSkinClusterFilter; }

unsigned int MFnSkinCluster::influenceObjects(MDagPathArray& paths, MStatus* ReturnStatus) const
{
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
