#pragma once

#include <maya/MString.h>

#include <QWidget>

#include "ui_twist_window.h"

/// Twist joints, Maya's weight tools for them and a test animation in one window. Each handler
/// works on the scene as it is at the moment of the click; nothing survives closing, which also
/// deletes the window.
class TwistWindow : public QWidget, public Ui::TwistWindow {
    Q_OBJECT

  public:
    /// Shows itself, as a child of the application's main window when there is one.
    explicit TwistWindow(QWidget* parent = nullptr);

  private:
    void setTwistAxis();

    /// Makes a joint "<joint>_twist" beside each selected joint, four fifths of the way from its
    /// parent, turned by the joint's chosen rotate channel, and adds it to the skins of the whole
    /// selection with its weight locked. Locks every influence in the scene when there is a skin.
    void createTwistJoints();
    void paintWeights();
    void mirrorWeights();
    /// Plays a fixed animation on the first child beside each twist joint and clears it again,
    /// with any other animation of the rotations there. Returns when the playback has ended.
    void testTwist();

    MString twistAxis = "X";  ///< rotate channel that drives a twist joint, upper case
};
