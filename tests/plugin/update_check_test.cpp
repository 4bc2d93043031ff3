// The update check against a server of the test's own.

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "plugin/fixtures/update_server.h"
#include "ui/desktop/main_window.h"
#include "update/check_date.h"
#include "update/update_dialog.h"

namespace torvel::test {

/// Takes the addresses that the plug-in opens.
class AddressTaker : public QObject {
    Q_OBJECT

  public:
    AddressTaker() {
        for (const char* scheme : kSchemes)
            QDesktopServices::setUrlHandler(scheme, this, "take");
    }
    ~AddressTaker() override {
        for (const char* scheme : kSchemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }

    QList<QUrl> taken;
    static constexpr const char* kSchemes[] = {"http", "https", "file", "smb", "torveltest"};

  public Q_SLOTS:
    void take(const QUrl& url) { taken.append(url); }
};

/// A gzip stream of so many zeros; its closing checksum is wrong, which nobody gets to see.
QByteArray gzipOfZeros(int count) {
    // Qt's form: 4 bytes of length, 2 of zlib head, raw deflate, 4 of checksum.
    const QByteArray zlib = qCompress(QByteArray(count, '\0'), 9);
    return QByteArray("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03", 10) +
           zlib.mid(6, zlib.size() - 10) + QByteArray(8, '\0');
}

/// What an answer leads to.
enum Outcome { kNew, kCurrent, kMisread, kNoServer };

class UpdateCheckTest : public SettingsScene {
  public:
    /// Runs checkUpdates on a day after the last check; lines, dialog and stored date are to be
    /// those of the outcome.
    void expectCheck(Outcome outcome) {
        const Lines lines[] = {{}, {kLatest}, {kNoJson, kLatest}, {kNoAnswer, kLatest}};
        write(R"({"last_version_check": "2020-01-02"})");
        forget();
        const std::size_t shown = dialogs().size();
        python("cmds.checkUpdates()");
        EXPECT_EQ(messages(), lines[outcome]);
        EXPECT_EQ(dialogs().size(), shown + (outcome == kNew));
        EXPECT_EQ(storedDate(), outcome <= kCurrent ? today() : "2020-01-02");
    }

    std::vector<QDialog*> dialogs() {
        std::vector<QDialog*> found;
        for (QDialog* dialog : mainWindow().findChildren<QDialog*>()) {
            if (dialog->windowTitle() == "Versión del Plugin")
                found.push_back(dialog);
        }
        return found;
    }

    /// The texts of the dialog's rows, from top to bottom.
    static QStringList rowsOf(const QDialog* dialog) {
        QStringList texts;
        for (int i = 0; i < dialog->layout()->count(); ++i)
            texts.append(dialog->layout()->itemAt(i)->widget()->property("text").toString());
        return texts;
    }

    static void clickRow(const QDialog* dialog, int row) {
        auto* button = qobject_cast<QPushButton*>(dialog->layout()->itemAt(row)->widget());
        ASSERT_NE(button, nullptr);
        button->click();
    }
};

TEST_F(UpdateCheckTest, TheRequestIsPlain) {
    UpdateServer server(okAnswer(kOfToday));
    expectCheck(kCurrent);
    ASSERT_EQ(server.requests().size(), 1);
    const QByteArray request = server.requests()[0];
    EXPECT_TRUE(request.startsWith("GET /plugin_info/ HTTP/1.1\r\n")) << request.constData();
    const QByteArray lower = request.toLower();
    for (const char* header : {"cookie:", "authorization:", "content-length:", "content-type:"})
        EXPECT_FALSE(lower.contains(header)) << request.constData();
    EXPECT_TRUE(request.endsWith("\r\n\r\n")) << "no body";
}

TEST_F(UpdateCheckTest, EachAnswerHasItsOutcome) {
    struct Case {
        Outcome outcome;
        QByteArray answer;
    };
    std::vector<Case> cases{
        {kCurrent, "HTTP/1.0 200 OK\r\n\r\n{}"},
        // Without a length the end of the connection ends the body.
        {kMisread, "HTTP/1.0 200 OK\r\n\r\n{\"version\": \"0.2"},
        {kMisread, httpAnswer("302 Found", "", "Location: http://127.0.0.1:1/\r\n")},
        {kMisread, okAnswer(R"({"version": )" + QByteArray(100000, '['))},
        {kMisread, okAnswer(QByteArray(512 << 10, 'x'))},
        {kNew,
         okAnswer(R"({"padding": ")" + QByteArray(512 << 10, 'x') + R"(", "version": "0.25"})")},
        // Up to a megabyte, unpacked; what grows past it is given up.
        {kNoServer, okAnswer(QByteArray(8 << 20, 'x'))},
        {kNoServer, httpAnswer("200 OK", gzipOfZeros(64 << 20), "Content-Encoding: gzip\r\n")},
    };
    const std::pair<Outcome, const char*> bodies[] = {
        {kNew, R"({"version": "0.25", "download_url": "x"})"},
        {kNew, R"({"version": "0.3"})"},
        {kNew, R"({"version": "1.0", "other": [1, {"a": null}]})"},
        {kNew, R"({"version": "0.20.1"})"},
        {kNew, R"({"version": "v0"})"},
        {kCurrent, R"({"version": "0.20", "download_url": "x"})"},
        {kCurrent, R"({"version": "0.100", "download_url": "x"})"},  // the order of texts
        {kCurrent, R"({"version": "0.2"})"},
        {kCurrent, R"({"version": " 9"})"},
        {kCurrent, R"({"version": ""})"},
        {kCurrent, R"({"version": 9.5})"},
        {kCurrent, R"({"version": ["9"]})"},
        {kCurrent, R"({"download_url": "x"})"},
        {kCurrent, "{}"},
        {kMisread, ""},
        {kMisread, "no json"},
        {kMisread, "[1, 2]"},
        {kMisread, "\"0.25\""},
        {kMisread, "null"},
        {kMisread, "{\"version\": \"0.25\""},
        {kMisread, "{\"version\": \"0.25\"} x"},
        {kMisread, "<html>0.25</html>"},
    };
    for (const auto& [outcome, body] : bodies)
        cases.push_back({outcome, okAnswer(body)});
    for (const char* status :
         {"500 Internal Server Error", "404 Not Found", "403 Forbidden", "503 Service Unavailable"})
        cases.push_back({kNoServer, httpAnswer(status, kNewer)});
    const QByteArray whole = okAnswer(kNewer);
    const int head = whole.indexOf("\r\n\r\n") + 4;
    for (int length : {0, 12, head, head + 10, whole.size() - 1})
        cases.push_back({kNoServer, whole.left(length)});

    for (const Case& row : cases) {
        SCOPED_TRACE(row.answer.left(200).toStdString());
        UpdateServer server(row.answer);
        expectCheck(row.outcome);
        if (row.outcome != kNoServer) {
            EXPECT_EQ(server.requests().size(), 1) << "a redirection is not followed";
        }
    }
    expectCheck(kNoServer);  // nobody listens now
}

TEST_F(UpdateCheckTest, ASlowServerIsWaitedForWhileEventsRun) {
    const QByteArray whole = okAnswer(kNewer);
    UpdateServer server([&whole](QTcpSocket& socket) {
        for (int i = 0; i < whole.size(); ++i)
            QTimer::singleShot(100 + 4 * i, &socket,
                               [&socket, &whole, i] { socket.write(whole.mid(i, 1)); });
    });
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&ticks] { ++ticks; });
    ticker.start(10);
    QTimer::singleShot(50, &mainWindow(), [this] { python("cmds.file(new=True, force=True)"); });
    QElapsedTimer timer;
    timer.start();
    expectCheck(kNew);
    EXPECT_GE(timer.elapsed(), 100 + 4 * (whole.size() - 1));
    EXPECT_GE(ticks, 3);
}

// Nothing guards against a second check: each gets its own answer, the inner one first.
TEST_F(UpdateCheckTest, ASecondCheckInsideTheWait) {
    UpdateServer server([&server](QTcpSocket& socket) {
        const bool first = server.requests().size() == 1;
        const QByteArray body = first ? QByteArray("{}") : QByteArray("none");
        QTimer::singleShot(first ? 400 : 50, &socket,
                           [&socket, body] { socket.write(okAnswer(body)); });
    });
    QTimer::singleShot(100, &mainWindow(), [this] { python("cmds.checkUpdates()"); });
    write("{}");
    python("cmds.checkUpdates()");
    EXPECT_EQ(messages(), (Lines{kNoJson, kLatest, kLatest}));
    EXPECT_EQ(server.requests().size(), 2);
    EXPECT_EQ(storedDate(), today());
}

// What has come by then is no whole answer, even where it reads like one.
TEST_F(UpdateCheckTest, QuittingEndsTheWait) {
    UpdateServer server([](QTcpSocket& socket) {
        socket.write(QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 10000\r\n\r\n") + kNewer);
    });
    QTimer::singleShot(150, qApp, &QCoreApplication::quit);
    expectCheck(kNoServer);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();  // until the application runs again, every loop ends at once
}

TEST_F(UpdateCheckTest, TheDialogOffersTheDownload) {
    AddressTaker taker;
    UpdateServer server(okAnswer(kNewer));
    python("cmds.checkUpdates()");
    ASSERT_EQ(dialogs().size(), 1u);
    QPointer<QDialog> dialog = dialogs()[0];
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->parentWidget(), &mainWindow());
    ASSERT_NE(qobject_cast<QVBoxLayout*>(dialog->layout()), nullptr);
    ASSERT_EQ(rowsOf(dialog),
              (QStringList{"Tu versión: <b>0.20</b><br>Nueva versión disponible: <b>0.25</b>",
                           "Descargar actualización", "Cerrar"}));
    EXPECT_TRUE(dialog->findChild<QLabel*>()->wordWrap());
    clickRow(dialog, 1);
    clickRow(dialog, 1);
    const QUrl address("https://torvel.test/it?v=0.25");
    EXPECT_EQ(taker.taken, (QList<QUrl>{address, address}));
    EXPECT_TRUE(dialog->isVisible()) << "the download leaves it open";

    clickRow(dialog, 2);
    finishDeletion();
    ASSERT_FALSE(dialog.isNull()) << "closed, not deleted";
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(UpdateCheckTest, OnlyWebAddressesAreOpened) {
    AddressTaker taker;
    for (const char* address :
         {"http://torvel.test/a", "https://torvel.test/b", "file:///etc/passwd", "smb://host/share",
          "torveltest:run", "/usr/bin/true", "a b"}) {
        showUpdateDialog("0.20", "0.21", address);
        clickRow(dialogs().back(), 1);
    }
    EXPECT_EQ(taker.taken,
              (QList<QUrl>{QUrl("http://torvel.test/a"), QUrl("https://torvel.test/b")}));
}

TEST_F(UpdateCheckTest, TheDialogOfOtherAnswers) {
    showUpdateDialog("0.20", "0.3", "");
    showUpdateDialog("0.20", "0.20", "https://torvel.test/never");
    ASSERT_EQ(dialogs().size(), 2u);
    EXPECT_EQ(rowsOf(dialogs()[0]).size(), 3) << "an empty address keeps the button";
    clickRow(dialogs()[0], 1);
    EXPECT_TRUE(dialogs()[0]->isVisible());
    EXPECT_EQ(rowsOf(dialogs()[1]),
              (QStringList{"Estás usando la última versión: <b>0.20</b>", "Cerrar"}));
    EXPECT_EQ(dialogs()[1]->findChildren<QPushButton*>().size(), 1);

    auto* const desktop = session().mainWindow;
    session().mainWindow = nullptr;
    showUpdateDialog("0.20", "0.21", "https://torvel.test/x");
    session().mainWindow = desktop;
    EXPECT_EQ(dialogs().size(), 2u) << "without a main window it stands alone";
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (!widget->parentWidget() && widget->windowTitle() == "Versión del Plugin")
            delete widget;
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
    QByteArray expected = read();
    markCheckedToday();
    expected.replace("2020-01-02", today().toUtf8());
    EXPECT_EQ(read().toStdString(), expected.toStdString());
    EXPECT_EQ(QDir(QFileInfo(settingsPath()).absolutePath()).entryList(QDir::Files).size(), 1)
        << "no other file is left beside it";
}

TEST_F(UpdateCheckTest, MarkingMakesNoFileAndMendsNone) {
    UpdateServer server(okAnswer("{}"));
    python("cmds.checkUpdates()");
    EXPECT_EQ(messages(), Lines{kLatest});
    EXPECT_FALSE(QFile::exists(settingsPath()));
    for (const char* content : {"", "no json", "[1]"}) {
        write(content);
        markCheckedToday();
        EXPECT_EQ(read(), content);
    }
    write(R"({"last_version_check": "2020-01-02"})");
    QFile::setPermissions(settingsPath(), QFile::ReadOwner);
    if (QFile(settingsPath()).open(QIODevice::ReadWrite))
        GTEST_SKIP() << "this user may write every file";
    python("cmds.checkUpdates()");
    EXPECT_EQ(messages(), (Lines{kLatest, kLatest}));
    EXPECT_EQ(storedDate(), "2020-01-02");
}

TEST_F(UpdateCheckTest, TheCommandIgnoresTheDate) {
    UpdateServer server(okAnswer("{}"));
    passDailyStep();
    for (int count = 1; count <= 3; ++count) {
        python("cmds.checkUpdates()");
        EXPECT_EQ(server.requests().size(), count);
    }
    EXPECT_EQ(transcript(), (Lines{kLatest, kLatest, kLatest}));
}

TEST_F(UpdateCheckTest, TheLauncherAsksOnceADay) {
    struct Case {
        const char* body;     // null: nobody listens
        bool folder;          // in place of the settings file
        Lines first, second;  // lines of two openings
        std::size_t dialogs;
    };
    const Case cases[] = {
        {kOfToday, false, {kChecking}, {}, 0},
        {kNewer, false, {kChecking}, {}, 1},
        {nullptr, false, {kChecking, kNoAnswer}, {kChecking, kNoAnswer}, 1},
        {"{}", true, {kChecking}, {kChecking}, 1},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.body ? row.body : "nobody listens");
        std::unique_ptr<UpdateServer> server;
        if (row.body)
            server = std::make_unique<UpdateServer>(okAnswer(row.body));
        QFile::remove(settingsPath());
        if (row.folder) {
            ASSERT_TRUE(QDir().mkpath(settingsPath()));
            EXPECT_TRUE(shouldCheckToday());
        }
        for (const Lines& lines : {row.first, row.second}) {
            forget();
            QWidget* tool = openWindow("torvel_skeleton", "SkeletonWindow");
            ASSERT_NE(tool, nullptr);
            EXPECT_TRUE(tool->isVisible());
            EXPECT_EQ(messages(), lines);
        }
        EXPECT_EQ(dialogs().size(), row.dialogs);
        EXPECT_EQ(storedDate(), row.second.empty() ? today() : "");
        EXPECT_EQ(QFileInfo(settingsPath()).isDir(), row.folder);
        if (server) {
            EXPECT_EQ(server->requests().size(), row.second.empty() ? 1 : 2);
        }
    }
    EXPECT_TRUE(dialogs()[0]->isVisible());
}

TEST_F(UpdateCheckTest, TheTwistWindowAsksNobody) {
    UpdateServer server(okAnswer(kNewer));
    openTwist();
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_FALSE(QFile::exists(settingsPath())) << "nor the licence gate";
}

}  // namespace torvel::test

#include "update_check_test.moc"
