// The widget tree of the control window, name by name, and what stands in it when it opens.

#include <QAbstractButton>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>

#include "plugin/fixtures/control_scene.h"

namespace torvel::test {

namespace {

const WidgetRow kWidgets[] = {
    {"tabWid_leftPanel", "QTabWidget", nullptr, "ControlWindow"},
    {"tab_settings", "QWidget", nullptr, "qt_tabwidget_stackedwidget"},
    {"tab_simplyCtrl", "QWidget", nullptr, "qt_tabwidget_stackedwidget"},
    {"tab_advanceCtrl", "QWidget", nullptr, "qt_tabwidget_stackedwidget"},
    {"tab_assembly", "QWidget", nullptr, "qt_tabwidget_stackedwidget"},

    {"label_step1", "QLabel", "Step 1: Joint axis orientation", "tab_settings"},
    {"info_step1", "QLabel", "Choose the primary axis orientation of your character skeleton. ",
     "tab_settings"},
    {"grp_jntAxisOrient", "QFrame", nullptr, "tab_settings"},
    {"rad_X", "QRadioButton", "X", "grp_jntAxisOrient"},
    {"rad_Y", "QRadioButton", "Y", "grp_jntAxisOrient"},
    {"rad_Z", "QRadioButton", "Z", "grp_jntAxisOrient"},
    {"line_step1", "QFrame", nullptr, "tab_settings"},
    {"label_step2", "QLabel", "Step 2: Offset null objects", "tab_settings"},
    {"info_step2", "QLabel",
     "Choose how many null groups you want to build in the control rig of your character.",
     "tab_settings"},
    {"frame_offsetAuto", "QFrame", nullptr, "tab_settings"},
    {"rad_offset", "QRadioButton", "Offset", "frame_offsetAuto"},
    {"rad_offsetAuto", "QRadioButton", "Offset and Auto", "frame_offsetAuto"},
    {"line_step2", "QFrame", nullptr, "tab_settings"},
    {"img_offsetAuto", "QLabel", "", "tab_settings"},

    {"frame_FKsystem", "QFrame", nullptr, "tab_simplyCtrl"},
    {"label_FKsystem", "QLabel", "FK system:", "frame_FKsystem"},
    {"info_FKsystem", "QLabel",
     "Select in descending order the bones to which you want to create the FK controls. Ex: "
     "Shoulder>Elbow>Hand",
     "frame_FKsystem"},
    {"btn_FKsystem", "QPushButton", "Create FK System", "subframe_FKsystem"},
    {"line_FKIK", "QFrame", nullptr, "tab_simplyCtrl"},
    {"frame_IKsystem", "QFrame", nullptr, "tab_simplyCtrl"},
    {"label_IKsystem", "QLabel", "IK system:", "frame_IKsystem"},
    {"info_IKsystem", "QLabel", "Select the first and last joint of the chain. Ex: Arm>Hand",
     "frame_IKsystem"},
    {"btn_IKsystem", "QPushButton", "Create IK System", "subframe_IKsystem"},
    {"line_IKsystem", "QFrame", nullptr, "tab_simplyCtrl"},
    {"frame_FKIKsystem", "QFrame", nullptr, "tab_simplyCtrl"},
    {"label_FKIKsystem", "QLabel", "FKIK system:", "frame_FKIKsystem"},
    {"info_FKIKsystem1", "QLabel",
     "IMPORTANT: Do not create this system in joints with currently FK or IK systems.",
     "frame_FKIKsystem"},
    {"info_FKIKsystem2", "QLabel", "Select the first and last joint of the chain. Ex: Arm>Hand",
     "frame_FKIKsystem"},
    {"btn_FKIKSystem", "QPushButton", "Create FKIK System", "subframe_FKIKsystem"},
    {"line_FKIKsystem", "QFrame", nullptr, "tab_simplyCtrl"},

    {"frame_footRoll", "QFrame", nullptr, "tab_advanceCtrl"},
    {"label_footRoll", "QLabel", "Foot Roll:", "frame_footRoll"},
    {"info_footRoll", "QLabel", "Pose guides and then confirm positions.", "frame_footRoll"},
    {"frame", "QFrame", nullptr, "frame_footRoll"},
    {"label_2", "QLabel", "Foot side suffix:", "frame"},
    {"lineEdit_2", "QLineEdit", "L", "frame"},
    {"subframe_footroll", "QFrame", nullptr, "frame_footRoll"},
    {"btn_footRoll", "QPushButton", "Pose Guides", "subframe_footroll"},
    {"btn_cancelRoll", "QPushButton", "Cancel", "subframe_footroll"},
    {"frame_IKspline", "QFrame", nullptr, "tab_advanceCtrl"},
    {"label_IKspline", "QLabel", "IK Spine:", "frame_IKspline"},
    {"info_IKspline", "QLabel",
     "Select ascending order the first and the last bones of the 'Spine'. Ex: Spine1>Neck",
     "frame_IKspline"},
    {"btn_IKspline", "QPushButton", "Create IK Spine", "subframe_IKspline"},
    {"frame_sine", "QFrame", nullptr, "tab_advanceCtrl"},
    {"label_sine", "QLabel", "Sine System:", "frame_sine"},
    {"info_sine1", "QLabel",
     "Select in descending order the hierarchy. It is recomended to assign 'Auto' or 'Offset' "
     "groups. Ex: Skirt01_auto>Skirt02_auto>Skirt03_auto",
     "frame_sine"},
    {"info_sine2", "QLabel", "Select control to assign Sine System parameters.", "frame_sine"},
    {"btn_assignHierarchy", "QPushButton", "Assign Hierarchy", "subframe_sine"},
    {"btn_assignCtrl", "QPushButton", "Assign Control", "subframe_sine"},

    {"frame_assembly", "QFrame", nullptr, "tab_assembly"},
    {"frame_finalStep", "QFrame", nullptr, "frame_assembly"},
    {"label_finalStep", "QLabel", "Final step: Assembly", "frame_finalStep"},
    {"frame_createRoot", "QFrame", nullptr, "frame_finalStep"},
    {"cBox_createRoot", "QCheckBox", "Create Root:", "frame_createRoot"},
    {"label_rootName", "QLabel", "Root Name:", "frame_createRoot"},
    {"lineEdit", "QLineEdit", "", "frame_createRoot"},
    {"frame_AssemblyBtn", "QFrame", nullptr, "frame_finalStep"},
    {"label", "QLabel", "Select first character joint and click: ", "frame_AssemblyBtn"},
    {"pushButton_3", "QPushButton", "Assembly", "frame_AssemblyBtn"},

    {"line_vSeparator", "QFrame", nullptr, "ControlWindow"},
    {"label_shpModification", "QLabel", "Shape modification:", "ControlWindow"},
    {"scrollArea", "QScrollArea", nullptr, "ControlWindow"},
    {"scrollArea_content", "QWidget", nullptr, "qt_scrollarea_viewport"},
    {"line_separator1", "QFrame", nullptr, "ControlWindow"},
    {"label_color", "QLabel", "Color:", "ControlWindow"},
    {"subframe_color", "QFrame", nullptr, "ControlWindow"},
    {"label_colorPicked", "QLabel", "", "subframe_color"},
    {"line_separatpr2", "QFrame", nullptr, "ControlWindow"},
    {"label_scaleMultiply", "QLabel", "Scale multiply:", "ControlWindow"},
    {"frame_scalar", "QFrame", nullptr, "ControlWindow"},
    {"btn_reset", "QPushButton", "R", "frame_scalar"},
    {"hSlider_scalar", "QSlider", nullptr, "frame_scalar"},
    {"hSep", "QFrame", nullptr, "ControlWindow"},
    {"frame_rotShp", "QFrame", nullptr, "ControlWindow"},
    {"label_rotShp", "QLabel", "Rotate shape:", "frame_rotShp"},
    {"grp_rotateShp", "QFrame", nullptr, "frame_rotShp"},
    {"rad_rotShp_X", "QRadioButton", "X", "grp_rotateShp"},
    {"rad_rotShp_Y", "QRadioButton", "Y", "grp_rotateShp"},
    {"rad_rotShp_Z", "QRadioButton", "Z", "grp_rotateShp"},
    {"btnRot180", "QPushButton", "180º", "grp_rotateShp"},
    {"btnRot90", "QPushButton", "90º", "grp_rotateShp"},
    {"line_separator4", "QFrame", nullptr, "frame_rotShp"},
    {"frame_freeModify", "QFrame", nullptr, "ControlWindow"},
    {"label_freeModify", "QLabel", "Curve free modify:", "frame_freeModify"},
    {"cBox_freeModify", "QCheckBox", "", "frame_freeModify"},
};

struct ShapeCell {
    int number, row, column;
};

const ShapeCell kShapeCells[] = {
    {1, 0, 4},   {2, 2, 6},  {3, 2, 9},  {4, 0, 9},   {5, 4, 4},   {6, 4, 6},   {7, 4, 7},
    {8, 4, 9},   {9, 0, 2},  {10, 2, 5}, {12, 4, 8},  {13, 5, 5},  {14, 2, 4},  {15, 5, 6},
    {16, 4, 5},  {17, 5, 7}, {18, 5, 8}, {19, 11, 2}, {20, 11, 4}, {21, 11, 5}, {22, 11, 6},
    {23, 2, 2},  {26, 2, 8}, {27, 4, 2}, {29, 0, 6},  {32, 5, 4},  {34, 0, 7},  {35, 0, 8},
    {36, 11, 9}, {38, 5, 2}, {39, 5, 9}, {40, 11, 7}, {42, 2, 7},  {43, 11, 8}, {46, 0, 5},
};

const char* const kHeaders[] = {
    "label_step1",      "label_step2",           "label_FKsystem", "label_IKsystem",
    "label_FKIKsystem", "label_footRoll",        "label_IKspline", "label_sine",
    "label_finalStep",  "label_shpModification",
};

QString shapeName(int number) {
    return QString("btnShape%1").arg(number, 2, 10, QChar('0'));
}

QString shapeSheet(int number) {
    const QString picture =
        QString("url(:/images/img/new/ccButton%1 copy.jpg)").arg(number, 2, 10, QChar('0'));
    return "QPushButton{\n\tbackground-image: " + picture + ";\n\tborder-image:" + picture +
           " 0 0 0 0 stretch stretch;\n    background-color: rgba(100, 50, 50, 125);\n"
           "\tborder: none;\n\n}\n\nQPushButton:hover{\n\tborder: 1px solid blue;\n\n}\n\n"
           "QPushButton:pressed{\n\tborder: 1px solid blue;\n"
           "    background-color: rgba(0, 0, 0, 0);\n}";
}

}  // namespace

using ControlWindowTest = ControlScene;

TEST_F(ControlWindowTest, TheWindowItself) {
    ASSERT_NE(window, nullptr);
    EXPECT_STREQ(window->metaObject()->className(), "ControlWindow");
    EXPECT_EQ(window->windowTitle(), "Control system creator");
    EXPECT_EQ(window->size(), QSize(630, 360));
    EXPECT_EQ(window->minimumSize(), QSize(630, 360));
    EXPECT_EQ(window->maximumSize(), QSize(630, QWIDGETSIZE_MAX));
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(window->parentWidget()->objectName(), "MayaWindow");
    const Qt::WindowFlags wanted = Qt::Window | Qt::WindowMaximizeButtonHint |
                                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    EXPECT_EQ(window->windowFlags() & wanted, wanted);
    const QMetaObject* meta = window->metaObject();
    EXPECT_EQ(meta->methodCount(), meta->methodOffset()) << "no slot and no signal of its own";
}

TEST_F(ControlWindowTest, EveryWidgetHasItsClassTextAndParent) {
    expectWidgets(window, kWidgets);
}

TEST_F(ControlWindowTest, NoOtherButtonOrField) {
    int named = 0;
    for (const WidgetRow& row : kWidgets) {
        const std::string kind = row.className;
        named += kind == "QPushButton" || kind == "QCheckBox" || kind == "QRadioButton" ||
                 kind == "QLineEdit" || kind == "QSlider";
    }
    int found = 0;
    for (QWidget* child : window->findChildren<QWidget*>()) {
        const bool control = qobject_cast<QAbstractButton*>(child) ||
                             qobject_cast<QLineEdit*>(child) || qobject_cast<QSlider*>(child);
        const QString parent = child->parentWidget()->objectName();
        found +=
            control && !qobject_cast<QTabBar*>(child->parentWidget()) && !parent.startsWith("qt_");
    }
    EXPECT_EQ(found, named + static_cast<int>(std::size(kShapeCells)));
}

TEST_F(ControlWindowTest, TheTopLayout) {
    auto* grid = qobject_cast<QGridLayout*>(window->layout());
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->objectName(), "gridLayout");
    EXPECT_EQ(grid->contentsMargins(), QMargins(6, 2, 6, 2));
    EXPECT_EQ(grid->count(), 3);
    EXPECT_EQ(grid->itemAtPosition(0, 0)->layout()->objectName(), "lay_leftPanel");
    EXPECT_EQ(grid->itemAtPosition(0, 1)->widget()->objectName(), "line_vSeparator");
    EXPECT_EQ(widget<QFrame>("line_vSeparator")->frameShape(), QFrame::VLine);
    EXPECT_EQ(grid->itemAtPosition(0, 2)->layout()->objectName(), "lay_rightPanel");
    EXPECT_EQ(layoutOf("lay_rightPanel")->spacing(), 0);
}

TEST_F(ControlWindowTest, Tabs) {
    auto* tabs = widget<QTabWidget>("tabWid_leftPanel");
    EXPECT_EQ(tabs->minimumSize(), QSize(300, 400));
    EXPECT_EQ(tabs->maximumSize(), QSize(300, 500));
    EXPECT_EQ(tabs->tabPosition(), QTabWidget::West);
    EXPECT_EQ(tabs->tabShape(), QTabWidget::Triangular);
    EXPECT_EQ(tabs->iconSize(), QSize(16, 16));
    EXPECT_EQ(tabs->elideMode(), Qt::ElideLeft);
    EXPECT_FALSE(tabs->usesScrollButtons() || tabs->documentMode() || tabs->tabsClosable() ||
                 tabs->isMovable() || tabs->tabBarAutoHide());
    EXPECT_TRUE(tabs->autoFillBackground());
    ASSERT_EQ(tabs->count(), 4);
    const char* const titles[] = {"Settings", "Simply Ctrl", "Advance Ctrl", "Assembly"};
    const char* const pages[] = {"tab_settings", "tab_simplyCtrl", "tab_advanceCtrl",
                                 "tab_assembly"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(tabs->tabText(i), titles[i]);
        EXPECT_EQ(tabs->widget(i)->objectName(), pages[i]);
    }
    EXPECT_EQ(tabs->currentIndex(), 2);
}

TEST_F(ControlWindowTest, SizesAndStyles) {
    for (const char* name : kHeaders) {
        auto* label = widget<QLabel>(name);
        EXPECT_EQ(label->styleSheet(),
                  "background-color: rgb(30, 30, 30);\ncolor: rgb(255, 255, 255);")
            << name;
        EXPECT_EQ(label->height(), 20) << name;
    }
    EXPECT_EQ(widget<QLabel>("info_FKIKsystem1")->styleSheet(), "color: rgb(170, 0, 0)");
    EXPECT_TRUE(widget<QLabel>("label_shpModification")->font().bold());
    EXPECT_EQ(widget<QWidget>("info_step1")->maximumHeight(), 30);
    EXPECT_EQ(widget<QWidget>("info_step2")->minimumHeight(), 30);
    EXPECT_EQ(widget<QWidget>("info_step2")->maximumHeight(), 35);
    EXPECT_TRUE(widget<QLabel>("info_step1")->wordWrap());
    EXPECT_TRUE(widget<QLabel>("info_step2")->wordWrap());
    EXPECT_EQ(widget<QWidget>("grp_jntAxisOrient")->height(), 20);
    EXPECT_EQ(widget<QWidget>("frame_offsetAuto")->height(), 30);
    for (const char* name : {"btn_FKsystem", "btn_IKsystem", "btn_FKIKSystem"})
        EXPECT_EQ(widget<QWidget>(name)->maximumWidth(), 100) << name;
    EXPECT_EQ(widget<QWidget>("btn_footRoll")->maximumWidth(), 125);
    EXPECT_EQ(widget<QWidget>("btn_cancelRoll")->maximumWidth(), 60);
    EXPECT_EQ(layoutOf("frame_createRoot")->spacing(), 9);
    EXPECT_EQ(widget<QCheckBox>("cBox_createRoot")->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(widget<QLineEdit>("lineEdit")->placeholderText(), "root_joint");
    EXPECT_EQ(widget<QLineEdit>("lineEdit")->maxLength(), 50);
}

TEST_F(ControlWindowTest, TheOffsetPicture) {
    auto* label = widget<QLabel>("img_offsetAuto");
    EXPECT_EQ(label->maximumHeight(), 115);
    EXPECT_EQ(label->styleSheet(), "background-image: width 100%;");
    EXPECT_TRUE(label->hasScaledContents());
    EXPECT_FALSE(label->pixmap(Qt::ReturnByValue).isNull());
}

TEST_F(ControlWindowTest, ThePaletteAndItsScrollArea) {
    auto* area = widget<QScrollArea>("scrollArea");
    EXPECT_EQ(area->height(), 140);
    EXPECT_TRUE(area->autoFillBackground());
    EXPECT_TRUE(area->widgetResizable());
    EXPECT_EQ(area->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    EXPECT_EQ(area->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(area->styleSheet(),
              "QScrollBar:vertical {\n    border: 1px solid #999999;\n    background: #f1f1f1;\n"
              "    width: 12px;\n}\n\n\n\n\n");
    auto* grid = qobject_cast<QGridLayout*>(widget<QWidget>("scrollArea_content")->layout());
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->objectName(), "gridLayout_2");
    EXPECT_EQ(grid->horizontalSpacing(), 0);
    EXPECT_EQ(grid->verticalSpacing(), 1);
    ASSERT_EQ(grid->count(), 35);
    for (const ShapeCell& cell : kShapeCells) {
        QLayoutItem* item = grid->itemAtPosition(cell.row, cell.column);
        ASSERT_NE(item, nullptr) << cell.number;
        auto* button = qobject_cast<QPushButton*>(item->widget());
        ASSERT_NE(button, nullptr) << cell.number;
        EXPECT_EQ(button->objectName(), shapeName(cell.number));
        EXPECT_EQ(button->text(), "");
        EXPECT_EQ(button->minimumSize(), QSize(40, 40));
        EXPECT_EQ(button->cursor().shape(), Qt::PointingHandCursor);
        EXPECT_EQ(button->styleSheet(), shapeSheet(cell.number));
    }
}

TEST_F(ControlWindowTest, APictureForEveryNumber) {
    for (int number = 1; number <= 46; ++number) {
        const QString path =
            QString(":/images/img/new/ccButton%1 copy.jpg").arg(number, 2, 10, QChar('0'));
        const QImage picture(path);
        EXPECT_FALSE(picture.isNull()) << number;
        EXPECT_EQ(picture.width(), picture.height()) << number;
    }
}

// A style sheet whose picture is not found leaves the button in its plain colour.
TEST_F(ControlWindowTest, TheButtonsShowTheirPictures) {
    const QImage shown = widget<QWidget>("btnShape46")->grab().toImage();
    const QImage picture =
        QImage(":/images/img/new/ccButton46 copy.jpg")
            .scaled(shown.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QColor a = shown.pixelColor(shown.width() / 2, shown.height() / 2);
    const QColor b = picture.pixelColor(shown.width() / 2, shown.height() / 2);
    EXPECT_NEAR(a.red(), b.red(), 12);
    EXPECT_NEAR(a.green(), b.green(), 12);
    EXPECT_NEAR(a.blue(), b.blue(), 12);
}

TEST_F(ControlWindowTest, TheRightPanelFromTopToBottom) {
    QLayout* panel = layoutOf("lay_rightPanel");
    QStringList names;
    for (int i = 0; i < panel->count(); ++i) {
        QLayoutItem* item = panel->itemAt(i);
        if (item->widget())
            names.append(item->widget()->objectName());
        else if (item->layout())
            names.append(item->layout()->objectName());
    }
    EXPECT_EQ(names, (QStringList{"label_shpModification", "scrollArea", "line_separator1",
                                  "frame_color", "line_separatpr2", "label_scaleMultiply",
                                  "frame_scalar", "hSep", "frame_rotShp", "frame_freeModify"}));
    auto* color = window->findChild<QVBoxLayout*>("frame_color");
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(color->itemAt(0)->widget()->objectName(), "label_color");
    EXPECT_EQ(color->itemAt(1)->widget()->objectName(), "subframe_color");
}

TEST_F(ControlWindowTest, StatesAtTheStart) {
    for (const char* name : {"rad_X", "rad_offset", "rad_rotShp_X"})
        EXPECT_TRUE(widget<QAbstractButton>(name)->isChecked()) << name;
    for (const char* name : {"rad_Y", "rad_Z", "rad_offsetAuto", "rad_rotShp_Y", "rad_rotShp_Z",
                             "cBox_createRoot", "cBox_freeModify"})
        EXPECT_FALSE(widget<QAbstractButton>(name)->isChecked()) << name;
    auto* slider = widget<QSlider>("hSlider_scalar");
    EXPECT_EQ(slider->orientation(), Qt::Horizontal);
    EXPECT_EQ(slider->minimum(), -20);
    EXPECT_EQ(slider->maximum(), 20);
    EXPECT_EQ(slider->pageStep(), 80);
    EXPECT_EQ(slider->value(), 0);
    EXPECT_TRUE(slider->hasTracking());
    EXPECT_EQ(transcript(), Lines{}) << "no handler runs before the first click";
}

TEST_F(ControlWindowTest, TheSwatch) {
    auto* swatch = widget<QLabel>("label_colorPicked");
    EXPECT_EQ(swatch->styleSheet(), "background-color: colorVar;");
    EXPECT_EQ(swatch->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_TRUE(swatch->testAttribute(Qt::WA_Hover));
}

TEST_F(ControlWindowTest, DeadControlsDoNothing) {
    for (const char* name :
         {"btn_IKspline", "btn_assignHierarchy", "btn_assignCtrl", "pushButton_3"}) {
        widget<QPushButton>(name)->click();
        EXPECT_EQ(transcript(), Lines{}) << name;
    }
    widget<QCheckBox>("cBox_createRoot")->setChecked(true);
    widget<QLineEdit>("lineEdit")->setText("master");
    widget<QLineEdit>("lineEdit_2")->setText("ñ %&");
    EXPECT_EQ(transcript(), Lines{});
}

TEST_F(ControlWindowTest, RadiosEchoTheirChoice) {
    for (const char* name : {"rad_Z", "rad_Y", "rad_X", "rad_X", "rad_offsetAuto", "rad_offset"})
        click(name);
    EXPECT_EQ(transcript(), (Lines{"info: z", "info: y", "info: x", "info: x", "info: offsetAuto",
                                   "info: offset"}));
}

TEST_F(ControlWindowTest, RotationAxisSaysTwoLines) {
    for (const char* name : {"rad_rotShp_Y", "rad_rotShp_Z", "rad_rotShp_X"})
        click(name);
    EXPECT_EQ(transcript(),
              (Lines{"info: Eje Y seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: y",
                     "info: Eje Z seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: z",
                     "info: Eje X seleccionado para rotaci\xEF\xBF\xBDn secundaria.", "info: x"}));
}

TEST_F(ControlWindowTest, RadiosExcludeEachOtherWithinTheirFrame) {
    click("rad_Z");
    click("rad_offsetAuto");
    click("rad_rotShp_Y");
    for (const char* name : {"rad_Z", "rad_offsetAuto", "rad_rotShp_Y"})
        EXPECT_TRUE(widget<QAbstractButton>(name)->isChecked()) << name;
    for (const char* name : {"rad_X", "rad_offset", "rad_rotShp_X"})
        EXPECT_FALSE(widget<QAbstractButton>(name)->isChecked()) << name;
}

TEST_F(ControlWindowTest, WindowsAreIndependentAndEndWhenClosed) {
    QWidget* second = openControls();
    ASSERT_NE(second, window);
    press(second, "rad_Z");
    EXPECT_TRUE(widget<QAbstractButton>("rad_X")->isChecked());
    second->close();
    finishDeletion();
    EXPECT_EQ(windowsNamed("ControlWindow").size(), 1u);
}

TEST_F(ControlWindowTest, NoCommandOfTheShippedPluginOpensIt) {
    python("cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    for (const char* name : {"CtrlCreator", "ControlWindow", "torvel_control"})
        EXPECT_FALSE(python(std::string("hasattr(cmds, '") + name + "')").truth()) << name;
}

}  // namespace torvel::test
