// The program as a whole: messages, the selection and the scripting languages.
#pragma once

#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MGlobal {
  public:
    enum ListAdjustment {
        kReplaceList = 0,
        kXORWithList,
        kAddToList,
        kRemoveFromList,
        kAddToHeadOfList
    };

    // One line in the script editor.
    static void displayInfo(const MString& text);
    static void displayWarning(const MString& text);
    static void displayError(const MString& text);

    // Nothing selected: success and an empty list.
    static MStatus getActiveSelectionList(MSelectionList& dest,
                                          bool orderedSelectionIfAvailable = false);
    static MStatus setActiveSelectionList(const MSelectionList& source,
                                          ListAdjustment adjustment = kReplaceList);
    // Replaces the contents of `list` by all matches, fewest path components first, ties in the
    // order of the DAG, other nodes last. Nothing found: failure and an empty list.
    static MStatus getSelectionListByName(const MString& name, MSelectionList& list);

    // Run a text at once. A failure prints its error line and leaves the variable as it was. An
    // empty result gives an empty text or array and success.
    static MStatus executeCommand(const MString& command, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, int& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MIntArray& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, double& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MDoubleArray& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MString& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MStringArray& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MCommandResult& result,
                                  bool displayEnabled = false, bool undoEnabled = false);
    static MString executeCommandStringResult(const MString& command, bool displayEnabled = false,
                                              bool undoEnabled = false,
                                              MStatus* ReturnStatus = nullptr);

    // The value of the last statement, when that is an expression, is the result.
    static MStatus executePythonCommand(const MString& command, bool displayEnabled = false,
                                        bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, int& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, MIntArray& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, double& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, MDoubleArray& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, MString& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, MStringArray& result,
                                        bool displayEnabled = false, bool undoEnabled = false);
    // The result as text, whatever its type.
    static MString executePythonCommandStringResult(const MString& command,
                                                    bool displayEnabled = false,
                                                    bool undoEnabled = false,
                                                    MStatus* ReturnStatus = nullptr);
};

MAYA_API_NAMESPACE_CLOSE
