// The constraints as data. In every `target` the children that a target transform feeds stand
// before the weight, which the constraint itself feeds: walks look for the driver among the first
// connected children.
#include "nodes/constraint/evaluate.h"
#include "nodes/constraint/visit.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/transform/attrs.h"
#include "nodes/transform/rotation.h"

namespace torvel {
namespace {

constexpr const char* kMoves = "constraintTranslate";
constexpr const char* kTurns = "constraintRotate";
constexpr const char* kMovesAndTurns = "constraintTranslate constraintRotate";
constexpr const char* kScales = "constraintScale";
constexpr const char* kInterpolations = "No Flip=0:Average=1:Shortest=2:Longest=3:Cache=4";

// One child of `target`.
constexpr AttrRow moveOf(const char* longName, const char* shortName) {
    return under("target", vectorRow(longName, shortName, AttrType::Distance));
}
constexpr AttrRow turnOf(const char* longName, const char* shortName) {
    return under("target", vectorRow(longName, shortName, AttrType::Angle));
}
constexpr AttrRow scaleOf(const char* longName, const char* shortName) {
    return under("target", vectorRow(longName, shortName, AttrType::Double, 1.0));
}
constexpr AttrRow orderOf(const char* longName, const char* shortName) {
    return under("target", enumRow(longName, shortName, kRotateOrderNames));
}
constexpr AttrRow parentMatrixOf(const char* longName, const char* shortName) {
    return under("target", attrRow(longName, shortName, AttrType::Matrix));
}
constexpr AttrRow kTargetWeight =
    under("target", within(attrRow("targetWeight", "tw", AttrType::Double, 1.0), 0.0));

constexpr AttrRow targets(const char* affects) {
    return compoundRow("target", "tg", AttrType::Compound, kArray, affects);
}
constexpr AttrRow parentInverse(const char* affects) {
    return attrRow("constraintParentInverseMatrix", "cpim", AttrType::Matrix, 0.0, 0, affects);
}
constexpr AttrRow orderRow(const char* affects) {
    return enumRow("constraintRotateOrder", "cro", kRotateOrderNames, 0.0, 0, affects);
}
constexpr AttrRow move(const char* longName, const char* shortName, const char* affects) {
    return vectorRow(longName, shortName, AttrType::Distance, 0.0, 0, affects);
}
constexpr AttrRow turn(const char* longName, const char* shortName, const char* affects) {
    return vectorRow(longName, shortName, AttrType::Angle, 0.0, 0, affects);
}
constexpr AttrRow inverseScale(const char* affects) {
    return vectorRow("inverseScale", "is", AttrType::Double, 1.0, 0, affects);
}
constexpr AttrRow kTranslateOut =
    vectorRow("constraintTranslate", "ct", AttrType::Distance, 0.0, kComputedOutput);
constexpr AttrRow kRotateOut =
    vectorRow("constraintRotate", "cr", AttrType::Angle, 0.0, kComputedOutput);
constexpr AttrRow kScaleOut =
    vectorRow("constraintScale", "cs", AttrType::Double, 1.0, kComputedOutput);

constexpr AttrRow axisPart(const char* parent, const char* longName, const char* shortName,
                           double value = 0.0) {
    return under(parent, attrRow(longName, shortName, AttrType::Double, value));
}

constexpr AttrRow kConstraintAttrs[] = {
    attrRow("enableRestPosition", "erp", AttrType::Bool),
    attrRow("lockOutput", "lo", AttrType::Bool),
};

// Each input reaches both outputs: they are computed together.
constexpr AttrRow kParentRows[] = {
    targets(kMovesAndTurns),
    moveOf("targetTranslate", "tt"),
    moveOf("targetRotatePivot", "trp"),
    moveOf("targetRotateTranslate", "trt"),
    turnOf("targetRotate", "tr"),
    orderOf("targetRotateOrder", "tro"),
    turnOf("targetJointOrient", "tjo"),
    scaleOf("targetScale", "ts"),
    under("target", attrRow("targetScaleCompensate", "tsc", AttrType::Bool)),
    scaleOf("targetInverseScale", "tis"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    moveOf("targetOffsetTranslate", "tot"),
    turnOf("targetOffsetRotate", "tor"),
    parentInverse(kMovesAndTurns),
    orderRow(kMovesAndTurns),
    turn("constraintJointOrient", "cjo", kMovesAndTurns),
    move("constraintRotatePivot", "crp", kMovesAndTurns),
    move("constraintRotateTranslate", "crt", kMovesAndTurns),
    enumRow("interpType", "int", kInterpolations, 1.0, 0, kMovesAndTurns),
    attrRow("interpCache", "ic", AttrType::Bool, 0.0, 0, kMovesAndTurns),
    turn("rotationDecompositionTarget", "rdt", kMovesAndTurns),
    turn("lastTargetRotate", "lr", kMovesAndTurns),
    move("restTranslate", "rst", kMovesAndTurns),
    turn("restRotate", "rsrr", kMovesAndTurns),
    kTranslateOut,
    kRotateOut,
};
constexpr AffectRow kParentAffects[] = {{"enableRestPosition", kMovesAndTurns}};

constexpr AttrRow kPointRows[] = {
    targets(kMoves),
    moveOf("targetTranslate", "tt"),
    moveOf("targetRotatePivot", "trp"),
    moveOf("targetRotateTranslate", "trt"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    parentInverse(kMoves),
    move("constraintRotatePivot", "crp", kMoves),
    move("constraintRotateTranslate", "crt", kMoves),
    attrRow("constraintOffsetPolarity", "cop", AttrType::Bool, 0.0, 0, kMoves),
    move("offset", "o", kMoves),
    move("restTranslate", "rst", kMoves),
    kTranslateOut,
};
constexpr AffectRow kPointAffects[] = {{"enableRestPosition", kMoves}};

constexpr AttrRow kOrientRows[] = {
    targets(kTurns),
    turnOf("targetRotate", "tr"),
    orderOf("targetRotateOrder", "tro"),
    turnOf("targetJointOrient", "tjo"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    parentInverse(kTurns),
    orderRow(kTurns),
    turn("constraintJointOrient", "cjo", kTurns),
    inverseScale(kTurns),
    turn("offset", "o", kTurns),
    enumRow("interpType", "int", kInterpolations, 1.0, 0, kTurns),
    attrRow("interpCache", "ic", AttrType::Bool),
    turn("rotationDecompositionTarget", "rdt", kTurns),
    turn("lastTargetRotate", "lr", kTurns),
    turn("restRotate", "rsrr", kTurns),
    kRotateOut,
};
constexpr AffectRow kTurnAffects[] = {{"enableRestPosition", kTurns}};

constexpr AttrRow kScaleRows[] = {
    targets(kScales),
    scaleOf("targetScale", "ts"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    parentInverse(kScales),
    attrRow("constraintScaleCompensate", "tsc", AttrType::Bool, 0.0, 0, kScales),
    vectorRow("offset", "o", AttrType::Double, 1.0, 0, kScales),
    vectorRow("restScale", "rst", AttrType::Double, 1.0, 0, kScales),
    kScaleOut,
};
constexpr AffectRow kScaleAffects[] = {{"enableRestPosition", kScales}};

constexpr AttrRow kAimRows[] = {
    targets(kTurns),
    moveOf("targetTranslate", "tt"),
    moveOf("targetRotatePivot", "trp"),
    moveOf("targetRotateTranslate", "trt"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    move("constraintTranslate", "ct", kTurns),
    parentInverse(kTurns),
    move("constraintRotatePivot", "crp", kTurns),
    move("constraintRotateTranslate", "crt", kTurns),
    orderRow(kTurns),
    turn("constraintJointOrient", "cjo", kTurns),
    inverseScale(kTurns),
    compoundRow("aimVector", "a", AttrType::Double3, 0, kTurns),
    axisPart("aimVector", "aimVectorX", "ax", 1.0),
    axisPart("aimVector", "aimVectorY", "ay"),
    axisPart("aimVector", "aimVectorZ", "az"),
    compoundRow("upVector", "u", AttrType::Double3, 0, kTurns),
    axisPart("upVector", "upVectorX", "ux"),
    axisPart("upVector", "upVectorY", "uy", 1.0),
    axisPart("upVector", "upVectorZ", "uz"),
    compoundRow("worldUpVector", "wu", AttrType::Double3, 0, kTurns),
    axisPart("worldUpVector", "worldUpVectorX", "wux"),
    axisPart("worldUpVector", "worldUpVectorY", "wuy", 1.0),
    axisPart("worldUpVector", "worldUpVectorZ", "wuz"),
    attrRow("worldUpMatrix", "wum", AttrType::Matrix, 0.0, 0, kTurns),
    enumRow("worldUpType", "wut", "Scene Up=0:Object Up=1:Object Rotation Up=2:Vector=3:None=4",
            3.0, 0, kTurns),
    turn("offset", "o", kTurns),
    turn("restRotate", "rsrr", kTurns),
    kRotateOut,
};

constexpr AttrRow kPoleAttrs[] = {
    targets(kMoves),
    moveOf("targetTranslate", "tt"),
    moveOf("targetRotatePivot", "trp"),
    moveOf("targetRotateTranslate", "trt"),
    parentMatrixOf("targetParentMatrix", "tpm"),
    kTargetWeight,
    parentInverse(kMoves),
    attrRow("pivotSpace", "ps", AttrType::Matrix, 0.0, 0, kMoves),
    move("constraintRotatePivot", "crp", kMoves),
    move("constraintRotateTranslate", "crt", kMoves),
    move("offset", "o", kMoves),
    move("restTranslate", "rst", kMoves),
    kTranslateOut,
};

constexpr AttrRow kGeometryAttrs[] = {
    targets(kMoves),
    under("target", attrRow("targetGeometry", "tgm", AttrType::Mesh)),
    kTargetWeight,
    parentInverse(kMoves),
    move("constraintRotatePivot", "crp", kMoves),
    move("constraintRotateTranslate", "crt", kMoves),
    kTranslateOut,
};

constexpr AttrRow kNormalAttrs[] = {
    targets(kTurns),  under("target", attrRow("targetGeometry", "tgm", AttrType::Mesh)),
    kTargetWeight,    parentInverse(kTurns),
    orderRow(kTurns), turn("constraintJointOrient", "cjo", kTurns),
    kRotateOut,
};

constexpr TypeAttrs kConstraint("constraint", kTransform, kConstraintAttrs);
constexpr TypeAttrs kParentConstraint("parentConstraint", kConstraint, kParentRows, kParentAffects);
constexpr TypeAttrs kPointConstraint("pointConstraint", kConstraint, kPointRows, kPointAffects);
constexpr TypeAttrs kOrientConstraint("orientConstraint", kConstraint, kOrientRows, kTurnAffects);
constexpr TypeAttrs kAimConstraint("aimConstraint", kConstraint, kAimRows, kTurnAffects);
constexpr TypeAttrs kScaleConstraint("scaleConstraint", kConstraint, kScaleRows, kScaleAffects);
constexpr TypeAttrs kPoleVectorConstraint("poleVectorConstraint", kConstraint, kPoleAttrs,
                                          kPointAffects);
constexpr TypeAttrs kGeometryConstraint("geometryConstraint", kConstraint, kGeometryAttrs);
constexpr TypeAttrs kNormalConstraint("normalConstraint", kConstraint, kNormalAttrs);
constexpr TypeAttrs kTangentConstraint("tangentConstraint", kConstraint, kNormalAttrs);

constexpr NodeTypeRow kind(const TypeAttrs& type, int fnNumber, const char* fnName,
                           EvaluateFunction evaluate = nullptr) {
    return typeRow(type, fnNumber, fnName, kConstraintType, evaluate);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kConstraint, fn::kConstraint, "kConstraint", kConstraintType | kAbstractType),
    kind(kParentConstraint, fn::kParentConstraint, "kParentConstraint", evaluateParentConstraint),
    kind(kPointConstraint, fn::kPointConstraint, "kPointConstraint", evaluatePointConstraint),
    kind(kOrientConstraint, fn::kOrientConstraint, "kOrientConstraint", evaluateOrientConstraint),
    kind(kAimConstraint, fn::kAimConstraint, "kAimConstraint", evaluateAimConstraint),
    kind(kScaleConstraint, fn::kScaleConstraint, "kScaleConstraint", evaluateScaleConstraint),
    kind(kPoleVectorConstraint, fn::kPoleVectorConstraint, "kPoleVectorConstraint",
         evaluatePoleVectorConstraint),
    kind(kGeometryConstraint, fn::kGeometryConstraint, "kGeometryConstraint"),
    kind(kNormalConstraint, fn::kNormalConstraint, "kNormalConstraint"),
    kind(kTangentConstraint, fn::kTangentConstraint, "kTangentConstraint"),
};

// kNoAttr for what only other kinds have; a name that none of them has is a fault.
constexpr AttrIndex positionIfAny(const TypeAttrs& type, const char* name) {
    const TypeAttrs* const kinds[] = {&kParentConstraint, &kPointConstraint,
                                      &kOrientConstraint, &kAimConstraint,
                                      &kScaleConstraint,  &kPoleVectorConstraint};
    bool known = false;
    for (const TypeAttrs* kind : kinds)
        known = known || kind->find(name) != kNoAttr;
    if (!known)
        noSuchAttribute(type.type, name);
    return type.find(name);
}

constexpr ConstraintAttrs positionsOf(const TypeAttrs& type) {
    ConstraintAttrs at{};
    at.target = positionIfAny(type, "target");
    at.weight = positionIfAny(type, "targetWeight");
    at.t = positionIfAny(type, "targetTranslate");
    at.rp = positionIfAny(type, "targetRotatePivot");
    at.rpt = positionIfAny(type, "targetRotateTranslate");
    at.r = positionIfAny(type, "targetRotate");
    at.ro = positionIfAny(type, "targetRotateOrder");
    at.jo = positionIfAny(type, "targetJointOrient");
    at.s = positionIfAny(type, "targetScale");
    at.ssc = positionIfAny(type, "targetScaleCompensate");
    at.is = positionIfAny(type, "targetInverseScale");
    at.pm = positionIfAny(type, "targetParentMatrix");
    at.tot = positionIfAny(type, "targetOffsetTranslate");
    at.tor = positionIfAny(type, "targetOffsetRotate");
    at.cro = positionIfAny(type, "constraintRotateOrder");
    at.cpim = positionIfAny(type, "constraintParentInverseMatrix");
    at.crp = positionIfAny(type, "constraintRotatePivot");
    at.crt = positionIfAny(type, "constraintRotateTranslate");
    at.cjo = positionIfAny(type, "constraintJointOrient");
    at.offset = positionIfAny(type, "offset");
    at.polarity = positionIfAny(type, "constraintOffsetPolarity");
    at.erp = positionIfAny(type, "enableRestPosition");
    at.interp = positionIfAny(type, "interpType");
    at.last = positionIfAny(type, "lastTargetRotate");
    at.restT = positionIfAny(type, "restTranslate");
    at.restR = positionIfAny(type, "restRotate");
    at.restS = positionIfAny(type, "restScale");
    at.outT = positionIfAny(type, "constraintTranslate");
    at.outR = positionIfAny(type, "constraintRotate");
    at.outS = positionIfAny(type, "constraintScale");
    at.compensate = positionIfAny(type, "constraintScaleCompensate");
    at.pivotSpace = positionIfAny(type, "pivotSpace");
    at.aim = positionIfAny(type, "aimVector");
    at.up = positionIfAny(type, "upVector");
    at.worldUp = positionIfAny(type, "worldUpVector");
    at.upMatrix = positionIfAny(type, "worldUpMatrix");
    at.upType = positionIfAny(type, "worldUpType");
    return at;
}

}  // namespace

constexpr ConstraintAttrs kParentAttrs = positionsOf(kParentConstraint);
constexpr ConstraintAttrs kPointAttrs = positionsOf(kPointConstraint);
constexpr ConstraintAttrs kOrientAttrs = positionsOf(kOrientConstraint);
constexpr ConstraintAttrs kAimAttrs = positionsOf(kAimConstraint);
constexpr ConstraintAttrs kScaleAttrs = positionsOf(kScaleConstraint);
constexpr ConstraintAttrs kPoleVectorAttrs = positionsOf(kPoleVectorConstraint);

TypeRows constraintTypes() {
    return family(kTypes);
}

}  // namespace torvel
