#include "plugin/rig_links.h"

#include <algorithm>
#include <iterator>

#include "support/test_scene.h"

namespace torvel::test {

namespace {

const char* const kFunctions =
    "def torvelTestName(node):\n"
    "    path = cmds.ls(node, long=True)[0]\n"
    "    kinds = cmds.nodeType(path, inherited=True) or []\n"
    "    if 'constraint' not in kinds:\n"
    "        return path\n"
    "    return path.rsplit('|', 1)[0] + '|<' + cmds.nodeType(path) + '>'\n"
    "def torvelTestPlug(plug):\n"
    "    node, attribute = plug.split('.', 1)\n"
    "    return torvelTestName(node) + '.' + attribute\n"
    "def torvelTestLinks():\n"
    "    found = []\n"
    "    for node in cmds.ls(long=True):\n"
    "        if cmds.nodeType(node) == 'dagPose':\n"
    "            continue\n"
    "        pairs = cmds.listConnections(node, source=True, destination=False,\n"
    "                                     connections=True, plugs=True) or []\n"
    "        for to, by in zip(pairs[0::2], pairs[1::2]):\n"
    "            found.append(torvelTestPlug(by) + ' > ' + torvelTestPlug(to))\n"
    "    return sorted(found)\n"
    "def torvelTestNames():\n"
    "    return sorted(cmds.nodeType(n) + ' ' + torvelTestName(n) for n in cmds.ls(long=True))\n";

}  // namespace

std::vector<std::string> linksOf(PluginScene& scene) {
    scene.python(kFunctions);
    return textsOf(scene.python("torvelTestLinks()"));
}

std::vector<std::string> namesOf(PluginScene& scene) {
    scene.python(kFunctions);
    return textsOf(scene.python("torvelTestNames()"));
}

std::vector<std::string> missing(const std::vector<std::string>& from,
                                 const std::vector<std::string>& other) {
    std::vector<std::string> gone;
    std::set_difference(from.begin(), from.end(), other.begin(), other.end(),
                        std::back_inserter(gone));
    return gone;
}

}  // namespace torvel::test
