#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "CloudArchive.h"
#include "CloudSyncController.h"
#include "ReplicationWorld.h"
#include "ScriptedCloud.h"
#include "SyncCloudRecord.h"
#include "VirtualScheduler.h"

namespace KestryCore {

/// A store, a cloud that answers when told, and the controller between them, in virtual time.
///
/// The ledger is connected to the account "account" and was never exchanged. The controller is not
/// started.
class CloudWorld : public ReplicationWorld {
public:
    CloudWorld()
    {
        open(connected(sampleLedger()));
        control();
    }

    /// Makes the controller, in place of one that is there.
    void control()
    {
        controller.reset();
        CloudPlatform platform{scheduler,
            [this](const std::string& identifier) { return cloud.open(identifier); },
            [this] { return hostName; }};
        platform.observeAccount = [this](std::function<void()> observer) {
            return account.observe([observer](int) { observer(); });
        };
        platform.now = [this] { return now; };
        platform.steady = [this] { return scheduler.now() + slept; };
        controller.emplace(store(), configuration, platform);
    }
    void control(const LedgerData& ledger)
    {
        controller.reset();
        open(ledger);
        control();
    }

    // What happens.

    /// The account on the machine changes.
    void changeAccount() { account.assign(*account + 1); }
    /// Begins a cycle.
    void sync()
    {
        controller->syncNow();
        scheduler.turn();
    }
    /// Answers the next question.
    void answer()
    {
        cloud.answer();
        scheduler.turn();
    }
    /// Answers until this is asked.
    void answerUntil(const std::string& question)
    {
        while (!cloud.waiting().empty() && cloud.waiting() != question) {
            answer();
        }
        ASSERT_EQ(cloud.waiting(), question);
    }
    /// Answers until nothing is asked any more.
    void answerAll()
    {
        while (!cloud.waiting().empty()) {
            answer();
        }
    }
    /// One whole cycle.
    void syncWhole()
    {
        sync();
        answerAll();
    }

    // What is seen.

    [[nodiscard]] std::string status() const { return *controller->fields().status; }
    [[nodiscard]] std::string failure() const
    {
        return controller->fields().errorMessage->value_or("");
    }
    [[nodiscard]] bool isSyncing() const { return *controller->fields().isSyncing; }
    [[nodiscard]] std::string cursor() const
    {
        const auto cursor = cursorFromArchive(workspaceZone(), state().changeToken.value_or(""));
        return cursor ? cursor->bytes : "none";
    }
    /// A failure was shown in these words, and nothing runs any more.
    void expectFailure(const std::string& message)
    {
        EXPECT_EQ(failure(), message);
        EXPECT_EQ(status(), "Sync needs attention");
        EXPECT_FALSE(isSyncing());
        EXPECT_EQ(cloud.frames, 0);
    }
    void expectSuccess()
    {
        EXPECT_EQ(failure(), "");
        EXPECT_EQ(controller->fields().lastSync->value_or(Date{}), now);
        EXPECT_FALSE(isSyncing());
        EXPECT_EQ(cloud.frames, 0);
    }

    // Records.

    [[nodiscard]] static CloudRecord stored(
        const SyncRecord& record, const std::string& version = "v1")
    {
        return ScriptedCloud::stored(record, version);
    }
    void bring(
        const std::vector<CloudRecord>& records, const std::string& cursor, bool moreComing = false)
    {
        cloud.changes.emplace_back(ScriptedCloud::page(records, cursor, moreComing));
    }

    VirtualScheduler scheduler;
    double slept = 0.0; ///< Seconds that the machine has slept.
    ScriptedCloud cloud{scheduler};
    Observable<int> account;
    std::string hostName = "Desk";
    CloudConfiguration configuration{"sqlite:/cloud", true, development};
    std::optional<CloudSyncController> controller;
};

class CloudFixture : public testing::Test, public CloudWorld { };

} // namespace KestryCore
