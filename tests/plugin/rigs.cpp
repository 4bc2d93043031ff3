#include "plugin/rigs.h"

#include <fmt/format.h>

namespace torvel::test {

std::vector<std::string> makeChain(PluginScene& scene, const std::vector<std::string>& names,
                                   const std::string& parent) {
    const char* const turns[] = {"10, 20, 30", "-25, 5, 15", "7, -11, 13"};
    std::vector<std::string> paths;
    std::string path = parent;
    for (std::size_t i = 0; i < names.size(); ++i) {
        scene.python(path.empty() ? "cmds.select(clear=True)"
                                  : fmt::format("cmds.select('{}')", path));
        scene.python(fmt::format("cmds.joint(name='{}', position=(0, {}, {}))", names[i],
                                 10.0 - 5.0 * i, 0.25 * i));
        path += "|" + names[i];
        paths.push_back(path);
    }
    for (std::size_t i = 0; i < paths.size(); ++i)
        scene.python(fmt::format("cmds.setAttr('{}.rotate', {})", paths[i], turns[i % 3]));
    return paths;
}

void makeTube(PluginScene& scene, const std::string& name) {
    scene.python(
        fmt::format("cmds.polyCylinder(name='{}', radius=1, height=10, subdivisionsX=8, "
                    "subdivisionsY=8)",
                    name));
    scene.python(fmt::format("cmds.setAttr('{}.translate', 0, 5, 0)", name));
}

std::string bindTube(PluginScene& scene, const std::string& root, const std::string& name) {
    makeTube(scene, name);
    return scene.pythonText(fmt::format("cmds.skinCluster('{}', '{}')", root, name));
}

void makeLeg(PluginScene& scene) {
    makeChain(scene, {"hip", "knee", "ankle"});
    EXPECT_EQ(bindTube(scene, "|hip", "leg"), "skinCluster1");
    scene.forget();
}

void makeGroup(PluginScene& scene, const std::string& name, const std::string& parent) {
    const std::string under = parent.empty() ? "" : fmt::format(", parent='{}'", parent);
    scene.python(
        fmt::format("cmds.createNode('transform', name='{}'{}, skipSelect=True)", name, under));
}

void addSecondOutput(PluginScene& scene, const std::string& cluster) {
    makeTube(scene, "leg2");
    scene.python(fmt::format(
        "cmds.createNode('mesh', name='leg2ShapeOrig', parent='leg2', skipSelect=True)\n"
        "cmds.setAttr('leg2ShapeOrig.intermediateObject', True)\n"
        "source = cmds.listConnections('leg2Shape.inMesh', plugs=True)[0]\n"
        "cmds.disconnectAttr(source, 'leg2Shape.inMesh')\n"
        "cmds.connectAttr(source, 'leg2ShapeOrig.inMesh')\n"
        "cmds.connectAttr('leg2ShapeOrig.worldMesh[0]', '{0}.input[1].inputGeometry')\n"
        "cmds.connectAttr('{0}.outputGeometry[1]', 'leg2Shape.inMesh')\n",
        cluster));
}

std::string addConstraint(PluginScene& scene, const std::string& type, const std::string& joint,
                          const std::vector<std::string>& drivers) {
    const std::string leaf = joint.substr(joint.rfind('|') + 1) + "_" + type + "1";
    const std::string path = joint + "|" + leaf;
    scene.python(fmt::format("cmds.createNode('{}', name='{}', parent='{}', skipSelect=True)", type,
                             leaf, joint));
    const std::string input = type == "scaleConstraint"    ? "targetScale"
                              : type == "orientConstraint" ? "targetRotate"
                                                           : "targetTranslate";
    const std::string output = type == "scaleConstraint"    ? "scale"
                               : type == "orientConstraint" ? "rotate"
                                                            : "translate";
    for (std::size_t i = 0; i < drivers.size(); ++i)
        scene.python(fmt::format("cmds.connectAttr('{}.{}', '{}.target[{}].{}')", drivers[i],
                                 output, path, i, input));
    return path;
}

}  // namespace torvel::test
