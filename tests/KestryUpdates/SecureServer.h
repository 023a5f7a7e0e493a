#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "TestCertificate.h"

namespace Kestry {

/// A server for https on loopback that does with a request what a test says, as rudely as it likes.
class SecureServer {
public:
    using Answer = std::function<void(QTcpSocket&)>;

    SecureServer()
    {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(QSslCertificate(testCertificate));
        configuration.setPrivateKey(QSslKey(testKey, QSsl::Ec));
        server_.setSslConfiguration(configuration);
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, &server_, [this] {
            QTcpSocket* const socket = server_.nextPendingConnection();
            QObject::connect(
                socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
            read(*socket);
        });
    }

    /// What happens with a request for a path; nothing for a path that is not here.
    std::map<std::string, Answer> answers;
    std::vector<std::string> requests;

    [[nodiscard]] std::string url(const std::string& path = "/") const
    {
        return "https://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
    }
    void say(const std::string& path, const std::string& bytes, bool closes = false)
    {
        answers[path] = [bytes, closes](QTcpSocket& socket) {
            socket.write(QByteArray::fromStdString(bytes));
            if (closes) {
                socket.disconnectFromHost();
            }
        };
    }
    void serve(const std::string& path, const std::string& body)
    {
        say(path,
            "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n"
                + body);
    }
    void redirect(const std::string& path, const std::string& to, const std::string& status = "302")
    {
        say(path,
            "HTTP/1.1 " + status + " Found\r\nLocation: " + to
                + "\r\nContent-Length: 5\r\n\r\nthere");
    }

private:
    void read(QTcpSocket& socket)
    {
        const QByteArray head = socket.peek(16'384);
        const auto end = head.indexOf("\r\n\r\n");
        if (end < 0) {
            return;
        }
        requests.push_back(socket.read(end + 4).toStdString());
        const std::string& request = requests.back();
        const std::size_t begin = request.find(' ') + 1;
        const auto found = answers.find(request.substr(begin, request.find(' ', begin) - begin));
        if (found != answers.end()) {
            found->second(socket);
        }
    }

    QSslServer server_;
};

} // namespace Kestry
