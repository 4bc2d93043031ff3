#include "plugin/system_scene.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "nodes/mesh.h"
#include "support/test_scene.h"

namespace torvel::test {

void SystemScene::makeJoints(const std::vector<JointRow>& rows, const std::string& parent) {
    std::string above = parent;
    for (const JointRow& row : rows) {
        python(above.empty() ? "cmds.select(clear=True)" : fmt::format("cmds.select('{}')", above));
        python(fmt::format("cmds.joint(name='{}', position=({}, {}, {}))", row.name, row.position.x,
                           row.position.y, row.position.z));
        above += "|" + row.name;
    }
    forget();
}

void SystemScene::makeArmChain() {
    makeJoints({{"shoulder", {0, 0, 0}}, {"elbow", {5, 0, -1}}, {"hand", {10, 0, 0}}});
}

void SystemScene::openArm() {
    python("cmds.file('" TORVEL_SCENES_DIR "/arm.ma', open=True, force=True)");
    forget();
}

M44d SystemScene::worldOf(const std::string& name) {
    return scene().matrix(plug(name, "worldMatrix[0]"));
}

V3d SystemScene::at(const std::string& name) {
    return placeIn(worldOf(name));
}

void SystemScene::expectAt(const std::string& name, const V3d& place, double tolerance) {
    const V3d found = at(name);
    EXPECT_LE((found - place).length(), tolerance) << name << " at " << found << ", not " << place;
}

void SystemScene::expectStandsOn(const std::string& name, const std::string& other,
                                 double tolerance) {
    const M44d a = worldOf(name), b = worldOf(other);
    EXPECT_TRUE(a.equalWithAbsError(b, tolerance)) << name << "\n" << a << other << "\n" << b;
}

void SystemScene::set(const std::string& plugName, const V3d& value) {
    python(fmt::format("cmds.setAttr('{}', {}, {}, {})", plugName, value.x, value.y, value.z));
}

void SystemScene::setNumber(const std::string& plugName, double value) {
    python(fmt::format("cmds.setAttr('{}', {})", plugName, value));
}

double SystemScene::numberOf(const std::string& plugName) {
    return python("float(cmds.getAttr('" + plugName + "'))").number();
}

std::string SystemScene::parentOf(const std::string& name) {
    return pythonText("(cmds.listRelatives('" + name + "', parent=True) or [''])[0]");
}

Lines SystemScene::tree(const std::string& root) {
    python(
        "def drawn(path, depth):\n"
        "    lines = [' ' * depth + path.split('|')[-1]]\n"
        "    shapes = cmds.listRelatives(path, shapes=True, fullPath=True) or []\n"
        "    for child in cmds.listRelatives(path, children=True, fullPath=True) or []:\n"
        "        if child not in shapes:\n"
        "            lines += drawn(child, depth + 1)\n"
        "    return lines\n");
    return textsOf(python("drawn('" + root + "', 0)"));
}

Lines SystemScene::topNodes() {
    return textsOf(python(
        "[n for n in cmds.ls(assemblies=True) if not cmds.listRelatives(n, type='camera')]"));
}

Lines SystemScene::dagPaths() {
    Lines paths = textsOf(python("cmds.ls(dag=True, long=True)"));
    std::sort(paths.begin(), paths.end());
    return paths;
}

Lines SystemScene::record() {
    Lines lines;
    std::size_t next = 0;
    const Lines own = transcript();
    for (const RecordEntry& entry : session().record().entries()) {
        const bool byLanguage = !entry.isScript && entry.fromScript;
        lines.push_back(byLanguage ? "language: " + entry.text : own.at(next++));
    }
    return lines;
}

std::vector<V3d> SystemScene::skinPoints() {
    std::vector<V3d> points;
    for (const auto& point : meshPoints(scene(), node("|arm|armShape"))->points)
        points.emplace_back(point.x, point.y, point.z);
    return points;
}

std::vector<double> SystemScene::skinShares(const Lines& joints) {
    std::vector<double> shares(skinPoints().size(), 0.0);
    for (const std::string& joint : joints) {
        for (std::size_t i = 0; i < shares.size(); ++i)
            shares[i] += python(fmt::format("cmds.skinPercent('skinCluster1', 'arm.vtx[{}]', "
                                            "transform='{}', query=True)",
                                            i, joint))
                             .number();
    }
    return shares;
}

V3d placeIn(const M44d& world) {
    return {world[3][0], world[3][1], world[3][2]};
}

V3d turnedAbout(const V3d& point, const V3d& pivot, const V3d& axis, double degrees) {
    const V3d k = axis.normalized(), v = point - pivot;
    const double c = std::cos(degrees * kDegToRad), s = std::sin(degrees * kDegToRad);
    return pivot + v * c + (k % v) * s + k * ((k ^ v) * (1.0 - c));
}

Lines circleLines(const std::string& joint, const std::string& jointPath,
                  const std::string& normal) {
    return {"mel plain: circle -name \"" + joint + "_ctrl\" -nr " + normal + ";",
            "mel plain: matchTransform " + joint + "_ctrl " + jointPath + ";"};
}

Lines fkLines(const std::string& path, const std::string& name, const Lines& hook, bool withAuto) {
    const std::string ctrl = name + "_ctrl", offset = "|" + name + "_Offset",
                      autoGroup = "|" + name + "_Auto", bare = path.substr(1);
    Lines grouping{"mel plain: parent " + ctrl + " " + offset + ";"};
    if (withAuto)
        grouping = {"mel plain: matchTransform " + autoGroup + " " + bare + ";",
                    "mel plain: parent " + ctrl + " " + autoGroup + ";",
                    "mel plain: parent " + autoGroup + " " + offset + ";"};
    return circleLines(path.substr(path.rfind('|') + 1), path) +
           Lines{"python plain: cmds.setAttr('|" + ctrl + ".overrideEnabled', 1)",
                 "python plain: cmds.setAttr('|" + ctrl + ".overrideColor', 13)",
                 "mel plain: matchTransform " + offset + " " + bare + ";"} +
           grouping + hook +
           Lines{"python plain: cmds.parentConstraint('" + ctrl + "', '" + bare + "')"};
}

Lines hookLine(const std::string& name, const std::string& parent) {
    return {"mel plain: parent |" + name + "_Offset " + parent + ";"};
}

Lines noHookLine(const std::string& name) {
    return {"info: No se encontro un control padre valido para " + name + "_ctrl"};
}

}  // namespace torvel::test
