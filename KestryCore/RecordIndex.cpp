#include "RecordIndex.h"

namespace KestryCore {

namespace {

template <class Record>
std::unordered_map<Uuid, const Record*> byIdentifier(const RecordList<Record>& records)
{
    std::unordered_map<Uuid, const Record*> index;
    index.reserve(records.size());
    for (const Record& record : records) {
        index.try_emplace(record.id, &record);
    }
    return index;
}

template <class Record>
const Record* found(const std::unordered_map<Uuid, const Record*>& index, const Uuid& id)
{
    const auto position = index.find(id);
    return position == index.end() ? nullptr : position->second;
}

} // namespace

RecordIndex::RecordIndex(const LedgerData& ledger)
    : clients_(byIdentifier(ledger.clients)), projects_(byIdentifier(ledger.projects))
{
}

const Client* RecordIndex::client(const Uuid& id) const
{
    return found(clients_, id);
}

const Project* RecordIndex::project(const Uuid& id) const
{
    return found(projects_, id);
}

const Project* RecordIndex::projectOf(const TimeEntry& entry) const
{
    return project(entry.projectID);
}

const Client* RecordIndex::clientOf(const Project* project) const
{
    return project == nullptr ? nullptr : client(project->clientID);
}

} // namespace KestryCore
