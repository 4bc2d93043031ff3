// ikHandle, ikEffector and the solvers as data. The solving is in its own file.
#include "nodes/core/fn_numbers.h"
#include "nodes/ik/handle.h"
#include "nodes/ik/solve.h"
#include "nodes/transform/attrs.h"

namespace torvel {
namespace {

constexpr const char* kSolved = "ikSolution";

constexpr AttrRow kIkHandleAttrs[] = {
    // What the solver has to be asked for; of no use to anybody but the graph.
    attrRow("ikSolution", "iksn", AttrType::Bool, 0.0,
            kOutput | kOpaque | kHidden | kNotStored | kNotConnectable),
    attrRow("startJoint", "hsj", AttrType::Message, 0.0, 0, kSolved),
    attrRow("endEffector", "hee", AttrType::Message, 0.0, 0, kSolved),
    attrRow("ikSolver", "hsv", AttrType::Message, 0.0, 0, kSolved),
    compoundRow("poleVector", "pv", AttrType::Double3, kKeyable, kSolved),
    under("poleVector", attrRow("poleVectorX", "pvx", AttrType::Distance, 0.0, kKeyable)),
    under("poleVector", attrRow("poleVectorY", "pvy", AttrType::Distance, 0.0, kKeyable)),
    under("poleVector", attrRow("poleVectorZ", "pvz", AttrType::Distance, 1.0, kKeyable)),
    attrRow("twist", "twi", AttrType::Angle, 0.0, kKeyable, kSolved),
    attrRow("roll", "rol", AttrType::Angle, 0.0, kKeyable),
    attrRow("offset", "off", AttrType::Double, 0.0, kKeyable),
    attrRow("snapEnable", "sne", AttrType::Bool, 1.0),
    enumRow("stickiness", "sti", "off=0:on=1:superSticky=2"),
    within(attrRow("ikBlend", "ikb", AttrType::Double, 1.0, kKeyable, kSolved), 0.0, 1.0),
    attrRow("solverEnable", "sve", AttrType::Bool, 1.0, 0, kSolved),
    attrRow("ikFkManipulation", "ifm", AttrType::Bool),
    attrRow("priority", "pri", AttrType::Short, 1.0),
    attrRow("weight", "hw", AttrType::Double, 1.0),
    attrRow("poWeight", "hpw", AttrType::Double, 1.0),
    attrRow("rootOnCurve", "roc", AttrType::Bool),
    attrRow("rootTwistMode", "rtm", AttrType::Bool),
    enumRow("twistType", "twt", "linear=0:easeIn=1:easeOut=2:easeInOut=3"),
    attrRow("splineIkOldStyle", "sos", AttrType::Bool),
    attrRow("inCurve", "ic", AttrType::NurbsCurve),
    attrRow("dTwistControlEnable", "dtce", AttrType::Bool),
    enumRow("dWorldUpType", "dwut",
            "Scene Up=0:Object Up=1:Object Up (Start/End)=2:Object Rotation Up=3:Object Rotation "
            "Up (Start/End)=4:"
            "Vector=5:Vector (Start/End)=6:Relative=7"),
    enumRow("dForwardAxis", "dfa",
            "Positive X=0:Negative X=1:Positive Y=2:Negative Y=3:Positive Z=4:Negative Z=5"),
    enumRow("dWorldUpAxis", "dwua",
            "Positive Y=0:Negative Y=1:Closest Y=2:Positive Z=3:Negative Z=4:Closest Z=5:Positive "
            "X=6:Negative X=7:"
            "Closest X=8"),
    compoundRow("dWorldUpVector", "dwuv", AttrType::Double3),
    under("dWorldUpVector", attrRow("dWorldUpVectorX", "dwux", AttrType::Double)),
    under("dWorldUpVector", attrRow("dWorldUpVectorY", "dwuy", AttrType::Double, 1.0)),
    under("dWorldUpVector", attrRow("dWorldUpVectorZ", "dwuz", AttrType::Double)),
    compoundRow("dWorldUpVectorEnd", "dwve", AttrType::Double3),
    under("dWorldUpVectorEnd", attrRow("dWorldUpVectorEndX", "dwvx", AttrType::Double)),
    under("dWorldUpVectorEnd", attrRow("dWorldUpVectorEndY", "dwvy", AttrType::Double, 1.0)),
    under("dWorldUpVectorEnd", attrRow("dWorldUpVectorEndZ", "dwvz", AttrType::Double)),
    attrRow("dWorldUpMatrix", "dwum", AttrType::Matrix),
    attrRow("dWorldUpMatrixEnd", "dwue", AttrType::Matrix),
};

constexpr AffectRow kIkHandleAffects[] = {{"worldMatrix", kSolved}, {"parentMatrix", kSolved}};

constexpr AttrRow kIkEffectorAttrs[] = {
    attrRow("handlePath", "hp", AttrType::Message, 0.0, kNotStored),
    attrRow("hideDisplay", "hd", AttrType::Bool),
};

constexpr AttrRow kIkSolverAttrs[] = {
    attrRow("maxIterations", "mi", AttrType::Short, 10.0),
    attrRow("tolerance", "tol", AttrType::Double, 1e-5),
};

constexpr AttrRow kIkSystemAttrs[] = {
    attrRow("ikSolver", "sol", AttrType::Message, 0.0, kArray | kNextAvailable),
    attrRow("globalSnap", "gsn", AttrType::Bool, 1.0),
    attrRow("globalSolve", "gsv", AttrType::Bool, 1.0),
};

constexpr TypeAttrs kIkHandle("ikHandle", kTransform, kIkHandleAttrs, kIkHandleAffects);
constexpr TypeAttrs kIkEffector("ikEffector", kTransform, kIkEffectorAttrs);
constexpr TypeAttrs kIkSolver("ikSolver", kDependNode, kIkSolverAttrs);
constexpr TypeAttrs kIkRPsolver("ikRPsolver", kIkSolver);
constexpr TypeAttrs kIkSCsolver("ikSCsolver", kIkSolver);
constexpr TypeAttrs kIkSplineSolver("ikSplineSolver", kIkSolver);
constexpr TypeAttrs kIkSystem("ikSystem", kDependNode, kIkSystemAttrs);

constexpr NodeTypeRow ikHandleRow() {
    NodeTypeRow row = typeRow(kIkHandle, fn::kIkHandle, "kIkHandle", 0, evaluateIkHandle);
    row.declareWrites = declareIkHandle;
    return row;
}

constexpr NodeTypeRow kTypes[] = {
    ikHandleRow(),
    typeRow(kIkEffector, fn::kIkEffector, "kIkEffector"),
    typeRow(kIkSolver, fn::kIkSolver, "kIkSolver", kAbstractType),
    typeRow(kIkRPsolver, fn::kIkSolver, "kRPsolver"),
    typeRow(kIkSCsolver, fn::kIkSolver, "kSCsolver"),
    typeRow(kIkSplineSolver, fn::kIkSolver, "kSplineSolver"),  // kept, not evaluated
    typeRow(kIkSystem, fn::kDependencyNode, "kIkSystem", kUniqueType),
};

}  // namespace

const IkAttrs& ikAttrs() {
    static constexpr IkAttrs attrs{kIkHandle["ikSolution"],  kIkHandle["startJoint"],
                                   kIkHandle["endEffector"], kIkHandle["ikSolver"],
                                   kIkHandle["poleVector"],  kIkHandle["twist"],
                                   kIkHandle["ikBlend"],     kIkHandle["solverEnable"],
                                   kJoint["fkRotate"],       kIkSystem["globalSolve"]};
    return attrs;
}

TypeRows ikTypes() {
    return family(kTypes);
}

}  // namespace torvel
