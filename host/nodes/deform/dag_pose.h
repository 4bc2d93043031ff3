#pragma once

#include <string>

#include "graph/data.h"
#include "nodes/transform/transform.h"

namespace torvel {

/// A matrix that remembers the channels it came from: the "xform" form of dagPose.xformMatrix. Kept
/// value for value.
struct XformData : MatrixData {
    V3d scale{1.0}, rotate{0.0};  ///< rotate in radians
    int rotateOrder = kXYZ;
    V3d translate{0.0}, shear{0.0};
    V3d scalePivot{0.0}, scalePivotTranslate{0.0}, rotatePivot{0.0}, rotatePivotTranslate{0.0};
    double rotateAxis[4] = {0.0, 0.0, 0.0, 1.0};   ///< quaternion x y z w
    double jointOrient[4] = {0.0, 0.0, 0.0, 1.0};  ///< quaternion x y z w
    V3d inverseScale{1.0};
    bool compensate = false;

    /// Recomputes `matrix` from the values.
    void compose();
};

/// Reads the 37 values after the word "xform". Null when one is missing or no number.
std::shared_ptr<XformData> parseXform(NumberSource& source);
/// The 37 values with blanks between them, numbers with 17 digits, the last one yes or no. Without
/// the word itself.
std::string formatXform(const XformData& xform);

/// The present channels of a transform or joint. Null for other nodes.
std::shared_ptr<XformData> captureXform(const Scene& scene, NodeHandle node);
/// The channels a pose holds for `node`: pivots and such of the node itself, the posed parts of
/// `xform` (translate, rotate, rotateOrder, scale, shear, joint orient, inverse scale).
Channels posedChannels(const Scene& scene, NodeHandle node, const XformData& xform);

}  // namespace torvel
