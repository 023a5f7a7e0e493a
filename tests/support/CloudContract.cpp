#include "CloudContract.h"

#include <stdexcept>

namespace KestryCore {

CloudContract::CloudContract()
    : store_(GetParam().make()), one_(store_->open()), two_(store_->open())
{
    letGo();
}

void CloudContract::letGo()
{
    tasks_.emplace(store_->scheduler(), [](const std::exception_ptr&) {
        ADD_FAILURE() << "A task fails with something that is no failure.";
    });
}

void CloudContract::restart()
{
    letGo();
    one_.reset();
    one_ = store_->open();
}

Task<CloudContract::Nothing> CloudContract::withValue(Task<void> task)
{
    co_await task;
    co_return Nothing();
}

CloudContract::Answer<CloudContract::Nothing> CloudContract::begin(Task<void> task)
{
    return begin(withValue(std::move(task)));
}

void CloudContract::run(Task<void> task)
{
    (void)run(withValue(std::move(task)));
}

CloudError CloudContract::failureOf(Task<void> task)
{
    return failureOf(withValue(std::move(task)));
}

CloudRecord CloudContract::record(const std::string& name, const std::string& text)
{
    CloudRecord made{recordID(name), "KestryRecord", {}, {}};
    made.fields["text"] = text;
    made.fields["number"] = 1.0;
    made.fields["bytes"] = CloudBytes{text};
    return made;
}

CloudRecord CloudContract::changed(CloudRecord record, const std::string& text)
{
    record.fields["text"] = text;
    return record;
}

CloudContract::Results CloudContract::save(Database device, std::vector<CloudRecord> records)
{
    const std::size_t count = records.size();
    Results byName;
    for (const CloudRecordResult& result : run(device.save(std::move(records)))) {
        EXPECT_EQ(result.id.zone, zone);
        byName.emplace(result.id.name, result);
    }
    EXPECT_EQ(byName.size(), count) << "each record has one result";
    return byName;
}

CloudRecord CloudContract::saved(Database device, const CloudRecord& record)
{
    const Results results = save(device, {record});
    const CloudRecordResult& result = results.at(record.id.name);
    if (const auto* const failure = std::get_if<CloudError>(&result.result)) {
        throw std::runtime_error(std::string("The record was not saved: ") + failure->what());
    }
    return std::get<CloudRecord>(result.result);
}

CloudError CloudContract::refused(Database device, const CloudRecord& record)
{
    const Results results = save(device, {record});
    const CloudRecordResult& result = results.at(record.id.name);
    if (isSaved(result)) {
        ADD_FAILURE() << "It was saved.";
        return CloudError("");
    }
    const auto& failure = std::get<CloudError>(result.result);
    expectSentence(failure);
    return failure;
}

CloudContract::Reading CloudContract::read(Database device, std::optional<CloudCursor> since)
{
    Reading reading;
    bool moreComing = true;
    while (moreComing) {
        const CloudChanges page = run(device.changes(zone, since));
        for (const CloudRecordResult& modification : page.modifications) {
            const auto& record = std::get<CloudRecord>(modification.result);
            EXPECT_EQ(record.id, modification.id);
            reading.records[record.id.name] = record;
            reading.deletions.erase(record.id.name);
        }
        for (const CloudRecordID& deletion : page.deletions) {
            reading.records.erase(deletion.name);
            reading.deletions.insert(deletion.name);
        }
        reading.overruled.insert(
            reading.overruled.end(), page.overruled.begin(), page.overruled.end());
        moreComing = page.moreComing;
        if (moreComing && since == page.cursor) {
            throw std::runtime_error("More is coming, and the cursor does not move.");
        }
        since = page.cursor;
        ++reading.pages;
    }
    reading.cursor = *since;
    return reading;
}

std::optional<CloudRecord> CloudContract::stored(const std::string& name)
{
    const Reading reading = read(two());
    const auto found = reading.records.find(name);
    return found != reading.records.end() ? std::optional(found->second) : std::nullopt;
}

void CloudContract::expectSentence(const CloudError& failure)
{
    const std::string words = failure.what();
    EXPECT_TRUE(words.ends_with('.')) << words;
    EXPECT_EQ(words.find('\n'), std::string::npos) << words;
}

void CloudContract::expectChanged(const CloudError& failure, const CloudRecord& server)
{
    EXPECT_EQ(failure.code(), CloudErrorCode::serverRecordChanged) << failure.what();
    ASSERT_NE(failure.serverRecord(), nullptr);
    EXPECT_EQ(*failure.serverRecord(), server);
}

bool CloudContract::isSaved(const CloudRecordResult& result)
{
    return std::holds_alternative<CloudRecord>(result.result);
}

std::size_t CloudContract::bytesOf(const CloudRecord& record)
{
    std::size_t bytes = 0;
    for (const auto& [name, value] : record.fields) {
        if (const auto* const text = std::get_if<std::string>(&value)) {
            bytes += text->size();
        } else if (const auto* const data = std::get_if<CloudBytes>(&value)) {
            bytes += data->bytes.size();
        }
    }
    return bytes;
}

} // namespace KestryCore
