#include "SimulatedCloud.h"

#include <utility>

#include "SyncCloudRecord.h"

namespace KestryCore {

namespace {

CloudRecordResult resultOf(const CloudRecordID& id, const CloudStore::SaveOutcome& outcome)
{
    if (!outcome.server) {
        return {id, CloudError("The record was removed.")};
    }
    if (outcome.isSaved) {
        return {id, outcome.server->raw};
    }
    return {id, CloudError::changed("The record was changed.", outcome.server->raw)};
}

/// Empty for a record of another program.
CloudValue writerOf(const CloudRecord& record)
{
    const auto found = record.fields.find("writer");
    return found != record.fields.end() ? found->second : CloudValue();
}

template <class Value>
void shuffle(std::vector<Value>& values, CloudWeather& weather)
{
    for (std::size_t left = values.size(); left > 1; --left) {
        std::swap(values[left - 1], values[weather.below(left)]);
    }
}

} // namespace

void SimulatedCloud::fetchZone() const
{
    if (!store_.hasZone()) {
        throw CloudError("There is no such zone.", CloudErrorCode::zoneNotFound);
    }
}

void SimulatedCloud::requireOrder() const
{
    fetchZone();
    if (const auto trouble = weather_.trouble()) {
        throw CloudError(*trouble);
    }
}

CloudChanges SimulatedCloud::changes(const std::optional<CloudCursor>& since)
{
    requireOrder();
    if (since && !store_.isOfThisZone(since->bytes)) {
        throw CloudError::replaced();
    }
    std::optional<std::string> from;
    if (since) {
        from = store_.rewound(since->bytes, weather_.repeatedChanges());
    }
    const auto found = store_.changesSince(from, weather_.mostRecordsOfAnAnswer());
    if (!found || (!since && weather_.failsWithoutCursor())) {
        throw CloudError("The cursor has expired.", CloudErrorCode::changeTokenExpired);
    }
    CloudChanges answer;
    for (const CloudStore::Stored& stored : found->records) {
        unanswered_.erase(stored.raw.id.name); // whoever reads it may build on it
        if (const auto failure = weather_.failureToFetch()) {
            answer.modifications.push_back({stored.raw.id, *failure});
        } else {
            answer.modifications.push_back({stored.raw.id, stored.raw});
        }
    }
    for (const CloudStore::Stored& version : found->overruled) {
        answer.overruled.push_back(version.raw);
    }
    for (const std::string& name : found->deletions) {
        answer.deletions.push_back({name, workspaceZone()});
    }
    if (answer.modifications.size() > 1 && weather_.isShuffled()) {
        shuffle(answer.modifications, weather_);
    }
    answer.cursor.bytes = found->cursor;
    answer.moreComing = found->hasMore;
    return answer;
}

void SimulatedCloud::discard(const std::vector<CloudRecord>& overruled)
{
    requireOrder();
    for (const CloudRecord& version : overruled) {
        weather_.discard(version);
    }
}

std::shared_ptr<SimulatedCloud::Letter> SimulatedCloud::save(
    const CloudLine& sender, const std::vector<CloudRecord>& records)
{
    requireOrder();
    const auto letter = std::make_shared<Letter>();
    letter->receiver = &sender;
    for (const CloudRecord& record : records) {
        saveOne(letter, record);
    }
    return letter;
}

void SimulatedCloud::saveOne(const std::shared_ptr<Letter>& letter, const CloudRecord& record)
{
    const CloudRecordFate fate = weather_.fateOf(record);
    if (fate.failure) {
        letter->results.push_back({record.id, *fate.failure});
        return;
    }
    CloudStore::SaveOutcome outcome = take(*letter, record);
    if (outcome.isSaved) {
        unanswered_.erase(record.id.name); // what it was saved over has lost its place
    }
    if (fate.isRepeated) {
        outcome = weather_.save(record, CloudStore::Rival::isRefused);
    }
    if (!fate.isAnswered) {
        unanswered_.erase(record.id.name);
        return;
    }
    CloudRecordResult result = resultOf(record.id, outcome);
    const CloudRecord* const before = store_.overruledLike(record);
    if (const auto* const failure = std::get_if<CloudError>(&result.result);
        failure != nullptr && before != nullptr) {
        result.result = failure->overruling(*before);
    }
    letter->results.push_back(std::move(result));
    if (outcome.isSaved) {
        unanswered_[record.id.name] = {letter, letter->results.size() - 1};
    }
}

CloudStore::SaveOutcome SimulatedCloud::take(const Letter& letter, const CloudRecord& record)
{
    const CloudStore::Stored* const held = store_.find(record.id.name);
    const bool hasRival = held != nullptr && held->over == record.serverVersion
        && store_.overruledLike(record) == nullptr && writerOf(held->raw) != writerOf(record);
    const auto lost = unanswered_.find(record.id.name);
    const bool isAnswered = lost == unanswered_.end();
    const bool isItsOwn = !isAnswered && lost->second.letter->receiver == letter.receiver;
    if (!hasRival || isItsOwn || !weather_.letsRivalWin(record.id.name, isAnswered)) {
        return weather_.save(record, CloudStore::Rival::isRefused);
    }
    const CloudRecord overruled = held->raw;
    const CloudStore::SaveOutcome outcome = weather_.save(record, CloudStore::Rival::wins);
    if (!isAnswered) {
        lost->second.letter->results.at(lost->second.index) = {record.id,
            CloudError::changed("The record was changed.", outcome.server->raw)
                .overruling(overruled)};
    }
    return outcome;
}

SimulatedCloud::Results SimulatedCloud::send(const std::shared_ptr<Letter>& letter)
{
    std::erase_if(unanswered_, [&](const auto& place) { return place.second.letter == letter; });
    Results results = letter->results;
    shuffle(results, weather_);
    return results;
}

} // namespace KestryCore
