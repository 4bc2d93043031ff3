// The update check against a server of the test's own.

#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "plugin/fixtures/plugin_scene.h"
#include "plugin/fixtures/update_server.h"
#include "ui/desktop/main_window.h"
#include "update/check_date.h"
#include "update/update_dialog.h"

namespace torvel::test {

const std::string kLatest = "info: Ya tienes la última versión del plugin.";
const std::string kNoAnswer = "error: Error al obtener la versión desde el servidor.";
const std::string kNoJson = "error: Error al analizar el JSON de versión.";
const std::string kChecking = "info: Checking for plugin updates...";
const char* const kNewer = R"({"version": "0.25", "download_url": "torveltest://get/it?v=0.25"})";

/// Takes the addresses of the scheme "torveltest" that the plug-in opens.
class AddressTaker : public QObject {
    Q_OBJECT

  public:
    AddressTaker() { QDesktopServices::setUrlHandler("torveltest", this, "take"); }
    ~AddressTaker() override { QDesktopServices::unsetUrlHandler("torveltest"); }

    QList<QUrl> taken;

  public Q_SLOTS:
    void take(const QUrl& url) { taken.append(url); }
};

class UpdateCheckTest : public PluginScene {
  public:
    void write(const QByteArray& content) {
        QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray read() {
        QFile file(settingsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    QString storedDate() {
        return QJsonDocument::fromJson(read()).object()["last_version_check"].toString();
    }

    static QString today() { return QDate::currentDate().toString("yyyy-MM-dd"); }

    /// Runs checkUpdates with a settings file of an earlier day; gives the lines it printed.
    Lines checkUpdates() {
        write(R"({"last_version_check": "2020-01-02"})");
        forget();
        python("cmds.checkUpdates()");
        return messages();
    }

    std::vector<QDialog*> dialogs() {
        std::vector<QDialog*> found;
        for (QDialog* dialog : mainWindow().findChildren<QDialog*>()) {
            if (dialog->windowTitle() == "Versión del Plugin")
                found.push_back(dialog);
        }
        return found;
    }

    static std::vector<QPushButton*> buttonsOf(const QDialog* dialog) {
        std::vector<QPushButton*> buttons;
        for (int i = 0; i < dialog->layout()->count(); ++i) {
            if (auto* button = qobject_cast<QPushButton*>(dialog->layout()->itemAt(i)->widget()))
                buttons.push_back(button);
        }
        return buttons;
    }
};

TEST_F(UpdateCheckTest, TheRequestIsPlain) {
    UpdateServer server(QByteArray(R"({"version": "0.20"})"));
    checkUpdates();
    ASSERT_EQ(server.requests().size(), 1);
    const QByteArray request = server.requests()[0];
    EXPECT_TRUE(request.startsWith("GET /plugin_info/ HTTP/1.1\r\n")) << request.constData();
    const QByteArray lower = request.toLower();
    for (const char* header : {"cookie:", "authorization:", "content-length:", "content-type:"})
        EXPECT_FALSE(lower.contains(header)) << request.constData();
    EXPECT_TRUE(request.endsWith("\r\n\r\n")) << "no body";
}

// Text order: "0.100" is lower than "0.20".
TEST_F(UpdateCheckTest, WhichVersionsAreNewer) {
    struct Case {
        const char* answer;
        bool newer;
    };
    const Case cases[] = {
        {R"({"version": "0.25", "download_url": "x"})", true},
        {R"({"version": "0.3"})", true},
        {R"({"version": "1.0", "other": [1, {"a": null}]})", true},
        {R"({"version": "0.20.1"})", true},
        {R"({"version": "v0"})", true},
        {R"({"version": "0.20", "download_url": "x"})", false},
        {R"({"version": "0.100", "download_url": "x"})", false},
        {R"({"version": "0.2"})", false},
        {R"({"version": " 9"})", false},
        {R"({"version": ""})", false},
        {R"({"version": 9.5})", false},
        {R"({"version": ["9"]})", false},
        {R"({"download_url": "x"})", false},
        {"{}", false},
    };
    for (const Case& row : cases) {
        UpdateServer server{QByteArray(row.answer)};
        const std::size_t shown = dialogs().size();
        EXPECT_EQ(checkUpdates(), row.newer ? Lines{} : Lines{kLatest}) << row.answer;
        EXPECT_EQ(dialogs().size(), shown + row.newer) << row.answer;
        EXPECT_EQ(storedDate(), today()) << row.answer;
    }
}

TEST_F(UpdateCheckTest, WhatIsNoJsonObjectIsToldAndNotDated) {
    for (const char* body : {"", "no json", "[1, 2]", "\"0.25\"", "null", "{\"version\": \"0.25\"",
                             "{\"version\": \"0.25\"} x", "<html>0.25</html>"}) {
        UpdateServer server{QByteArray(body)};
        EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest})) << body;
        EXPECT_EQ(storedDate(), "2020-01-02") << body;
    }
    EXPECT_TRUE(dialogs().empty());
}

TEST_F(UpdateCheckTest, ARedirectionIsNotFollowed) {
    UpdateServer server([](QTcpSocket& socket) {
        socket.write(httpAnswer("302 Found", "", "Location: http://127.0.0.1:1/\r\n"));
    });
    EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest}));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(UpdateCheckTest, HttpErrorsAreToldAndNotDated) {
    for (const char* status : {"500 Internal Server Error", "404 Not Found", "403 Forbidden",
                               "503 Service Unavailable"}) {
        UpdateServer server([status](QTcpSocket& socket) {
            socket.write(httpAnswer(status, kNewer));
            socket.disconnectFromHost();
        });
        EXPECT_EQ(checkUpdates(), (Lines{kNoAnswer, kLatest})) << status;
        EXPECT_EQ(storedDate(), "2020-01-02") << status;
    }
    EXPECT_TRUE(dialogs().empty());
}

TEST_F(UpdateCheckTest, NobodyListens) {
    EXPECT_EQ(checkUpdates(), (Lines{kNoAnswer, kLatest}));
    EXPECT_EQ(storedDate(), "2020-01-02");
}

TEST_F(UpdateCheckTest, CutConnections) {
    const QByteArray whole = httpAnswer("200 OK", kNewer);
    const int head = whole.indexOf("\r\n\r\n") + 4;
    for (int length : {0, 12, head, head + 10, whole.size() - 1}) {
        UpdateServer server([&whole, length](QTcpSocket& socket) {
            socket.write(whole.left(length));
            socket.disconnectFromHost();
        });
        EXPECT_EQ(checkUpdates(), (Lines{kNoAnswer, kLatest})) << length;
        EXPECT_EQ(storedDate(), "2020-01-02") << length;
    }
}

// Without a length the end of the connection ends the body.
TEST_F(UpdateCheckTest, ACutBodyWithoutALengthIsNoJson) {
    UpdateServer server([](QTcpSocket& socket) {
        socket.write("HTTP/1.0 200 OK\r\n\r\n{\"version\": \"0.2");
        socket.disconnectFromHost();
    });
    EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest}));
}

TEST_F(UpdateCheckTest, ASlowServerIsWaitedFor) {
    const QByteArray whole = httpAnswer("200 OK", kNewer);
    UpdateServer server([&whole](QTcpSocket& socket) {
        for (int i = 0; i < whole.size(); ++i)
            QTimer::singleShot(100 + 4 * i, &socket,
                               [&socket, &whole, i] { socket.write(whole.mid(i, 1)); });
    });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(checkUpdates(), Lines{});
    EXPECT_GE(timer.elapsed(), 100 + 4 * (whole.size() - 1));
    EXPECT_EQ(dialogs().size(), 1u);
}

TEST_F(UpdateCheckTest, EventsRunDuringTheWait) {
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&ticks] { ++ticks; });
    ticker.start(10);
    UpdateServer server([](QTcpSocket& socket) {
        QTimer::singleShot(200, &socket, [&socket] { socket.write(httpAnswer("200 OK", "{}")); });
    });
    EXPECT_EQ(checkUpdates(), Lines{kLatest});
    EXPECT_GE(ticks, 3);
}

// Nothing guards against a second check: each gets its own answer, the inner one first.
TEST_F(UpdateCheckTest, ASecondCheckInsideTheWait) {
    UpdateServer server([&server](QTcpSocket& socket) {
        const bool first = server.requests().size() == 1;
        const QByteArray body = first ? QByteArray("{}") : QByteArray("none");
        QTimer::singleShot(first ? 400 : 50, &socket,
                           [&socket, body] { socket.write(httpAnswer("200 OK", body)); });
    });
    QTimer::singleShot(100, &mainWindow(), [this] { python("cmds.checkUpdates()"); });
    EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest, kLatest}));
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(storedDate(), today());
}

// What has come by then is no whole answer, even where it reads like one.
TEST_F(UpdateCheckTest, QuittingEndsTheWait) {
    const QByteArray body(kNewer);
    UpdateServer server([&body](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10000\r\n\r\n" + body);
    });
    QTimer::singleShot(150, qApp, &QCoreApplication::quit);
    EXPECT_EQ(checkUpdates(), (Lines{kNoAnswer, kLatest}));
    EXPECT_EQ(storedDate(), "2020-01-02");
    EXPECT_TRUE(dialogs().empty());
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();  // until the application runs again, every loop ends at once
}

TEST_F(UpdateCheckTest, ANewSceneDuringTheWait) {
    UpdateServer server([](QTcpSocket& socket) {
        QTimer::singleShot(200, &socket, [&socket] { socket.write(httpAnswer("200 OK", kNewer)); });
    });
    QTimer::singleShot(50, &mainWindow(), [this] { python("cmds.file(new=True, force=True)"); });
    EXPECT_EQ(checkUpdates(), Lines{});
    EXPECT_EQ(dialogs().size(), 1u);
}

TEST_F(UpdateCheckTest, DeeplyNestedAnswersAreNoJson) {
    UpdateServer server(R"({"version": )" + QByteArray(100000, '['));
    EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest}));
}

TEST_F(UpdateCheckTest, AVeryLargeAnswerIsRead) {
    const QByteArray padding(8 << 20, 'x');
    {
        UpdateServer server(R"({"padding": ")" + padding + R"(", "version": "0.25"})");
        EXPECT_EQ(checkUpdates(), Lines{});
        EXPECT_EQ(dialogs().size(), 1u);
    }
    UpdateServer server(padding);
    EXPECT_EQ(checkUpdates(), (Lines{kNoJson, kLatest}));
}

TEST_F(UpdateCheckTest, TheDialogOffersTheDownload) {
    AddressTaker taker;
    UpdateServer server{QByteArray(kNewer)};
    checkUpdates();
    ASSERT_EQ(dialogs().size(), 1u);
    QPointer<QDialog> dialog = dialogs()[0];
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->parentWidget(), &mainWindow());
    auto* label = dialog->findChild<QLabel*>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "Tu versión: <b>0.20</b><br>Nueva versión disponible: <b>0.25</b>");
    EXPECT_TRUE(label->wordWrap());
    ASSERT_NE(qobject_cast<QVBoxLayout*>(dialog->layout()), nullptr);
    EXPECT_EQ(dialog->layout()->itemAt(0)->widget(), label);

    const std::vector<QPushButton*> buttons = buttonsOf(dialog);
    ASSERT_EQ(buttons.size(), 2u);
    EXPECT_EQ(buttons[0]->text(), "Descargar actualización");
    EXPECT_EQ(buttons[1]->text(), "Cerrar");
    buttons[0]->click();
    buttons[0]->click();
    EXPECT_EQ(taker.taken, (QList<QUrl>{QUrl("torveltest://get/it?v=0.25"),
                                        QUrl("torveltest://get/it?v=0.25")}));
    EXPECT_TRUE(dialog->isVisible()) << "the download leaves it open";

    buttons[1]->click();
    finishDeletion();
    ASSERT_FALSE(dialog.isNull()) << "closed, not deleted";
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(UpdateCheckTest, AnEmptyAddressKeepsTheButton) {
    UpdateServer server(QByteArray(R"({"version": "0.3"})"));
    checkUpdates();
    ASSERT_EQ(dialogs().size(), 1u);
    EXPECT_EQ(buttonsOf(dialogs()[0]).size(), 2u);
    buttonsOf(dialogs()[0])[0]->click();
    EXPECT_TRUE(dialogs()[0]->isVisible());
}

TEST_F(UpdateCheckTest, WithoutANewerVersionTheDialogOffersNothing) {
    showUpdateDialog("0.20", "0.20", "torveltest://never");
    ASSERT_EQ(dialogs().size(), 1u);
    EXPECT_EQ(dialogs()[0]->findChild<QLabel*>()->text(),
              "Estás usando la última versión: <b>0.20</b>");
    const std::vector<QPushButton*> buttons = buttonsOf(dialogs()[0]);
    ASSERT_EQ(buttons.size(), 1u);
    EXPECT_EQ(buttons[0]->text(), "Cerrar");
    EXPECT_EQ(dialogs()[0]->findChildren<QPushButton*>().size(), 1);
}

TEST_F(UpdateCheckTest, WithoutAMainWindowTheDialogStandsAlone) {
    QWidget* const desktop = session().mainWindow;
    session().mainWindow = nullptr;
    showUpdateDialog("0.20", "0.21", "torveltest://x");
    session().mainWindow = desktop;
    EXPECT_TRUE(dialogs().empty());
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == "Versión del Plugin")
            delete widget;
    }
}

TEST_F(UpdateCheckTest, WhenACheckIsDue) {
    struct Case {
        QByteArray content;
        bool due;
    };
    const QByteArray now = today().toUtf8();
    const QByteArray tomorrow = QDate::currentDate().addDays(1).toString("yyyy-MM-dd").toUtf8();
    const Case cases[] = {
        {"{\"last_version_check\": \"" + now + "\"}", false},
        {"{\"a\": 1, \"last_version_check\": \"" + now + "\", \"b\": {}}", false},
        {"{\"last_version_check\": \"" + tomorrow + "\"}", true},
        {"{\"last_version_check\": \"" + now + " \"}", true},
        {"{\"last_version_check\": 20260101}", true},
        {"{}", true},
        {"[\"" + now + "\"]", true},
        {"no json", true},
        {"", true},
    };
    EXPECT_TRUE(shouldCheckToday()) << "no file";
    for (const Case& row : cases) {
        write(row.content);
        EXPECT_EQ(shouldCheckToday(), row.due) << row.content.constData();
        EXPECT_EQ(read(), row.content) << "asking changes nothing";
    }
}

TEST_F(UpdateCheckTest, MarkingKeepsTheOtherKeys) {
    write(
        "{\n    \"a\": 0.1,\n    \"big\": 9007199254740992,\n    \"e\": 1e+300,\n"
        "    \"last_version_check\": \"2020-01-02\",\n"
        "    \"licence_accepted\": true,\n    \"licence_required\": false,\n"
        "    \"list\": [\n        null,\n        -1,\n        \"\\u0001\\\"\\\\\"\n    ],\n"
        "    \"name\": \"Añadido \xE6\x97\xA5\",\n    \"token\": {\n        \"\": \"\"\n    "
        "}\n}\n");
    const QByteArray before = read();
    markCheckedToday();
    QByteArray expected = before;
    expected.replace("2020-01-02", today().toUtf8());
    EXPECT_EQ(read().toStdString(), expected.toStdString());
    EXPECT_EQ(QDir(QFileInfo(settingsPath()).absolutePath()).entryList(QDir::Files).size(), 1)
        << "no other file is left beside it";
}

TEST_F(UpdateCheckTest, MarkingMakesNoFileAndMendsNone) {
    markCheckedToday();
    EXPECT_FALSE(QFile::exists(settingsPath()));
    for (const char* content : {"", "no json", "[1]"}) {
        write(content);
        markCheckedToday();
        EXPECT_EQ(read(), content);
    }
}

TEST_F(UpdateCheckTest, AFolderInPlaceOfTheFileStays) {
    ASSERT_TRUE(QDir().mkpath(settingsPath()));
    UpdateServer server(QByteArray("{}"));
    EXPECT_TRUE(shouldCheckToday());
    for (int round = 0; round < 2; ++round) {
        forget();
        openWindow("torvel_skeleton", "SkeletonWindow");
        EXPECT_EQ(messages(), Lines{kChecking});
    }
    EXPECT_TRUE(QFileInfo(settingsPath()).isDir());
    EXPECT_EQ(toolWindows().size(), 2u);
}

TEST_F(UpdateCheckTest, AFileThatCannotBeWrittenKeepsItsDate) {
    write(R"({"last_version_check": "2020-01-02"})");
    QFile::setPermissions(settingsPath(), QFile::ReadOwner);
    if (QFile(settingsPath()).open(QIODevice::ReadWrite))
        GTEST_SKIP() << "this user may write every file";
    UpdateServer server(QByteArray("{}"));
    python("cmds.checkUpdates()");
    EXPECT_EQ(messages(), Lines{kLatest});
    EXPECT_EQ(storedDate(), "2020-01-02");
}

TEST_F(UpdateCheckTest, WithoutAFileTheCommandStoresNothing) {
    UpdateServer server(QByteArray("{}"));
    python("cmds.checkUpdates()");
    EXPECT_EQ(messages(), Lines{kLatest});
    EXPECT_FALSE(QFile::exists(settingsPath()));
}

TEST_F(UpdateCheckTest, TheCommandIgnoresTheDate) {
    UpdateServer server(QByteArray("{}"));
    passDailyStep();
    for (int count = 1; count <= 3; ++count) {
        python("cmds.checkUpdates()");
        EXPECT_EQ(server.requests().size(), count);
    }
    EXPECT_EQ(messages(), (Lines{kLatest, kLatest, kLatest}));
    EXPECT_EQ(scripts(), Lines{});
}

TEST_F(UpdateCheckTest, TheLauncherAsksOnceADay) {
    UpdateServer server(QByteArray(R"({"version": "0.20"})"));
    openWindow("torvel_skeleton", "SkeletonWindow");
    EXPECT_EQ(messages(), Lines{kChecking});
    EXPECT_EQ(storedDate(), today());
    forget();
    openWindow("torvel_skeleton", "SkeletonWindow");
    EXPECT_EQ(messages(), Lines{});
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(toolWindows().size(), 2u);
}

TEST_F(UpdateCheckTest, TheLauncherTriesAgainWhileTheServerIsDown) {
    for (int round = 0; round < 2; ++round) {
        forget();
        openWindow("torvel_skeleton", "SkeletonWindow");
        EXPECT_EQ(messages(), (Lines{kChecking, kNoAnswer}));
    }
    EXPECT_EQ(toolWindows().size(), 2u);
}

TEST_F(UpdateCheckTest, TheLauncherShowsBothWindows) {
    UpdateServer server{QByteArray(kNewer)};
    QWidget* tool = openWindow("torvel_skeleton", "SkeletonWindow");
    EXPECT_EQ(messages(), Lines{kChecking});
    ASSERT_EQ(dialogs().size(), 1u);
    EXPECT_TRUE(dialogs()[0]->isVisible());
    EXPECT_TRUE(tool->isVisible());
}

TEST_F(UpdateCheckTest, TheTwistWindowAsksNobody) {
    UpdateServer server{QByteArray(kNewer)};
    openTwist();
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_FALSE(QFile::exists(settingsPath())) << "nor the licence gate";
}

}  // namespace torvel::test

#include "update_check_test.moc"
