#pragma once

#include <unordered_map>

#include "Ledger.h"

namespace KestryCore {

/// The clients and projects of one ledger by identifier, for rules that look one up for each of
/// many sessions. It points into the ledger, which must outlive it and stay unchanged. Of records
/// with the same identifier the first is found.
class RecordIndex {
public:
    explicit RecordIndex(const LedgerData& ledger);
    explicit RecordIndex(LedgerData&&) = delete;

    /// Null when there is none.
    [[nodiscard]] const Client* client(const Uuid& id) const;
    /// Null when there is none.
    [[nodiscard]] const Project* project(const Uuid& id) const;
    /// The project of a session, or null when it is gone.
    [[nodiscard]] const Project* projectOf(const TimeEntry& entry) const;
    /// The client of a project; null without a project, or when the client is gone.
    [[nodiscard]] const Client* clientOf(const Project* project) const;

private:
    std::unordered_map<Uuid, const Client*> clients_;
    std::unordered_map<Uuid, const Project*> projects_;
};

} // namespace KestryCore
