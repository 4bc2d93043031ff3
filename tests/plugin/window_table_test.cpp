// The widget tree of the skeleton window, name by name.

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/window_table.h"

namespace torvel::test {

namespace {

const WidgetRow kWidgets[] = {
    {"label_general", "QLabel", "General:", "SkeletonWindow"},
    {"cBox_ignoreLastChild", "QCheckBox", "Ignore last joints", "SkeletonWindow"},
    {"btn_selAllHierar", "QPushButton", "Select All Hierarchy", "SkeletonWindow"},
    {"btn_selChild", "QPushButton", "Select Children", "SkeletonWindow"},
    {"btn_showAxis", "QPushButton", "ShowAxis", "SkeletonWindow"},
    {"btn_hideAxis", "QPushButton", "Hide Axis", "SkeletonWindow"},
    {"label_freezeRot", "QLabel", "Freeze Rotations:", "SkeletonWindow"},
    {"cBox_allHierarchy", "QCheckBox", "All Hierarchy", "SkeletonWindow"},
    {"btn_freezeRot", "QPushButton", "Freeze Rotations", "SkeletonWindow"},
    {"label_orientBndJnt", "QLabel", "Orient Bind Joints:", "SkeletonWindow"},
    {"cBox_orientChld", "QCheckBox", "Orient children of selected Joints", "SkeletonWindow"},
    {"grp_primAxis", "QFrame", nullptr, "SkeletonWindow"},
    {"label_primAxis", "QLabel", "Primary Axis:", "grp_primAxis"},
    {"rad_primX", "QRadioButton", "x", "grp_primAxis"},
    {"rad_primY", "QRadioButton", "y", "grp_primAxis"},
    {"rad_primZ", "QRadioButton", "z", "grp_primAxis"},
    {"grp_secAxis", "QFrame", nullptr, "SkeletonWindow"},
    {"label_secAxis", "QLabel", "Secondary Axis: ", "grp_secAxis"},
    {"rad_secX", "QRadioButton", "x", "grp_secAxis"},
    {"rad_secY", "QRadioButton", "y", "grp_secAxis"},
    {"rad_secZ", "QRadioButton", "z", "grp_secAxis"},
    {"opt_revertAxis", "QComboBox", nullptr, "grp_secAxis"},
    {"btn_OrientJoints", "QPushButton", "Orient Joints", "SkeletonWindow"},
    {"btn_flipOrient", "QPushButton", "Flip", "SkeletonWindow"},
    {"label_drawStyle", "QLabel", "Draw Style:", "SkeletonWindow"},
    {"btn_drawBone", "QPushButton", "Bone", "SkeletonWindow"},
    {"btn_drawJoint", "QPushButton", "Joint", "SkeletonWindow"},
    {"btn_drawNone", "QPushButton", "None", "SkeletonWindow"},
    {"btn_drawBox", "QPushButton", "Multichild as box", "SkeletonWindow"},
    {"btn_minusRadius", "QPushButton", "-", "SkeletonWindow"},
    {"label_radius", "QLabel", "Radius", "SkeletonWindow"},
    {"btn_plusRadius", "QPushButton", "+", "SkeletonWindow"},
    {"label_resetBndPose", "QLabel", "Reset Bind Pose: ", "SkeletonWindow"},
    {"label_BndPoseInfo", "QLabel", "Select a binded joint and click:", "SkeletonWindow"},
    {"btn_resetBndPose", "QPushButton", "Reset Bind Pose", "SkeletonWindow"},
};

const SizeRow kSizes[] = {
    {"label_general", 0, 0, kFree, 20},        {"btn_selAllHierar", 0, 20, kFree, 20},
    {"btn_selChild", 0, 20, kFree, 20},        {"btn_showAxis", 0, 20, kFree, 20},
    {"btn_hideAxis", 0, 20, kFree, 20},        {"label_freezeRot", 0, 0, kFree, 20},
    {"btn_freezeRot", 0, 20, kFree, kFree},    {"label_orientBndJnt", 0, 0, kFree, 20},
    {"btn_OrientJoints", 0, 20, kFree, kFree}, {"btn_flipOrient", 0, 20, 50, kFree},
    {"label_drawStyle", 0, 0, kFree, 20},      {"btn_drawBone", 0, 20, kFree, kFree},
    {"btn_drawJoint", 0, 20, kFree, kFree},    {"btn_drawNone", 0, 20, kFree, kFree},
    {"btn_drawBox", 0, 20, kFree, kFree},      {"label_resetBndPose", 0, 0, kFree, 20},
    {"btn_resetBndPose", 0, 20, kFree, kFree},
};

QString buttonSheet(const char* normal, const char* hover) {
    return QString(
               "QPushButton {\n    background-color: %1;\n    color: rgb(255, 255, 255);\n"
               "    border-radius: 4px;\n    border: 1px solid rgb(120, 120, 120);\n}\n\n"
               "QPushButton:hover {\n    background-color: %2;\n}\n\n"
               "QPushButton:pressed {\n    background-color: rgb(150, 150, 150);\n}\n\n"
               "QPushButton:disabled {\n    background-color: rgb(100, 100, 100);\n"
               "    color: rgb(150, 150, 150);\n}\n")
        .arg(normal, hover);
}

}  // namespace

class WindowTableTest : public PluginScene {
  public:
    WindowTableTest() : window(openTool()) {}

    template <class T>
    T* widget(const char* name) {
        return namedWidget<T>(window, name);
    }

    QWidget* const window;
};

TEST_F(WindowTableTest, TheWindowItself) {
    ASSERT_NE(window, nullptr);
    EXPECT_STREQ(window->metaObject()->className(), "SkeletonWindow");
    EXPECT_EQ(window->windowTitle(), "Skeleton Configuration");
    EXPECT_EQ(window->size(), QSize(276, 520));
    EXPECT_EQ(window->minimumSize(), QSize(260, 520));
    EXPECT_EQ(window->maximumSize(), QSize(276, 520));
    EXPECT_EQ(window->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(window->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(window->parentWidget()->objectName(), "MayaWindow");
    const Qt::WindowFlags wanted = Qt::Window | Qt::WindowMaximizeButtonHint |
                                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    EXPECT_EQ(window->windowFlags() & wanted, wanted);
    EXPECT_FALSE(window->isModal());
}

TEST_F(WindowTableTest, EveryWidgetHasItsClassTextAndParent) {
    expectWidgets(window, kWidgets);
}

TEST_F(WindowTableTest, NoOtherNamedWidget) {
    QStringList names;
    for (QWidget* child : window->findChildren<QWidget*>()) {
        const QString name = child->objectName();
        const bool ours = !name.isEmpty() && !name.startsWith("qt_") &&
                          child->parentWidget()->objectName() != "opt_revertAxis";
        if (ours && !child->parentWidget()->inherits("QComboBoxPrivateContainer"))
            names.append(name);
    }
    EXPECT_EQ(names.size(), static_cast<int>(std::size(kWidgets))) << names.join(' ').toStdString();
}

TEST_F(WindowTableTest, Sizes) {
    expectSizes(window, kSizes);
    EXPECT_EQ(widget<QWidget>("btn_minusRadius")->minimumWidth(), 40);
    EXPECT_EQ(widget<QWidget>("btn_minusRadius")->maximumSize(), QSize(40, 50));
    EXPECT_EQ(widget<QWidget>("btn_plusRadius")->minimumWidth(), 40);
    EXPECT_EQ(widget<QWidget>("btn_plusRadius")->maximumSize(), QSize(40, 25));
    EXPECT_EQ(widget<QWidget>("label_radius")->minimumWidth(), 80);
}

TEST_F(WindowTableTest, StatesAtTheStart) {
    for (const char* name : {"cBox_orientChld", "rad_primX", "rad_secY"})
        EXPECT_TRUE(widget<QAbstractButton>(name)->isChecked()) << name;
    for (const char* name : {"cBox_ignoreLastChild", "cBox_allHierarchy", "rad_primY", "rad_primZ",
                             "rad_secX", "rad_secZ"})
        EXPECT_FALSE(widget<QAbstractButton>(name)->isChecked()) << name;

    auto* sign = widget<QComboBox>("opt_revertAxis");
    ASSERT_EQ(sign->count(), 2);
    EXPECT_EQ(sign->itemText(0), "+");
    EXPECT_EQ(sign->itemText(1), "-");
    EXPECT_EQ(sign->maxVisibleItems(), 2);
    EXPECT_EQ(sign->currentIndex(), 0);
    EXPECT_EQ(messages(), Lines{}) << "no handler runs before the first click";
}

TEST_F(WindowTableTest, Labels) {
    for (const char* name : {"label_general", "label_freezeRot", "label_orientBndJnt",
                             "label_drawStyle", "label_resetBndPose"})
        EXPECT_EQ(widget<QLabel>(name)->margin(), 5) << name;
    EXPECT_EQ(widget<QLabel>("label_freezeRot")->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(widget<QLabel>("label_freezeRot")->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    auto* radius = widget<QLabel>("label_radius");
    EXPECT_EQ(radius->textFormat(), Qt::RichText);
    EXPECT_EQ(radius->alignment(), Qt::AlignCenter);
    EXPECT_FALSE(radius->wordWrap());
}

TEST_F(WindowTableTest, StyleSheetsOfLabelsAndBoxes) {
    for (const char* name :
         {"label_general", "label_orientBndJnt", "label_drawStyle", "label_resetBndPose"})
        EXPECT_EQ(widget<QWidget>(name)->styleSheet(),
                  "background-color: rgb(30, 30, 30);\ncolor: rgb(255, 255, 255);")
            << name;
    EXPECT_EQ(widget<QWidget>("label_freezeRot")->styleSheet(),
              "background-color: rgb(29, 29, 29);");
    EXPECT_EQ(widget<QWidget>("cBox_allHierarchy")->styleSheet(),
              "alternate-background-color: rgb(255, 255, 255);");
    EXPECT_EQ(widget<QWidget>("grp_primAxis")->styleSheet(), "border-color: rgb(118, 118, 118);");
}

TEST_F(WindowTableTest, StyleSheetsOfButtons) {
    const QString common = buttonSheet("rgb(180, 180, 180)", "rgb(200, 200, 200)");
    int count = 0;
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
        const QString name = button->objectName();
        if (name == "btn_hideAxis")
            EXPECT_EQ(button->styleSheet(), buttonSheet("rgb(0, 0, 180)", "rgb(0, 0, 150)"));
        else if (name == "btn_showAxis")
            EXPECT_EQ(button->styleSheet(), buttonSheet("rgb(180, 0, 0)", "rgb(150, 0, 0)"));
        else
            EXPECT_EQ(button->styleSheet(), common) << name.toStdString();
        ++count;
    }
    EXPECT_EQ(count, 14);
}

TEST_F(WindowTableTest, SectionsStandInOrder) {
    ASSERT_NE(window->layout(), nullptr);
    EXPECT_EQ(window->layout()->objectName(), "verticalLayout");
    EXPECT_EQ(window->layout()->contentsMargins(), QMargins(9, 9, 9, 9));
    QStringList names;
    for (int i = 0; i < window->layout()->count(); ++i) {
        if (QLayout* section = window->layout()->itemAt(i)->layout())
            names.append(section->objectName());
    }
    EXPECT_EQ(names, (QStringList{"lay_General", "lay_FreezeRotation", "lay_orientBndJnt",
                                  "lay_drawStyle", "lay_resetBndPose"}));
}

TEST_F(WindowTableTest, ButtonsStandInTheirCells) {
    struct Cell {
        const char* grid;
        const char* button;
        int row, column;
    };
    const Cell cells[] = {
        {"lay_GeneralButtons", "btn_selAllHierar", 0, 0},
        {"lay_GeneralButtons", "btn_selChild", 0, 1},
        {"lay_GeneralButtons", "btn_showAxis", 1, 0},
        {"lay_GeneralButtons", "btn_hideAxis", 1, 1},
        {"lay_drawBtns", "btn_drawBone", 0, 0},
        {"lay_drawBtns", "btn_drawJoint", 0, 1},
        {"lay_drawBtns", "btn_drawNone", 1, 0},
        {"lay_drawBtns", "btn_drawBox", 1, 1},
    };
    for (const Cell& cell : cells) {
        auto* grid = window->findChild<QGridLayout*>(cell.grid);
        ASSERT_NE(grid, nullptr) << cell.grid;
        QLayoutItem* item = grid->itemAtPosition(cell.row, cell.column);
        ASSERT_NE(item, nullptr) << cell.button;
        EXPECT_EQ(item->widget()->objectName(), cell.button);
    }
}

}  // namespace torvel::test
