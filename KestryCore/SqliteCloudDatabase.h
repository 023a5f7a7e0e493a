#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "Scheduler.h"
#include "SqliteStoreFile.h"
#include "SqliteZone.h"

namespace KestryCore {

/// A cloud store in one local file, which many processes use at once.
///
/// Nothing here waits on the thread for long: an operation reads or writes a bounded number of
/// bytes in a turn of the loop, and where another process has the file, it tries again in later
/// turns of the loop. So it needs no thread of its own, and is as quick as the disk.
///
/// A save is answered when it is on the disk. A process that is killed in the middle leaves the
/// store as it was before or after.
class SqliteCloudDatabase final : public CloudDatabase {
public:
    /// Bytes of records after which a page of changes ends, or a part of a batch is written: few
    /// enough for one turn of the loop, and many enough for a first download in a few pages.
    static constexpr std::size_t pageBytes = std::size_t{16} << 20U;
    /// For how long an operation tries to get at a file that other processes have.
    static constexpr double patienceSeconds = 5.0;
    /// After the last save, until the store is one file again.
    static constexpr double tidySeconds = 2.0;

    /// The scheduler must outlive the database.
    SqliteCloudDatabase(Scheduler& scheduler, SqliteStorePlace place);
    SqliteCloudDatabase(const SqliteCloudDatabase&) = delete;
    SqliteCloudDatabase& operator=(const SqliteCloudDatabase&) = delete;
    ~SqliteCloudDatabase() override { tidyUp(); }

    [[nodiscard]] Task<void> fetchZone(CloudZoneID zone) override;
    [[nodiscard]] Task<void> createZone(CloudZoneID zone) override;
    [[nodiscard]] Task<CloudChanges> changes(
        CloudZoneID zone, std::optional<CloudCursor> since) override;
    [[nodiscard]] Task<std::vector<CloudRecordResult>> save(
        std::vector<CloudRecord> records) override;
    [[nodiscard]] CloudCursor witnessed(CloudCursor saved) const override;

    /// Whether the store can be used. Throws a `CloudError` when there is a file that cannot.
    [[nodiscard]] Task<bool> isAvailable();
    /// The name of the store's account. A store that may be made is made for it.
    [[nodiscard]] Task<std::string> account();

private:
    using Results = std::vector<CloudRecordResult>;

    /// Carries work on the file out as soon as other processes let it.
    template <class Value>
    [[nodiscard]] Task<Value> carryOut(std::function<Value()> work);
    /// The result of the work; nullopt when another process has the file.
    template <class Value>
    [[nodiscard]] std::optional<Value> attempt(const std::function<Value()>& work) const;

    [[nodiscard]] bool hasZone(const CloudZoneID& zone) const;
    void makeZone(const CloudZoneID& zone) const;
    [[nodiscard]] CloudChanges readChanges(
        const CloudZoneID& zone, const std::optional<CloudCursor>& since);
    [[nodiscard]] Results savePart(std::span<const CloudRecord> part);
    void requireKnown(SqliteZone& zone, const CloudZoneID& name) const;
    void tidyUp() noexcept;
    [[nodiscard]] std::string readAccount() const;

    /// The latest place in a zone that was seen.
    struct Known {
        CloudZoneID zone;
        SqlitePosition position;
    };

    Scheduler& scheduler_;
    SqliteStorePlace place_;
    std::optional<Known> known_;
    std::optional<Timer> tidying_; // since a save
};

} // namespace KestryCore
