#include "CouchDouble.h"

#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

#include "DoubleWords.h"

namespace Kestry {

CouchDouble::CouchDouble()
{
    setReachable(true);
}

std::string CouchDouble::url() const
{
    return "http://127.0.0.1:" + std::to_string(port_);
}

void CouchDouble::setReachable(bool isReachable)
{
    server_.reset();
    if (!isReachable) {
        return;
    }
    server_ = std::make_unique<QTcpServer>();
    server_->listen(QHostAddress::LocalHost, port_);
    port_ = server_->serverPort();
    QObject::connect(server_.get(), &QTcpServer::newConnection, server_.get(), [this] {
        while (QTcpSocket* const socket = server_->nextPendingConnection()) {
            QObject::connect(
                socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
        }
    });
}

void CouchDouble::failNext(const std::string& pathEnd, const DoubleFault& what)
{
    next_.emplace_back(pathEnd, what);
}

int CouchDouble::times(const std::string& pathEnd) const
{
    return static_cast<int>(std::ranges::count_if(
        requests, [&](const DoubleRequest& request) { return request.path.ends_with(pathEnd); }));
}

// Requests.

void CouchDouble::read(QTcpSocket& socket)
{
    while (socket.isOpen()) {
        // The head is looked at before it is taken, so that nothing has to be kept meanwhile.
        const QByteArray seen = socket.peek(16'384);
        const auto end = seen.indexOf("\r\n\r\n");
        if (end < 0) {
            return;
        }
        DoubleRequest request;
        const QList<QByteArray> lines = seen.left(end).split('\n');
        for (const QByteArray& line : lines.mid(1)) {
            const auto colon = line.indexOf(':');
            request.headers[line.left(colon).toLower().toStdString()] =
                line.mid(colon + 1).trimmed().toStdString();
        }
        const qint64 length =
            QByteArray::fromStdString(doubleValue(request.headers, "content-length")).toLongLong();
        if (socket.bytesAvailable() < end + 4 + length) {
            return;
        }
        socket.read(end + 4);
        request.body = socket.read(length).toStdString();
        const QList<QByteArray> words = lines.first().trimmed().split(' ');
        const QUrl url = QUrl::fromEncoded(words.value(1), QUrl::StrictMode);
        request.method = words.value(0).toStdString();
        request.path = url.path(QUrl::FullyEncoded).toStdString();
        for (const auto& [name, value] : QUrlQuery(url).queryItems(QUrl::FullyDecoded)) {
            request.query[name.toStdString()] = value.toStdString();
        }
        handle(socket, request);
    }
}

namespace {

void write(QTcpSocket& socket, const DoubleAnswer& answer)
{
    const std::string head = "HTTP/1.1 " + std::to_string(answer.status) + " -\r\n" + answer.headers
        + "Content-Type: application/json\r\nContent-Length: " + std::to_string(answer.body.size())
        + "\r\n\r\n";
    socket.write(QByteArray::fromStdString(head + answer.body));
}

void drip(QTcpSocket& socket)
{
    socket.write("HTTP/1.1 200 -\r\nContent-Length: 100000\r\n\r\n");
    auto* const timer = new QTimer(&socket);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write(" "); });
    timer->start(10);
}

void writeEndlessly(QTcpSocket& socket)
{
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
        [&socket] { socket.write(QByteArray(65'536, ' ')); });
    socket.write("HTTP/1.1 200 -\r\n\r\n{");
}

} // namespace

void CouchDouble::handle(QTcpSocket& socket, const DoubleRequest& request)
{
    requests.push_back(request);
    const Fault asked = fault; // It may replace itself.
    std::optional<DoubleFault> what = asked ? asked(request) : std::nullopt;
    if (!what && !next_.empty() && request.path.ends_with(next_.front().first)) {
        what = next_.front().second;
        next_.pop_front();
    }
    if (!what) {
        write(socket, answerTo(request));
        return;
    }
    carryOut(socket, request, *what);
}

void CouchDouble::carryOut(
    QTcpSocket& socket, const DoubleRequest& request, const DoubleFault& what)
{
    using Kind = DoubleFault::Kind;
    if (what.kind == Kind::answer) {
        write(socket, what.answer);
    } else if (what.kind == Kind::loseRequest) {
        socket.abort();
    } else if (what.kind == Kind::endless) {
        writeEndlessly(socket);
    } else {
        DoubleAnswer answer = answerTo(request);
        if (what.kind == Kind::loseAnswer) {
            socket.abort();
        } else if (what.kind == Kind::cutAnswer) {
            socket.write("HTTP/1.1 200 -\r\nContent-Length: 100000\r\n\r\n");
            socket.write(QByteArray::fromStdString(answer.body));
            socket.disconnectFromHost();
        } else if (what.kind == Kind::lateAnswer) {
            QTimer::singleShot(
                what.milliseconds, &socket, [&socket, answer] { write(socket, answer); });
        } else if (what.kind == Kind::dripAnswer) {
            drip(socket);
        } else {
            answer.body = what.change(answer.body);
            write(socket, answer);
        }
    }
}

// The administrator.

void CouchDouble::createDatabase(const std::string& name)
{
    databases_[name];
}

void CouchDouble::removeDatabase(const std::string& name)
{
    databases_.erase(name);
}

void CouchDouble::removeDocument(const std::string& database, const std::string& id)
{
    DoubleDatabase& found = databases_.at(database);
    found.add(id, QJsonObject{{"_deleted", true}}, found.documents.at(id).winner());
}

void CouchDouble::purge(const std::string& database, const std::string& id)
{
    DoubleDatabase& found = databases_.at(database);
    found.feed.erase(found.documents.at(id).sequence);
    found.documents.erase(id);
}

QJsonObject CouchDouble::shown(const std::string& database, const std::string& id) const
{
    const auto found = databases_.find(database);
    if (found == databases_.end() || !found->second.documents.contains(id)) {
        return {};
    }
    const DoubleDocument& document = found->second.documents.at(id);
    return document.whole(id, document.winner());
}

std::vector<std::string> CouchDouble::documentsOf(const std::string& database) const
{
    std::vector<std::string> names;
    for (const auto& [id, document] : databases_.at(database).documents) {
        names.push_back(id);
    }
    return names;
}

std::string CouchDouble::put(const std::string& database, const QJsonObject& document)
{
    return databases_.at(database).save(document)["rev"].toString().toStdString();
}

std::string CouchDouble::accept(
    const std::string& database, const QJsonObject& document, const std::string& parent, bool wins)
{
    return databases_.at(database).add(document["_id"].toString().toStdString(), document, parent,
        std::string(32, wins ? 'f' : '0'));
}

std::vector<std::string> CouchDouble::overruled(
    const std::string& database, const std::string& id) const
{
    const DoubleDocument& document = databases_.at(database).documents.at(id);
    QJsonObject object;
    document.addConflicts(object);
    std::vector<std::string> revisions;
    for (const QJsonValue& revision : object["_conflicts"].toArray()) {
        revisions.push_back(revision.toString().toStdString());
    }
    return revisions;
}

void CouchDouble::tellOldVersion(const std::string& database, const std::string& id)
{
    DoubleDatabase& found = databases_.at(database);
    DoubleDocument& document = found.documents.at(id);
    found.oldVersions[id] = document.versions.begin()->first;
    found.feed.erase(document.sequence);
    document.sequence = ++found.sequence;
    found.feed[document.sequence] = id;
}

void CouchDouble::backUp()
{
    backup_ = databases_;
}

void CouchDouble::restore()
{
    databases_ = backup_;
}

} // namespace Kestry
