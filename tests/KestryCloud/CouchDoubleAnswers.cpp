// What the server of our own answers.

#include <QUrl>

#include <algorithm>
#include <charconv>

#include "CouchDouble.h"
#include "DoubleWords.h"

namespace Kestry {

namespace {

DoubleAnswer refusal(int status, const char* error, const char* reason)
{
    return {status, doubleJson(QJsonObject{{"error", error}, {"reason", reason}})};
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

/// Whether a text is the same between quotation marks.
bool isPlain(const std::string& text)
{
    return std::ranges::all_of(text, [](char letter) {
        return letter >= ' ' && letter <= '~' && letter != '"' && letter != '\\';
    });
}

} // namespace

std::optional<std::string> CouchDouble::userOf(const DoubleRequest& request) const
{
    const std::string header = doubleValue(request.headers, "authorization");
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
    QJsonObject body{{"couchdb", "Welcome"}, {"version", "3.5.0"}, {"uuid", doubleText(identity)}};
    body["vendor"] = QJsonObject{{"name", "The Apache Software Foundation"}};
    return {200, doubleJson(body)};
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
        QJsonObject context{{"name", doubleText(session.empty() ? *user : session)}};
        if (session == "nobody") {
            context["name"] = QJsonValue::Null;
        }
        return {200, doubleJson(QJsonObject{{"ok", true}, {"userCtx", context}})};
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
    DoubleDatabase& database, const std::string& name, const DoubleRequest& request)
{
    if (request.body.size() > mostRequestBytes) {
        return refusal(413, "too_large", "the request entity is too large");
    }
    if (request.method == "POST"
        && doubleValue(request.headers, "content-type") != "application/json") {
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

DoubleAnswer CouchDouble::saveBatch(DoubleDatabase& database, const DoubleRequest& request)
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
        if (doubleJson(document).size() > mostDocumentBytes) {
            return refusal(413, "document_too_large", "too large");
        }
    }
    std::vector<QJsonObject> results;
    for (const QJsonValue& value : documents) {
        results.push_back(database.save(value.toObject()));
    }
    if (shufflesAnswers) {
        std::ranges::reverse(results);
    }
    QJsonArray answer;
    for (const QJsonObject& result : results) {
        answer.append(result);
    }
    return {201, doubleJson(answer)};
}

std::string CouchDouble::row(const DoubleDatabase& database, const std::string& id, bool withBodies)
{
    const QString key = doubleText(id);
    const auto found = database.documents.find(id);
    if (found == database.documents.end()) {
        return doubleJson(QJsonObject{{"key", key}, {"error", "not_found"}});
    }
    const auto behind = outdated.find(id);
    const bool isBehind = behind != outdated.end() && behind->second-- > 0;
    const std::string best =
        isBehind ? found->second.versions.begin()->first : found->second.winner();
    const bool isDeleted = found->second.versions.at(best).isDeleted;
    if (!isDeleted && !withBodies && isPlain(id)) {
        // In no time, or that would be what a benchmark measures.
        return R"({"id":")" + id + R"(","key":")" + id + R"(","value":{"rev":")" + best + R"("}})";
    }
    QJsonObject value{{"rev", doubleText(best)}};
    QJsonObject row{{"id", key}, {"key", key}};
    if (isDeleted) {
        value["deleted"] = true;
        row["doc"] = QJsonValue::Null;
    } else if (withBodies) {
        QJsonObject document = found->second.whole(id, best);
        found->second.addConflicts(document);
        row["doc"] = document;
    }
    row["value"] = value;
    return doubleJson(row);
}

DoubleAnswer CouchDouble::rows(DoubleDatabase& database, const DoubleRequest& request)
{
    const bool withBodies = doubleValue(request.query, "include_docs") == "true";
    const QJsonArray keys = bodyOf(request)["keys"].toArray();
    std::string rows;
    for (const QJsonValue& key : keys) {
        rows += rows.empty() ? "" : ",";
        rows += row(database, key.toString().toStdString(), withBodies);
    }
    return {200, R"({"total_rows":)" + std::to_string(keys.size()) + R"(,"rows":[)" + rows + "]}"};
}

DoubleAnswer CouchDouble::versions(DoubleDatabase& database, const DoubleRequest& request) const
{
    QJsonArray results;
    for (const QJsonValue& value : bodyOf(request)["docs"].toArray()) {
        const std::string id = value.toObject()["id"].toString().toStdString();
        const std::string revision = value.toObject()["rev"].toString().toStdString();
        const auto found = database.documents.find(id);
        QJsonObject told;
        if (found != database.documents.end() && found->second.versions.contains(revision)) {
            QJsonObject document = found->second.whole(id, revision);
            document["_revisions"] = QJsonObject{
                {"start", doubleGeneration(revision)}, {"ids", found->second.history(revision)}};
            told["ok"] = document;
        } else {
            told["error"] = QJsonObject{
                {"id", doubleText(id)}, {"rev", doubleText(revision)}, {"error", "not_found"}};
        }
        results.append(QJsonObject{{"id", doubleText(id)}, {"docs", QJsonArray{told}}});
    }
    return {200, doubleJson(QJsonObject{{"results", results}})};
}

DoubleAnswer CouchDouble::changes(DoubleDatabase& database, const DoubleRequest& request) const
{
    const std::string since = doubleValue(request.query, "since");
    const bool withBodies = doubleValue(request.query, "include_docs") == "true";
    if (!since.empty() && !isSimple && !isRevision(since)) {
        return refusal(400, "bad_request", "Malformed sequence supplied in 'since' parameter.");
    }
    const std::int64_t start = since.empty() ? 0 : std::strtoll(since.c_str(), nullptr, 10);
    const std::string most = doubleValue(request.query, "limit");
    std::size_t limit = database.feed.size();
    if (!most.empty()
        && std::from_chars(most.data(), most.data() + most.size(), limit).ec != std::errc()) {
        return refusal(400, "query_parse_error", "Invalid value for integer: limit");
    }
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
        const DoubleDocument& document = database.documents.at(id);
        const auto old = database.oldVersions.find(id);
        const std::string revision =
            old != database.oldVersions.end() ? old->second : document.winner();
        QJsonObject row{{"seq", spelled(sequence)}, {"id", doubleText(id)}};
        row["changes"] = QJsonArray{QJsonObject{{"rev", doubleText(revision)}}};
        if (document.versions.at(revision).isDeleted) {
            row["deleted"] = true;
        }
        if (withBodies) {
            QJsonObject told = document.whole(id, revision);
            document.addConflicts(told);
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
    return {200, doubleJson(body)};
}

} // namespace Kestry
