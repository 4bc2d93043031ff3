#include "toolkit/constraint_transfer.h"

#include <maya/MDGModifier.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include "toolkit/nodes.h"
#include "toolkit/text.h"

namespace {

struct ConstraintRow {
    MFn::Type type;
    const char* prefix;
};

const ConstraintRow kConstraintCommands[] = {
    {MFn::kParentConstraint, "parentConstraint -mo "},
    {MFn::kOrientConstraint, "orientConstraint -mo "},
    {MFn::kPointConstraint, "pointConstraint -mo "},
    {MFn::kAimConstraint, "aimConstraint -mo "},
};

}  // namespace

static MString commandPrefix(const MObject& constraint) {
    for (const ConstraintRow& row : kConstraintCommands) {
        if (constraint.hasFn(row.type))
            return row.prefix;
    }
    return MString();
}

static MPlug findUpSource(const MFnDependencyNode& constraintFn) {
    const MPlug worldUp = constraintFn.findPlug("worldUpMatrix", true);
    MPlugArray sources;
    worldUp.connectedTo(sources, true, false);
    if (sources.length() == 0) {
        MGlobal::displayInfo("AimConstraint sin worldUpMatrix conectado.");
        return MPlug();
    }
    MGlobal::displayInfo("AimConstraint tiene worldUpMatrix conectado desde: " + sources[0].name());
    return sources[0];
}

// The first transform among the sources of the element's children; joints count as transforms.
static MObject driverOfElement(const MPlug& element) {
    for (unsigned int c = 0; c < element.numChildren(); ++c) {
        MPlugArray sources;
        element.child(c).connectedTo(sources, true, false);
        for (unsigned int s = 0; s < sources.length(); ++s) {
            if (sources[s].node().hasFn(MFn::kTransform))
                return sources[s].node();
        }
    }
    return MObject();
}

static MStringArray driverPaths(const MPlug& target) {
    MStringArray paths;
    for (unsigned int i = 0; i < target.numElements(); ++i) {
        const MPlug element = target.elementByPhysicalIndex(i);
        const MObject driver = driverOfElement(element);
        if (driver.isNull())
            MGlobal::displayWarning(utf8Text("  No se encontró transform válido conectado a ") +
                                    element.name());
        else
            paths.append(MFnDagNode(driver).fullPathName());
    }
    return paths;
}

static void connectUpSource(const MPlug& upSource, const MString& newName) {
    const MObject newConstraint = getObjectByName(newName);
    if (newConstraint.isNull()) {
        MGlobal::displayError(
            utf8Text("No se encontró el nuevo constraint para conectar worldUpMatrix: ") + newName);
        return;
    }
    const MPlug worldUp = MFnDependencyNode(newConstraint).findPlug("worldUpMatrix", true);
    MDGModifier modifier;
    const MStatus status = modifier.connect(upSource, worldUp);
    MGlobal::displayInfo("Conectando worldUpMatrix de " + upSource.name() + " a " + newName);

    const MString script = "setAttr \"" + newName + ".worldUpType\" 1;";
    MGlobal::executeCommand(script, false, false);
    if (!status) {
        MGlobal::displayError("No se pudo conectar worldUpMatrix en: " + newName);
        return;
    }
    modifier.doIt();
    MGlobal::displayInfo("Conectado worldUpMatrix en nuevo constraint: " + newName);
}

// The constraint's name on the new joint, or an empty text when none was made.
static MString createConstraint(const MString& prefix, const MStringArray& drivers,
                                const MString& newJoint) {
    MString command = prefix;
    for (unsigned int i = 0; i < drivers.length(); ++i)
        command += "\"" + drivers[i] + "\" ";
    command += "\"" + newJoint + "\"";

    MGlobal::displayInfo("Ejecutando comando: " + command);
    MStringArray created;
    const MStatus status = MGlobal::executeCommand(command, created, false, false);
    if (!status) {
        MGlobal::displayError("Fallo al crear constraint con comando: " + command);
        return MString();
    }
    return created.length() > 0 ? created[0] : MString();
}

static void recreateConstraint(const MObject& constraint, const MString& newJoint) {
    MFnDependencyNode constraintFn(constraint);
    const MString type = constraint.apiTypeStr();
    const MString name = constraintFn.name();
    MGlobal::displayInfo("Procesando constraint: " + name + " tipo: " + type);

    const MPlug target = constraintFn.findPlug("target", true);
    if (!target.isArray() || target.numElements() == 0) {
        MGlobal::displayWarning("Constraint sin targets: " + name);
        return;
    }
    const MPlug upSource =
        constraint.hasFn(MFn::kAimConstraint) ? findUpSource(constraintFn) : MPlug();

    const MStringArray drivers = driverPaths(target);
    if (drivers.length() == 0) {
        MGlobal::displayWarning(
            utf8Text("No se encontraron controles válidos conectados al constraint: ") + name);
        return;
    }
    const MString prefix = commandPrefix(constraint);
    if (prefix.length() == 0) {
        MGlobal::displayWarning("Tipo de constraint no manejado: " + type);
        return;
    }
    const MString newName = createConstraint(prefix, drivers, newJoint);
    if (!upSource.isNull() && newName.length() > 0)
        connectUpSource(upSource, newName);
}

static bool sameLength(const MObjectArray& originals, const MObjectArray& duplicates) {
    if (originals.length() == duplicates.length())
        return true;
    MGlobal::displayError("Las listas de joints original y duplicada no tienen la misma longitud.");
    return false;
}

void recreateConstraints(const MObjectArray& originals, const MObjectArray& duplicates) {
    if (!sameLength(originals, duplicates))
        return;

    for (unsigned int i = 0; i < originals.length(); ++i) {
        MFnDagNode oldFn(originals[i]);
        MFnDagNode newFn(duplicates[i]);
        for (unsigned int c = 0; c < oldFn.childCount(); ++c) {
            const MObject child = oldFn.child(c);
            if (child.hasFn(MFn::kConstraint))
                recreateConstraint(child, newFn.fullPathName());
        }
    }
}

static void linkRotation(const MString& from, const MString& to, const MString& attr) {
    const MString script = "if (!`isConnected \"" + from + "." + attr + "\" \"" + to + "." + attr +
                           "\"`) { connectAttr -f \"" + from + "." + attr + "\" \"" + to + "." +
                           attr + "\"; }";
    MGlobal::executeCommand(script, false, false);
}

// The scan does not stop at the first equal joint: the script itself guards against a repeat.
static void linkReceiver(const MObject& receiver, const MObjectArray& originals,
                         const MObjectArray& duplicates, const MString& from, const MString& attr) {
    for (unsigned int j = 0; j < originals.length(); ++j) {
        if (originals[j] == receiver)
            linkRotation(from, MFnDagNode(duplicates[j]).fullPathName(), attr);
    }
}

void reconnectRotations(const MObjectArray& originals, const MObjectArray& duplicates) {
    if (!sameLength(originals, duplicates))
        return;

    for (unsigned int i = 0; i < originals.length(); ++i) {
        MFnDependencyNode oldFn(originals[i]);
        MFnDagNode newFn(duplicates[i]);
        const MString from = newFn.fullPathName();
        for (const char* attr : {"rotateX", "rotateY", "rotateZ"}) {
            MPlugArray receivers;
            oldFn.findPlug(attr, true).connectedTo(receivers, false, true);
            for (unsigned int r = 0; r < receivers.length(); ++r)
                linkReceiver(receivers[r].node(), originals, duplicates, from, attr);
        }
    }
}
