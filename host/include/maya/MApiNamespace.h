// Declares every class of the API and nothing more. The classes live in a namespace that bears the
// release; the using-directive makes the plain names work. A source that declares one of them on
// its own in the global namespace makes the name ambiguous and does not compile.
#pragma once

#if defined(_WIN32)
#if defined(MAYAHOST_BUILD)
#define MAYA_API_EXPORT __declspec(dllexport)
#else
#define MAYA_API_EXPORT __declspec(dllimport)
#endif
#define MAYA_PLUGIN_EXPORT __declspec(dllexport)
#else
#define MAYA_API_EXPORT __attribute__((visibility("default")))
#define MAYA_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

#define MAYA_API_NAMESPACE_OPEN namespace OpenMaya20240000 {
#define MAYA_API_NAMESPACE_CLOSE }

MAYA_API_NAMESPACE_OPEN

class MArgList;
class MCommandResult;
class MDGModifier;
class MDagModifier;
class MDagPath;
class MDagPathArray;
class MDoubleArray;
class MFn;
class MFnBase;
class MFnDagNode;
class MFnDependencyNode;
class MFnGeometryFilter;
class MFnNurbsCurve;
class MFnPlugin;
class MFnSkinCluster;
class MFnTransform;
class MGlobal;
class MIntArray;
class MItDag;
class MItDependencyGraph;
class MItSelectionList;
class MMatrix;
class MObject;
class MObjectArray;
class MPlug;
class MPlugArray;
class MPoint;
class MPointArray;
class MPxCommand;
class MQtUtil;
class MSelectionList;
class MSpace;
class MStatus;
class MString;
class MStringArray;
class MSyntax;
class MTypeId;
class MUuid;
class MVector;

// The host's side of the opaque members below.
struct MApiBridge;

MAYA_API_NAMESPACE_CLOSE

using namespace OpenMaya20240000;
