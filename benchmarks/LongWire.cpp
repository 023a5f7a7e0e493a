#include "LongWire.h"

#include <QTimer>
#include <QUrl>

#include <memory>
#include <utility>

namespace Kestry {

namespace {

constexpr const char* awaited = "awaited"; // on a connection whose answer is waited for

} // namespace

LongWire::LongWire(const std::string& server, int milliseconds)
    : serverPort_(static_cast<quint16>(QUrl(QString::fromStdString(server)).port())),
      milliseconds_(milliseconds)
{
    listener_.listen(QHostAddress::LocalHost);
    QObject::connect(&listener_, &QTcpServer::newConnection, &listener_, [this] { accept(); });
}

std::string LongWire::address() const
{
    return "http://127.0.0.1:" + std::to_string(listener_.serverPort());
}

void LongWire::whenAnswered(const std::string& word, std::function<void()> observer)
{
    word_ = word;
    observer_ = std::move(observer);
}

void LongWire::accept()
{
    while (QTcpSocket* const near = listener_.nextPendingConnection()) {
        auto* const far = new QTcpSocket(near);
        near->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        far->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        far->connectToHost(QHostAddress::LocalHost, serverPort_);
        QObject::connect(near, &QTcpSocket::readyRead, far, [this, near, far] {
            seeRequest(*near, near->peek(near->bytesAvailable()));
            pass(*near, *far);
        });
        QObject::connect(far, &QTcpSocket::readyRead, near, [this, near, far] {
            seeAnswer(*near);
            pass(*far, *near);
        });
    }
}

void LongWire::pass(QTcpSocket& from, QTcpSocket& to)
{
    const QByteArray bytes = from.readAll();
    QTimer::singleShot(milliseconds_, Qt::PreciseTimer, &to, [&to, bytes] { to.write(bytes); });
}

void LongWire::seeRequest(QTcpSocket& near, const QByteArray& bytes)
{
    const bool isNew = bytes.startsWith("GET ") || bytes.startsWith("POST ");
    if (!isNew) {
        return;
    }
    ++requests_;
    const QByteArray line = bytes.left(bytes.indexOf('\r'));
    near.setProperty(awaited, !word_.empty() && line.contains(word_.c_str()));
}

void LongWire::seeAnswer(QTcpSocket& near)
{
    if (near.property(awaited).toBool()) {
        near.setProperty(awaited, false);
        observer_();
    }
}

} // namespace Kestry
