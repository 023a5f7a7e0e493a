#include "CouchDouble.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace Kestry {

namespace {

std::string json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

std::string json(const QJsonArray& array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact).toStdString();
}

QString text(const std::string& bytes)
{
    return QString::fromStdString(bytes);
}

DoubleAnswer refusal(int status, const char* error, const char* reason)
{
    return {status, json(QJsonObject{{"error", error}, {"reason", reason}})};
}

int generation(const std::string& revision)
{
    return revision.empty() ? 0 : std::stoi(revision);
}

bool isRevision(const std::string& revision)
{
    const std::size_t hyphen = revision.find('-');
    return hyphen != std::string::npos && hyphen > 0 && hyphen + 1 < revision.size()
        && std::all_of(revision.begin(), revision.begin() + static_cast<std::ptrdiff_t>(hyphen),
            [](char digit) { return digit >= '0' && digit <= '9'; });
}

QJsonObject bodyOf(const DoubleRequest& request)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
}

std::string valueOf(const std::map<std::string, std::string>& all, const std::string& name)
{
    const auto found = all.find(name);
    return found != all.end() ? found->second : std::string();
}

} // namespace

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
            QByteArray::fromStdString(valueOf(request.headers, "content-length")).toLongLong();
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

std::optional<std::string> CouchDouble::userOf(const DoubleRequest& request) const
{
    const std::string header = valueOf(request.headers, "authorization");
    if (!header.starts_with("Basic ")) {
        return std::nullopt;
    }
    const std::string pair =
        QByteArray::fromBase64(QByteArray::fromStdString(header.substr(6))).toStdString();
    const std::string user = pair.substr(0, pair.find(':'));
    const auto password = passwords.find(user);
    const bool isKnown = password != passwords.end() && pair == user + ":" + password->second;
    return isKnown ? std::optional(user) : std::nullopt;
}

DoubleAnswer CouchDouble::welcome() const
{
    QJsonObject body{{"couchdb", "Welcome"}, {"version", "3.5.0"}, {"uuid", text(identity)}};
    body["vendor"] = QJsonObject{{"name", "The Apache Software Foundation"}};
    return {200, json(body)};
}

DoubleAnswer CouchDouble::answerTo(const DoubleRequest& request)
{
    if (request.path == "/") {
        return welcome();
    }
    const auto user = userOf(request);
    if (!user) {
        return refusal(401, "unauthorized", "Name or password is incorrect.");
    }
    if (request.path == "/_session") {
        QJsonObject context{{"name", text(session.empty() ? *user : session)}};
        if (session == "nobody") {
            context["name"] = QJsonValue::Null;
        }
        return {200, json(QJsonObject{{"ok", true}, {"userCtx", context}})};
    }
    const std::size_t solidus = request.path.find('/', 1);
    const std::string name =
        QUrl::fromPercentEncoding(QByteArray::fromStdString(request.path.substr(1, solidus - 1)))
            .toStdString();
    if (request.method == "PUT" && solidus == std::string::npos) {
        if (databases_.contains(name)) {
            return refusal(412, "file_exists", "The file already exists.");
        }
        if (!mayCreate) {
            return refusal(401, "unauthorized", "You are not a server admin.");
        }
        createDatabase(name);
        return {201, "{\"ok\":true}"};
    }
    const auto database = databases_.find(name);
    if (database == databases_.end()) {
        return refusal(404, "not_found", "Database does not exist.");
    }
    return answerOf(database->second,
        solidus == std::string::npos ? "" : request.path.substr(solidus), request);
}

DoubleAnswer CouchDouble::answerOf(
    Database& database, const std::string& name, const DoubleRequest& request)
{
    if (request.body.size() > mostRequestBytes) {
        return refusal(413, "too_large", "the request entity is too large");
    }
    if (request.method == "POST"
        && valueOf(request.headers, "content-type") != "application/json") {
        return refusal(415, "bad_content_type", "Content-Type must be application/json");
    }
    if (name == "/_bulk_docs") {
        return saveBatch(database, request);
    }
    if (name == "/_all_docs") {
        return rows(database, request);
    }
    if (name == "/_bulk_get") {
        return versions(database, request);
    }
    if (name == "/_changes") {
        return changes(database, request);
    }
    return refusal(404, "not_found", "missing");
}

// Documents.

std::string CouchDouble::winner(const Document& document)
{
    std::string best;
    bool bestIsDeleted = true;
    for (const std::string& leaf : document.leaves) {
        const bool isDeleted = document.versions.at(leaf).isDeleted;
        const auto rank = [](bool deleted, const std::string& revision) {
            return std::tuple(!deleted, generation(revision), revision);
        };
        if (best.empty() || rank(isDeleted, leaf) > rank(bestIsDeleted, best)) {
            best = leaf;
            bestIsDeleted = isDeleted;
        }
    }
    return best;
}

std::string CouchDouble::add(Database& database, const std::string& id, QJsonObject content,
    const std::string& parent, const std::string& hash)
{
    Document& document = database.documents[id];
    Version version;
    version.parent = parent;
    version.isDeleted = content.take("_deleted").toBool();
    content.remove("_id");
    content.remove("_rev");
    version.content = content;
    const QByteArray told =
        QByteArray::fromStdString(json(content) + parent + (version.isDeleted ? "d" : ""));
    const std::string digest = hash.empty()
        ? QCryptographicHash::hash(told, QCryptographicHash::Md5).toHex().toStdString()
        : hash;
    const std::string revision = std::to_string(generation(parent) + 1) + "-" + digest;
    document.leaves.erase(parent);
    document.leaves.insert(revision);
    document.versions[revision] = version;
    database.feed.erase(document.sequence);
    document.sequence = ++database.sequence;
    database.feed[document.sequence] = id;
    return revision;
}

QJsonObject CouchDouble::saveOne(Database& database, const QJsonObject& document)
{
    const std::string id = document["_id"].toString().toStdString();
    const std::string parent = document["_rev"].toString().toStdString();
    const auto found = database.documents.find(id);
    const auto refused = QJsonObject{
        {"id", text(id)}, {"error", "conflict"}, {"reason", "Document update conflict."}};
    std::string base = parent;
    if (found != database.documents.end()) {
        const Document& known = found->second;
        const std::string best = winner(known);
        const bool isGone = known.versions.at(best).isDeleted;
        if (parent.empty() && isGone) {
            base = best; // It is made anew over its deletion.
        } else if (!known.leaves.contains(parent) || known.versions.at(parent).isDeleted) {
            return refused;
        }
    }
    const std::string revision = add(database, id, document, base);
    return QJsonObject{{"ok", true}, {"id", text(id)}, {"rev", text(revision)}};
}

DoubleAnswer CouchDouble::saveBatch(Database& database, const DoubleRequest& request)
{
    const QJsonArray documents = bodyOf(request)["docs"].toArray();
    for (const QJsonValue& value : documents) {
        const QJsonObject document = value.toObject();
        const std::string id = document["_id"].toString().toStdString();
        const std::string revision = document["_rev"].toString().toStdString();
        if (id.empty() || id.front() == '_') {
            return refusal(
                400, "illegal_docid", "Only reserved document ids may start with underscore.");
        }
        if (document.contains("_rev") && !isRevision(revision)) {
            return refusal(400, "bad_request", "Invalid rev format");
        }
        for (const QString& key : document.keys()) {
            if (key.startsWith('_') && key != "_id" && key != "_rev" && key != "_deleted") {
                return refusal(400, "doc_validation", "Bad special document member");
            }
        }
        if (json(document).size() > mostDocumentBytes) {
            return refusal(413, "document_too_large", "too large");
        }
    }
    std::vector<QJsonObject> results;
    for (const QJsonValue& value : documents) {
        results.push_back(saveOne(database, value.toObject()));
    }
    if (shufflesAnswers) {
        std::ranges::reverse(results);
    }
    QJsonArray answer;
    for (const QJsonObject& result : results) {
        answer.append(result);
    }
    return {201, json(answer)};
}

QJsonObject CouchDouble::whole(
    const std::string& id, const Document& document, const std::string& revision)
{
    const Version& version = document.versions.at(revision);
    QJsonObject object = version.content;
    object["_id"] = text(id);
    object["_rev"] = text(revision);
    if (version.isDeleted) {
        object["_deleted"] = true;
    }
    return object;
}

void CouchDouble::addConflicts(QJsonObject& whole, const Document& document)
{
    QJsonArray others;
    const std::string best = winner(document);
    for (const std::string& leaf : document.leaves) {
        if (leaf != best && !document.versions.at(leaf).isDeleted) {
            others.append(text(leaf));
        }
    }
    if (!others.isEmpty()) {
        whole["_conflicts"] = others;
    }
}

DoubleAnswer CouchDouble::rows(Database& database, const DoubleRequest& request)
{
    const bool withBodies = valueOf(request.query, "include_docs") == "true";
    QJsonArray rows;
    for (const QJsonValue& key : bodyOf(request)["keys"].toArray()) {
        const std::string id = key.toString().toStdString();
        const auto found = database.documents.find(id);
        if (found == database.documents.end()) {
            rows.append(QJsonObject{{"key", key}, {"error", "not_found"}});
            continue;
        }
        const auto behind = outdated.find(id);
        const bool isBehind = behind != outdated.end() && behind->second-- > 0;
        const std::string best =
            isBehind ? found->second.versions.begin()->first : winner(found->second);
        const bool isDeleted = found->second.versions.at(best).isDeleted;
        QJsonObject value{{"rev", text(best)}};
        QJsonObject row{{"id", key}, {"key", key}};
        if (isDeleted) {
            value["deleted"] = true;
            row["doc"] = QJsonValue::Null;
        } else if (withBodies) {
            QJsonObject document = whole(id, found->second, best);
            addConflicts(document, found->second);
            row["doc"] = document;
        }
        row["value"] = value;
        rows.append(row);
    }
    return {200, json(QJsonObject{{"total_rows", rows.size()}, {"rows", rows}})};
}

QJsonArray CouchDouble::history(const Document& document, std::string revision)
{
    QJsonArray hashes;
    while (!revision.empty()) {
        hashes.append(text(revision.substr(revision.find('-') + 1)));
        const auto version = document.versions.find(revision);
        revision = version != document.versions.end() ? version->second.parent : std::string();
    }
    return hashes;
}

DoubleAnswer CouchDouble::versions(Database& database, const DoubleRequest& request) const
{
    QJsonArray results;
    for (const QJsonValue& value : bodyOf(request)["docs"].toArray()) {
        const std::string id = value.toObject()["id"].toString().toStdString();
        const std::string revision = value.toObject()["rev"].toString().toStdString();
        const auto found = database.documents.find(id);
        QJsonObject told;
        if (found != database.documents.end() && found->second.versions.contains(revision)) {
            QJsonObject document = whole(id, found->second, revision);
            document["_revisions"] = QJsonObject{
                {"start", generation(revision)}, {"ids", history(found->second, revision)}};
            told["ok"] = document;
        } else {
            told["error"] =
                QJsonObject{{"id", text(id)}, {"rev", text(revision)}, {"error", "not_found"}};
        }
        results.append(QJsonObject{{"id", text(id)}, {"docs", QJsonArray{told}}});
    }
    return {200, json(QJsonObject{{"results", results}})};
}

DoubleAnswer CouchDouble::changes(Database& database, const DoubleRequest& request) const
{
    const std::string since = valueOf(request.query, "since");
    const bool withBodies = valueOf(request.query, "include_docs") == "true";
    if (!since.empty() && !isSimple && !isRevision(since)) {
        return refusal(400, "bad_request", "Malformed sequence supplied in 'since' parameter.");
    }
    const std::int64_t start = since.empty() ? 0 : std::strtoll(since.c_str(), nullptr, 10);
    const auto limit = static_cast<std::size_t>(std::stoul(valueOf(request.query, "limit")));
    const auto spelled = [this](std::int64_t sequence) {
        return isSimple ? QJsonValue(static_cast<double>(sequence))
                        : QJsonValue(QString::number(sequence) + "-g1AAAACjeJzLYWBgYMpg+T/mEQ");
    };
    std::vector<QJsonObject> found;
    std::int64_t last = start;
    auto next = database.feed.upper_bound(start);
    for (; next != database.feed.end() && found.size() < limit; ++next) {
        const auto& [sequence, id] = *next;
        if (late.contains(id)) {
            continue;
        }
        const Document& document = database.documents.at(id);
        const auto old = database.oldVersions.find(id);
        const std::string revision =
            old != database.oldVersions.end() ? old->second : winner(document);
        QJsonObject row{{"seq", spelled(sequence)}, {"id", text(id)}};
        row["changes"] = QJsonArray{QJsonObject{{"rev", text(revision)}}};
        if (document.versions.at(revision).isDeleted) {
            row["deleted"] = true;
        }
        if (withBodies) {
            QJsonObject told = whole(id, document, revision);
            addConflicts(told, document);
            row["doc"] = told;
        }
        found.push_back(row);
        last = sequence;
    }
    if (reversesRows && !found.empty()) {
        // Only the place of the last one in the feed is where the page ends.
        std::reverse(found.begin(), found.end() - 1);
    }
    QJsonArray results;
    for (const QJsonObject& row : found) {
        results.append(row);
        if (repeatsRows) {
            results.append(row);
        }
    }
    QJsonObject body{{"results", results}, {"last_seq", spelled(last)}};
    if (!isSimple) {
        body["pending"] = static_cast<double>(std::distance(next, database.feed.end()));
    }
    return {200, json(body)};
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
    Database& found = databases_.at(database);
    add(found, id, QJsonObject{{"_deleted", true}}, winner(found.documents.at(id)));
}

void CouchDouble::purge(const std::string& database, const std::string& id)
{
    Database& found = databases_.at(database);
    found.feed.erase(found.documents.at(id).sequence);
    found.documents.erase(id);
}

QJsonObject CouchDouble::shown(const std::string& database, const std::string& id) const
{
    const auto found = databases_.find(database);
    if (found == databases_.end() || !found->second.documents.contains(id)) {
        return {};
    }
    const Document& document = found->second.documents.at(id);
    return whole(id, document, winner(document));
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
    return saveOne(databases_.at(database), document)["rev"].toString().toStdString();
}

std::string CouchDouble::accept(
    const std::string& database, const QJsonObject& document, const std::string& parent, bool wins)
{
    return add(databases_.at(database), document["_id"].toString().toStdString(), document, parent,
        std::string(32, wins ? 'f' : '0'));
}

std::vector<std::string> CouchDouble::overruled(
    const std::string& database, const std::string& id) const
{
    const Document& document = databases_.at(database).documents.at(id);
    QJsonObject object;
    addConflicts(object, document);
    std::vector<std::string> revisions;
    for (const QJsonValue& revision : object["_conflicts"].toArray()) {
        revisions.push_back(revision.toString().toStdString());
    }
    return revisions;
}

void CouchDouble::tellOldVersion(const std::string& database, const std::string& id)
{
    Database& found = databases_.at(database);
    Document& document = found.documents.at(id);
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
