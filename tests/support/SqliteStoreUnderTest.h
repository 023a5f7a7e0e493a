#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "CloudContract.h"
#include "SqliteCloudContainer.h"
#include "SqliteConnection.h"
#include "TemporaryDirectory.h"
#include "VirtualScheduler.h"

namespace KestryCore {

/// A record store in a file of the test's own, which its first user makes.
class SqliteStoreUnderTest final : public CloudUnderTest {
public:
    [[nodiscard]] std::unique_ptr<CloudContainer> open() override
    {
        return std::make_unique<SqliteCloudContainer>(scheduler_, place());
    }
    [[nodiscard]] VirtualScheduler& scheduler() override { return scheduler_; }
    void runUntil(const std::function<bool()>& holds) override
    {
        for (int turns = 0; turns < 10'000 && !holds(); ++turns) {
            scheduler_.advance(0.01);
        }
    }
    void removeZone(const CloudZoneID& zone) override
    {
        administrator().prepare("DELETE FROM zones WHERE name = ?").withText(zone.name).run();
    }
    void removeRecord(const CloudRecordID& record) override
    {
        administrator().prepare("DELETE FROM records WHERE name = ?").withText(record.name).run();
    }
    void setReachable(bool isReachable) override
    {
        const std::string away = directory_.path("away");
        std::filesystem::rename(isReachable ? away : folder_, isReachable ? folder_ : away);
    }
    [[nodiscard]] CloudErrorCode codeOfZoneMadeAnew() const override
    {
        return CloudErrorCode::storeReplaced;
    }
    [[nodiscard]] std::size_t pageBytes() const override { return SqliteCloudDatabase::pageBytes; }

    [[nodiscard]] SqliteStorePlace place() const { return {path(), "ada", MissingStore::make}; }
    [[nodiscard]] std::string path() const { return folder_ + "/records.sqlite"; }
    [[nodiscard]] const std::string& folder() const { return folder_; }
    /// The file as somebody with another program has it.
    [[nodiscard]] SqliteConnection& administrator()
    {
        connection_ = std::make_unique<SqliteConnection>(path(), 0);
        return *connection_;
    }
    /// The other program is closed.
    void closeOther() { connection_.reset(); }

private:
    TemporaryDirectory directory_;
    std::string folder_ = makeFolder();
    VirtualScheduler scheduler_;
    std::unique_ptr<SqliteConnection> connection_;

    [[nodiscard]] std::string makeFolder() const
    {
        std::filesystem::create_directory(directory_.path("store"));
        return directory_.path("store");
    }
};

} // namespace KestryCore
