// The settings file, and the licence that it may ask for.

#include <functional>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>
#include <QWidget>

#include "licence/gate.h"
#include "licence/license_window.h"
#include "plugin/fixtures/update_server.h"
#include "shell/settings_file.h"
#include "ui/desktop/main_window.h"
#include "update/check_date.h"

namespace torvel::test {

class GateTest : public SettingsScene {
  public:
    /// Runs the command while the gate is shut; gives the licence window.
    QPointer<QWidget> refuse() {
        write(
            R"({"licence_required": true, "licence_accepted": false, "last_version_check": "x"})");
        python("cmds.torvel_skeleton()");
        EXPECT_TRUE(toolWindows().empty());
        const std::vector<QWidget*> windows = windowsNamed("LicenseWindow");
        EXPECT_EQ(windows.size(), 1u);
        return windows.empty() ? nullptr : windows[0];
    }

    static bool isAccepted() { return readObject()["licence_accepted"].toBool(); }
};

TEST_F(GateTest, TheAnswersForEachContent) {
    struct Case {
        QByteArray content;
        bool open;  // the gate
        bool due;   // the version check
    };
    const auto dated = [](const QString& date) {
        return "{\"a\": 1, \"last_version_check\": \"" + date.toUtf8() + "\", \"b\": {}}";
    };
    const Case cases[] = {
        {R"({"licence_required": true})", false, true},
        {R"({"licence_required": true, "licence_accepted": false})", false, true},
        {R"({"licence_required": true, "licence_accepted": true})", true, true},
        {R"({"licence_required": false, "licence_accepted": false})", true, true},
        {R"({"licence_required": "yes"})", true, true},
        {R"({"last_version_check": 20260101})", true, true},
        {dated(today()), true, false},
        {dated(today(1)), true, true},
        {dated(today() + " "), true, true},
        {"[\"" + today().toUtf8() + "\"]", true, true},
        {"{}", true, true},
        {"no json at all", true, true},
        {"", true, true},
    };
    for (const Case& row : cases) {
        write(row.content);
        EXPECT_EQ(licenceGateIsOpen(), row.open) << row.content.constData();
        EXPECT_EQ(shouldCheckToday(), row.due) << row.content.constData();
        EXPECT_EQ(read(), row.content) << "asking changes nothing";
    }
}

TEST_F(GateTest, AMissingFileIsMadeAndIsAYes) {
    EXPECT_EQ(settingsFilePath(), settingsPath());
    EXPECT_TRUE(shouldCheckToday());
    EXPECT_FALSE(QFile::exists(settingsPath())) << "until the gate is asked";
    EXPECT_TRUE(licenceGateIsOpen());
    QJsonObject expected{{"licence_required", false}, {"licence_accepted", false}};
    EXPECT_EQ(readObject(), expected);

    QFile::remove(settingsPath());
    UpdateServer server(okAnswer(kOfToday));
    python("cmds.torvel_skeleton()");
    EXPECT_EQ(toolWindows().size(), 1u);
    expected["last_version_check"] = today();
    EXPECT_EQ(readObject(), expected);
}

TEST_F(GateTest, AcceptanceKeepsOtherKeys) {
    write(R"({"licence_required": true, "last_version_check": "2026-03-01", "n": [1, 2]})");
    QJsonObject expected = readObject();
    EXPECT_TRUE(storeLicenceAcceptance());
    expected["licence_accepted"] = true;
    EXPECT_EQ(readObject(), expected);
}

TEST_F(GateTest, RefusingShowsTheTermsAndNoTool) {
    for (const bool byButton : {true, false}) {
        QPointer<QWidget> licence = refuse();
        ASSERT_FALSE(licence.isNull());
        EXPECT_EQ(licence->windowTitle(), "Torvel Plugin 0.20 - Licence");
        EXPECT_TRUE(licence->findChild<QLabel*>("label_terms")->text().contains("Apache License"));
        if (byButton)
            press(licence, "btn_closeLicense");
        else
            licence->close();
        finishDeletion();
        EXPECT_TRUE(licence.isNull());
        EXPECT_TRUE(toolWindows().empty());
        EXPECT_FALSE(isAccepted());
        EXPECT_EQ(messages(), Lines{}) << "no version is asked for";
    }
}

TEST_F(GateTest, AcceptingOpensTheTool) {
    QPointer<QWidget> licence = refuse();
    ASSERT_FALSE(licence.isNull());
    press(licence, "btn_acceptLicense");
    finishDeletion();
    EXPECT_TRUE(licence.isNull());
    EXPECT_EQ(toolWindows().size(), 1u);
    EXPECT_TRUE(isAccepted());
    EXPECT_EQ(storedDate(), "x");
    EXPECT_EQ(messages(), (Lines{kChecking, kNoAnswer})) << "the version step follows the gate";

    python("cmds.torvel_skeleton()");
    EXPECT_EQ(toolWindows().size(), 2u) << "accepted once is accepted for good";
    EXPECT_TRUE(windowsNamed("LicenseWindow").empty());
}

TEST_F(GateTest, TheToolOpensAfterTheVersionStep) {
    QPointer<QWidget> licence = refuse();
    std::size_t openWhenAsked = 99;
    bool stored = false;
    UpdateServer server([&](QTcpSocket& socket) {
        openWhenAsked = toolWindows().size();
        stored = isAccepted();
        socket.write(okAnswer("{}"));
    });
    int validated = 0;
    auto* asLicence = qobject_cast<LicenseWindow*>(licence.data());
    ASSERT_NE(asLicence, nullptr);
    QObject::connect(asLicence, &LicenseWindow::licenseValidated, [&validated] { ++validated; });
    press(licence, "btn_acceptLicense");
    EXPECT_EQ(validated, 1);
    EXPECT_EQ(openWhenAsked, 0u);
    EXPECT_TRUE(stored);
    EXPECT_EQ(toolWindows().size(), 1u);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(GateTest, TheOtherToolsAskNoGate) {
    write(R"({"licence_required": true})");
    EXPECT_NE(openTwist(), nullptr);
    python("cmds.checkUpdates()");
    EXPECT_TRUE(windowsNamed("LicenseWindow").empty());
}

TEST_F(GateTest, WhatCannotBeStoredHoldsForThisTime) {
    QPointer<QWidget> licence = refuse();
    const QString folder = QFileInfo(settingsPath()).absolutePath();
    QDir(folder).removeRecursively();
    QFile blocker(folder);
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    forget();
    press(licence, "btn_acceptLicense");
    EXPECT_EQ(messages(), (Lines{"warning: The licence acceptance could not be stored.", kChecking,
                                 kNoAnswer}));
    EXPECT_EQ(toolWindows().size(), 1u);
}

// The tool's version step waits in an event loop of its own, under the slot of the pressed button.
TEST_F(GateTest, WhateverHappensDuringTheWaitOneToolOpens) {
    struct Case {
        const char* what;
        std::function<void(QWidget*)> act;
    };
    const Case cases[] = {
        {"closed", [](QWidget* licence) { licence->close(); }},
        {"closed and deleted", [](QWidget* licence) { delete licence; }},
        {"accepted again", [this](QWidget* licence) { press(licence, "btn_acceptLicense"); }},
        {"a new scene", [this](QWidget*) { python("cmds.file(new=True, force=True)"); }},
    };
    for (const Case& row : cases) {
        QPointer<QWidget> licence = refuse();
        ASSERT_FALSE(licence.isNull());
        UpdateServer server([](QTcpSocket& socket) {
            QTimer::singleShot(150, &socket, [&socket] { socket.write(okAnswer("{}")); });
        });
        QTimer::singleShot(40, &mainWindow(), [&] {
            EXPECT_FALSE(licence && licence->isVisible()) << row.what;
            if (licence)
                row.act(licence);
        });
        press(licence, "btn_acceptLicense");
        finishDeletion();
        EXPECT_TRUE(licence.isNull()) << row.what;
        EXPECT_EQ(toolWindows().size(), 1u) << row.what;
        EXPECT_EQ(server.requests().size(), 1) << row.what;
        for (QWidget* window : toolWindows())
            delete window;
    }
}

// The command's own wait: what stood around it may be gone when the answer comes.
TEST_F(GateTest, TheMenuGoesDuringTheWait) {
    python(
        "cmds.setParent('MayaWindow')\ncmds.menu('gone')\n"
        "cmds.menuItem('item', command='cmds.torvel_skeleton()')");
    UpdateServer server([](QTcpSocket& socket) {
        QTimer::singleShot(150, &socket, [&socket] { socket.write(okAnswer("{}")); });
    });
    QTimer::singleShot(40, &mainWindow(), [this] { python("cmds.deleteUI('gone', menu=True)"); });
    for (QAction* action : mainWindow().findChildren<QAction*>())
        if (action->text() == "item") {
            action->trigger();
            break;
        }
    finishDeletion();
    EXPECT_EQ(toolWindows().size(), 1u);
}

}  // namespace torvel::test
