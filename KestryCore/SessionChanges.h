#pragma once

#include <unordered_set>
#include <utility>
#include <vector>

#include "Ledger.h"

namespace KestryCore {

/// Saved sessions to remove from a ledger and to append to it. They are collected, because each one
/// alone would need a pass over all sessions.
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

    /// Must be called before the sessions of the ledger are read.
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
