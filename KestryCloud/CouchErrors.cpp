#include "CouchErrors.h"

#include <QUrl>

#include "CouchAnswers.h"
#include "RetryAfter.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr const char* refusedWords =
    "The record store did not accept the user name or the password. Sign in again under "
    "Connections in Settings.";
constexpr const char* forbiddenWords =
    "The record store does not let you use this database. Choose your own under Connections in "
    "Settings, or ask the server's administrator for access.";
constexpr const char* tooLargeWords =
    "A record is larger than the record store takes, or a proxy before it. Ask its administrator "
    "to allow documents and requests of 8 MB.";

/// With the server's wish, when it has one.
CloudError leaveAlone(const std::string& words, const HttpAnswer& answer, Date now)
{
    const CloudError error(words);
    const auto wish = answer.headers.find("retry-after");
    const auto seconds =
        wish != answer.headers.end() ? retryAfterSeconds(wish->second, now) : std::nullopt;
    return seconds ? error.retryingAfter(*seconds) : error;
}

/// The server that a redirect leads to; nothing else of the address, which may have secrets in it.
std::string targetOf(const HttpAnswer& answer)
{
    const auto found = answer.headers.find("location");
    const QUrl target(found != answer.headers.end() ? QString::fromStdString(found->second) : "");
    if (target.host().isEmpty()) {
        return {};
    }
    return " (it names " + target.scheme().toStdString() + "://" + target.host().toStdString()
        + ")";
}

[[noreturn]] void refuseUser(CouchRequestKind kind)
{
    if (kind == CouchRequestKind::creation) {
        throw CouchNotFound("The record store does not let you make a database. Ask its "
                            "administrator to make one for you, then sync again.");
    }
    throw CouchRefused(refusedWords);
}

[[noreturn]] void refuseAccess(CouchRequestKind kind, const HttpAnswer& answer)
{
    if (answer.body.find("locked") != std::string::npos) {
        throw CouchRefused("The record store has locked your account for some minutes, after "
                           "several wrong passwords. Wait five minutes, then sign in again under "
                           "Connections in Settings.");
    }
    if (kind == CouchRequestKind::creation) {
        refuseUser(kind);
    }
    throw CloudError(forbiddenWords);
}

[[noreturn]] void refuseMissing(CouchRequestKind kind)
{
    if (kind == CouchRequestKind::server) {
        throw CouchNotFound(noServerWords);
    }
    throw CouchNoDatabase("The record store has no such database. Check the address under "
                          "Connections in Settings.");
}

[[noreturn]] void refuseFailure(const HttpAnswer& answer, Date now)
{
    if (answer.status == 429 || answer.status == 503) {
        throw leaveAlone(
            "The record store is busy. Your local changes are saved and will retry.", answer, now);
    }
    if (answer.status == 507) {
        throw CloudError("The disk of the record store is full. Ask its administrator to make "
                         "room; your local changes are saved and will retry.");
    }
    if (answer.status >= 300 && answer.status < 400) {
        throw CloudError("The record store's address leads elsewhere" + targetOf(answer)
            + ". Enter the address of the server itself under Connections in Settings.");
    }
    throw leaveAlone("The record store failed (" + std::to_string(answer.status)
            + "). Your local changes are saved and will retry.",
        answer, now);
}

} // namespace

void refuse(CouchRequestKind kind, const HttpAnswer& answer, Date now)
{
    switch (answer.status) {
    case 400:
        if (kind == CouchRequestKind::changes) {
            throw CloudError("The record store cannot go on from where it was read last.",
                CloudErrorCode::changeTokenExpired);
        }
        refuseFailure(answer, now);
    case 401:
        refuseUser(kind);
    case 403:
        refuseAccess(kind, answer);
    case 404:
        refuseMissing(kind);
    case 413:
        throw CouchTooLarge(tooLargeWords);
    default:
        refuseFailure(answer, now);
    }
}

void refuse(const HttpFailure& failure)
{
    switch (failure.kind()) {
    case HttpFailureKind::notTrusted:
        throw CloudError("The certificate of the record store is not trusted. If it is your "
                         "company's own, install its certificate authority on this machine; "
                         "otherwise ask the server's administrator.");
    case HttpFailureKind::timedOut:
        throw CloudError("The record store did not answer in time. Your local changes are saved "
                         "and will retry.");
    case HttpFailureKind::tooLong:
        throw CouchAnswerTooLong("The record store gave an answer that is too long. Your local "
                                 "changes are saved and will retry.");
    case HttpFailureKind::unreachable:
        break;
    }
    throw CloudError("The record store cannot be reached. Your local changes are saved and will "
                     "retry.");
}

CloudError saveFailure(const std::string& word)
{
    if (word == "unauthorized" || word == "forbidden") {
        return CloudError(forbiddenWords);
    }
    if (word == "document_too_large" || word == "too_large") {
        return CloudError(tooLargeWords);
    }
    return CloudError("The record store did not save a record. Your local changes are saved and "
                      "will retry.");
}

} // namespace Kestry
