#include "control/shape_script.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

#include "toolkit/nodes.h"

MObject curveFromScript(const char* script) {
    MString name;
    MGlobal::executePythonCommand(script, name, false, false);
    return getObjectByName(name);
}
