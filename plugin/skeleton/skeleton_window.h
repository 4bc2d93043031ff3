#pragma once

#include <maya/MString.h>

#include <QWidget>

#include "ui_skeleton_window.h"

/// The skeleton preparation tools in one window. Each handler works on the active selection at the
/// moment of the click; nothing survives closing, which also deletes the window.
class SkeletonWindow : public QWidget, public Ui::SkeletonWindow {
    Q_OBJECT

  public:
    /// Shows itself, as a child of the application's main window when there is one.
    explicit SkeletonWindow(QWidget* parent = nullptr);

  private Q_SLOTS:
    /// Selects the whole hierarchy from the tops of the selected joints.
    void SelAllHierarchy();

  private:
    void connectSignals();

    void selectChildren();
    void showAxis();
    void hideAxis();
    void setIgnoreLastJoints(int state);
    void setAllHierarchy(int state);
    void setOrientChildren(int state);
    void setAxisSign(int index);
    void updateOrientOptions(bool checked);
    void freezeRotations();
    void orientJoints();
    void flipOrientation();
    void resetBindPose();
    void setDrawStyle(int style);
    void minusRadius();
    void plusRadius();

    bool ignoreLastJoints = false;        ///< joints without a joint child stay unselected
    bool allHierarchy = false;            ///< freeze the whole skeleton, not the selection
    MString orientOrder = "xyz";          ///< option `oj` of cmds.joint
    MString secondaryAxisOrient = "yup";  ///< option `sao` of cmds.joint
    MString axisSign = "up";              ///< "up" or "down"
    bool orientChildren = true;           ///< orient below the selected joints too
    MString primAxis = "X";               ///< letter of the primary axis, upper case
    MString secAxis = "Y";                ///< letter of the secondary axis, upper case
};
