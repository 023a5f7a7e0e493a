#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "CloudRecord.h"
#include "SyncState.h"

namespace KestryCore {

/// A record store as replication needs one: a zone of named records that are saved only over the
/// version that the sender knows, and a feed of what has changed since a cursor.
class CloudStore {
public:
    /// A record as the store holds it.
    struct Stored {
        CloudRecord raw;
        SyncRecord record;        ///< What it says, where it is one of this program.
        std::uint64_t change = 0; ///< Its place in the feed, which also tells the version.
        std::string over;         ///< The version that it was saved over; empty for a new record.
    };

    struct Changes {
        std::vector<Stored> records;        ///< In the order of the feed.
        std::vector<std::string> deletions; ///< Of records that were removed.
        std::vector<Stored> overruled;      ///< Versions that stand behind one of the records.
        std::string cursor;
        bool hasMore = false;
    };

    struct SaveOutcome {
        bool isSaved = false;
        std::optional<Stored> server; ///< What the store holds now; none for a removed record.
    };

    // The zone.

    [[nodiscard]] bool hasZone() const { return hasZone_; }
    /// Makes the zone, or brings back the one that is there.
    void createZone() { hasZone_ = true; }
    /// The zone cannot be found for a while.
    void hideZone() { hasZone_ = false; }
    /// The zone is gone with all that was in it.
    void wipe();

    // Backups.

    /// What an administrator keeps of the zone.
    class Backup;
    [[nodiscard]] Backup backup() const;
    /// The zone is what it was when the backup was made, and no cursor given out so far is of it.
    void restore(const Backup& backup);
    /// False for a cursor that was given out before the zone was made or restored.
    [[nodiscard]] bool isOfThisZone(const std::string& cursor) const;

    // The feed.

    /// The records changed since a cursor, from the first where there is none: no more than so
    /// many, and none once those before have so many bytes. None when the cursor has expired.
    [[nodiscard]] std::optional<Changes> changesSince(const std::optional<std::string>& cursor,
        std::size_t limit, std::size_t mostBytes = 1 << 20) const;
    /// From now on no cursor given out so far is understood.
    void expireCursors() { ++age_; }

    // The records.

    /// What a store does with a second save on one version. Where the second one wins, the first
    /// is overruled, and stays beside it until it is discarded.
    enum class Rival { isRefused, wins };

    /// Saves a record unless the store holds another version than the one that it is to replace.
    SaveOutcome save(const CloudRecord& record, Rival rival = Rival::isRefused);
    /// The same of what a device would send.
    SaveOutcome save(const SyncRecord& record, const std::optional<std::string>& systemFields)
    {
        return save(asSent(record, systemFields));
    }
    [[nodiscard]] static CloudRecord asSent(
        const SyncRecord& record, const std::optional<std::string>& systemFields);

    /// Lets an overruled version go. False when there is none of that server version.
    bool discard(const CloudRecord& overruled);
    [[nodiscard]] const std::multimap<std::string, Stored>& overruled() const { return overruled_; }
    /// The overruled version that says what a record says; null when there is none.
    [[nodiscard]] const CloudRecord* overruledLike(const CloudRecord& record) const;

    /// Somebody removes a record, which the feed tells as a deletion.
    void remove(const std::string& recordID);
    /// All that was removed is put back, as a newer version with the same content.
    void putBackRemoved();
    /// The records that were removed, by their place in the feed.
    [[nodiscard]] const std::map<std::uint64_t, Stored>& removed() const { return removed_; }

    [[nodiscard]] const std::map<std::string, Stored>& records() const { return records_; }
    [[nodiscard]] const Stored* find(const std::string& recordID) const;
    [[nodiscard]] std::uint64_t lastChange() const { return lastChange_; }

    /// The bytes by which a sender shows which version it knows.
    [[nodiscard]] static const std::string& systemFields(const Stored& stored)
    {
        return stored.raw.serverVersion;
    }
    /// How far into the feed a cursor reaches; 0 without one.
    [[nodiscard]] static std::uint64_t position(const std::optional<std::string>& cursor);
    /// A cursor that is some changes behind this one.
    [[nodiscard]] std::string rewound(const std::string& cursor, std::uint64_t changes) const;

private:
    [[nodiscard]] bool understands(const std::string& cursor) const;
    [[nodiscard]] std::string zoneMark() const;
    [[nodiscard]] std::string cursorAt(std::uint64_t position) const;
    void forgetRemoval(const std::string& recordID);
    const Stored& put(CloudRecord raw, const std::string& over);

    bool hasZone_ = false;
    std::map<std::string, Stored> records_;
    std::multimap<std::string, Stored> overruled_; // by record identity
    std::map<std::uint64_t, std::string> feed_; // the record identity at each place still in force
    std::map<std::uint64_t, Stored> removed_;
    std::uint64_t lastChange_ = 0;
    std::uint64_t age_ = 0;   // of the cursors that are understood
    std::uint64_t zones_ = 0; // how often the zone was made or restored
};

class CloudStore::Backup {
    friend CloudStore;

    std::map<std::string, Stored> records_;
    std::multimap<std::string, Stored> overruled_;
    std::map<std::uint64_t, std::string> feed_;
};

} // namespace KestryCore
