#pragma once

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

#include <QString>

/// Asks the update server and waits for its answer, however long it takes. True when its version
/// is higher than the installed one by plain text order ("0.3" > "0.20" > "0.100"). `latest` and
/// `url` receive what the answer holds, empty texts for what it lacks. Any JSON object counts as an
/// answer and stores today's date. Anything else is an error line and false; `latest`, `url` and
/// the date stay as they were.
bool checkForUpdate(QString& latest, QString& url);

/// Command `checkUpdates`: asks for the newest version at once, whatever was asked earlier that
/// day, and shows the dialog when there is one. Otherwise it says that the version is the latest,
/// also behind an error line. Looks at no argument; always succeeds. It has no window of its own.
class CheckerWindow : public MPxCommand {
  public:
    ~CheckerWindow() override;

    /// A new command object, owned by the caller.
    static void* creator();

    MStatus doIt(const MArgList& arguments) override;
};
