#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <string>
#include <vector>

namespace Kestry {

/// Takes requests on loopback and does with the connection what a test says, as rudely as it likes.
class RawServer {
public:
    using Answer = std::function<void(QTcpSocket&)>;

    RawServer()
    {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
            QTcpSocket* const socket = server_.nextPendingConnection();
            QObject::connect(
                socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
        });
    }

    /// What happens with each request from now on.
    Answer answer = [](QTcpSocket&) {};
    /// Whole requests, head and body.
    std::vector<std::string> requests;

    [[nodiscard]] std::string url(const std::string& path = "/") const
    {
        return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
    }
    /// Answers with these bytes and keeps the connection.
    void say(const std::string& bytes)
    {
        answer = [bytes](QTcpSocket& socket) { socket.write(QByteArray::fromStdString(bytes)); };
    }
    /// Answers with these bytes and closes.
    void sayAndClose(const std::string& bytes)
    {
        answer = [bytes](QTcpSocket& socket) {
            socket.write(QByteArray::fromStdString(bytes));
            socket.disconnectFromHost();
        };
    }
    [[nodiscard]] static std::string plain(
        const std::string& status, const std::string& body, const std::string& headers = "")
    {
        return "HTTP/1.1 " + status + "\r\n" + headers
            + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }

private:
    void read(QTcpSocket& socket)
    {
        // The head is looked at before it is taken, so that nothing has to be kept meanwhile.
        const QByteArray head = socket.peek(16'384);
        const auto end = head.indexOf("\r\n\r\n");
        const auto length = head.toLower().indexOf("content-length:");
        const qint64 body = length >= 0 && length < end
            ? head.mid(length + 15, head.indexOf("\r\n", length) - length - 15)
                  .trimmed()
                  .toLongLong()
            : 0;
        if (end >= 0 && socket.bytesAvailable() >= end + 4 + body) {
            requests.push_back(socket.read(end + 4 + body).toStdString());
            answer(socket);
        }
    }

    QTcpServer server_;
};

} // namespace Kestry
