#include "CouchServer.h"

#include <QUrl>

#include <map>

#include "Base64.h"
#include "CloudError.h"
#include "JsonWriter.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr double trustSeconds = 30.0; // a poll comes each 60, and finds out anew

std::string keysJson(const std::vector<std::string>& ids)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("keys");
    writer.beginArray();
    for (const std::string& id : ids) {
        writer.value(std::string_view(id));
    }
    writer.endArray();
    writer.endObject();
    return writer.take();
}

std::string revisionsJson(const std::vector<std::pair<std::string, std::string>>& revisions)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("docs");
    writer.beginArray();
    for (const auto& [id, revision] : revisions) {
        writer.beginObject();
        writer.member("id", std::string_view(id));
        writer.member("rev", std::string_view(revision));
        writer.endObject();
    }
    writer.endArray();
    writer.endObject();
    return writer.take();
}

std::string batchJson(const std::vector<std::string>& documents)
{
    std::string json = "{\"docs\":[";
    for (const std::string& document : documents) {
        json += json.back() == '[' ? "" : ",";
        json += document;
    }
    return json + "]}";
}

/// The rows by the names that were asked for, whatever their order. Rows of other names go.
std::vector<CouchRow> inOrder(const std::vector<std::string>& ids, std::vector<CouchRow> rows)
{
    std::map<std::string, CouchRow*> byName;
    for (CouchRow& row : rows) {
        byName[row.id] = &row;
    }
    std::vector<CouchRow> ordered;
    for (const std::string& id : ids) {
        const auto found = byName.find(id);
        if (found != byName.end()) {
            ordered.push_back(std::move(*found->second));
            byName.erase(found);
        }
    }
    return ordered;
}

} // namespace

CouchServer::CouchServer(HttpClient& client, Scheduler& scheduler, CouchAddress address,
    CouchAccount account, CouchLimits limits, Clock now)
    : client_(client), scheduler_(scheduler), address_(std::move(address)),
      account_(std::move(account)), limits_(limits), now_(std::move(now)),
      authorization_("Basic " + encodeBase64(account_.user + ":" + account_.password))
{
}

bool CouchServer::isTrusted() const
{
    return trustedAt_ && scheduler_.now() - *trustedAt_ < trustSeconds;
}

Task<HttpAnswer> CouchServer::send(HttpRequest request)
{
    request.authorization = authorization_;
    Task<HttpAnswer> sending = client_.send(std::move(request));
    std::optional<HttpFailure> failed;
    std::optional<HttpAnswer> answered;
    try {
        HttpAnswer answer = co_await sending;
        answered = std::move(answer);
    } catch (const HttpFailure& failure) {
        failed = failure;
    }
    if (failed) {
        trustedAt_.reset();
        refuse(*failed);
    }
    co_return *std::move(answered);
}

Task<std::string> CouchServer::ask(CouchRequestKind kind, HttpRequest request)
{
    Task<HttpAnswer> sending = send(std::move(request));
    HttpAnswer answer = co_await sending;
    if (answer.status < 200 || answer.status > 299) {
        trustedAt_.reset();
        refuseHere(kind, answer);
    }
    if (kind != CouchRequestKind::server) {
        trustedAt_ = scheduler_.now();
    }
    co_return std::move(answer.body);
}

void CouchServer::refuseHere(CouchRequestKind kind, const HttpAnswer& answer) const
{
    try {
        refuse(kind, answer, now_());
    } catch (const CouchNotFound& failure) {
        throw CouchNotFound(address_.explained(failure.what()));
    }
}

HttpRequest CouchServer::post(const std::string& path, std::string body) const
{
    HttpRequest request;
    request.method = "POST";
    request.url = address_.ofDatabase(path);
    request.body = std::move(body);
    request.seconds = limits_.documentSeconds;
    request.mostBytes = limits_.answerBytes;
    return request;
}

Task<CouchWelcome> CouchServer::welcome()
{
    HttpRequest request;
    request.url = address_.ofServer("/");
    request.seconds = limits_.answerSeconds;
    Task<std::string> asking = ask(CouchRequestKind::server, std::move(request));
    const std::string body = co_await asking;
    try {
        co_return couchWelcome(body);
    } catch (const CouchNotFound& failure) {
        throw CouchNotFound(address_.explained(failure.what()));
    }
}

Task<void> CouchServer::requireUser()
{
    HttpRequest request;
    request.url = address_.ofServer("/_session");
    request.seconds = limits_.answerSeconds;
    Task<std::string> asking = ask(CouchRequestKind::server, std::move(request));
    const std::string body = co_await asking;
    if (couchUser(body) != account_.user) {
        refuse(CouchRequestKind::server, HttpAnswer{401, {}, {}}, now_());
    }
    trustedAt_ = scheduler_.now();
}

Task<void> CouchServer::createDatabase()
{
    HttpRequest request;
    request.method = "PUT";
    request.url = address_.ofDatabase("");
    request.seconds = limits_.answerSeconds;
    Task<HttpAnswer> sending = send(std::move(request));
    const HttpAnswer answer = co_await sending;
    const bool isThere = answer.status == 412; // another device was quicker
    if (!isThere && (answer.status < 200 || answer.status > 299)) {
        refuseHere(CouchRequestKind::creation, answer);
    }
}

Task<std::vector<CouchRow>> CouchServer::documents(std::vector<std::string> ids, bool withBodies)
{
    const std::string path =
        withBodies ? "/_all_docs?include_docs=true&conflicts=true" : "/_all_docs";
    Task<std::string> asking = ask(CouchRequestKind::database, post(path, keysJson(ids)));
    const std::string body = co_await asking;
    co_return inOrder(ids, couchRows(body));
}

Task<std::vector<CouchDocument>> CouchServer::versions(
    std::vector<std::pair<std::string, std::string>> revisions)
{
    Task<std::string> asking =
        ask(CouchRequestKind::database, post("/_bulk_get?revs=true", revisionsJson(revisions)));
    const std::string body = co_await asking;
    co_return couchVersions(body);
}

Task<std::vector<CouchSaved>> CouchServer::save(std::vector<std::string> documents)
{
    Task<std::string> asking =
        ask(CouchRequestKind::database, post("/_bulk_docs", batchJson(documents)));
    const std::string body = co_await asking;
    co_return couchSaved(body);
}

Task<CouchFeed> CouchServer::changes(std::string since, std::size_t limit, bool withBodies)
{
    std::string path = "/_changes?limit=" + std::to_string(limit);
    if (withBodies) {
        path += "&include_docs=true&conflicts=true";
    }
    if (!since.empty()) {
        path += "&since=" + QUrl::toPercentEncoding(QString::fromStdString(since)).toStdString();
    }
    HttpRequest request;
    request.url = address_.ofDatabase(path);
    request.seconds = limits_.documentSeconds;
    request.mostBytes = limits_.answerBytes;
    const CouchRequestKind kind =
        since.empty() ? CouchRequestKind::database : CouchRequestKind::changes;
    Task<std::string> asking = ask(kind, std::move(request));
    const std::string body = co_await asking;
    co_return couchFeed(body);
}

} // namespace Kestry
