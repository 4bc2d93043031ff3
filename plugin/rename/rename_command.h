#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

/// Command `torvel_renameUI`: raises the rename window, or builds it when none is open, and defines
/// the Python functions behind its buttons anew. Looks at no argument; always succeeds.
class torvel_renameUI : public MPxCommand {
  public:
    ~torvel_renameUI() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
