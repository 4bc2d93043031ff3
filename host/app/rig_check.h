#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace torvel {

class Scene;

/// Something that a tool of the skeleton window would lose, refuse or change on this rig.
struct Finding {
    std::string rule;                ///< "posed-away", "lost-constraint" ... (rigRules)
    std::string tools;               ///< the buttons concerned, joined by ", "
    std::string skeleton;            ///< short name of its top joint
    std::vector<std::string> nodes;  ///< what it is about, in the order of the scene
    std::string text;                ///< one sentence: what will happen, and what to do about it
};

/// Looks at every skeleton that drives a skin (locked rotations: at every skeleton), top joints in
/// the order of the scene, rules in the order of their table. Evaluates the joints; changes
/// nothing.
std::vector<Finding> checkRig(const Scene& scene);

/// A block of lines for each finding, then how many there are; "nothing to report" for none.
void printFindings(const std::vector<Finding>& findings, std::ostream& out);
/// {"findings": [{"rule", "tools", "skeleton", "nodes", "text"}]}
std::string findingsJson(const std::vector<Finding>& findings);

}  // namespace torvel
