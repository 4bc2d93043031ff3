#include "app/network.h"

#include <QCoreApplication>
#include <QEvent>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QTcpSocket>

namespace torvel {

namespace {

// Every connection goes to a proxy that nobody runs.
class NoNetwork : public QNetworkProxyFactory {
  public:
    explicit NoNetwork(const QNetworkProxy& nobody) : m_nobody(nobody) {}
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery&) override { return {m_nobody}; }

  private:
    QNetworkProxy m_nobody;
};

// Qt asks no application proxy for addresses of this machine, but takes the one of the manager. A
// manager is told of its new reply before that looks for its way.
class RequestFilter : public QObject {
  public:
    RequestFilter(const QNetworkProxy& nobody, QObject* parent)
        : QObject(parent), m_nobody(nobody) {}
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() == QEvent::ChildAdded)
            if (auto* manager = qobject_cast<QNetworkAccessManager*>(receiver))
                manager->setProxy(m_nobody);
        return false;
    }

  private:
    QNetworkProxy m_nobody;
};

}  // namespace

void closeNetwork() {
    static bool closed = false;
    if (closed)
        return;
    closed = true;
    QCoreApplication* application = QCoreApplication::instance();
    // The port is taken and not listened at, so that no other program can start to answer there.
    auto* taken = new QTcpSocket(application);
    const bool bound = taken->bind(QHostAddress::LocalHost, 0, QAbstractSocket::DontShareAddress);
    const quint16 port = bound && taken->localPort() != 0 ? taken->localPort() : quint16(9);
    const QNetworkProxy nobody(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), port);
    QNetworkProxyFactory::setApplicationProxyFactory(new NoNetwork(nobody));
    application->installEventFilter(new RequestFilter(nobody, application));
}

}  // namespace torvel
