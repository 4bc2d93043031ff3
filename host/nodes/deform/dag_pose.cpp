#include "nodes/deform/dag_pose.h"

#include <limits>

#include <Imath/ImathMatrixAlgo.h>

#include "base/number_text.h"
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"

namespace torvel {
namespace {

constexpr AttrRow kAttrs[] = {
    attrRow("members", "m", AttrType::Message, 0.0, kArray),
    attrRow("parents", "p", AttrType::Message, 0.0, kArray),
    attrRow("world", "w", AttrType::Message, 0.0, kNotStored),
    attrRow("worldMatrix", "wm", AttrType::Matrix, 0.0, kArray),
    attrRow("xformMatrix", "xm", AttrType::Matrix, 0.0, kArray),
    attrRow("global", "g", AttrType::Bool, 0.0, kArray),
    attrRow("bindPose", "bp", AttrType::Bool),
};

bool readNumbers(NumberSource& source, double* values, int count) {
    for (int i = 0; i < count; ++i) {
        values[i] =
            std::numeric_limits<double>::quiet_NaN();  // left by numbers too large for a double
        if (!source.number(values[i]))
            return false;
    }
    return true;
}

bool readVector(NumberSource& source, V3d& value) {
    return readNumbers(source, &value.x, 3);
}

void append(std::string& out, const double* values, int count) {
    for (int i = 0; i < count; ++i)
        out += numberText(values[i], 17) + ' ';
}

void append(std::string& out, const V3d& value) {
    append(out, &value.x, 3);
}

void setQuaternion(double (&out)[4], const V3d& angles) {
    const Quatd q = Imath::extractQuat(eulerMatrix(angles));
    out[0] = q.v.x;
    out[1] = q.v.y;
    out[2] = q.v.z;
    out[3] = q.r;
}

M44d quaternionMatrix(const double (&q)[4]) {
    const double length2 = q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3];
    return length2 > 0.0 ? Quatd(q[3], q[0], q[1], q[2]).normalized().toMatrix44() : M44d();
}

constexpr TypeAttrs kDagPose("dagPose", kDependNode, kAttrs);
constexpr NodeTypeRow kTypes[] = {typeRow(kDagPose, fn::kDagPose, "kDagPose")};

}  // namespace

TypeRows poseTypes() {
    return family(kTypes);
}

void XformData::compose() {
    M44d m = translationMatrix(-scalePivot) * scaleMatrix(scale) * shearMatrix(shear) *
             translationMatrix(scalePivot + scalePivotTranslate - rotatePivot) *
             quaternionMatrix(rotateAxis) * eulerMatrix(rotate, rotateOrder) *
             quaternionMatrix(jointOrient);
    if (compensate)
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 3; ++j)
                m[i][j] *= inverseScale[j] != 0.0 ? 1.0 / inverseScale[j] : 1.0;
    matrix = m * translationMatrix(rotatePivot + rotatePivotTranslate + translate);
}

std::shared_ptr<XformData> parseXform(NumberSource& source) {
    auto x = std::make_shared<XformData>();
    long long order = 0;
    const bool complete =
        readVector(source, x->scale) && readVector(source, x->rotate) && source.integer(order) &&
        readVector(source, x->translate) && readVector(source, x->shear) &&
        readVector(source, x->scalePivot) && readVector(source, x->scalePivotTranslate) &&
        readVector(source, x->rotatePivot) && readVector(source, x->rotatePivotTranslate) &&
        readNumbers(source, x->rotateAxis, 4) && readNumbers(source, x->jointOrient, 4) &&
        readVector(source, x->inverseScale) && !source.atEnd();
    if (!complete)
        return nullptr;
    const std::string_view word = source.word();
    x->compensate = word.substr(0, 3) == "yes" || word.substr(0, 2) == "on" ||
                    word.substr(0, 4) == "true" || word.substr(0, 1) == "1";
    x->rotateOrder = static_cast<int>(order);
    x->compose();
    return x;
}

std::string formatXform(const XformData& x) {
    std::string out;
    const double order = x.rotateOrder;
    append(out, x.scale);
    append(out, x.rotate);
    append(out, &order, 1);
    for (const V3d* v : {&x.translate, &x.shear, &x.scalePivot, &x.scalePivotTranslate,
                         &x.rotatePivot, &x.rotatePivotTranslate})
        append(out, *v);
    append(out, x.rotateAxis, 4);
    append(out, x.jointOrient, 4);
    append(out, x.inverseScale);
    return out + (x.compensate ? "yes" : "no");
}

std::shared_ptr<XformData> captureXform(const Scene& scene, NodeHandle node) {
    if (!isTransform(scene, node))
        return nullptr;
    const Channels c = channelsOf(scene, node);
    auto x = std::make_shared<XformData>();
    x->scale = c.scale;
    x->rotate = c.rotate;
    x->rotateOrder = c.rotateOrder;
    x->translate = c.translate;
    x->shear = c.shear;
    x->scalePivot = c.scalePivot;
    x->scalePivotTranslate = c.scalePivotTranslate;
    x->rotatePivot = c.rotatePivot;
    x->rotatePivotTranslate = c.rotatePivotTranslate;
    setQuaternion(x->rotateAxis, c.rotateAxis);
    setQuaternion(x->jointOrient, c.jointOrient);
    x->inverseScale = c.inverseScale;
    x->compensate =
        c.isJoint && scene.number(Plug(node, jointAttrs().segmentScaleCompensate)) != 0.0;
    x->compose();
    return x;
}

Channels posedChannels(const Scene& scene, NodeHandle node, const XformData& x) {
    Channels c = channelsOf(scene, node);
    c.scale = x.scale;
    c.rotate = x.rotate;
    c.rotateOrder = x.rotateOrder;
    c.translate = x.translate;
    c.shear = x.shear;
    if (!c.isJoint)
        return c;
    c.jointOrient = eulerFromMatrix(quaternionMatrix(x.jointOrient), kXYZ, &c.jointOrient);
    if (x.compensate)
        c.inverseScale = x.inverseScale;
    return c;
}

}  // namespace torvel
