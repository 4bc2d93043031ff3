// transform and joint. Their matrices are in transform.cpp.
#include "nodes/core/fn_numbers.h"
#include "nodes/core/node_types.h"
#include "nodes/core/rows.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr const char* kOutputs = "matrix inverseMatrix xformMatrix worldMatrix worldInverseMatrix";
constexpr const char* kWorldOutputs =
    "parentMatrix parentInverseMatrix worldMatrix worldInverseMatrix";

constexpr AttrRow limit(const char* longName, const char* shortName,
                        AttrType type = AttrType::Double, double defaultValue = 0.0) {
    return vectorRow(longName, shortName, type, defaultValue);
}

constexpr AttrRow flag(const char* longName, const char* shortName, bool on = false) {
    return attrRow(longName, shortName, AttrType::Bool, on ? 1.0 : 0.0);
}

constexpr AttrRow kTransformAttrs[] = {
    vectorRow("translate", "t", AttrType::Distance, 0.0, kKeyable, kOutputs),
    vectorRow("rotate", "r", AttrType::Angle, 0.0, kKeyable, kOutputs),
    enumRow("rotateOrder", "ro", kRotateOrderNames, 0.0, 0, kOutputs),
    vectorRow("scale", "s", AttrType::Double, 1.0, kKeyable, kOutputs),
    compoundRow("shear", "sh", AttrType::Double3, 0, kOutputs),
    under("shear", attrRow("shearXY", "shxy", AttrType::Double)),
    under("shear", attrRow("shearXZ", "shxz", AttrType::Double)),
    under("shear", attrRow("shearYZ", "shyz", AttrType::Double)),
    vectorRow("rotatePivot", "rp", AttrType::Distance, 0.0, 0, kOutputs),
    vectorRow("rotatePivotTranslate", "rpt", AttrType::Distance, 0.0, 0, kOutputs),
    vectorRow("scalePivot", "sp", AttrType::Distance, 0.0, 0, kOutputs),
    vectorRow("scalePivotTranslate", "spt", AttrType::Distance, 0.0, 0, kOutputs),
    vectorRow("rotateAxis", "ra", AttrType::Angle, 0.0, 0, kOutputs),
    attrRow("inheritsTransform", "it", AttrType::Bool, 1.0, 0, kWorldOutputs),
    attrRow("xformMatrix", "xm", AttrType::Matrix, 0.0, kOutput | kNotStored),

    compoundRow("minTransLimit", "mntl", AttrType::Double3),
    under("minTransLimit", attrRow("minTransXLimit", "mtxl", AttrType::Distance, -1.0)),
    under("minTransLimit", attrRow("minTransYLimit", "mtyl", AttrType::Distance, -1.0)),
    under("minTransLimit", attrRow("minTransZLimit", "mtzl", AttrType::Distance, -1.0)),
    compoundRow("maxTransLimit", "mxtl", AttrType::Double3),
    under("maxTransLimit", attrRow("maxTransXLimit", "xtxl", AttrType::Distance, 1.0)),
    under("maxTransLimit", attrRow("maxTransYLimit", "xtyl", AttrType::Distance, 1.0)),
    under("maxTransLimit", attrRow("maxTransZLimit", "xtzl", AttrType::Distance, 1.0)),
    compoundRow("minTransLimitEnable", "mtle"),
    under("minTransLimitEnable", flag("minTransXLimitEnable", "mtxe")),
    under("minTransLimitEnable", flag("minTransYLimitEnable", "mtye")),
    under("minTransLimitEnable", flag("minTransZLimitEnable", "mtze")),
    compoundRow("maxTransLimitEnable", "xtle"),
    under("maxTransLimitEnable", flag("maxTransXLimitEnable", "xtxe")),
    under("maxTransLimitEnable", flag("maxTransYLimitEnable", "xtye")),
    under("maxTransLimitEnable", flag("maxTransZLimitEnable", "xtze")),
    compoundRow("minRotLimit", "mnrl", AttrType::Double3),
    under("minRotLimit", attrRow("minRotXLimit", "mrxl", AttrType::Angle, -0.78539816339744830962)),
    under("minRotLimit", attrRow("minRotYLimit", "mryl", AttrType::Angle, -0.78539816339744830962)),
    under("minRotLimit", attrRow("minRotZLimit", "mrzl", AttrType::Angle, -0.78539816339744830962)),
    compoundRow("maxRotLimit", "mxrl", AttrType::Double3),
    under("maxRotLimit", attrRow("maxRotXLimit", "xrxl", AttrType::Angle, 0.78539816339744830962)),
    under("maxRotLimit", attrRow("maxRotYLimit", "xryl", AttrType::Angle, 0.78539816339744830962)),
    under("maxRotLimit", attrRow("maxRotZLimit", "xrzl", AttrType::Angle, 0.78539816339744830962)),
    compoundRow("minRotLimitEnable", "mrle"),
    under("minRotLimitEnable", flag("minRotXLimitEnable", "mrxe")),
    under("minRotLimitEnable", flag("minRotYLimitEnable", "mrye")),
    under("minRotLimitEnable", flag("minRotZLimitEnable", "mrze")),
    compoundRow("maxRotLimitEnable", "xrle"),
    under("maxRotLimitEnable", flag("maxRotXLimitEnable", "xrxe")),
    under("maxRotLimitEnable", flag("maxRotYLimitEnable", "xrye")),
    under("maxRotLimitEnable", flag("maxRotZLimitEnable", "xrze")),
    compoundRow("minScaleLimit", "mnsl", AttrType::Double3),
    under("minScaleLimit", attrRow("minScaleXLimit", "msxl", AttrType::Double, -1.0)),
    under("minScaleLimit", attrRow("minScaleYLimit", "msyl", AttrType::Double, -1.0)),
    under("minScaleLimit", attrRow("minScaleZLimit", "mszl", AttrType::Double, -1.0)),
    compoundRow("maxScaleLimit", "mxsl", AttrType::Double3),
    under("maxScaleLimit", attrRow("maxScaleXLimit", "xsxl", AttrType::Double, 1.0)),
    under("maxScaleLimit", attrRow("maxScaleYLimit", "xsyl", AttrType::Double, 1.0)),
    under("maxScaleLimit", attrRow("maxScaleZLimit", "xszl", AttrType::Double, 1.0)),
    compoundRow("minScaleLimitEnable", "msle"),
    under("minScaleLimitEnable", flag("minScaleXLimitEnable", "msxe")),
    under("minScaleLimitEnable", flag("minScaleYLimitEnable", "msye")),
    under("minScaleLimitEnable", flag("minScaleZLimitEnable", "msze")),
    compoundRow("maxScaleLimitEnable", "xsle"),
    under("maxScaleLimitEnable", flag("maxScaleXLimitEnable", "xsxe")),
    under("maxScaleLimitEnable", flag("maxScaleYLimitEnable", "xsye")),
    under("maxScaleLimitEnable", flag("maxScaleZLimitEnable", "xsze")),

    attrRow("selectHandle", "hdl", AttrType::Double3),
    flag("displayHandle", "dh"),
    flag("displayScalePivot", "dsp"),
    flag("displayRotatePivot", "drp"),
    flag("displayLocalAxis", "dla"),
    flag("dynamics", "dyn"),
    enumRow("showManipDefault", "smd",
            "None=0:Translate=1:Rotate=2:Scale=3:Transform=4:Global Default=5:Smart=6:Specified=7"),
    enumRow("rotationInterpolation", "roti",
            "None=0:NoneRI=1:synced Euler=2:Quaternion=3:Quaternion Slerp=4", 1.0),
};

constexpr const char* kLabelTypes =
    "None=0:Root=1:Hip=2:Knee=3:Foot=4:Toe=5:Spine=6:Neck=7:Head=8:Collar=9:Shoulder=10:Elbow=11:"
    "Hand=12:Finger=13:"
    "Thumb=14:PropA=15:PropB=16:PropC=17:Other=18:Index Finger=19:Middle Finger=20:Ring "
    "Finger=21:Pinky Finger=22:"
    "Extra Finger=23:Big Toe=24:Index Toe=25:Middle Toe=26:Ring Toe=27:Pinky Toe=28:Foot Thumb=29";

constexpr AttrRow kJointAttrs[] = {
    vectorRow("jointOrient", "jo", AttrType::Angle, 0.0, 0, kOutputs),
    attrRow("segmentScaleCompensate", "ssc", AttrType::Bool, 1.0, 0, kOutputs),
    vectorRow("inverseScale", "is", AttrType::Double, 1.0, 0, kOutputs),
    vectorRow("preferredAngle", "pa", AttrType::Angle),
    within(attrRow("radius", "radi", AttrType::Distance, 1.0, kChannelBox), 0.0),
    attrRow("bindPose", "bps", AttrType::Matrix),
    enumRow("drawStyle", "ds", "Bone=0:Multi-child as Box=1:None=2:Joint=3"),
    compoundRow("dofMask", "dofm"),
    under("dofMask", flag("jointTypeX", "jtx", true)),
    under("dofMask", flag("jointTypeY", "jty", true)),
    under("dofMask", flag("jointTypeZ", "jtz", true)),
    vectorRow("stiffness", "st", AttrType::Double),
    limit("minRotateDampRange", "dsl", AttrType::Angle),
    limit("minRotateDampStrength", "dst"),
    limit("maxRotateDampRange", "xdr", AttrType::Angle),
    limit("maxRotateDampStrength", "xds"),
    enumRow("side", "sd", "Center=0:Left=1:Right=2:None=3", 3.0),
    enumRow("type", "typ", kLabelTypes),
    attrRow("otherType", "otp", AttrType::String),
    flag("drawLabel", "dl"),
    attrRow("jointOrientType", "jot", AttrType::String),
    vectorRow("fkRotate", "fkr", AttrType::Angle, 0.0, kHidden),
    flag("isIKDirtyFlag", "ikdf"),
};

}  // namespace

const NodeTypeRow kTransformNode = typeRow("transform", "dagNode", fn::kTransform, "kTransform",
                                           kTransformAttrs, kTransformType, evaluateTransform);
const NodeTypeRow kJointNode =
    typeRow("joint", "transform", fn::kJoint, "kJoint", kJointAttrs, 0, evaluateJoint);

}  // namespace torvel
