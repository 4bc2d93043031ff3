// The widget tree of the twist window, name by name, and what its small buttons run.

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QVariant>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/window_table.h"
#include "ui/desktop/main_window.h"

namespace torvel::test {

namespace {

const WidgetRow kWidgets[] = {
    {"label_twist", "QLabel", "Create twist joints:", "TwistWindow"},
    {"label_axisOrient", "QLabel", "Twist axis orient:", "TwistWindow"},
    {"grp_axisOrient", "QFrame", nullptr, "TwistWindow"},
    {"rad_X", "QRadioButton", "X", "grp_axisOrient"},
    {"rad_Y", "QRadioButton", "Y", "grp_axisOrient"},
    {"rad_Z", "QRadioButton", "Z", "grp_axisOrient"},
    {"btn_createTwist", "QPushButton", "Create Twist Joint", "TwistWindow"},
    {"line", "QFrame", nullptr, "TwistWindow"},
    {"label_paintWeights", "QLabel", "Paint weight of twist joints:", "TwistWindow"},
    {"btn_paintWeights", "QPushButton", "Paint Weights", "TwistWindow"},
    {"btn_mirror", "QPushButton", "Mirror Weights", "TwistWindow"},
    {"line_2", "QFrame", nullptr, "TwistWindow"},
    {"label_animationTest", "QLabel", "Animation Test:", "TwistWindow"},
    {"btn_animationTest", "QPushButton", "Test Twist", "TwistWindow"},
};

const SizeRow kSizes[] = {
    {"label_twist", 20, 20, kFree, 20},       {"label_axisOrient", 0, 0, kFree, 30},
    {"grp_axisOrient", 0, 0, kFree, 30},      {"btn_createTwist", 0, 20, kFree, 20},
    {"label_paintWeights", 0, 20, kFree, 20}, {"btn_paintWeights", 0, 20, kFree, 20},
    {"btn_mirror", 0, 20, kFree, 20},         {"label_animationTest", 0, 0, 2000, 20},
    {"btn_animationTest", 0, 20, kFree, 20},
};

const char* const kButtonSheet =
    "QPushButton {\n    background-color: rgb(180, 180, 180);\n    color: rgb(255, 255, 255);\n"
    "    border-radius: 4px;\n    border: 1px solid rgb(120, 120, 120);\n}\n\n"
    "QPushButton:hover {\n    background-color: rgb(200, 200, 200);\n}\n\n"
    "QPushButton:pressed {\n    background-color: rgb(150, 150, 150);\n}\n\n"
    "QPushButton:disabled {\n    background-color: rgb(100, 100, 100);\n"
    "    color: rgb(150, 150, 150);\n}\n";

}  // namespace

class TwistWindowTest : public PluginScene {
  public:
    template <class T>
    T* widget(const char* name) {
        return namedWidget<T>(window, name);
    }

    /// What stands in a layout, from first to last: object names, "(spacer)" for a spacer.
    QStringList rowsOf(const char* layoutName) {
        auto* layout = widget<QLayout>(layoutName);
        QStringList names;
        for (int i = 0; layout && i < layout->count(); ++i) {
            QLayoutItem* item = layout->itemAt(i);
            if (item->spacerItem())
                names.append("(spacer)");
            else
                names.append(item->layout() ? item->layout()->objectName()
                                            : item->widget()->objectName());
        }
        return names;
    }

    QWidget* const window = openTwist();
};

TEST_F(TwistWindowTest, TheWindowItself) {
    ASSERT_NE(window, nullptr);
    EXPECT_STREQ(window->metaObject()->className(), "TwistWindow");
    EXPECT_EQ(window->metaObject()->methodCount(), QWidget::staticMetaObject.methodCount())
        << "no slot of its own";
    EXPECT_EQ(window->windowTitle(), "Twist System");
    EXPECT_EQ(window->size(), QSize(250, 210));
    EXPECT_EQ(window->minimumSize(), QSize(250, 200));
    EXPECT_EQ(window->maximumSize(), QSize(250, 210));
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isModal());
    EXPECT_TRUE(window->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(window->parentWidget(), &mainWindow());
    const Qt::WindowFlags wanted = Qt::Window | Qt::WindowMaximizeButtonHint |
                                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    EXPECT_EQ(window->windowFlags() & wanted, wanted);
    EXPECT_EQ(messages(), Lines{});
    EXPECT_EQ(scripts(), Lines{});
}

TEST_F(TwistWindowTest, EveryWidgetHasItsClassTextAndParent) {
    expectWidgets(window, kWidgets);
    EXPECT_EQ(window->findChildren<QWidget*>().size(), static_cast<int>(std::size(kWidgets)));
}

TEST_F(TwistWindowTest, Sizes) {
    expectSizes(window, kSizes);
}

TEST_F(TwistWindowTest, RowsStandInOrder) {
    EXPECT_EQ(rowsOf("verticalLayout"), (QStringList{"grp_createTwist", "line", "grp_paintWeight",
                                                     "line_2", "grp_animationTest", "(spacer)"}));
    EXPECT_EQ(rowsOf("grp_createTwist"),
              (QStringList{"label_twist", "grp_twistOrient", "btn_createTwist"}));
    EXPECT_EQ(rowsOf("grp_twistOrient"),
              (QStringList{"label_axisOrient", "grp_axisOrient", "(spacer)"}));
    EXPECT_EQ(rowsOf("horizontalLayout_3"), (QStringList{"rad_X", "rad_Y", "rad_Z"}));
    EXPECT_EQ(rowsOf("grp_paintWeight"), (QStringList{"label_paintWeights", "grp_weightBtn"}));
    EXPECT_EQ(rowsOf("grp_weightBtn"), (QStringList{"btn_paintWeights", "btn_mirror"}));
    EXPECT_EQ(rowsOf("grp_animationTest"),
              (QStringList{"label_animationTest", "btn_animationTest"}));
    EXPECT_EQ(window->layout()->objectName(), "verticalLayout");
    EXPECT_EQ(window->layout()->spacing(), 4);
    EXPECT_EQ(widget<QLayout>("grp_createTwist")->spacing(), 0);
    EXPECT_EQ(widget<QLayout>("grp_animationTest")->spacing(), 6);
    EXPECT_EQ(widget<QLayout>("grp_animationTest")->sizeConstraint(),
              QLayout::SetDefaultConstraint);
}

TEST_F(TwistWindowTest, LabelsAndFrames) {
    for (const char* name : {"label_twist", "label_paintWeights", "label_animationTest"}) {
        EXPECT_EQ(widget<QLabel>(name)->indent(), 5) << name;
        EXPECT_EQ(widget<QLabel>(name)->margin(), 0) << name;
        EXPECT_EQ(widget<QLabel>(name)->styleSheet(),
                  "background-color: rgb(30, 30, 30);\ncolor: rgb(255, 255, 255);")
            << name;
    }
    EXPECT_EQ(widget<QLabel>("label_axisOrient")->styleSheet(), "");
    auto* axes = widget<QFrame>("grp_axisOrient");
    EXPECT_EQ(axes->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(axes->frameShadow(), QFrame::Plain);
    EXPECT_EQ(axes->lineWidth(), 0);
    for (const char* name : {"line", "line_2"}) {
        EXPECT_EQ(widget<QFrame>(name)->frameShape(), QFrame::HLine) << name;
        EXPECT_EQ(widget<QFrame>(name)->frameShadow(), QFrame::Sunken) << name;
    }
    int count = 0;
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
        EXPECT_EQ(button->styleSheet(), kButtonSheet) << button->objectName().toStdString();
        ++count;
    }
    EXPECT_EQ(count, 4);
}

TEST_F(TwistWindowTest, RadiosExcludeEachOtherInSilence) {
    const char* const names[] = {"rad_X", "rad_Y", "rad_Z"};
    EXPECT_TRUE(widget<QRadioButton>("rad_X")->isChecked());
    for (const char* pressed : {"rad_Y", "rad_Z", "rad_X", "rad_X"}) {
        press(window, pressed);
        for (const char* name : names)
            EXPECT_EQ(widget<QRadioButton>(name)->isChecked(), std::string(name) == pressed);
    }
    EXPECT_EQ(messages(), Lines{});
    EXPECT_EQ(scripts(), Lines{});
}

TEST_F(TwistWindowTest, EachRunOpensAnotherWindow) {
    QPointer<QWidget> second = openTwist();
    ASSERT_FALSE(second.isNull());
    EXPECT_NE(second.data(), window);
    press(second, "rad_Z");
    EXPECT_TRUE(widget<QRadioButton>("rad_X")->isChecked());
    second->close();
    finishDeletion();
    EXPECT_TRUE(second.isNull());
    EXPECT_EQ(windowsNamed("TwistWindow").size(), 1u);
}

TEST_F(TwistWindowTest, WithoutAMainWindowItStandsAlone) {
    QWidget* const desktop = session().mainWindow;
    session().mainWindow = nullptr;
    QPointer<QWidget> alone = openTwist();
    session().mainWindow = desktop;
    ASSERT_FALSE(alone.isNull());
    EXPECT_EQ(alone->parentWidget(), nullptr);
    EXPECT_TRUE(alone->isVisible());
}

// Whether the selection is empty makes no difference to either.
TEST_F(TwistWindowTest, TheWeightButtonsOpenTheHostsTools) {
    press(window, "btn_paintWeights");
    press(window, "btn_mirror");
    EXPECT_EQ(
        transcript(),
        (Lines{"python plain: cmds.ArtPaintSkinWeightsTool()\ncmds.toolPropertyWindow()\n",
               "python plain: import maya.mel as mel\nmel.eval('MirrorSkinWeightsOptions;')\n"}));
    for (const char* tool : {"paintSkinWeights", "mirrorSkinWeightsOptions"})
        EXPECT_EQ(windowsNamed(tool).size(), 1u) << tool;
}

}  // namespace torvel::test
