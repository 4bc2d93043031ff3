// Holds at compile time what plug-in sources may and may not write. A line that fails here means
// that the headers accept code which a real installation refuses, or the other way round.
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>
#include <maya/MArgList.h>
#include <maya/MCommandResult.h>
#include <maya/MDGModifier.h>
#include <maya/MDagModifier.h>
#include <maya/MDagPath.h>
#include <maya/MDagPathArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MFnBase.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnSkinCluster.h>
#include <maya/MFnTransform.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MItDag.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MItSelectionList.h>
#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>
#include <maya/MTypeId.h>
#include <maya/MTypes.h>
#include <maya/MUuid.h>
#include <maya/MVector.h>

#define MNoVersionString
#define MNoPluginEntry
#include <maya/MFnPlugin.h>

namespace {

template <class...>
using Void = void;

// DETECT(Name, expression over T): Name<T> tells whether the expression compiles.
#define DETECT(Name, ...)             \
    template <class T, class = void>  \
    struct Name : std::false_type {}; \
    template <class T>                \
    struct Name<T, Void<decltype(__VA_ARGS__)>> : std::true_type {};

template <class T>
T& lvalue();

// --- texts

template <class T, class... From>
constexpr bool takesNone() {
    return (!std::is_constructible_v<T, From> && ...);
}

static_assert(!std::is_convertible_v<MString, std::string>);
static_assert(!std::is_convertible_v<MString, const char*>);
static_assert(takesNone<MString, std::string, char, int, double>());
static_assert(std::is_constructible_v<MString, const char*, int>);

DETECT(PlusText, std::declval<T>() + std::string())
DETECT(PlusNull, std::declval<T>() + 0)
DETECT(PlusDouble, std::declval<T>() + 1.0)
DETECT(PlusUnsignedVariable, std::declval<T>() + std::declval<unsigned int>())
DETECT(PointerPlus, "text" + std::declval<T>())
DETECT(EqualsText, std::declval<T>() == std::string())
DETECT(Less, std::declval<T>() < std::declval<T>())
DETECT(CStr, std::declval<T>().c_str())
DETECT(Empty, std::declval<T>().empty())
DETECT(Find, std::declval<T>().find("a"))
DETECT(Subscript, std::declval<T>()[0u])
DETECT(Hash, std::hash<T>()(std::declval<T>()))

static_assert(!PlusText<MString>::value);
static_assert(!PlusNull<MString>::value, "a null pointer and a number are equally good");
static_assert(PlusDouble<MString>::value);
static_assert(PlusUnsignedVariable<MString>::value, "goes through double");
static_assert(PointerPlus<MString>::value);
static_assert(!EqualsText<MString>::value);
static_assert(!Less<MString>::value);
static_assert(!CStr<MString>::value && !Empty<MString>::value && !Find<MString>::value);
static_assert(!Subscript<MString>::value);
static_assert(!Hash<MString>::value);
static_assert(std::is_same_v<decltype(std::declval<const MString&>().length()), unsigned int>);
static_assert(std::is_same_v<decltype(std::declval<const MString&>().numChars()), int>);
static_assert(std::is_same_v<decltype(std::declval<const MString&>().indexW("|")), int>);

// --- status

static_assert(!std::is_convertible_v<bool, MStatus>);
static_assert(!std::is_convertible_v<int, MStatus>);
static_assert(std::is_convertible_v<MStatus::MStatusCode, MStatus>);
static_assert(std::is_convertible_v<MStatus, bool>);
static_assert(std::is_same_v<MS, MStatus>);
static_assert(std::is_same_v<decltype(MStatus() == MS::kSuccess), bool>);

// --- objects

static_assert(!std::is_convertible_v<MObject, bool> && !std::is_constructible_v<bool, MObject>);
static_assert(!std::is_constructible_v<MObject, std::nullptr_t>);
static_assert(!Less<MObject>::value && !Hash<MObject>::value);
static_assert(std::is_same_v<decltype(MObject::kNullObj), MObject>, "not const");
static_assert(std::is_same_v<decltype(std::declval<const MObject&>().apiTypeStr()), const char*>);
static_assert(std::is_same_v<decltype(MFnBase::typeString(MFn::kJoint)), const char*>);
static_assert(!PointerPlus<decltype(std::declval<const MObject&>().apiTypeStr())>::value);

// --- lists

DETECT(Size, std::declval<T>().size())
DETECT(PushBack, std::declval<T>().push_back(std::declval<T>()[0u]))

template <class... List>
constexpr bool arePlainLists() {
    return ((!Size<List>::value && !PushBack<List>::value && !Empty<List>::value &&
             std::is_same_v<decltype(std::declval<const List&>().length()), unsigned int> &&
             std::is_copy_constructible_v<List>)&&...);
}

static_assert(arePlainLists<MObjectArray, MStringArray, MPlugArray, MDagPathArray, MPointArray,
                            MDoubleArray, MIntArray>());
static_assert(!std::is_constructible_v<MObjectArray, std::initializer_list<MObject>>);
static_assert(!std::is_constructible_v<MStringArray, const char*, const char*, const char*>);
static_assert(std::is_constructible_v<MObjectArray, unsigned int>);
static_assert(!std::is_default_constructible_v<MItSelectionList>);

// --- classes that stay where they are made

template <class... T>
constexpr bool stay() {
    return ((!std::is_copy_constructible_v<T> && !std::is_copy_assignable_v<T> &&
             !std::is_move_constructible_v<T> && !std::is_move_assignable_v<T>)&&...);
}

static_assert(
    stay<MFnBase, MFnDependencyNode, MFnDagNode, MFnTransform, MFnNurbsCurve, MFnGeometryFilter,
         MFnSkinCluster, MFnPlugin, MPxCommand, MItDag, MItDependencyGraph, MItSelectionList,
         MDGModifier, MDagModifier, MCommandResult>());
static_assert(std::is_copy_constructible_v<MDagPath> && std::is_copy_constructible_v<MPlug>);

// --- non-const lvalues

static_assert(std::is_constructible_v<MItDependencyGraph, MObject&>);
static_assert(std::is_constructible_v<MItDependencyGraph, MPlug&>);
static_assert(takesNone<MItDependencyGraph, const MObject&, MObject, const MPlug&>());
static_assert(std::is_constructible_v<MFnPlugin, MObject&>);
static_assert(takesNone<MFnPlugin, const MObject&, MObject>());
static_assert(std::is_constructible_v<MFnDagNode, const MObject&>);
static_assert(std::is_constructible_v<MFnDagNode, MObject>);

DETECT(RemoveLvalue, std::declval<T&>().removeChild(lvalue<MObject>()))
DETECT(RemoveConst, std::declval<T&>().removeChild(lvalue<const MObject>()))
DETECT(AddConst, std::declval<T&>().addChild(lvalue<const MObject>()))
static_assert(RemoveLvalue<MFnDagNode>::value && !RemoveConst<MFnDagNode>::value &&
              !AddConst<MFnDagNode>::value);

DETECT(PathWithComponent,
       std::declval<const T&>().getDagPath(0, lvalue<MDagPath>(), lvalue<MObject>()))
DETECT(PathWithoutComponent, std::declval<const T&>().getDagPath(0, lvalue<MDagPath>()))
DETECT(PathWithConstComponent,
       std::declval<const T&>().getDagPath(0, lvalue<MDagPath>(), lvalue<const MObject>()))
static_assert(PathWithComponent<MSelectionList>::value &&
              PathWithoutComponent<MSelectionList>::value);
static_assert(!PathWithConstComponent<MSelectionList>::value);

// --- function sets

DETECT(IsValidWithType, T::isValid(MFn::kJoint))
DETECT(IsValidAlone, std::declval<T>().isValid())
static_assert(IsValidWithType<MFnBase>::value && !IsValidAlone<MFnBase>::value);
static_assert(!IsValidAlone<MFnSkinCluster>::value);

DETECT(FindPlugBool, std::declval<const T&>().findPlug("tx", true))
DETECT(FindPlugAlone, std::declval<const T&>().findPlug("tx"))
DETECT(FindPlugStatus, std::declval<const T&>().findPlug("tx", std::declval<MStatus*>()))
DETECT(FindPlugAll,
       std::declval<const T&>().findPlug(std::declval<MString>(), false, std::declval<MStatus*>()))
static_assert(FindPlugBool<MFnDependencyNode>::value && FindPlugAll<MFnDependencyNode>::value);
static_assert(!FindPlugAlone<MFnDependencyNode>::value &&
              !FindPlugStatus<MFnDependencyNode>::value);

static_assert(std::is_same_v<decltype(std::declval<const MFnNurbsCurve&>().numCVs()), int>);
static_assert(
    std::is_same_v<decltype(std::declval<const MFnDagNode&>().childCount()), unsigned int>);
static_assert(
    std::is_same_v<decltype(std::declval<const MDagPath&>().fullPathName(nullptr)), MString>);

DETECT(StatusByReference, std::declval<const T&>().name(lvalue<MStatus>()))
static_assert(!StatusByReference<MFnDependencyNode>::value);

// --- iterators

DETECT(ConstIsDone, std::declval<const T&>().isDone())
DETECT(ConstCurrent, std::declval<const T&>().currentItem())
DETECT(Begin, std::declval<T&>().begin())
static_assert(!ConstIsDone<MItSelectionList>::value && !ConstIsDone<MItDependencyGraph>::value);
static_assert(ConstIsDone<MItDag>::value);
static_assert(!ConstCurrent<MItDependencyGraph>::value && !ConstCurrent<MItDag>::value);
static_assert(!Begin<MItDag>::value && !Begin<MItDependencyGraph>::value &&
              !Begin<MItSelectionList>::value);
static_assert(!std::is_same_v<MItDag::TraversalType, MItDependencyGraph::Traversal>);
static_assert(std::is_convertible_v<MFn::Type, int> &&
                  std::is_convertible_v<MItDag::TraversalType, int>,
              "plain enums");
static_assert(MItDependencyGraph::kDownstream == 0 && MItDependencyGraph::kUpstream == 1);
static_assert(MItDependencyGraph::kNodeLevel == 0 && MItDependencyGraph::kPlugLevel == 1);

// --- scripts

DETECT(RunForStdText, T::executeCommand("", lvalue<std::string>()))
DETECT(RunForLong, T::executeCommand("", lvalue<long>(), false, false))
DETECT(PythonForResult, T::executePythonCommandStringResult("", lvalue<MString>()))
static_assert(!RunForStdText<MGlobal>::value && !RunForLong<MGlobal>::value &&
              !PythonForResult<MGlobal>::value);
static_assert(
    std::is_same_v<decltype(MGlobal::executePythonCommandStringResult("", false, false)), MString>);
static_assert(std::is_same_v<decltype(MGlobal::executeCommand("", false, false)), MStatus>);
static_assert(
    std::is_same_v<decltype(MGlobal::executeCommand("", lvalue<MStringArray>(), false, false)),
                   MStatus>);

// --- points and vectors

static_assert(std::is_same_v<decltype(MVector() * MVector()), double>);
static_assert(std::is_same_v<decltype(MVector() ^ MVector()), MVector>);
static_assert(std::is_same_v<decltype(MPoint() - MPoint()), MVector>);

// --- commands

static_assert(!std::is_abstract_v<MPxCommand> && std::has_virtual_destructor_v<MPxCommand>);

class Checked : public MPxCommand {
  public:
    MStatus doIt(const MArgList&) override { return MS::kSuccess; }
    MStatus undoIt() override { return MS::kSuccess; }
    MStatus redoIt() override { return MS::kSuccess; }
    bool isUndoable() const override { return true; }
    bool hasSyntax() const override { return true; }
};

static_assert(MAYA_API_VERSION == 20240200 && MAYA_APP_VERSION == 2024);

static_assert(MFn::kInvalid == 0 && MFn::kTransform == 110 && MFn::kAimConstraint == 111 &&
                  MFn::kJoint == 121 && MFn::kOrientConstraint == 239 &&
                  MFn::kPointConstraint == 240 && MFn::kParentConstraint == 242 &&
                  MFn::kMesh == 296 && MFn::kSkinClusterFilter == 687 && MFn::kConstraint == 933,
              "published numbers");
static_assert(MS::kSuccess == 0 && MS::kFailure == 1 && MS::kInvalidParameter == 3 &&
              MS::kEndOfFile == 8);
// A declaration of one's own in the global namespace would name another class.
static_assert(std::is_same_v<MObject, OpenMaya20240000::MObject>);

TEST(Strictness, commandsAreNotUndoableUnlessTheySaySo) {
    MPxCommand plain;
    EXPECT_FALSE(plain.isUndoable());
    EXPECT_FALSE(plain.hasSyntax());
    EXPECT_TRUE(Checked().isUndoable());
}

}  // namespace
