#pragma once

#include <unordered_set>
#include <utility>
#include <vector>

#include "Ledger.h"

namespace KestryCore {

/// Saved sessions to take out of a ledger and to put at its end. They are gathered, because every
/// one by itself would take a walk through all sessions.
class SessionChanges {
public:
    explicit SessionChanges(RecordList<TimeEntry>& entries) : entries_(entries) { }

    void remove(const Uuid& id)
    {
        if (!removed_.insert(id).second) {
            carryOut();
            removed_.insert(id);
        }
    }
    void moveToEnd(TimeEntry entry)
    {
        remove(entry.id);
        appended_.push_back(std::move(entry));
    }

    /// Needed before the ledger's sessions are looked at.
    void carryOut()
    {
        if (!removed_.empty()) {
            entries_.removeIf(
                [this](const TimeEntry& entry) { return removed_.contains(entry.id); });
        }
        for (TimeEntry& entry : appended_) {
            entries_.append(std::move(entry));
        }
        removed_.clear();
        appended_.clear();
    }

private:
    RecordList<TimeEntry>& entries_;
    std::unordered_set<Uuid> removed_;
    std::vector<TimeEntry> appended_;
};

} // namespace KestryCore
