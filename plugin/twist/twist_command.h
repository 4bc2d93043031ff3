#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Command `torvel_twist`: opens a new TwistWindow, whatever others are open. Looks at no argument;
/// always succeeds.
class TorvelTwist : public MPxCommand {
  public:
    ~TorvelTwist() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
