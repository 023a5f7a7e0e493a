#include "CloudStore.h"

#include <cstdlib>

namespace KestryCore {

std::optional<CloudStore::Changes> CloudStore::changesSince(
    const std::optional<std::string>& cursor, std::size_t limit) const
{
    if (cursor && !understands(*cursor)) {
        return std::nullopt;
    }
    Changes changes;
    std::uint64_t reached = lastChange_;
    for (auto next = feed_.upper_bound(position(cursor)); next != feed_.end(); ++next) {
        if (changes.records.size() == limit) {
            changes.hasMore = true;
            reached = changes.records.back().change;
            break;
        }
        changes.records.push_back(records_.at(next->second));
    }
    changes.cursor = cursorAt(reached);
    return changes;
}

CloudStore::SaveOutcome CloudStore::save(
    const SyncRecord& record, const std::optional<std::string>& knownFields)
{
    const auto held = records_.find(record.recordID);
    const bool isKnown = held == records_.end()
        ? !knownFields.has_value()
        : knownFields.has_value() && *knownFields == systemFields(held->second);
    if (!isKnown) {
        return {false, held == records_.end() ? Stored{} : held->second};
    }
    if (held != records_.end()) {
        feed_.erase(held->second.change);
    }
    const Stored stored{record, ++lastChange_};
    feed_[stored.change] = record.recordID;
    records_[record.recordID] = stored;
    return {true, stored};
}

const CloudStore::Stored* CloudStore::find(const std::string& recordID) const
{
    const auto found = records_.find(recordID);
    return found != records_.end() ? &found->second : nullptr;
}

std::string CloudStore::systemFields(const Stored& stored)
{
    return "version " + std::to_string(stored.change);
}

std::uint64_t CloudStore::position(const std::optional<std::string>& cursor)
{
    return cursor ? std::strtoull(cursor->c_str(), nullptr, 10) : 0;
}

bool CloudStore::understands(const std::string& cursor) const
{
    return cursor == cursorAt(position(cursor));
}

std::string CloudStore::cursorAt(std::uint64_t position) const
{
    return std::to_string(position) + " of age " + std::to_string(age_);
}

} // namespace KestryCore
