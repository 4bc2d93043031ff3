// The closed network of batch mode. It stays closed for the rest of this program.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpServer>

#include "app/network.h"
#include "host/ui/desktop.h"

namespace torvel {
namespace {

QNetworkReply::NetworkError get(const QUrl& address) {
    QNetworkAccessManager manager;
    QEventLoop loop;
    QNetworkReply* reply = manager.get(QNetworkRequest(address));
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    const auto error = reply->error();
    delete reply;
    return error;
}

TEST(Network, OnceClosedNothingIsReachedAndTheAnswerComesAtOnce) {
    test::application();
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int calls = 0;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        ++calls;
        server.nextPendingConnection()->close();
    });
    const QUrl address(QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort()));
    EXPECT_EQ(get(address), QNetworkReply::RemoteHostClosedError);
    EXPECT_GT(calls, 0);
    calls = 0;
    closeNetwork();
    closeNetwork();
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(get(address), QNetworkReply::ConnectionRefusedError);
    EXPECT_EQ(get(QUrl("http://localhost:1/")), QNetworkReply::ConnectionRefusedError);
    EXPECT_EQ(get(QUrl("http://no.such.host.invalid/")), QNetworkReply::ConnectionRefusedError);
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace torvel
