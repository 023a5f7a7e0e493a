#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CouchAddress.h"
#include "CouchAnswers.h"
#include "CouchErrors.h"
#include "Date.h"
#include "HttpClient.h"
#include "Scheduler.h"
#include "Task.h"

namespace Kestry {

/// Who uses the server. The password is in no message.
struct CouchAccount {
    std::string user;
    std::string password;
};

/// How much is asked at once, and for how long.
struct CouchLimits {
    std::size_t pageBytes = std::size_t{8} << 20U;    ///< Of fields in a page of changes.
    std::size_t requestBytes = std::size_t{8} << 20U; ///< Of documents in a request.
    std::size_t answerBytes = std::size_t{48} << 20U; ///< Of an answer; more breaks off.
    double answerSeconds = 60.0;                      ///< For an answer without documents.
    double documentSeconds = 300.0;                   ///< For a request with documents.
    double lookSeconds = 1.0;     ///< For which a look at a zone serves what follows.
    double patienceSeconds = 1.0; ///< Before something that may come late is looked for again.
    double doubtSeconds = 60.0;   ///< For which a loss has to show before it is believed.
};

/// The requests that the store makes of one database, one each. Each throws CloudError in words for
/// people.
///
/// The password goes with each request, so that no session of the server can run out, and an answer
/// proves that the account is still the same.
class CouchServer {
public:
    /// The client and the scheduler must outlive the server.
    CouchServer(HttpClient& client, KestryCore::Scheduler& scheduler, CouchAddress address,
        CouchAccount account, CouchLimits limits, KestryCore::Clock now);

    [[nodiscard]] const CouchLimits& limits() const { return limits_; }
    [[nodiscard]] const CouchAddress& address() const { return address_; }
    [[nodiscard]] const std::string& user() const { return account_.user; }

    /// Whether the server has just accepted the user, and was within reach since.
    [[nodiscard]] bool isTrusted() const;

    [[nodiscard]] KestryCore::Task<CouchWelcome> welcome();
    /// Throws CouchRefused unless the server takes the sender for the user.
    [[nodiscard]] KestryCore::Task<void> requireUser();

    /// Makes the database; succeeds when there is one.
    [[nodiscard]] KestryCore::Task<void> createDatabase();
    /// A row for each name, in the order of the names; those that the server leaves out are
    /// missing.
    [[nodiscard]] KestryCore::Task<std::vector<CouchRow>> documents(
        std::vector<std::string> ids, bool withBodies);
    /// Versions by name and revision, each with its history.
    [[nodiscard]] KestryCore::Task<std::vector<CouchDocument>> versions(
        std::vector<std::pair<std::string, std::string>> revisions);
    /// Saves documents, each as `couchJson` wrote it. Throws CouchTooLarge when the server takes
    /// none of them.
    [[nodiscard]] KestryCore::Task<std::vector<CouchSaved>> save(
        std::vector<std::string> documents);
    [[nodiscard]] KestryCore::Task<CouchFeed> changes(
        std::string since, std::size_t limit, bool withBodies);

private:
    [[nodiscard]] KestryCore::Task<HttpAnswer> send(HttpRequest request);
    [[nodiscard]] KestryCore::Task<std::string> ask(CouchRequestKind kind, HttpRequest request);
    [[nodiscard]] HttpRequest post(const std::string& path, std::string body) const;
    [[noreturn]] void refuseHere(CouchRequestKind kind, const HttpAnswer& answer) const;

    HttpClient& client_;
    KestryCore::Scheduler& scheduler_;
    CouchAddress address_;
    CouchAccount account_;
    CouchLimits limits_;
    KestryCore::Clock now_;
    std::string authorization_;
    std::optional<double> trustedAt_;
};

} // namespace Kestry
