// What the application sees: two entry functions, four commands and one menu. This is the only
// unit that includes MFnPlugin.h, which plants the version and signature symbols where it stands.

#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include "rename/rename_command.h"
#include "shell/plugin_info.h"
#include "skeleton/skeleton_command.h"
#include "twist/twist_command.h"
#include "update/checker_command.h"

#if defined(_WIN32)
#define TORVEL_ENTRY __declspec(dllexport)
#else
#define TORVEL_ENTRY __attribute__((visibility("default")))
#endif

namespace {

struct CommandRow {
    const char* name;
    void* (*creator)();
};

const CommandRow kCommandsToRegister[] = {
    {"torvel_skeleton", torvel_skeleton::creator},
    {"torvel_renameUI", torvel_renameUI::creator},
    {"torvel_twist", TorvelTwist::creator},
    {"checkUpdates", CheckerWindow::creator},
};

// checkUpdates stays registered on purpose.
const char* const kCommandsToDeregister[] = {
    "torvel_renameUI",
    "torvel_skeleton",
    "torvel_twist",
};

}  // namespace

TORVEL_ENTRY MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Arnel Torvel", "0.25", "Any");
    MGlobal::displayInfo("Plugin has been initialized");

    for (const CommandRow& row : kCommandsToRegister)
        plugin.registerCommand(row.name, row.creator);

    // The import also binds `cmds` for the items' command strings and for scripts that import
    // nothing themselves.
    const MString menuScript =
        "from maya import cmds\n"
        "cmds.setParent('MayaWindow')\n"
        "if cmds.menu('TorvelPlugin', exists=True):\n"
        "    cmds.deleteUI('TorvelPlugin', menu=True)\n"
        "cmds.menu('TorvelPlugin', label='Torvel Plugin', tearOff=True)\n"
        "cmds.menuItem(label='Rename', command='cmds.torvel_renameUI()')\n"
        "cmds.menuItem(dividerLabel='Rigging', divider=True)\n"
        "cmds.menuItem(label='Skeleton Configuration', command='cmds.torvel_skeleton()')\n"
        "cmds.menuItem(label='Twist Bones', command='cmds.torvel_twist()')\n"
        "cmds.menuItem(divider=True)\n"
        "cmds.menuItem(label='Check for updates', command='cmds.checkUpdates()')\n";
    MGlobal::executePythonCommand(menuScript, false, false);
    return MS::kSuccess;
}

TORVEL_ENTRY MStatus uninitializePlugin(MObject object) {
    MGlobal::displayInfo("Plugin has been uninitialized!");

    [[maybe_unused]] MFnPlugin spare(object);
    MFnPlugin plugin(object);
    for (const char* name : kCommandsToDeregister)
        plugin.deregisterCommand(name);

    const MString menuScript =
        "import maya.cmds as cmds\n"
        "if cmds.menu('TorvelPlugin', exists=True):\n"
        "    cmds.deleteUI('TorvelPlugin')\n";
    MGlobal::executePythonCommand(menuScript, false, false);
    return MS::kSuccess;
}
