#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QTcpSocket>
#include <QWidget>

#include "licence/gate.h"
#include "licence/license_window.h"
#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/update_server.h"
#include "shell/settings_file.h"

namespace torvel::test {

const Lines kCheckWithoutAnswer{"info: Checking for plugin updates...",
                                "error: Error al obtener la versión desde el servidor."};

class GateTest : public PluginScene {
  public:
    void write(const QByteArray& content) {
        QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QJsonObject read() {
        QFile file(settingsPath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object();
    }

    /// Runs the command while the gate is shut; gives the licence window.
    QWidget* refuse() {
        write(
            R"({"licence_required": true, "licence_accepted": false, "last_version_check": "x"})");
        python("cmds.torvel_skeleton()");
        EXPECT_TRUE(toolWindows().empty());
        const std::vector<QWidget*> windows = windowsNamed("LicenseWindow");
        EXPECT_EQ(windows.size(), 1u);
        return windows.empty() ? nullptr : windows[0];
    }
};

TEST_F(GateTest, TheFileLiesUnderTheHomeFolder) {
    EXPECT_EQ(settingsFilePath(), settingsPath());
    EXPECT_FALSE(QFile::exists(settingsPath()));
}

TEST_F(GateTest, AMissingFileIsMadeAndIsAYes) {
    EXPECT_TRUE(licenceGateIsOpen());
    EXPECT_EQ(read(), (QJsonObject{{"licence_required", false}, {"licence_accepted", false}}));
}

TEST_F(GateTest, TheAnswerForEachContent) {
    struct Case {
        const char* content;
        bool open;
    };
    const Case cases[] = {
        {R"({"licence_required": true})", false},
        {R"({"licence_required": true, "licence_accepted": false})", false},
        {R"({"licence_required": true, "licence_accepted": true})", true},
        {R"({"licence_required": false, "licence_accepted": false})", true},
        {R"({"licence_required": "yes"})", true},
        {"{}", true},
        {"no json at all", true},
        {"", true},
    };
    for (const Case& row : cases) {
        write(row.content);
        EXPECT_EQ(licenceGateIsOpen(), row.open) << row.content;
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), row.content) << "asking changes nothing";
    }
}

TEST_F(GateTest, AcceptanceKeepsOtherKeys) {
    write(R"({"licence_required": true, "last_version_check": "2026-03-01", "n": [1, 2]})");
    EXPECT_TRUE(storeLicenceAcceptance());
    const QJsonObject settings = read();
    EXPECT_EQ(settings.size(), 4);
    EXPECT_TRUE(settings["licence_accepted"].toBool());
    EXPECT_TRUE(settings["licence_required"].toBool());
    EXPECT_EQ(settings["last_version_check"].toString(), "2026-03-01");
    EXPECT_EQ(settings["n"].toArray().size(), 2);
}

TEST_F(GateTest, RefusingShowsTheTermsAndNoTool) {
    QPointer<QWidget> licence = refuse();
    ASSERT_FALSE(licence.isNull());
    press(licence, "btn_closeLicense");
    finishDeletion();
    EXPECT_TRUE(licence.isNull());
    EXPECT_TRUE(toolWindows().empty());
    EXPECT_FALSE(read()["licence_accepted"].toBool());
    EXPECT_EQ(messages(), Lines{}) << "no version is asked for";
}

TEST_F(GateTest, AcceptingOpensTheTool) {
    QPointer<QWidget> licence = refuse();
    ASSERT_FALSE(licence.isNull());
    press(licence, "btn_acceptLicense");
    finishDeletion();
    EXPECT_TRUE(licence.isNull());
    EXPECT_EQ(toolWindows().size(), 1u);
    EXPECT_TRUE(read()["licence_accepted"].toBool());
    EXPECT_EQ(read()["last_version_check"].toString(), "x");
    EXPECT_EQ(messages(), kCheckWithoutAnswer) << "the version step comes after the gate";

    python("cmds.torvel_skeleton()");
    EXPECT_EQ(toolWindows().size(), 2u) << "accepted once is accepted for good";
    EXPECT_TRUE(windowsNamed("LicenseWindow").empty());
}

TEST_F(GateTest, TheSettingsFileIsMadeByTheCommandAndDated) {
    UpdateServer server(QByteArray(R"({"version": "0.20"})"));
    python("cmds.torvel_skeleton()");
    EXPECT_EQ(toolWindows().size(), 1u);
    const QString today = QDate::currentDate().toString("yyyy-MM-dd");
    EXPECT_EQ(read(), (QJsonObject{{"licence_required", false},
                                   {"licence_accepted", false},
                                   {"last_version_check", today}}));
}

TEST_F(GateTest, TheToolOpensAfterTheVersionStep) {
    QPointer<QWidget> licence = refuse();
    ASSERT_FALSE(licence.isNull());
    std::size_t openWhenAsked = 99;
    bool stored = false;
    UpdateServer server([&](QTcpSocket& socket) {
        openWhenAsked = toolWindows().size();
        stored = read()["licence_accepted"].toBool();
        socket.write(httpAnswer("200 OK", "{}"));
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

TEST_F(GateTest, ClosingByTheTitleBarOpensNothing) {
    QPointer<QWidget> licence = refuse();
    ASSERT_FALSE(licence.isNull());
    licence->close();
    finishDeletion();
    EXPECT_TRUE(licence.isNull());
    EXPECT_TRUE(toolWindows().empty());
    EXPECT_FALSE(read()["licence_accepted"].toBool());
}

TEST_F(GateTest, TheOtherToolsAskNoGate) {
    write(R"({"licence_required": true})");
    EXPECT_NE(openTwist(), nullptr);
    python("cmds.checkUpdates()");
    EXPECT_TRUE(windowsNamed("LicenseWindow").empty());
}

TEST_F(GateTest, WhatCannotBeStoredHoldsForThisTime) {
    QWidget* licence = refuse();
    ASSERT_NE(licence, nullptr);
    QFile::remove(settingsPath());
    const QString folder = QFileInfo(settingsPath()).absolutePath();
    QDir(folder).removeRecursively();
    QFile blocker(folder);
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    forget();
    press(licence, "btn_acceptLicense");
    EXPECT_EQ(messages(), (Lines{"warning: The licence acceptance could not be stored."} +
                           kCheckWithoutAnswer));
    EXPECT_EQ(toolWindows().size(), 1u);
}

}  // namespace torvel::test
