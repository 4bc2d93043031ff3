#pragma once

#include <string>
#include <vector>

#include "graph/math.h"
#include "plugin/control_scene.h"
#include "plugin/expected_scripts.h"

namespace torvel::test {

/// The control window over a chain of joints, for the systems that it builds.
class SystemScene : public ControlScene {
  public:
    struct JointRow {
        std::string name;
        V3d position;  ///< in the world
    };

    /// Joints one below the other under `parent` ("" for the world), without rotations.
    void makeJoints(const std::vector<JointRow>& rows, const std::string& parent = {});
    /// shoulder (0 0 0), elbow (5 0 -1), hand (10 0 0) at the top of the scene.
    void makeArmChain();
    /// The bound arm of our own scenes: clavicle, shoulder, elbow, wrist, hand.
    void openArm();

    V3d at(const std::string& node);
    M44d worldOf(const std::string& node);
    void expectAt(const std::string& node, const V3d& place, double tolerance = 1e-9);
    /// Same place and same axes.
    void expectStandsOn(const std::string& node, const std::string& other, double tolerance = 1e-9);
    /// Sets a compound of three, angles in degrees.
    void set(const std::string& plugName, const V3d& value);
    void setNumber(const std::string& plugName, double value);
    double numberOf(const std::string& plugName);
    std::string parentOf(const std::string& node);

    /// The node and the transforms below it in their order, one blank before a name for each level;
    /// shapes are left out.
    Lines tree(const std::string& root);
    /// Names of the scene's top-level transforms, cameras left out.
    Lines topNodes();
    /// Full paths of all DAG nodes, cameras left out, sorted.
    Lines dagPaths();
    /// transcript() with the lines that the languages print, as "language: ...".
    Lines record();

    std::vector<V3d> skinPoints();
    /// For each vertex of the arm the sum of its weights on these joints.
    std::vector<double> skinShares(const Lines& joints);
};

V3d placeIn(const M44d& world);
/// The point turned about a line through `pivot`, counter-clockwise seen from the tip of `axis`.
V3d turnedAbout(const V3d& point, const V3d& pivot, const V3d& axis, double degrees);

/// The texts that make a circle for a joint and match it to the joint.
Lines circleLines(const std::string& joint, const std::string& jointPath,
                  const std::string& normal = "1 0 0");

/// All that is run and said for one joint of the FK system. `name` goes before "_ctrl", "_Offset"
/// and "_Auto"; `hook` is the line about the parent's control.
Lines fkLines(const std::string& path, const std::string& name, const Lines& hook,
              bool withAuto = false);
Lines hookLine(const std::string& name, const std::string& parent);
Lines noHookLine(const std::string& name);

}  // namespace torvel::test
