#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Opens a new ControlWindow. Built, but registered under no name: nothing reaches it from the menu
/// or from a script. Looks at no argument; always succeeds.
class CtrlCreator : public MPxCommand {
  public:
    ~CtrlCreator() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
