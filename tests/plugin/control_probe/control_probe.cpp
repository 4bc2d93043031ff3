// A plug-in for tests: its one command `controlProbe` opens the control window, which the shipped
// plug-in holds without registering it.

#include <memory>

#include <maya/MArgList.h>
#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "control/ctrl_creator.h"

#if defined(_WIN32)
#define PROBE_ENTRY __declspec(dllexport)
#else
#define PROBE_ENTRY __attribute__((visibility("default")))
#endif

namespace {

class ControlProbe : public MPxCommand {
  public:
    static void* creator() { return new ControlProbe; }

    MStatus doIt(const MArgList& arguments) override {
        const std::unique_ptr<CtrlCreator> command(
            static_cast<CtrlCreator*>(CtrlCreator::creator()));
        return command->doIt(arguments);
    }
};

}  // namespace

PROBE_ENTRY MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Torvel tests", "1.0", "Any");
    return plugin.registerCommand("controlProbe", ControlProbe::creator);
}

PROBE_ENTRY MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    return plugin.deregisterCommand("controlProbe");
}
