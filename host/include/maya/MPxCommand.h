// Base of the commands of plug-ins.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MPxCommand {
  public:
    MPxCommand();
    MPxCommand(const MPxCommand&) = delete;
    MPxCommand& operator=(const MPxCommand&) = delete;

    virtual ~MPxCommand();
    // A failure makes the calling script fail. The base does nothing and fails.
    virtual MStatus doIt(const MArgList& args);
    virtual MStatus undoIt();
    virtual MStatus redoIt();
    // False unless overridden: the object is then deleted right after doIt.
    virtual bool isUndoable() const;
    virtual bool hasSyntax() const;

    static void displayInfo(const MString& text);
    static void displayWarning(const MString& text);
    static void displayError(const MString& text);

    // What the call gives back to the script that made it.
    static void clearResult();
    static void setResult(const MString& value);
    static void setResult(const MStringArray& value);
    static void setResult(double value);
    static void setResult(int value);
    static void setResult(bool value);
};

MAYA_API_NAMESPACE_CLOSE
