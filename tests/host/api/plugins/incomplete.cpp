// A library without the second entry function.
#include <maya/MFnPlugin.h>

MStatus initializePlugin(MObject) {
    return MS::kSuccess;
}
