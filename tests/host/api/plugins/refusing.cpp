// A plug-in that registers a command and then refuses to initialise.
#include <maya/MFnPlugin.h>
#include <maya/MString.h>

MStatus initializePlugin(MObject object) {
    MFnPlugin(object).registerCommand("refusedCommand", []() -> void* { return nullptr; });
    return MS::kFailure;
}

MStatus uninitializePlugin(MObject) {
    return MS::kSuccess;
}
