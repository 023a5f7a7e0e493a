#include "ScriptedCloud.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "FrameWitness.h"
#include "SharedMap.h"
#include "SyncCloudRecord.h"

namespace KestryCore {

/// The database of a scripted cloud.
class ScriptedCloud::Database final : public CloudDatabase {
public:
    explicit Database(ScriptedCloud& cloud) : cloud_(cloud) { }

    Task<void> fetchZone(CloudZoneID) override
    {
        return cloud_.askForNothing("zone", [this] {
            if (!cloud_.hasZone) {
                throw CloudError("There is no such zone.", CloudErrorCode::zoneNotFound);
            }
        });
    }
    Task<void> createZone(CloudZoneID) override
    {
        return cloud_.askForNothing("create", [this] { cloud_.hasZone = true; });
    }
    Task<CloudChanges> changes(CloudZoneID, std::optional<CloudCursor> since) override
    {
        return cloud_.ask<CloudChanges>(
            "changes", [this, since = std::move(since)] { return cloud_.nextChanges(since); });
    }
    Task<Results> save(std::vector<CloudRecord> records) override
    {
        return cloud_.ask<Results>(
            "save", [this, records = std::move(records)] { return cloud_.save(records); });
    }

    Task<void> discard(std::vector<CloudRecord> overruled) override
    {
        return cloud_.askForNothing("discard", [this, overruled = std::move(overruled)] {
            cloud_.discarded.insert(cloud_.discarded.end(), overruled.begin(), overruled.end());
        });
    }
    CloudCursor witnessed(CloudCursor saved) const override
    {
        return {saved.bytes + cloud_.addedToCursor};
    }

private:
    ScriptedCloud& cloud_;
};

class ScriptedCloud::Container final : public CloudContainer {
public:
    explicit Container(ScriptedCloud& cloud) : cloud_(cloud), database_(cloud) { }

    Task<bool> isAccountAvailable() override
    {
        return cloud_.ask<bool>("status", [this] { return cloud_.isAvailable; });
    }
    Task<std::string> userRecordName() override
    {
        return cloud_.ask<std::string>("name", [this] { return cloud_.userName; });
    }
    CloudDatabase& privateDatabase() override { return database_; }

private:
    ScriptedCloud& cloud_;
    Database database_;
};

template <class Value>
Task<Value> ScriptedCloud::ask(std::string name, std::function<Value()> work)
{
    const FrameWitness witness(frames);
    Reply<Value> reply(scheduler_);
    const auto sender = reply.sender();
    asked_.push_back(name);
    Question question;
    question.name = name;
    question.answer = [sender, work] { sender.give(work()); };
    question.fail = [sender](const CloudError& failure) {
        sender.fail(std::make_exception_ptr(failure));
    };
    question.isAwaited = [sender] { return sender.isAwaited(); };
    questions_.push_back(std::move(question));
    Value value = co_await reply;
    co_return value;
}

Task<void> ScriptedCloud::askForNothing(std::string name, std::function<void()> work)
{
    std::function<bool()> wrapped = [work] {
        work();
        return true;
    };
    Task<bool> asking = ask<bool>(std::move(name), std::move(wrapped));
    co_await asking;
}

int ScriptedCloud::times(const std::string& question) const
{
    return static_cast<int>(std::ranges::count(asked_, question));
}

std::string ScriptedCloud::waiting()
{
    questions_.remove_if([](const Question& question) { return !question.isAwaited(); });
    return questions_.empty() ? "" : questions_.front().name;
}

void ScriptedCloud::answer()
{
    if (waiting().empty()) {
        throw std::logic_error("The cloud was asked nothing.");
    }
    const Question question = std::move(questions_.front());
    questions_.pop_front();
    if (const auto failure = failures.find(question.name); failure != failures.end()) {
        const CloudError given = failure->second;
        failures.erase(failure);
        return question.fail(given);
    }
    try {
        question.answer();
    } catch (const CloudError& failure) {
        question.fail(failure);
    }
}

CloudChanges ScriptedCloud::nextChanges(const std::optional<CloudCursor>& since)
{
    cursors.push_back(since ? std::optional(since->bytes) : std::nullopt);
    if (changes.empty()) {
        return page({}, since ? since->bytes : "start");
    }
    const Changes next = std::move(changes.front());
    changes.pop_front();
    if (const auto* const failure = std::get_if<CloudError>(&next)) {
        throw CloudError(*failure);
    }
    return std::get<CloudChanges>(next);
}

ScriptedCloud::Results ScriptedCloud::save(const std::vector<CloudRecord>& records)
{
    deliveries.push_back(records);
    Results results;
    for (CloudRecord record : records) {
        record.serverVersion = "saved " + std::to_string(++versions_);
        results.push_back({record.id, record});
    }
    if (onSave) {
        onSave(results);
    }
    return results;
}

std::unique_ptr<CloudContainer> ScriptedCloud::open(const std::string& identifier)
{
    container = identifier;
    ++opened;
    return std::make_unique<Container>(*this);
}

CloudRecord ScriptedCloud::stored(const SyncRecord& record, const std::string& version)
{
    CloudRecord made = cloudRecordFor(record, SharedMap<std::string>());
    made.serverVersion = version;
    return made;
}

CloudChanges ScriptedCloud::page(
    const std::vector<CloudRecord>& records, const std::string& cursor, bool moreComing)
{
    CloudChanges changes;
    for (const CloudRecord& record : records) {
        changes.modifications.push_back({record.id, record});
    }
    changes.cursor = CloudCursor{cursor};
    changes.moreComing = moreComing;
    return changes;
}

} // namespace KestryCore
