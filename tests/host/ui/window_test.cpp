// Windows and dialogs of scripts.
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QTimer>

#include "host/ui/scripted_desktop.h"

namespace torvel {
namespace {

using Windows = test::ScriptedDesktop;

TEST_F(Windows, AWindowIsHiddenUntilItIsShown) {
    EXPECT_EQ(py("cmds.window('w', title='Rename', widthHeight=(310, 360), "
                 "topLeftCorner=(200, 150))"),
              "w");
    EXPECT_EQ(py("cmds.window('w', exists=True)"), "True");
    EXPECT_FALSE(find("w")->isVisible());
    EXPECT_EQ(py("str(cmds.showWindow('w'))"), "None");
    EXPECT_TRUE(find("w")->isVisible());
    EXPECT_EQ(find("w")->windowTitle(), "Rename");
    EXPECT_EQ(find("w")->size(), QSize(310, 360));
    EXPECT_EQ(find("w")->pos(), QPoint(150, 200));
    EXPECT_EQ(py("cmds.window('w', q=True, widthHeight=True)"), "[310 360]");
    EXPECT_EQ(py("cmds.window('w', q=True, title=True)"), "Rename");
}

TEST_F(Windows, ANameIsTakenUntilTheWindowIsClosed) {
    py("told = []\ncmds.window('w', closeCommand=lambda: told.append('closed'))\n"
       "cmds.columnLayout()\ncmds.button('b')\ncmds.showWindow('w')");
    fails("cmds.window('w')", "Object's name 'w' is not unique.");
    find("w")->close();
    EXPECT_EQ(py("cmds.window('w', exists=True)"), "False");
    EXPECT_EQ(py("cmds.button('b', exists=True)"), "False");
    EXPECT_EQ(py("str(told)"), "['closed']");
    EXPECT_EQ(py("cmds.window('w')"), "w");
    settle();
    EXPECT_EQ(py("cmds.window('w', exists=True)"), "True");
}

TEST_F(Windows, ShowingAgainKeepsTheFields) {
    py("cmds.window('w')\ncmds.columnLayout()\ncmds.textField('t')\ncmds.showWindow()");
    find<QLineEdit>("t")->setText("kept");
    py("cmds.showWindow('w')");
    EXPECT_EQ(py("cmds.textField('t', q=True, text=True)"), "kept");
    fails("cmds.showWindow('other')", "Object 'other' not found.");
}

TEST_F(Windows, WindowsThatPluginsMadeAreKnownByTheirObjectName) {
    auto* own = new QWidget(window.get(), Qt::Window);
    own->setObjectName("fromQt");
    EXPECT_EQ(py("cmds.window('fromQt', exists=True)"), "True");
    py("cmds.showWindow('fromQt')");
    EXPECT_TRUE(own->isVisible());
    py("cmds.deleteUI('fromQt')");
    EXPECT_EQ(py("cmds.window('fromQt', exists=True)"), "False");
    settle();
}

TEST_F(Windows, MenusStandInTheWindowOfTheCurrentLayout) {
    py("cmds.window('w')\ncmds.columnLayout()\ncmds.menu('m', label='Help')\n"
       "cmds.menuItem(label='About')");
    EXPECT_EQ(py("cmds.window('w', q=True, menuArray=True)"), "[m]");
    EXPECT_EQ(py("cmds.menu('m', q=True, numberOfItems=True)"), "1");
    EXPECT_EQ(py("cmds.menu('w|m', exists=True)"), "True");
}

TEST_F(Windows, DialogsTakeTheAnswersThatStandReady) {
    py("cmds.dialogAnswer(button='Yes')\ncmds.dialogAnswer(button='OK', text='arm')");
    EXPECT_EQ(py("cmds.confirmDialog(message='Sure?', button=['Yes', 'No'])"), "Yes");
    EXPECT_EQ(py("cmds.promptDialog(message='Name', button=['OK', 'Cancel'])"), "OK");
    EXPECT_EQ(py("cmds.promptDialog(query=True, text=True)"), "arm");
    py("cmds.dialogAnswer(button='Maybe')");
    fails("cmds.confirmDialog(button=['Yes', 'No'])",
          "the answer 'Maybe' is none of the dialog's buttons");
    py("cmds.dialogAnswer(button='OK', text='4.5')");
    fails("cmds.promptDialog(style='integer')", "'4.5' is no integer");
}

TEST_F(Windows, InBatchADialogCountsAsDismissed) {
    session.batch = true;
    EXPECT_EQ(py("cmds.confirmDialog(message='Sure?', button=['Yes', 'No'], cancelButton='No')"),
              "No");
    EXPECT_EQ(lines.back(), "confirmDialog: nobody to ask \"Sure?\", taken as dismissed");
    EXPECT_EQ(py("cmds.promptDialog(dismissString='left')"), "left");
    EXPECT_EQ(py("cmds.confirmDialog()"), "dismiss");
}

TEST_F(Windows, APersonPressesAButton) {
    QTimer::singleShot(0, [] {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        for (QAbstractButton* button : box->buttons())
            if (button->text() == "No")
                button->click();
    });
    EXPECT_EQ(py("cmds.confirmDialog(title='T', message='M', button=['Yes', 'No'])"), "No");
    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_EQ(py("cmds.confirmDialog(message='M', button=['Yes', 'No'])"), "dismiss");
    QTimer::singleShot(0, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        dialog->findChild<QLineEdit*>()->setText("typed");
        dialog->findChild<QPushButton*>()->click();
    });
    EXPECT_EQ(py("cmds.promptDialog(message='Name', text='old')"), "OK");
    EXPECT_EQ(py("cmds.promptDialog(query=True, text=True)"), "typed");
}

TEST_F(Windows, OneProgressWindowAtATime) {
    EXPECT_EQ(py("cmds.progressWindow(title='Work', maxValue=10, progress=4)"), "True");
    EXPECT_EQ(py("cmds.progressWindow(title='Other')"), "False");
    py("cmds.progressWindow(edit=True, step=3)");
    EXPECT_EQ(py("cmds.progressWindow(query=True, progress=True)"), "7");
    EXPECT_EQ(find<QProgressDialog>("progressWindow")->value(), 7);
    py("cmds.progressWindow(edit=True, progress=50)");
    EXPECT_EQ(py("cmds.progressWindow(query=True, progress=True)"), "10");
    EXPECT_EQ(py("cmds.progressWindow(query=True, isCancelled=True)"), "False");
    py("cmds.progressWindow(endProgress=True)");
    fails("cmds.progressWindow(edit=True, step=1)", "there is no progress window");
}

}  // namespace
}  // namespace torvel
