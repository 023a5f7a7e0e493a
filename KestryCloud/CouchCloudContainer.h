#pragma once

#include <memory>
#include <optional>
#include <string>

#include "CloudDatabase.h"
#include "CouchCloudDatabase.h"
#include "CouchServer.h"
#include "HttpClient.h"
#include "Scheduler.h"
#include "Uuid.h"

namespace Kestry {

/// What a container needs from its surroundings.
struct CouchPlatform {
    KestryCore::Scheduler& scheduler; ///< Must outlive the container.
    std::string userAgent = "Kestry";
    CouchLimits limits{};
    KestryCore::Clock now = KestryCore::currentDate;
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
};

/// A user's account on a server. With no user there is none, and nothing is asked.
///
/// A password that was refused is not sent again for a while: some servers lock an account after a
/// few wrong ones, and a poll would keep it locked for good. A new password is a new container.
class CouchCloudContainer final : public KestryCore::CloudContainer {
public:
    CouchCloudContainer(
        const CouchAddress& address, const CouchAccount& account, CouchPlatform platform);

    [[nodiscard]] KestryCore::Task<bool> isAccountAvailable() override;
    /// The user and the server's own identity, so that a user of the same name on another server
    /// is another account.
    [[nodiscard]] KestryCore::Task<std::string> userRecordName() override;
    [[nodiscard]] KestryCore::CloudDatabase& privateDatabase() override { return database_; }

private:
    [[nodiscard]] KestryCore::Task<void> verify();
    [[nodiscard]] KestryCore::Task<void> askServer();

    CouchPlatform platform_;
    HttpClient client_;
    CouchServer server_;
    CouchCloudDatabase database_;
    std::optional<std::string> identity_; ///< Of the server, once it was asked.
    std::optional<CouchRefused> refusal_;
    double refusedAt_ = 0.0;
};

} // namespace Kestry
