#pragma once

#include "nodes/core/base_attrs.h"
#include "nodes/transform/rotation.h"

/// transform and joint; in a header, since constraints, handles and others count their positions
/// on from them.
namespace torvel {

inline constexpr const char* kPlacementOutputs =
    "matrix inverseMatrix xformMatrix worldMatrix worldInverseMatrix";
inline constexpr const char* kInheritOutputs =
    "parentMatrix parentInverseMatrix worldMatrix worldInverseMatrix";

constexpr AttrRow limitRow(const char* longName, const char* shortName,
                           AttrType type = AttrType::Double, double defaultValue = 0.0) {
    return vectorRow(longName, shortName, type, defaultValue);
}

constexpr AttrRow flagRow(const char* longName, const char* shortName, bool on = false) {
    return attrRow(longName, shortName, AttrType::Bool, on ? 1.0 : 0.0);
}

inline constexpr AttrRow kTransformRows[] = {
    vectorRow("translate", "t", AttrType::Distance, 0.0, kKeyable, kPlacementOutputs),
    vectorRow("rotate", "r", AttrType::Angle, 0.0, kKeyable, kPlacementOutputs),
    enumRow("rotateOrder", "ro", kRotateOrderNames, 0.0, 0, kPlacementOutputs),
    vectorRow("scale", "s", AttrType::Double, 1.0, kKeyable, kPlacementOutputs),
    compoundRow("shear", "sh", AttrType::Double3, 0, kPlacementOutputs),
    under("shear", attrRow("shearXY", "shxy", AttrType::Double)),
    under("shear", attrRow("shearXZ", "shxz", AttrType::Double)),
    under("shear", attrRow("shearYZ", "shyz", AttrType::Double)),
    vectorRow("rotatePivot", "rp", AttrType::Distance, 0.0, 0, kPlacementOutputs),
    vectorRow("rotatePivotTranslate", "rpt", AttrType::Distance, 0.0, 0, kPlacementOutputs),
    vectorRow("scalePivot", "sp", AttrType::Distance, 0.0, 0, kPlacementOutputs),
    vectorRow("scalePivotTranslate", "spt", AttrType::Distance, 0.0, 0, kPlacementOutputs),
    vectorRow("rotateAxis", "ra", AttrType::Angle, 0.0, 0, kPlacementOutputs),
    attrRow("inheritsTransform", "it", AttrType::Bool, 1.0, 0, kInheritOutputs),
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
    under("minTransLimitEnable", flagRow("minTransXLimitEnable", "mtxe")),
    under("minTransLimitEnable", flagRow("minTransYLimitEnable", "mtye")),
    under("minTransLimitEnable", flagRow("minTransZLimitEnable", "mtze")),
    compoundRow("maxTransLimitEnable", "xtle"),
    under("maxTransLimitEnable", flagRow("maxTransXLimitEnable", "xtxe")),
    under("maxTransLimitEnable", flagRow("maxTransYLimitEnable", "xtye")),
    under("maxTransLimitEnable", flagRow("maxTransZLimitEnable", "xtze")),
    compoundRow("minRotLimit", "mnrl", AttrType::Double3),
    under("minRotLimit", attrRow("minRotXLimit", "mrxl", AttrType::Angle, -0.78539816339744830962)),
    under("minRotLimit", attrRow("minRotYLimit", "mryl", AttrType::Angle, -0.78539816339744830962)),
    under("minRotLimit", attrRow("minRotZLimit", "mrzl", AttrType::Angle, -0.78539816339744830962)),
    compoundRow("maxRotLimit", "mxrl", AttrType::Double3),
    under("maxRotLimit", attrRow("maxRotXLimit", "xrxl", AttrType::Angle, 0.78539816339744830962)),
    under("maxRotLimit", attrRow("maxRotYLimit", "xryl", AttrType::Angle, 0.78539816339744830962)),
    under("maxRotLimit", attrRow("maxRotZLimit", "xrzl", AttrType::Angle, 0.78539816339744830962)),
    compoundRow("minRotLimitEnable", "mrle"),
    under("minRotLimitEnable", flagRow("minRotXLimitEnable", "mrxe")),
    under("minRotLimitEnable", flagRow("minRotYLimitEnable", "mrye")),
    under("minRotLimitEnable", flagRow("minRotZLimitEnable", "mrze")),
    compoundRow("maxRotLimitEnable", "xrle"),
    under("maxRotLimitEnable", flagRow("maxRotXLimitEnable", "xrxe")),
    under("maxRotLimitEnable", flagRow("maxRotYLimitEnable", "xrye")),
    under("maxRotLimitEnable", flagRow("maxRotZLimitEnable", "xrze")),
    compoundRow("minScaleLimit", "mnsl", AttrType::Double3),
    under("minScaleLimit", attrRow("minScaleXLimit", "msxl", AttrType::Double, -1.0)),
    under("minScaleLimit", attrRow("minScaleYLimit", "msyl", AttrType::Double, -1.0)),
    under("minScaleLimit", attrRow("minScaleZLimit", "mszl", AttrType::Double, -1.0)),
    compoundRow("maxScaleLimit", "mxsl", AttrType::Double3),
    under("maxScaleLimit", attrRow("maxScaleXLimit", "xsxl", AttrType::Double, 1.0)),
    under("maxScaleLimit", attrRow("maxScaleYLimit", "xsyl", AttrType::Double, 1.0)),
    under("maxScaleLimit", attrRow("maxScaleZLimit", "xszl", AttrType::Double, 1.0)),
    compoundRow("minScaleLimitEnable", "msle"),
    under("minScaleLimitEnable", flagRow("minScaleXLimitEnable", "msxe")),
    under("minScaleLimitEnable", flagRow("minScaleYLimitEnable", "msye")),
    under("minScaleLimitEnable", flagRow("minScaleZLimitEnable", "msze")),
    compoundRow("maxScaleLimitEnable", "xsle"),
    under("maxScaleLimitEnable", flagRow("maxScaleXLimitEnable", "xsxe")),
    under("maxScaleLimitEnable", flagRow("maxScaleYLimitEnable", "xsye")),
    under("maxScaleLimitEnable", flagRow("maxScaleZLimitEnable", "xsze")),

    attrRow("selectHandle", "hdl", AttrType::Double3),
    flagRow("displayHandle", "dh"),
    flagRow("displayScalePivot", "dsp"),
    flagRow("displayRotatePivot", "drp"),
    flagRow("displayLocalAxis", "dla"),
    flagRow("dynamics", "dyn"),
    enumRow("showManipDefault", "smd",
            "None=0:Translate=1:Rotate=2:Scale=3:Transform=4:Global Default=5:Smart=6:Specified=7"),
    enumRow("rotationInterpolation", "roti",
            "None=0:NoneRI=1:synced Euler=2:Quaternion=3:Quaternion Slerp=4", 1.0),
};

inline constexpr const char* kLabelTypes =
    "None=0:Root=1:Hip=2:Knee=3:Foot=4:Toe=5:Spine=6:Neck=7:Head=8:Collar=9:Shoulder=10:Elbow=11:"
    "Hand=12:Finger=13:"
    "Thumb=14:PropA=15:PropB=16:PropC=17:Other=18:Index Finger=19:Middle Finger=20:Ring "
    "Finger=21:Pinky Finger=22:"
    "Extra Finger=23:Big Toe=24:Index Toe=25:Middle Toe=26:Ring Toe=27:Pinky Toe=28:Foot Thumb=29";

inline constexpr AttrRow kJointRows[] = {
    vectorRow("jointOrient", "jo", AttrType::Angle, 0.0, 0, kPlacementOutputs),
    attrRow("segmentScaleCompensate", "ssc", AttrType::Bool, 1.0, 0, kPlacementOutputs),
    vectorRow("inverseScale", "is", AttrType::Double, 1.0, 0, kPlacementOutputs),
    vectorRow("preferredAngle", "pa", AttrType::Angle),
    within(attrRow("radius", "radi", AttrType::Distance, 1.0, kChannelBox), 0.0),
    attrRow("bindPose", "bps", AttrType::Matrix),
    enumRow("drawStyle", "ds", "Bone=0:Multi-child as Box=1:None=2:Joint=3"),
    compoundRow("dofMask", "dofm"),
    under("dofMask", flagRow("jointTypeX", "jtx", true)),
    under("dofMask", flagRow("jointTypeY", "jty", true)),
    under("dofMask", flagRow("jointTypeZ", "jtz", true)),
    vectorRow("stiffness", "st", AttrType::Double),
    limitRow("minRotateDampRange", "dsl", AttrType::Angle),
    limitRow("minRotateDampStrength", "dst"),
    limitRow("maxRotateDampRange", "xdr", AttrType::Angle),
    limitRow("maxRotateDampStrength", "xds"),
    enumRow("side", "sd", "Center=0:Left=1:Right=2:None=3", 3.0),
    enumRow("type", "typ", kLabelTypes),
    attrRow("otherType", "otp", AttrType::String),
    flagRow("drawLabel", "dl"),
    attrRow("jointOrientType", "jot", AttrType::String),
    vectorRow("fkRotate", "fkr", AttrType::Angle, 0.0, kHidden),
    flagRow("isIKDirtyFlag", "ikdf"),
};

inline constexpr TypeAttrs kTransform("transform", kDagNode, kTransformRows);
inline constexpr TypeAttrs kJoint("joint", kTransform, kJointRows);

}  // namespace torvel
