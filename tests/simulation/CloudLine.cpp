#include "CloudLine.h"

#include <utility>
#include <variant>

#include "Reply.h"
#include "SyncCloudRecord.h"

namespace KestryCore {

namespace {

/// Cursor and versions of a stranger's store.
constexpr const char* strangersBytes = "a stranger's";

} // namespace

/// One question on its way, its handling and its answer.
template <class Value>
class CloudLine::Errand : public std::enable_shared_from_this<Errand<Value>> {
public:
    Errand(CloudLine& line, typename Reply<Value>::Sender sender,
        std::function<Answer<Value>()> handle, const CloudPassage& passage)
        : line_(line), sender_(std::move(sender)), handle_(std::move(handle)), passage_(passage)
    {
    }

    void begin()
    {
        MachineLoop& network = line_.cloud_.network();
        if (passage_.isHandled) {
            network.later(passage_.there, [self = this->shared_from_this()] { self->arrive(); });
        }
        if (!passage_.isAnswered) {
            network.later(passage_.there + passage_.back, [self = this->shared_from_this()] {
                self->fail(CloudError("The connection was lost."));
            });
        }
    }

private:
    void arrive()
    {
        try {
            answer_ = handle_();
        } catch (const CloudError& failure) {
            answer_ = [failure]() -> Value { throw CloudError(failure); };
        }
        if (!passage_.isAnswered) {
            return;
        }
        for (int copies = passage_.isRepeated ? 2 : 1; copies > 0; --copies) {
            line_.cloud_.network().later(
                passage_.back * copies, [self = this->shared_from_this()] { self->comeBack(); });
        }
    }

    void comeBack()
    {
        try {
            Value value = answer_();
            if (sender_.isAwaited()) {
                line_.see(value);
            }
            sender_.give(std::move(value));
        } catch (const CloudError& failure) {
            fail(failure);
        }
    }

    void fail(const CloudError& failure)
    {
        if (sender_.isAwaited()) {
            line_.note(failure);
        }
        sender_.fail(std::make_exception_ptr(failure));
    }

    CloudLine& line_;
    typename Reply<Value>::Sender sender_;
    std::function<Answer<Value>()> handle_;
    CloudPassage passage_;
    Answer<Value> answer_;
};

// What is under way outlives the program, so that it knows the line only.
class CloudLine::Database final : public CloudDatabase {
public:
    explicit Database(CloudLine& line) : line_(line) { }

    Task<void> fetchZone(CloudZoneID zone) override
    {
        return line_.askForNothing(CloudQuestion::zone, [&line = line_, zone] {
            if (zone != workspaceZone()) {
                throw CloudError("There is no such zone.", CloudErrorCode::zoneNotFound);
            }
            if (line.isOurs()) {
                line.cloud_.fetchZone();
            }
        });
    }
    Task<void> createZone(CloudZoneID) override
    {
        return line_.askForNothing(CloudQuestion::creation, [&line = line_] {
            if (line.isOurs()) {
                line.cloud_.createZone();
            }
        });
    }
    Task<CloudChanges> changes(CloudZoneID, std::optional<CloudCursor> since) override
    {
        return line_.ask<CloudChanges>(CloudQuestion::changes, [&line = line_, since] {
            CloudChanges found = line.changes(since);
            return Answer<CloudChanges>([found = std::move(found)] { return found; });
        });
    }
    Task<SimulatedCloud::Results> save(std::vector<CloudRecord> records) override
    {
        line_.sent_ = records.size();
        return line_.ask<SimulatedCloud::Results>(CloudQuestion::save,
            [&line = line_, records = std::move(records)] { return line.save(records); });
    }
    Task<void> discard(std::vector<CloudRecord> overruled) override
    {
        return line_.askForNothing(
            CloudQuestion::discard, [&line = line_, overruled = std::move(overruled)] {
                if (line.isOurs()) {
                    line.cloud_.discard(overruled);
                }
            });
    }

private:
    CloudLine& line_;
};

class CloudLine::Container final : public CloudContainer {
public:
    explicit Container(CloudLine& line) : line_(line), database_(line) { }

    Task<bool> isAccountAvailable() override
    {
        ++line_.accountQuestions_;
        return line_.ask<bool>(CloudQuestion::account, [&line = line_] {
            const bool isThere = line.isSignedIn;
            return Answer<bool>([isThere] { return isThere; });
        });
    }
    Task<std::string> userRecordName() override
    {
        return line_.ask<std::string>(CloudQuestion::name, [&line = line_] {
            const std::string name = line.account;
            return Answer<std::string>([name] { return name; });
        });
    }
    CloudDatabase& privateDatabase() override { return database_; }

private:
    CloudLine& line_;
    Database database_;
};

std::unique_ptr<CloudContainer> CloudLine::open()
{
    return std::make_unique<Container>(*this);
}

std::optional<CloudQuestion> CloudLine::waitingFor() const
{
    return isAwaited_ && isAwaited_() ? asked_ : std::nullopt;
}

template <class Value>
Task<Value> CloudLine::ask(CloudQuestion question, std::function<Answer<Value>()> handle)
{
    Reply<Value> reply(program_);
    const auto sender = reply.sender();
    hasAskedAtOnce_ = hasAskedAtOnce_ || waitingFor();
    asked_ = question;
    isAwaited_ = [sender] { return sender.isAwaited(); };
    CloudPassage passage = cloud_.weather().passage(*this, question);
    if (!isOnline) {
        passage.isHandled = false;
        passage.isAnswered = false;
    }
    const auto errand = std::make_shared<Errand<Value>>(*this, sender, std::move(handle), passage);
    errand->begin();
    Value value = co_await reply;
    co_return value;
}

Task<void> CloudLine::askForNothing(CloudQuestion question, std::function<void()> handle)
{
    std::function<Answer<bool>()> wrapped = [handle] {
        handle();
        return Answer<bool>([] { return true; });
    };
    Task<bool> asking = ask<bool>(question, std::move(wrapped));
    co_await asking;
}

bool CloudLine::isOurs() const
{
    if (!isSignedIn) {
        throw CloudError("Nobody is signed in.");
    }
    return account == ownAccount;
}

CloudChanges CloudLine::changes(const std::optional<CloudCursor>& since)
{
    if (isOurs()) {
        try {
            return cloud_.changes(since);
        } catch (const CloudError& failure) {
            isReadingAnew_ = failure.code() == CloudErrorCode::changeTokenExpired;
            throw;
        }
    }
    if (since && since->bytes != strangersBytes) {
        throw CloudError("The cursor is of another store.", CloudErrorCode::changeTokenExpired);
    }
    CloudChanges nothing;
    nothing.cursor.bytes = strangersBytes;
    return nothing;
}

CloudLine::Answer<SimulatedCloud::Results> CloudLine::save(const std::vector<CloudRecord>& records)
{
    if (isOurs()) {
        return [this, letter = cloud_.save(*this, records)] { return cloud_.send(letter); };
    }
    SimulatedCloud::Results results;
    for (CloudRecord record : records) {
        record.serverVersion = strangersBytes;
        results.push_back({record.id, record});
    }
    return [results] { return results; };
}

void CloudLine::note(const CloudError& failure)
{
    failures_.push_back({failure.code(), failure.what()});
}

void CloudLine::see(const CloudChanges& changes)
{
    if (!changes.moreComing) {
        cloud_.weather().answered(changes.cursor.bytes);
    }
    if (!changes.deletions.empty()) {
        note(CloudError("Records were removed outside Kestry."));
    }
    note(changes.modifications);
}

void CloudLine::see(const SimulatedCloud::Results& results)
{
    if (results.size() < sent_) {
        note(CloudError("Not every record was answered."));
    }
    note(results);
}

void CloudLine::note(const SimulatedCloud::Results& results)
{
    for (const CloudRecordResult& result : results) {
        const auto* const failure = std::get_if<CloudError>(&result.result);
        if (failure != nullptr && failure->serverRecord() == nullptr) {
            note(*failure);
        }
    }
}

} // namespace KestryCore
