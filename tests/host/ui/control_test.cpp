// Layouts and controls as scripts make and people click them.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>

#include "host/ui/scripted_desktop.h"

namespace torvel {
namespace {

using Controls = test::ScriptedDesktop;

void type(QLineEdit* field, const char* text) {
    field->selectAll();
    field->insert(QString::fromUtf8(text));
    Q_EMIT field->returnPressed();
    Q_EMIT field->editingFinished();
}

TEST_F(Controls, PartsAreNamedByTheirPaths) {
    EXPECT_EQ(py("cmds.window('w')"), "w");
    EXPECT_EQ(py("cmds.columnLayout('col')"), "w|col");
    EXPECT_EQ(py("cmds.rowColumnLayout(numberOfColumns=2)"), "w|col|rowColumnLayout1");
    EXPECT_EQ(py("cmds.text(label='Search:', align='right')"), "w|col|rowColumnLayout1|text1");
    EXPECT_EQ(py("cmds.textField('search')"), "w|col|rowColumnLayout1|search");
    EXPECT_EQ(py("cmds.setParent('..')"), "w|col");
    EXPECT_EQ(py("cmds.button('go')"), "w|col|go");
    EXPECT_EQ(py("cmds.button('go', query=True, fullPathName=True)"), "w|col|go");
    EXPECT_EQ(py("cmds.columnLayout('w|col', q=True, childArray=True)"), "[rowColumnLayout1 go]");
    EXPECT_EQ(py("cmds.text(parent='w|col')"), "w|col|text2");
    EXPECT_EQ(py("cmds.setParent(query=True)"), "w|col");
    EXPECT_EQ(py("cmds.setParent(topLevel=True)"), "w");
    EXPECT_EQ(find("go")->objectName(), "go");
}

TEST_F(Controls, NamesAreTakenOncePerParent) {
    py("cmds.window('w')\ncmds.columnLayout('a')\ncmds.button('go')");
    fails("cmds.button('go')", "Object's name 'go' is not unique.");
    EXPECT_EQ(py("cmds.columnLayout('b', parent='w|a')\ncmds.button('go')"), "w|a|b|go");
    fails("cmds.button('go', e=True, label='x')", "Object's name 'go' is not unique.");
    fails("cmds.button('none', e=True, label='x')", "Object 'none' not found.");
}

TEST_F(Controls, WhereNothingCanStandIsTold) {
    fails("cmds.setParent('MayaWindow')\ncmds.columnLayout()",
          "the main window takes no controls; make a window first");
    py("cmds.window('w')");
    fails("cmds.button()", "Controls must have a layout.  No layout found in window : w");
    py("cmds.rowLayout('row', numberOfColumns=1)\ncmds.button()");
    fails("cmds.button()", "Too many children in layout: row");
    fails("cmds.columnLayout(parent='w')", "Too many children in layout: w");
    // What is made in a window goes into its layout.
    py("cmds.window('v')\ncmds.columnLayout('c')\ncmds.setParent('v')");
    EXPECT_EQ(py("cmds.button('late')"), "v|c|late");
}

TEST_F(Controls, ExistsLooksAtTheKind) {
    py("cmds.window('w')\ncmds.columnLayout('c')\ncmds.button('b')");
    EXPECT_EQ(py("cmds.button('b', exists=True)"), "True");
    EXPECT_EQ(py("cmds.textField('b', exists=True)"), "False");
    EXPECT_EQ(py("cmds.control('b', exists=True)"), "True");
    EXPECT_EQ(py("cmds.layout('w|c', exists=True)"), "True");
    py("cmds.deleteUI('b')");
    EXPECT_EQ(py("cmds.button('b', exists=True)"), "False");
    EXPECT_EQ(py("cmds.columnLayout('c', exists=True)"), "True");
    py("cmds.deleteUI('w', window=True)");
    EXPECT_EQ(py("cmds.columnLayout('c', exists=True)"), "False");
}

TEST_F(Controls, AButtonRunsTextsInMainAndCallables) {
    py("told = []\ndef note(*args): told.append(args)");
    py("cmds.window('w')\ncmds.columnLayout()");
    py("cmds.button('text', label='A & B', command='note(\"%1\")', annotation='tip')");
    py("cmds.button('callable', command=note)");
    click("text");
    click("callable");
    EXPECT_EQ(py("str(told)"), "[('%1',), (False,)]");
    EXPECT_EQ(find<QPushButton>("text")->text(), "A && B");
    EXPECT_EQ(py("cmds.button('text', q=True, label=True)"), "A & B");
    EXPECT_EQ(find("text")->toolTip(), "tip");
    py("cmds.button('text', e=True, command='note(2)')");
    click("text");
    EXPECT_EQ(py("told[-1][0]"), "2");
}

TEST_F(Controls, AFailingButtonPrintsItsErrorAndGoesOn) {
    py("cmds.window('w')\ncmds.columnLayout()\ncmds.button('bad', command='1/0')");
    click("bad");
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(lines.back().find("ZeroDivisionError"), std::string::npos);
}

TEST_F(Controls, AButtonMayDeleteItsOwnWindow) {
    py("cmds.window('w')\ncmds.columnLayout()\n"
       "cmds.button('gone', command=lambda *a: cmds.deleteUI('w'))\ncmds.showWindow('w')");
    click("gone");
    settle();
    EXPECT_EQ(py("cmds.window('w', exists=True)"), "False");
}

TEST_F(Controls, MelMakesControlsThatRunMel) {
    mel("window \"w\"; columnLayout; button -label \"Go\" -command \"$gGone = 7\" \"go\";");
    mel("global int $gGone; $gGone = 0; int $there = `button -exists go`;");
    EXPECT_EQ(mel("button -q -label go"), "Go");
    mel("button -e -command \"select -cl; createNode transform -n made\" go");
    click("go");
    EXPECT_EQ(py("cmds.objExists('made')"), "True");
}

TEST_F(Controls, FieldsHoldTextsAndNumbersInTheirLimits) {
    py("cmds.window('w')\ncmds.columnLayout()\ncmds.textField('t')\n"
       "cmds.intField('i', value=-3, minValue=0)\ncmds.floatField('f', value=1.5, maxValue=2)");
    EXPECT_EQ(py("cmds.textField('t', q=True, text=True)"), "");
    EXPECT_EQ(py("cmds.intField('i', q=True, value=True)"), "0");
    EXPECT_EQ(py("cmds.intField('i', q=True, minValue=True)"), "0");
    py("cmds.floatField('f', e=True, value=7)");
    EXPECT_EQ(py("cmds.floatField('f', q=True, value=True)"), "2");
    py("cmds.textField('t', e=True, text='arm')\ncmds.textField('t', e=True, insertText='_L')");
    EXPECT_EQ(py("cmds.textField('t', q=True, text=True)"), "arm_L");
    find<QLineEdit>("i")->setText("12");
    EXPECT_EQ(py("cmds.intField('i', q=True, value=True)"), "12");
    find<QLineEdit>("i")->setText("-");
    EXPECT_EQ(py("cmds.intField('i', q=True, value=True)"), "0");
}

TEST_F(Controls, FieldsTellWhatWasTyped) {
    py("told = []\ncmds.window('w')\ncmds.columnLayout()\n"
       "cmds.textField('t', changeCommand=lambda v: told.append(v), "
       "enterCommand='told.append(\"enter %1\")')\n"
       "cmds.intField('i', minValue=0, changeCommand=lambda v: told.append(v))");
    py("cmds.textField('t', e=True, text='script')");
    type(find<QLineEdit>("t"), "hand");
    type(find<QLineEdit>("i"), "-4");
    type(find<QLineEdit>("i"), "5");
    EXPECT_EQ(py("str(told)"), "['hand', 'enter hand', 5]");
}

TEST_F(Controls, BoxesAndRadioButtonsTellBothWays) {
    py("told = []\ndef note(name): return lambda v: told.append((name, v))\n"
       "cmds.window('w')\ncmds.columnLayout()\n"
       "cmds.checkBox('box', label='Box', value=True, onCommand=note('on'), "
       "offCommand=note('off'), changeCommand=note('change'))\n"
       "cmds.radioCollection('which')\n"
       "cmds.radioButton('a', label='A', select=True, onCommand=note('a on'), "
       "offCommand=note('a off'))\n"
       "cmds.radioButton('b', label='B', onCommand=note('b on'))");
    click("box");
    EXPECT_EQ(py("str(told)"), "[('change', False), ('off', False)]");
    py("del told[:]");
    click("b");
    EXPECT_EQ(py("str(sorted(told))"), "[('a off', False), ('b on', True)]");
    EXPECT_EQ(py("cmds.radioCollection('which', q=True, select=True)"), "b");
    EXPECT_EQ(py("cmds.radioButton('a', q=True, select=True)"), "False");
    py("del told[:]\ncmds.radioCollection('which', e=True, select='a')");
    EXPECT_EQ(py("cmds.radioButton('a', q=True, select=True)"), "True");
    EXPECT_EQ(py("str(told)"), "[]") << "a script's choice is no click";
    EXPECT_EQ(py("cmds.radioCollection('which', q=True, numberOfCollectionItems=True)"), "2");
}

TEST_F(Controls, OptionMenusFollowTheirItems) {
    py("told = []\ncmds.window('w')\ncmds.columnLayout()\n"
       "cmds.optionMenu('axis', label='Axis', changeCommand=lambda v: told.append(v))\n"
       "for each in 'XYZ': cmds.menuItem(label=each)");
    EXPECT_EQ(py("cmds.optionMenu('axis', q=True, value=True)"), "X");
    py("cmds.optionMenu('axis', e=True, value='Z')");
    EXPECT_EQ(py("cmds.optionMenu('axis', q=True, select=True)"), "3");
    fails("cmds.optionMenu('axis', e=True, value='W')", "Item not found: W");
    auto* field = find("axis")->findChild<QComboBox*>();
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->count(), 3);
    Q_EMIT field->activated(2);
    EXPECT_EQ(py("str(told)"), "['Z']");
    py("cmds.menuItem('menuItem2', e=True, label='Up')");
    EXPECT_EQ(field->itemText(1), "Up");
    py("cmds.deleteUI('menuItem1')");
    EXPECT_EQ(py("cmds.optionMenu('axis', q=True, numberOfItems=True)"), "2");
    EXPECT_EQ(py("cmds.optionMenu('axis', q=True, itemListShort=True)"), "[menuItem2 menuItem3]");
    py("cmds.optionMenu('axis', e=True, deleteAllItems=True)");
    EXPECT_EQ(field->count(), 0);
}

TEST_F(Controls, GroupsHoldLabelAndFields) {
    py("cmds.window('w')\ncmds.columnLayout()\n"
       "cmds.textFieldGrp('name', label='Name', text='arm', columnWidth2=(60, 90))\n"
       "cmds.floatFieldGrp('at', numberOfFields=3, label='At', extraLabel='cm', "
       "value=(1.5, 2, 3))\n"
       "cmds.intFieldGrp('n', value1=4)\n"
       "cmds.radioButtonGrp('r', numberOfRadioButtons=3, labelArray3=['X', 'Y', 'Z'], select=2)");
    EXPECT_EQ(py("cmds.textFieldGrp('name', q=True, text=True)"), "arm");
    EXPECT_EQ(find("name")->findChild<QLineEdit*>()->maximumWidth(), 90);
    EXPECT_EQ(py("cmds.floatFieldGrp('at', q=True, value=True)"), "[1.5 2 3]");
    EXPECT_EQ(py("cmds.floatFieldGrp('at', q=True, value2=True)"), "2");
    EXPECT_EQ(py("cmds.intFieldGrp('n', q=True, value1=True)"), "4");
    fails("cmds.intFieldGrp('n', e=True, value2=1)", "there is no field 2");
    EXPECT_EQ(py("cmds.radioButtonGrp('r', q=True, select=True)"), "2");
    find("r")->findChildren<QRadioButton*>()[2]->click();
    EXPECT_EQ(py("cmds.radioButtonGrp('r', q=True, select=True)"), "3");
}

TEST_F(Controls, WidthsEnablingAndShowing) {
    py("cmds.window('w')\ncmds.columnLayout()\n"
       "cmds.button('b', width=120, height=30, enable=False, visible=False)");
    EXPECT_EQ(py("cmds.button('b', q=True, width=True)"), "120");
    EXPECT_EQ(py("cmds.button('b', q=True, height=True)"), "30");
    EXPECT_EQ(py("cmds.button('b', q=True, enable=True)"), "False");
    EXPECT_EQ(py("cmds.showWindow('w')\ncmds.button('b', q=True, visible=True)"), "False");
    py("cmds.button('b', e=True, enable=True, visible=True)");
    EXPECT_TRUE(find("b")->isEnabled());
    EXPECT_FALSE(find("b")->isHidden());
}

TEST_F(Controls, FramesFoldAndTellIt) {
    py("told = []\ncmds.window('w')\n"
       "cmds.frameLayout('f', label='More', collapsable=True, collapse=True, "
       "expandCommand=lambda: told.append('open'))\ncmds.button('inside')\ncmds.showWindow()");
    EXPECT_EQ(py("cmds.frameLayout('f', q=True, collapse=True)"), "True");
    EXPECT_FALSE(find("inside")->isVisible());
    find("f")->findChild<QPushButton*>()->click();
    EXPECT_TRUE(find("inside")->isVisible());
    EXPECT_EQ(py("str(told)"), "['open']");
}

TEST_F(Controls, TabsBearLabels) {
    py("cmds.window('w')\ntabs = cmds.tabLayout('tabs')\n"
       "one = cmds.columnLayout('one')\ncmds.setParent('..')\ntwo = cmds.columnLayout('two')\n"
       "cmds.tabLayout(tabs, e=True, tabLabel=[(one, 'First'), ('two', 'Second')], "
       "selectTab='two')");
    const auto* tabs = find("tabs")->findChild<QTabWidget*>();
    EXPECT_EQ(tabs->tabText(0), "First");
    EXPECT_EQ(tabs->tabText(1), "Second");
    EXPECT_EQ(py("cmds.tabLayout('tabs', q=True, selectTabIndex=True)"), "2");
}

TEST_F(Controls, ListsAreFilledAndChosenFrom) {
    py("told = []\ncmds.window('w')\ncmds.columnLayout()\n"
       "cmds.textScrollList('list', append=['a', 'b', 'c'], allowMultiSelection=True, "
       "selectItem='b', selectCommand=lambda: told.append(1))");
    EXPECT_EQ(py("cmds.textScrollList('list', q=True, selectItem=True)"), "[b]");
    py("cmds.textScrollList('list', e=True, selectIndexedItem=3)");
    EXPECT_EQ(py("cmds.textScrollList('list', q=True, selectIndexedItem=True)"), "[2 3]");
    EXPECT_EQ(py("len(told)"), "0");
    find<QListWidget>("list")->clearSelection();
    find<QListWidget>("list")->item(0)->setSelected(true);
    EXPECT_EQ(py("cmds.textScrollList('list', q=True, selectItem=True)"), "[a]");
    EXPECT_NE(py("len(told)"), "0");
    fails("cmds.textScrollList('list', e=True, removeItem='d')", "Item not found: d");
    py("cmds.textScrollList('list', e=True, removeAll=True, append='new')");
    EXPECT_EQ(py("cmds.textScrollList('list', q=True, allItems=True)"), "[new]");
}

TEST_F(Controls, SlidersAndTheirFieldsAgree) {
    py("told = []\ncmds.window('w')\ncmds.columnLayout()\n"
       "cmds.floatSliderGrp('f', label='Size', field=True, minValue=-1, maxValue=3, value=2, "
       "changeCommand=lambda v: told.append(v))\n"
       "cmds.intSlider('i', minValue=5, maxValue=9, value=20)");
    EXPECT_EQ(py("cmds.intSlider('i', q=True, value=True)"), "9");
    EXPECT_EQ(py("cmds.floatSliderGrp('f', q=True, value=True)"), "2");
    auto* slider = find("f")->findChild<QSlider*>();
    EXPECT_EQ(slider->value(), 750);  // (2 + 1) of 4, in a thousand steps
    slider->triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_EQ(py("cmds.floatSliderGrp('f', q=True, value=True)"), "-1");
    type(find("f")->findChild<QLineEdit*>(), "1");
    EXPECT_EQ(slider->value(), 500);
    EXPECT_EQ(py("str(told)"), "[-1.0, 1.0]");
}

TEST_F(Controls, WhatWasDeletedIsNotFoundByAnyCommand) {
    py("cmds.window('w')\ncmds.columnLayout('c')");
    for (const char* kind :
         {"columnLayout",   "rowColumnLayout", "rowLayout",      "formLayout",  "frameLayout",
          "scrollLayout",   "tabLayout",       "text",           "textField",   "intField",
          "floatField",     "checkBox",        "radioButton",    "optionMenu",  "button",
          "separator",      "textFieldGrp",    "intFieldGrp",    "checkBoxGrp", "floatFieldGrp",
          "textScrollList", "scrollField",     "radioButtonGrp", "intSlider",   "floatSliderGrp"}) {
        const std::string command = "cmds." + std::string(kind);
        py("cmds.setParent('w|c')");
        EXPECT_EQ(py(command + "('x', width=40)"), "w|c|x") << kind;
        EXPECT_EQ(py(command + "('w|c|x', exists=True)"), "True") << kind;
        EXPECT_EQ(py(command + "('x', q=True, parent=True)"), "w|c") << kind;
        EXPECT_EQ(py(command + "('x', e=True, enable=False)"), "w|c|x") << kind;
        EXPECT_EQ(py(command + "('x', q=True, enable=True)"), "False") << kind;
        py("cmds.deleteUI('x')");
        EXPECT_EQ(py(command + "('x', exists=True)"), "False") << kind;
        for (const char* rest : {"('x', e=True, enable=True)", "('w|c|x', q=True, enable=True)"})
            EXPECT_NE(py(command + rest).find("x' not found."), std::string::npos) << kind;
    }
    fails("cmds.deleteUI('x')", "Object 'x' not found.");
    fails("cmds.setParent('w|c|x')", "Object 'w|c|x' not found.");
}

TEST_F(Controls, ADeletedParentHandsOnToTheOneAboveIt) {
    py("cmds.window('w')\ncmds.columnLayout('a')\ncmds.rowLayout('b')\ncmds.columnLayout('c')");
    py("cmds.deleteUI('b')");
    EXPECT_EQ(py("cmds.setParent(q=True)"), "w|a");
    EXPECT_EQ(py("cmds.button('after')"), "w|a|after");
    py("cmds.deleteUI('w')");
    EXPECT_EQ(py("cmds.setParent(q=True)"), "MayaWindow");
}

// Each deletes the window around it, or itself, while its own signal is still on the way.
TEST_F(Controls, AnyControlMayBeDeletedByItsOwnCommand) {
    const std::string end = "told.append(1); cmds.deleteUI('";
    for (const char* victim : {"w", "c", "x"}) {
        py("told = []\ndef end(*a):\n    " + end + victim + "')");
        const auto make = [this](const char* text) {
            py("if cmds.window('w', exists=True): cmds.deleteUI('w')");
            py(std::string("cmds.window('w')\ncmds.columnLayout('c')\n") + text);
        };
        make("cmds.checkBox('x', changeCommand=end, onCommand=end)");
        click("x");
        settle();
        make("cmds.textField('x', changeCommand=end, enterCommand=end, textChangedCommand=end)");
        type(find<QLineEdit>("x"), "hand");
        settle();
        make("cmds.intField('x', changeCommand='end()', enterCommand='end()')");
        type(find<QLineEdit>("x"), "5");
        settle();
        make(
            "cmds.optionMenu('x', changeCommand=end)\ncmds.menuItem(label='a')\n"
            "cmds.menuItem(label='b')");
        find<QComboBox>("x")->setCurrentIndex(1);
        Q_EMIT find<QComboBox>("x")->activated(1);
        settle();
        make("cmds.textScrollList('x', append=['a', 'b'], selectCommand=end)");
        find<QListWidget>("x")->setCurrentRow(1);
        settle();
        EXPECT_GE(std::stoi(py("len(told)")), 4) << victim;
        EXPECT_EQ(py("cmds.control('x', exists=True)"), "False") << victim;
    }
}

}  // namespace
}  // namespace torvel
