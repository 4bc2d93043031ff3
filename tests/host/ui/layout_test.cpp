// Where layouts put their children, by hand.
#include <QLabel>

#include "host/ui/desktop.h"
#include "host/ui/scripted_desktop.h"
#include "ui/controls/form_widget.h"

namespace torvel {
namespace {

using Layouts = test::ScriptedDesktop;

QRect placeIn(const QWidget* window, const QWidget* widget) {
    return {widget->mapTo(window, QPoint(0, 0)), widget->size()};
}

TEST_F(Layouts, RowsAndColumnsFillRowByRow) {
    py("cmds.window('w')\ncmds.rowColumnLayout('grid', numberOfColumns=2, "
       "columnWidth=[(1, 50), (2, 250)], columnSpacing=(2, 10), rowSpacing=(2, 4))\n"
       "for each in 'abcd': cmds.textField(each, height=20)\ncmds.showWindow()");
    const QWidget* grid = find("grid");
    EXPECT_EQ(placeIn(grid, find("a")), QRect(0, 0, 50, 20));
    EXPECT_EQ(placeIn(grid, find("b")), QRect(60, 0, 250, 20));
    EXPECT_EQ(placeIn(grid, find("c")), QRect(0, 24, 50, 20));
    EXPECT_EQ(placeIn(grid, find("d")), QRect(60, 24, 250, 20));
}

TEST_F(Layouts, AnAdjustableColumnStretchesItsChildren) {
    py("cmds.window('w', widthHeight=(310, 200))\ncmds.columnLayout('c', adjustableColumn=True)\n"
       "cmds.button('wide', width=100)\ncmds.showWindow()");
    EXPECT_EQ(find("wide")->width(), 310);
    py("cmds.window('v', widthHeight=(310, 200))\ncmds.columnLayout('d', rowSpacing=6)\n"
       "cmds.button('own', width=100, height=20)\ncmds.button('next', width=80, height=20)\n"
       "cmds.showWindow()");
    EXPECT_EQ(placeIn(find("d"), find("own")), QRect(0, 0, 100, 20));
    EXPECT_EQ(placeIn(find("d"), find("next")), QRect(0, 26, 80, 20));
}

TEST_F(Layouts, ATallWindowLeavesTheRowsOfAColumnAsTheyAre) {
    py("cmds.window('w', widthHeight=(300, 500))\ncmds.columnLayout('c', adjustableColumn=True)\n"
       "cmds.text('title', label='Title')\ncmds.intFieldGrp('ints', label='Ints')\n"
       "cmds.textScrollList('list', height=90)\ncmds.button('last', height=20)\n"
       "cmds.showWindow()");
    EXPECT_EQ(find("c")->height(), 500);
    EXPECT_EQ(find("title")->height(), find("title")->sizeHint().height());
    EXPECT_EQ(find("ints")->height(), find("ints")->sizeHint().height());
    EXPECT_EQ(find("last")->y(), find("title")->height() + find("ints")->height() + 90);
}

TEST_F(Layouts, TheAdjustableCellOfARowTakesTheRest) {
    py("cmds.window('w', widthHeight=(300, 60))\n"
       "cmds.rowLayout('r', numberOfColumns=3, columnWidth3=(40, 75, 60), adjustableColumn=2)\n"
       "for each in 'abc': cmds.button(each)\ncmds.showWindow()");
    EXPECT_EQ(find("a")->width(), 40);
    EXPECT_EQ(find("b")->width(), 300 - 40 - 60 - 2 * 2);  // two gaps of two
    EXPECT_EQ(find("c")->width(), 60);
}

TEST_F(Layouts, FormsTieEdges) {
    py("cmds.window('w', widthHeight=(200, 120))\ncmds.formLayout('form')\n"
       "for each in 'abcd': cmds.button(each, height=20, width=30)\n"
       "cmds.formLayout('form', e=True, attachForm=[('a', 'left', 5), ('a', 'top', 4), "
       "('b', 'right', 5), ('b', 'top', 4), ('d', 'right', 10), ('d', 'bottom', 10)], "
       "attachPosition=[('a', 'right', 3, 50)], "
       "attachControl=[('b', 'left', 6, 'a'), ('c', 'top', 8, 'a')], "
       "attachOppositeControl=[('c', 'left', 2, 'b')])\ncmds.showWindow()");
    const QWidget* form = find("form");
    ASSERT_EQ(form->size(), QSize(200, 120));
    EXPECT_EQ(placeIn(form, find("a")), QRect(5, 4, 100 - 3 - 5, 20));
    EXPECT_EQ(placeIn(form, find("b")), QRect(97 + 6, 4, 200 - 5 - 103, 20));
    EXPECT_EQ(find("c")->pos(), QPoint(103 + 2, 24 + 8));
    EXPECT_EQ(find("d")->geometry().bottomRight(), QPoint(200 - 10 - 1, 120 - 10 - 1));
}

TEST_F(Layouts, AFormKnowsWhatItNeeds) {
    FormWidget form(nullptr, 100);
    auto* label = new QWidget(&form);
    label->setFixedSize(60, 20);
    form.take(label);
    form.attach(label, FormWidget::kLeft, {FormWidget::Tie::Form, 10, 0, nullptr});
    form.attach(label, FormWidget::kRight, {FormWidget::Tie::Form, 10, 0, nullptr});
    EXPECT_EQ(form.sizeHint(), QSize(80, 20));
    form.attach(label, FormWidget::kRight, {FormWidget::Tie::Position, 0, 50, nullptr});
    EXPECT_EQ(form.sizeHint().width(), 140);  // 10 and 60 have to fit into a half
}

TEST_F(Layouts, ARingOfTiesEnds) {
    py("cmds.window('w')\ncmds.formLayout('form')\n"
       "names = [cmds.button('b%d' % i) for i in range(40)]\n"
       "cmds.formLayout('form', e=True, "
       "attachControl=[(a, 'right', 1, b) for a, b in zip(names, names[1:])] + "
       "[(b, 'left', 1, a) for a, b in zip(names, names[1:])])\ncmds.showWindow()");
    EXPECT_TRUE(find("b39")->isVisible());
    fails("cmds.formLayout('form', e=True, attachForm=('b1', 'middle', 1))",
          "'middle' is no edge (left, top, right, bottom)");
    fails("cmds.formLayout('form', e=True, attachForm=('w', 'left', 1))",
          "'w' is no child of the form");
}

TEST_F(Layouts, SizesAndColumnsHaveLimits) {
    const char* const kRefused[][2] = {
        {"cmds.window(w=2000000000)", "the flag 'width' takes at most 16384 pixels"},
        {"cmds.rowLayout(cw=(1, 2000000000))", "the flag 'columnWidth' takes at most 16384 pixels"},
        {"cmds.rowColumnLayout(cw=(2000000000, 1))",
         "the flag 'columnWidth' takes at most 16384 pixels"},
        {"cmds.rowColumnLayout(adj=-3)", "columns and rows count from 1"},
        {"cmds.button(h=2000000000)", "the flag 'height' takes at most 16384 pixels"},
    };
    py("cmds.window('w')\ncmds.columnLayout('column')");
    for (const auto& [text, error] : kRefused) {
        py("cmds.setParent('column')");
        fails(text, error);
    }
    EXPECT_EQ(py("cmds.intField('count', v=2000000000)\ncmds.intField('count', q=True, v=True)"),
              "2000000000");
}

TEST_F(Layouts, PartsThatAreDeletedUnderThemAreGone) {
    py("cmds.window('w')\ncmds.columnLayout('column')\ncmds.rowLayout('row', nc=2)\n"
       "cmds.button('a')\ncmds.button('b')\ncmds.setParent('column')\n"
       "cmds.rowColumnLayout('grid', nc=2)\ncmds.button('c')\ncmds.showWindow()");
    for (const char* name : {"a", "b", "c"})
        delete find(name);
    EXPECT_EQ(py("cmds.rowLayout('row', e=True, cw=[(1, 50), (2, 60)])\n"
                 "cmds.rowColumnLayout('grid', e=True, cw=(1, 50), adj=1)\n"
                 "cmds.button('a', exists=True)"),
              "False");
    fails("cmds.deleteUI('a')", "Object 'a' not found.");
    // Letting a callable go may delete the rest.
    py("class Last:\n"
       "    def __call__(self, *_): pass\n"
       "    def __del__(self): cmds.deleteUI('w')\n"
       "cmds.setParent('row')\ncmds.button('d', c=Last())\ncmds.deleteUI('d')");
    settle();
    EXPECT_EQ(py("cmds.button('d', exists=True)"), "False");
}

}  // namespace
}  // namespace torvel
