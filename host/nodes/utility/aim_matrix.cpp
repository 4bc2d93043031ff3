// aimMatrix: turns a matrix so that one of its axes points at, or along, something, and a second
// one leans to something else.
#include <Imath/ImathMatrixAlgo.h>

#include "nodes/constraint/math.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/core/quick_node.h"
#include "nodes/utility/rows.h"

namespace torvel {
namespace {

enum { kKeep, kAim, kAlign };

constexpr const char* kOut = "outputMatrix";

constexpr AttrRow part(const char* parent, const char* longName, const char* shortName,
                       double value = 0.0) {
    return under(parent, attrRow(longName, shortName, AttrType::Double, value, kKeyable));
}

constexpr AttrRow vectorOf(const char* parent, const char* longName, const char* shortName) {
    return under(parent, compoundRow(longName, shortName, AttrType::Double3, kKeyable, kOut));
}

constexpr AttrRow kAimMatrixAttrs[] = {
    within(inputRow("envelope", "env", kOut, 1.0), 0.0, 1.0),
    attrRow("inputMatrix", "imat", AttrType::Matrix, 0.0, 0, kOut),
    compoundRow("primary", "pri", AttrType::Compound, 0, kOut),
    vectorOf("primary", "primaryInputAxis", "pia"),
    part("primaryInputAxis", "primaryInputAxisX", "piax", 1.0),
    part("primaryInputAxis", "primaryInputAxisY", "piay"),
    part("primaryInputAxis", "primaryInputAxisZ", "piaz"),
    under("primary", enumRow("primaryMode", "pmd", "Lock Axis:Aim:Align", kAim, kKeyable, kOut)),
    vectorOf("primary", "primaryTargetVector", "ptv"),
    part("primaryTargetVector", "primaryTargetVectorX", "ptvx"),
    part("primaryTargetVector", "primaryTargetVectorY", "ptvy"),
    part("primaryTargetVector", "primaryTargetVectorZ", "ptvz"),
    under("primary", attrRow("primaryTargetMatrix", "ptm", AttrType::Matrix, 0.0, 0, kOut)),
    compoundRow("secondary", "sec", AttrType::Compound, 0, kOut),
    vectorOf("secondary", "secondaryInputAxis", "sia"),
    part("secondaryInputAxis", "secondaryInputAxisX", "siax"),
    part("secondaryInputAxis", "secondaryInputAxisY", "siay", 1.0),
    part("secondaryInputAxis", "secondaryInputAxisZ", "siaz"),
    under("secondary", enumRow("secondaryMode", "smd", "None:Aim:Align", kKeep, kKeyable, kOut)),
    vectorOf("secondary", "secondaryTargetVector", "stv"),
    part("secondaryTargetVector", "secondaryTargetVectorX", "stvx"),
    part("secondaryTargetVector", "secondaryTargetVectorY", "stvy"),
    part("secondaryTargetVector", "secondaryTargetVectorZ", "stvz"),
    under("secondary", attrRow("secondaryTargetMatrix", "stm", AttrType::Matrix, 0.0, 0, kOut)),
    attrRow("outputMatrix", "omat", AttrType::Matrix, 0.0, kComputedOutput),
};
constexpr TypeAttrs kAimMatrix("aimMatrix", kDependNode, kAimMatrixAttrs);

// Where an axis is to go: at the target point, along the target direction, or where it is.
V3d wanted(int mode, const V3d& target, const M44d& space, const V3d& own, const V3d& present) {
    V3d direction = present;
    if (mode == kAim)
        direction = target * space - own;
    else if (mode == kAlign)
        space.multDirMatrix(target, direction);
    return direction.length2() > 0.0 ? direction : present;  // nothing to point at
}

// The rotation with the first axis along `direction`; the second one leans to `lean`, or stays as
// near as possible to where it was.
M44d turned(const M44d& rotation, const AimFrame& frame, const V3d& direction, const V3d* lean) {
    M44d out;
    if (lean && aimRotation(frame, direction, *lean, out))
        return out;
    V3d present;
    rotation.multDirMatrix(frame.aimVector, present);
    return rotation * smallestRotation(present, direction);
}

void aimMatrix(Evaluation& e) {
    constexpr const TypeAttrs& at = kAimMatrix;
    constexpr AttrIndex kEnvelope = at["envelope"], kInput = at["inputMatrix"],
                        kAxis = at["primaryInputAxis"], kMode = at["primaryMode"],
                        kTarget = at["primaryTargetVector"], kSpace = at["primaryTargetMatrix"],
                        kUpAxis = at["secondaryInputAxis"], kUpMode = at["secondaryMode"],
                        kUpTarget = at["secondaryTargetVector"],
                        kUpSpace = at["secondaryTargetMatrix"], kResult = at["outputMatrix"];
    QuickNode node(e);
    M44d out = node.matrix(kInput);
    const V3d own = translationOf(out);
    const M44d rotation = rotationPart(out);
    const AimFrame frame{node.vec3(kAxis), node.vec3(kUpAxis)};
    const double envelope = node.number(kEnvelope);
    if (envelope <= 0.0 || !(frame.aimVector.length2() > 0.0))
        return node.set(kResult, out);
    V3d present, lean;
    rotation.multDirMatrix(frame.aimVector, present);
    rotation.multDirMatrix(frame.upVector, lean);
    const V3d direction =
        wanted(node.whole(kMode), node.vec3(kTarget), node.matrix(kSpace), own, present);
    const int upMode = node.whole(kUpMode);
    lean = wanted(upMode, node.vec3(kUpTarget), node.matrix(kUpSpace), own, lean);
    M44d aimed = turned(rotation, frame, direction, upMode == kKeep ? nullptr : &lean);
    if (envelope < 1.0)
        aimed = Imath::slerpShortestArc(Imath::extractQuat(rotation), Imath::extractQuat(aimed),
                                        envelope)
                    .normalized()
                    .toMatrix44();
    out = linearPart(out) * rotation.transposed() * aimed;  // scale and shear stay
    for (int i = 0; i < 3; ++i)
        out[3][i] = own[i];
    node.set(kResult, out);
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kAimMatrix, fn::kDependencyNode, "kAimMatrix", 0, aimMatrix),
};

}  // namespace

TypeRows aimMatrixTypes() {
    return family(kTypes);
}

}  // namespace torvel
