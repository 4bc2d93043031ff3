#include "plugin/update_server.h"

#include <memory>

#include <gtest/gtest.h>

#include <QTcpSocket>

#include "update/server_address.h"

static int serverPort = 1;

// In place of the plug-in's own constant.
QUrl updateInfoAddress() {
    return QUrl(QString("http://127.0.0.1:%1/plugin_info/").arg(serverPort));
}

namespace torvel::test {

UpdateServer::UpdateServer(Answer answer) : m_answer(std::move(answer)) {
    listen();
}

UpdateServer::UpdateServer(const QByteArray& body)
    : m_answer([body](QTcpSocket& socket) {
          socket.write(httpAnswer("200 OK", body));
          socket.disconnectFromHost();
      }) {
    listen();
}

UpdateServer::~UpdateServer() {
    serverPort = 1;
}

void UpdateServer::listen() {
    QObject::connect(&m_server, &QTcpServer::newConnection, [this] { accept(); });
    EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    serverPort = m_server.serverPort();
}

void UpdateServer::accept() {
    QTcpSocket* socket = m_server.nextPendingConnection();
    auto request = std::make_shared<QByteArray>();
    QObject::connect(socket, &QTcpSocket::readyRead, [this, socket, request] {
        *request += socket->readAll();
        if (!request->endsWith("\r\n\r\n"))
            return;
        m_requests.append(*request);
        m_answer(*socket);
    });
}

QByteArray httpAnswer(const QByteArray& status, const QByteArray& body, const QByteArray& headers) {
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: " +
           QByteArray::number(body.size()) + "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

}  // namespace torvel::test
