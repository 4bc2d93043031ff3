#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Command `checkUpdates`: asks for the newest version at once, whatever was asked earlier that
/// day. Looks at no argument; always succeeds. It has no window of its own.
class CheckerWindow : public MPxCommand {
  public:
    ~CheckerWindow() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
