// A small plug-in with three commands, one of which it keeps when it is unloaded.
#include <stdexcept>

#include <maya/MArgList.h>
#include <maya/MFnPlugin.h>
#include <maya/MPxCommand.h>
#include <maya/MString.h>

namespace {

class Echo : public MPxCommand {
  public:
    MStatus doIt(const MArgList& args) override {
        setResult(args.asString(0));
        return MS::kSuccess;
    }
    static void* creator() { return new Echo; }
};

class Fail : public MPxCommand {
  public:
    MStatus doIt(const MArgList&) override { return MS::kFailure; }
    static void* creator() { return new Fail; }
};

class Throw : public MPxCommand {
  public:
    MStatus doIt(const MArgList&) override { throw std::runtime_error("on purpose"); }
    static void* creator() { return new Throw; }
};

}  // namespace

MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "A Vendor", "1.5");
    plugin.registerCommand("sampleEcho", Echo::creator);
    plugin.registerCommand("sampleFail", Fail::creator);
    plugin.registerCommand("sampleThrow", Throw::creator);
    return MS::kSuccess;
}

MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    plugin.deregisterCommand("sampleFail");
    plugin.deregisterCommand("sampleThrow");
    return plugin.deregisterCommand("sampleThrow") ? MS::kFailure : MS::kSuccess;
}
