#include "VersionBook.h"

#include "RecordContents.h"

namespace KestryCore {

void require(bool holds, const std::string& violation)
{
    if (!holds) {
        throw Violation(violation);
    }
}

void VersionBook::enter(const SyncRecord& record)
{
    const bool isNew =
        versions_.try_emplace(record.revision, Version{record.recordID, contentOf(record)}).second;
    require(isNew, "two versions have the revision " + record.revision);
}

void VersionBook::enterUnder(const SyncRecord& record)
{
    versions_.at(record.revision).others.push_back(contentOf(record));
}

const VersionBook::Version* VersionBook::find(const std::string& revision) const
{
    const auto found = versions_.find(revision);
    return found != versions_.end() ? &found->second : nullptr;
}

void VersionBook::replace(const std::string& revision)
{
    if (const auto found = versions_.find(revision); found != versions_.end()) {
        found->second.isReplaced = true;
    }
}

int VersionBook::placesOf(const std::string& revision) const
{
    const auto found = places_.find(revision);
    return found != places_.end() ? found->second : 0;
}

bool VersionBook::isLost(const std::string& revision) const
{
    const Version* const version = find(revision);
    return version != nullptr && !version->isReplaced && places_.at(revision) == 0;
}

} // namespace KestryCore
