#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <string>

namespace Kestry {

/// A way to a server on this machine that can be closed: passes bytes on in both directions.
class TcpRelay {
public:
    explicit TcpRelay(quint16 target) : target_(target) { setOpen(true); }

    [[nodiscard]] quint16 port() const { return port_; }
    /// Closing breaks all connections.
    void setOpen(bool isOpen)
    {
        server_.reset();
        if (!isOpen) {
            return;
        }
        server_ = std::make_unique<QTcpServer>();
        server_->listen(QHostAddress::LocalHost, port_);
        port_ = server_->serverPort();
        QObject::connect(server_.get(), &QTcpServer::newConnection, server_.get(), [this] {
            while (QTcpSocket* const near = server_->nextPendingConnection()) {
                auto* const far = new QTcpSocket(near);
                far->connectToHost(QHostAddress::LocalHost, target_);
                pass(*near, *far);
                pass(*far, *near);
            }
        });
    }

private:
    static void pass(QTcpSocket& from, QTcpSocket& to)
    {
        QObject::connect(
            &from, &QTcpSocket::readyRead, &to, [&from, &to] { to.write(from.readAll()); });
        QObject::connect(&from, &QTcpSocket::disconnected, &to, [&to] { to.disconnectFromHost(); });
    }

    quint16 target_;
    quint16 port_ = 0;
    std::unique_ptr<QTcpServer> server_;
};

} // namespace Kestry
