#include "toolkit/matching.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MStatus.h>

#include "toolkit/text.h"

bool findDuplicateNames(const MObjectArray& nodes) {
    std::unordered_set<std::string> seen;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        MStatus status;
        MFnDependencyNode nodeFn(nodes[i], &status);
        if (!status) {
            MGlobal::displayWarning(
                utf8Text("No se pudo acceder al nombre del objeto en el índice ") +
                static_cast<double>(i));
            continue;
        }
        const MString name = nodeFn.name();
        if (!seen.insert(name.asChar()).second) {
            MGlobal::displayInfo("Hay dos elementos con el mismo nombre");
            MGlobal::displayInfo("Nombre duplicado: " + name);
            return false;
        }
    }
    return true;
}

MObject matchJointsByName(const MString& name, const MObjectArray& candidates) {
    std::unordered_map<std::string, MObject> byName;
    for (unsigned int i = 0; i < candidates.length(); ++i) {
        MStatus status;
        MFnDagNode dagFn(candidates[i], &status);
        if (!status) {
            MGlobal::displayError("No se pudo obtener el nodo DAG.");
            continue;
        }
        byName[dagFn.name().asChar()] = candidates[i];
    }

    const auto match = byName.find(name.asChar());
    if (match == byName.end()) {
        MGlobal::displayInfo(utf8Text("No se encontró coincidencia para: ") + name);
        return MObject();
    }
    MGlobal::displayInfo("Coincidencia encontrada: " + name);
    return match->second;
}

// Gathered before the first rename, so that renaming cannot disturb the walk.
static std::vector<MObject> jointsBelow(const MDagPath& rootPath) {
    std::vector<MObject> joints;
    MItDag it(MItDag::kDepthFirst, MFn::kJoint);
    it.reset(rootPath, MItDag::kDepthFirst, MFn::kJoint);
    if (!it.isDone())
        it.next();  // the caller names the root itself
    for (; !it.isDone(); it.next()) {
        MDagPath path;
        it.getPath(path);
        joints.push_back(path.node());
    }
    return joints;
}

void renameHierarchy(const MObject& root, const MString& suffix) {
    MDagPath rootPath;
    if (!MDagPath::getAPathTo(root, rootPath)) {
        MGlobal::displayError(utf8Text("No se pudo obtener el MDagPath del nodo raíz."));
        return;
    }
    for (const MObject& joint : jointsBelow(rootPath)) {
        MDagPath path;
        MDagPath::getAPathTo(joint, path);  // anew: a renamed parent changes the path
        const MString fullPath = path.fullPathName();
        const MString name = MFnDependencyNode(joint).name();
        const MString script = "rename \"" + fullPath + "\" " + name + suffix + ";";
        MGlobal::executeCommand(script, false, false);
    }
}
