#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Command `torvel_renameUI`: the bulk rename tool. Looks at no argument; always succeeds.
class torvel_renameUI : public MPxCommand {
  public:
    ~torvel_renameUI() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
