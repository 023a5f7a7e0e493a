#include "CloudStore.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "SyncCloudRecord.h"
#include "SyncDeliveryError.h"

namespace KestryCore {

namespace {

const std::string zoneWords = " in zone ";

/// Of all texts and bytes in fields.
std::size_t bytesOf(const CloudRecord& raw)
{
    std::size_t bytes = 0;
    for (const auto& [name, value] : raw.fields) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            bytes += text->size();
        } else if (const auto* const data = std::get_if<CloudBytes>(&value)) {
            bytes += data->bytes.size();
        }
    }
    return bytes;
}

/// Of a record of another program, only the identity.
SyncRecord readable(const CloudRecord& raw)
{
    try {
        return syncRecordFrom(raw);
    } catch (const SyncDeliveryError&) {
        SyncRecord nameless;
        nameless.recordID = raw.id.name;
        return nameless;
    }
}

} // namespace

void CloudStore::wipe()
{
    restore({});
    hasZone_ = false;
}

CloudStore::Backup CloudStore::backup() const
{
    Backup backup;
    backup.records_ = records_;
    backup.overruled_ = overruled_;
    backup.feed_ = feed_;
    for (const auto& [place, stored] : removed_) {
        backup.feed_.erase(place);
    }
    return backup;
}

// The versions that it gives from now on are new ones all the same, as on a server, where a version
// names its content.
void CloudStore::restore(const Backup& backup)
{
    records_ = backup.records_;
    overruled_ = backup.overruled_;
    feed_ = backup.feed_;
    removed_.clear();
    hasZone_ = true;
    ++zones_;
}

bool CloudStore::isOfThisZone(const std::string& cursor) const
{
    return cursor.find(zoneWords) == std::string::npos || cursor.ends_with(zoneMark());
}

std::optional<CloudStore::Changes> CloudStore::changesSince(
    const std::optional<std::string>& cursor, std::size_t limit, std::size_t mostBytes) const
{
    if (cursor && !understands(*cursor)) {
        return std::nullopt;
    }
    Changes changes;
    std::uint64_t reached = lastChange_;
    std::size_t told = 0;
    std::size_t bytes = 0;
    for (auto next = feed_.upper_bound(position(cursor)); next != feed_.end(); ++next) {
        if (told++ == limit || bytes >= mostBytes) {
            changes.hasMore = true;
            reached = std::prev(next)->first;
            break;
        }
        if (removed_.contains(next->first)) {
            changes.deletions.push_back(next->second);
        } else {
            changes.records.push_back(records_.at(next->second));
            const auto [first, last] = overruled_.equal_range(next->second);
            std::transform(first, last, std::back_inserter(changes.overruled),
                [](const auto& version) { return version.second; });
            bytes += bytesOf(changes.records.back().raw);
        }
    }
    changes.cursor = cursorAt(reached);
    return changes;
}

CloudStore::SaveOutcome CloudStore::save(const CloudRecord& record, Rival rival)
{
    const auto held = records_.find(record.id.name);
    if (held == records_.end()) {
        if (!record.serverVersion.empty()) {
            return {false, std::nullopt};
        }
        forgetRemoval(record.id.name);
        return {true, put(record, "")};
    }
    const std::string current = systemFields(held->second);
    const bool isRival = rival == Rival::wins && record.serverVersion == held->second.over;
    if (record.serverVersion != current && !isRival) {
        return {false, held->second};
    }
    feed_.erase(held->second.change);
    if (isRival) {
        overruled_.emplace(record.id.name, held->second);
    }
    return {true, put(record, record.serverVersion)};
}

bool CloudStore::discard(const CloudRecord& overruled)
{
    const auto [first, last] = overruled_.equal_range(overruled.id.name);
    const auto found = std::find_if(first, last, [&](const auto& version) {
        return version.second.raw.serverVersion == overruled.serverVersion;
    });
    if (found == last) {
        return false;
    }
    overruled_.erase(found);
    return true;
}

const CloudRecord* CloudStore::overruledLike(const CloudRecord& record) const
{
    const auto [first, last] = overruled_.equal_range(record.id.name);
    const auto found = std::find_if(first, last,
        [&](const auto& version) { return version.second.raw.fields == record.fields; });
    return found != last ? &found->second.raw : nullptr;
}

CloudRecord CloudStore::asSent(
    const SyncRecord& record, const std::optional<std::string>& systemFields)
{
    CloudRecord raw = cloudRecordFor(record, SharedMap<std::string>());
    raw.serverVersion = systemFields.value_or("");
    return raw;
}

const CloudStore::Stored& CloudStore::put(CloudRecord raw, const std::string& over)
{
    const std::string name = raw.id.name;
    Stored stored{std::move(raw), {}, ++lastChange_, over};
    stored.raw.serverVersion = "version " + std::to_string(stored.change);
    stored.record = readable(stored.raw);
    feed_[stored.change] = name;
    return records_.insert_or_assign(name, std::move(stored)).first->second;
}

void CloudStore::remove(const std::string& recordID)
{
    const Stored stored = records_.at(recordID);
    feed_.erase(stored.change);
    records_.erase(recordID);
    feed_[++lastChange_] = recordID;
    removed_[lastChange_] = stored;
}

void CloudStore::putBackRemoved()
{
    for (const auto& [place, stored] : std::exchange(removed_, {})) {
        feed_.erase(place);
        put(stored.raw, stored.over);
    }
}

const CloudStore::Stored* CloudStore::find(const std::string& recordID) const
{
    const auto found = records_.find(recordID);
    return found != records_.end() ? &found->second : nullptr;
}

void CloudStore::forgetRemoval(const std::string& recordID)
{
    const auto found = std::ranges::find_if(
        removed_, [&](const auto& removed) { return removed.second.raw.id.name == recordID; });
    if (found != removed_.end()) {
        feed_.erase(found->first);
        removed_.erase(found);
    }
}

std::uint64_t CloudStore::position(const std::optional<std::string>& cursor)
{
    return cursor ? std::strtoull(cursor->c_str(), nullptr, 10) : 0;
}

std::string CloudStore::rewound(const std::string& cursor, std::uint64_t changes) const
{
    const std::uint64_t reached = position(cursor);
    return understands(cursor) ? cursorAt(reached - std::min(reached, changes)) : cursor;
}

std::string CloudStore::zoneMark() const
{
    return zoneWords + std::to_string(zones_);
}

bool CloudStore::understands(const std::string& cursor) const
{
    return cursor == cursorAt(position(cursor));
}

std::string CloudStore::cursorAt(std::uint64_t position) const
{
    return std::to_string(position) + " of age " + std::to_string(age_) + zoneMark();
}

} // namespace KestryCore
