#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Command `torvel_skeleton`: opens a new SkeletonWindow once the licence gate agrees, at once or
/// when its window reports the acceptance. Looks at no argument; always succeeds.
class torvel_skeleton : public MPxCommand {
  public:
    ~torvel_skeleton() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
