#include "SqliteCloudDatabase.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "Reply.h"
#include "SqliteError.h"

namespace KestryCore {

namespace {

constexpr double pauseSeconds = 0.05;

CloudError zoneIsMissing()
{
    return CloudError("The record store has no such workspace.", CloudErrorCode::zoneNotFound);
}

std::size_t recordBytes(const CloudRecord& record)
{
    std::size_t bytes = record.id.name.size();
    for (const auto& [name, value] : record.fields) {
        bytes += name.size() + sizeof(double);
        if (const auto* const text = std::get_if<std::string>(&value)) {
            bytes += text->size();
        } else if (const auto* const data = std::get_if<CloudBytes>(&value)) {
            bytes += data->bytes.size();
        }
    }
    return bytes;
}

/// As many records of one zone as are written in one go.
std::span<const CloudRecord> firstPart(std::span<const CloudRecord> records)
{
    std::size_t count = 1;
    std::size_t bytes = recordBytes(records.front());
    while (count < records.size() && records[count].id.zone == records.front().id.zone) {
        bytes += recordBytes(records[count]);
        if (bytes > SqliteCloudDatabase::pageBytes) {
            break;
        }
        ++count;
    }
    return records.first(count);
}

} // namespace

SqliteCloudDatabase::SqliteCloudDatabase(Scheduler& scheduler, SqliteStorePlace place)
    : scheduler_(scheduler), place_(std::move(place))
{
}

template <class Value>
std::optional<Value> SqliteCloudDatabase::attempt(const std::function<Value()>& work) const
{
    try {
        return work();
    } catch (const SqliteError& failure) {
        if (failure.isInUse()) {
            return std::nullopt;
        }
        throw sqliteFailure(failure, place_.path);
    }
}

template <class Value>
Task<Value> SqliteCloudDatabase::carryOut(std::function<Value()> work)
{
    // Whoever has many operations to do, one after the other, lets others have the loop in between.
    Delay turn(scheduler_, 0);
    co_await turn;
    const double begin = scheduler_.now();
    std::optional<Value> value = attempt<Value>(work);
    while (!value) {
        if (scheduler_.now() - begin >= patienceSeconds) {
            throw storeIsInUse(place_.path);
        }
        Delay pause(scheduler_, pauseSeconds);
        co_await pause;
        value = attempt<Value>(work);
    }
    co_return *std::move(value);
}

// Zones.

bool SqliteCloudDatabase::hasZone(const CloudZoneID& zone) const
{
    auto file = SqliteStoreFile::open(place_, SqliteTransaction::Kind::read);
    return file && SqliteZone::find(file->connection(), zone);
}

void SqliteCloudDatabase::makeZone(const CloudZoneID& zone) const
{
    SqliteStoreFile file = SqliteStoreFile::openOrMake(place_);
    if (!SqliteZone::find(file.connection(), zone)) {
        SqliteZone::make(file.connection(), zone, place_.newUuid);
    }
    file.commit();
}

Task<void> SqliteCloudDatabase::fetchZone(CloudZoneID zone)
{
    std::function<bool()> work = [this, &zone] { return hasZone(zone); };
    Task<bool> looking = carryOut<bool>(std::move(work));
    const bool isThere = co_await looking;
    if (!isThere) {
        throw zoneIsMissing();
    }
}

Task<void> SqliteCloudDatabase::createZone(CloudZoneID zone)
{
    std::function<bool()> work = [this, &zone] {
        makeZone(zone);
        return true;
    };
    Task<bool> making = carryOut<bool>(std::move(work));
    co_await making;
    known_.reset(); // Whatever was known was of a zone that had gone.
}

/// A store that lacks what was seen of it is another one, or an older state of it.
void SqliteCloudDatabase::requireKnown(SqliteZone& zone, const CloudZoneID& name) const
{
    if (known_ && known_->zone == name) {
        zone.require(known_->position);
    }
}

// Changes.

CloudChanges SqliteCloudDatabase::readChanges(
    const CloudZoneID& zone, const std::optional<CloudCursor>& since)
{
    auto file = SqliteStoreFile::open(place_, SqliteTransaction::Kind::read);
    auto found = file ? SqliteZone::find(file->connection(), zone) : std::nullopt;
    if (!found) {
        throw zoneIsMissing();
    }
    if (since) {
        requireKnown(*found, zone);
    }
    CloudChanges page = found->changes(since, pageBytes);
    known_ = {zone, found->newest()};
    return page;
}

Task<CloudChanges> SqliteCloudDatabase::changes(CloudZoneID zone, std::optional<CloudCursor> since)
{
    std::function<CloudChanges()> work = [this, &zone, &since] { return readChanges(zone, since); };
    Task<CloudChanges> reading = carryOut<CloudChanges>(std::move(work));
    CloudChanges page = co_await reading;
    co_return page;
}

// Saves.

SqliteCloudDatabase::Results SqliteCloudDatabase::savePart(std::span<const CloudRecord> part)
{
    auto file = SqliteStoreFile::open(place_, SqliteTransaction::Kind::write);
    auto zone = file ? SqliteZone::find(file->connection(), part.front().id.zone) : std::nullopt;
    if (!zone) {
        throw zoneIsMissing();
    }
    requireKnown(*zone, part.front().id.zone);
    Results results = zone->save(part, place_.newUuid);
    Known known{part.front().id.zone, zone->newest()};
    file->commit();
    tidying_ = scheduler_.after(tidySeconds, [this] { tidyUp(); });
    known_ = std::move(known);
    return results;
}

Task<std::vector<CloudRecordResult>> SqliteCloudDatabase::save(std::vector<CloudRecord> records)
{
    Results results;
    std::size_t saved = 0;
    while (saved < records.size()) {
        const auto part = firstPart(std::span<const CloudRecord>(records).subspan(saved));
        std::function<Results()> work = [this, part] { return savePart(part); };
        Task<Results> saving = carryOut<Results>(std::move(work));
        Results ofPart = co_await saving;
        std::ranges::move(ofPart, std::back_inserter(results));
        saved += part.size();
    }
    co_return results;
}

void SqliteCloudDatabase::tidyUp() noexcept
{
    if (!std::exchange(tidying_, {})) {
        return;
    }
    try {
        SqliteStoreFile::removeJournal(place_);
    } catch (const std::exception&) {
        // It says nothing, and the next to save uses it again or removes it.
    }
}

CloudCursor SqliteCloudDatabase::witnessed(CloudCursor saved) const
{
    auto reading = SqliteReading::of(saved);
    const bool isAhead = reading && known_
        && known_->position.change > std::max(
               reading->position.change, reading->delivered.value_or(SqlitePosition()).change);
    if (!isAhead) {
        return saved;
    }
    reading->delivered = known_->position;
    return reading->cursor();
}

// The account.

Task<bool> SqliteCloudDatabase::isAvailable()
{
    std::function<bool()> work = [this] {
        const auto file = SqliteStoreFile::open(place_, SqliteTransaction::Kind::read);
        return file || place_.whenMissing == MissingStore::make;
    };
    Task<bool> looking = carryOut<bool>(std::move(work));
    const bool is = co_await looking;
    co_return is;
}

Task<std::string> SqliteCloudDatabase::account()
{
    std::function<std::string()> work = [this] { return readAccount(); };
    Task<std::string> reading = carryOut<std::string>(std::move(work));
    std::string name = co_await reading;
    co_return name;
}

std::string SqliteCloudDatabase::readAccount() const
{
    if (auto file = SqliteStoreFile::open(place_, SqliteTransaction::Kind::read)) {
        return file->account();
    }
    SqliteStoreFile made = SqliteStoreFile::openOrMake(place_);
    std::string name = made.account();
    made.commit();
    return name;
}

} // namespace KestryCore
