#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "SyncState.h"

namespace KestryCore {

/// A record store as replication needs one: named records that are saved only over the version
/// that the sender knows, and a feed of what has changed since a cursor.
class CloudStore {
public:
    /// A record as the store holds it.
    struct Stored {
        SyncRecord record;
        std::uint64_t change = 0; ///< Its place in the feed, which also tells the version.
    };

    struct Changes {
        std::vector<Stored> records; ///< In the order of the feed.
        std::string cursor;
        bool hasMore = false;
    };

    struct SaveOutcome {
        bool isSaved = false;
        Stored server; ///< What the store holds now.
    };

    /// The records changed since a cursor, from the first where there is none. None when the
    /// cursor has expired.
    [[nodiscard]] std::optional<Changes> changesSince(
        const std::optional<std::string>& cursor, std::size_t limit) const;

    /// Saves a record unless the store holds another version than the one the fields are of.
    SaveOutcome save(const SyncRecord& record, const std::optional<std::string>& systemFields);

    /// From now on no cursor given out so far is understood.
    void expireCursors() { ++age_; }

    [[nodiscard]] const std::map<std::string, Stored>& records() const { return records_; }
    [[nodiscard]] const Stored* find(const std::string& recordID) const;
    [[nodiscard]] std::uint64_t lastChange() const { return lastChange_; }

    /// The bytes by which a sender shows which version it knows.
    [[nodiscard]] static std::string systemFields(const Stored& stored);
    /// How far into the feed a cursor reaches; 0 without one.
    [[nodiscard]] static std::uint64_t position(const std::optional<std::string>& cursor);

private:
    [[nodiscard]] bool understands(const std::string& cursor) const;
    [[nodiscard]] std::string cursorAt(std::uint64_t position) const;

    std::map<std::string, Stored> records_;
    std::map<std::uint64_t, std::string> feed_; // the record identity at each place still in force
    std::uint64_t lastChange_ = 0;
    std::uint64_t age_ = 0; // of the cursors that are understood
};

} // namespace KestryCore
