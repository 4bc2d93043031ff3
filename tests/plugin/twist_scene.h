#pragma once

#include <string>

#include "plugin/rig_state.h"

namespace torvel::test {

/// A scene in which twist joints are made through the window.
class TwistScene : public PluginScene {
  public:
    /// Opens a window, chooses the axis, selects and presses Create Twist Joint; forgets what the
    /// preparation recorded.
    void twist(const Lines& selection, const std::string& axis = "X");

    /// World position.
    V3d placeOf(const std::string& path);
    void expectPlace(const std::string& path, const V3d& expected);
    /// Four fifths of the way from parent to joint.
    void expectFourFifths(const std::string& twist, const std::string& parent,
                          const std::string& joint);
    /// The plug that feeds the attribute; empty when none does.
    std::string feeding(const std::string& attribute);
    /// Of the rotate channels that of the axis alone is fed, by the joint's; none for "none".
    void expectOneChannel(const std::string& joint, const std::string& twist,
                          const std::string& axis);
    /// Short names, in the order of the cluster.
    Lines influences(const std::string& cluster);
    /// Whether a line that holds the text was shown.
    bool printed(const std::string& text);
};

}  // namespace torvel::test
