#pragma once

#include <functional>

#include <QByteArray>
#include <QByteArrayList>
#include <QTcpServer>

class QTcpSocket;

namespace torvel::test {

/// Stands in for the update server, on a free port of the loopback interface. While one lives the
/// plug-in asks it; otherwise the plug-in asks a port on which nobody listens.
class UpdateServer {
  public:
    using Answer = std::function<void(QTcpSocket&)>;

    /// What to do when a request has come, headers and all.
    explicit UpdateServer(Answer answer);
    /// Answers 200 with this body.
    explicit UpdateServer(const QByteArray& body);
    ~UpdateServer();

    /// Each request as it came.
    const QByteArrayList& requests() const { return m_requests; }

  private:
    void listen();
    void accept();

    QTcpServer m_server;
    Answer m_answer;
    QByteArrayList m_requests;
};

/// A whole answer: status line, type, length, body.
QByteArray httpAnswer(const QByteArray& status, const QByteArray& body,
                      const QByteArray& headers = {});

}  // namespace torvel::test
