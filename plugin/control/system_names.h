#pragma once

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

// Small reads that the rigging systems share.

/// Element `index`; the null object beyond the end, so that a short selection is harmless.
inline MObject elementOrNull(const MObjectArray& array, unsigned int index) {
    return index < array.length() ? array[index] : MObject();
}

/// The control's name with every "_ctrl" replaced, also in the middle of the name.
inline MString groupName(const MString& control, const char* suffix) {
    MString name = control;
    name.substitute("_ctrl", suffix);
    return name;
}
