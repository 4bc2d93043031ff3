#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include "control/control_window.h"
#include "toolkit/nodes.h"
#include "toolkit/text.h"

void ControlWindow::toggleFreeModify(int state) {
    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray selected = selectionToArray(selection);
    if (selected.length() == 0) {
        MGlobal::displayError("No hay objetos seleccionados para modificar.");
        return;
    }

    if (state == Qt::Checked) {
        MGlobal::displayInfo(utf8Text("Modo de modificaci�n libre ACTIVADO."));
        enterFreeModify();
    } else {
        MGlobal::displayInfo(utf8Text("Modo de modificaci�n libre DESACTIVADO."));
        leaveFreeModify();
    }
}

// frame_color is a layout: this does not reach the swatch in it, which stays clickable.
void ControlWindow::setPanelsEnabled(bool enabled) {
    frame_color->setEnabled(enabled);
    frame_rotShp->setEnabled(enabled);
    frame_scalar->setEnabled(enabled);
    scrollArea_content->setEnabled(enabled);
}

void ControlWindow::enterFreeModify() {
    setPanelsEnabled(false);
    frame_freeModify->setStyleSheet("background-color:red;");

    MSelectionList selection;
    MGlobal::getActiveSelectionList(selection, false);
    const MObjectArray selected = selectionToArray(selection);
    if (selected.length() == 0) {
        MGlobal::displayError("No hay objetos seleccionados para modificar.");
        return;
    }
    const MString script =
        "cmds.selectMode(component = True)\n"
        "cmds.select('" +
        getNodeName(selected[0]) + "' + '.cv[*]');\n";
    MGlobal::executePythonCommand(script, false, false);
}

void ControlWindow::leaveFreeModify() {
    setPanelsEnabled(true);
    frame_freeModify->setStyleSheet("");
    MGlobal::executePythonCommand(
        "cmds.selectMode(object = True)\n"
        "cmds.setToolTo('Move')",
        false, false);
}
