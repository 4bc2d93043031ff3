#include "toolkit/pole_vector.h"

#include <maya/MDagPath.h>
#include <maya/MFnTransform.h>
#include <maya/MSelectionList.h>
#include <maya/MSpace.h>
#include <maya/MVector.h>

static const double kPoleDistance = 30.0;

static MDagPath pathOf(const MString& name) {
    MSelectionList list;
    list.add(name);
    MDagPath path;
    list.getDagPath(0, path);
    return path;
}

static MVector worldPosition(const MString& name) {
    return MFnTransform(pathOf(name)).getTranslation(MSpace::kWorld);
}

void computePoleVectorPosition(const MString& startJoint, const MString& middleJoint,
                               const MString& endJoint, const MString& poleControl) {
    const MVector start = worldPosition(startJoint);
    const MVector middle = worldPosition(middleJoint);
    const MVector end = worldPosition(endJoint);

    const MVector toMiddle = middle - start;
    const MVector direction = (end - start).normal();
    const MVector bend = toMiddle - direction * (toMiddle * direction);
    const MVector pole = bend.normal() * kPoleDistance + middle;
    MFnTransform(pathOf(poleControl)).setTranslation(pole, MSpace::kWorld);
}
