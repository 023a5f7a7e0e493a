#include "LiveSyncCommands.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "CommandAnswers.h"
#include "LedgerError.h"

namespace Kestry {

using KestryCore::LedgerError;

namespace {

using Give = std::function<void(LocalAnswer)>;

LocalAnswer done(const std::string& sentence, bool asJson)
{
    LocalAnswer answer = shownAnswer(changeAnswer(sentence, std::nullopt), asJson);
    answer.hasChanged = true;
    return answer;
}

/// What answers when it is over, with a sentence of how it is then.
LiveSync::Done answering(std::function<std::string()> sentence, bool asJson, const Give& give)
{
    return [=](const std::optional<std::string>& failure) {
        give(answerOrFailure(asJson, [&] {
            if (failure) {
                throw LedgerError(*failure);
            }
            return done(sentence(), asJson);
        }));
    };
}

std::string signedIn(const SyncSignInCommand& command, const SyncCondition& condition)
{
    const std::string user = command.user.empty() ? "" : " as " + command.user;
    return "Signed in to " + command.address + user + "."
        + (condition.forgetsPassword
                ? " This desktop keeps no passwords: sign in again after the next start."
                : "");
}

struct Beginning {
    LiveSync& sync;
    bool asJson;
    const Give& give;

    void operator()(const SyncSignInCommand& command) const
    {
        const auto sentence = [command, &live = sync] {
            return signedIn(command, live.condition());
        };
        sync.signIn(command, answering(sentence, asJson, give));
    }
    void operator()(const SyncSignOutCommand& /*command*/) const
    {
        sync.signOut(
            answering([] { return std::string("Signed out. Sync is off."); }, asJson, give));
    }
    void operator()(const SyncOnCommand& /*command*/) const
    {
        sync.turnOn(
            answering([&live = sync] { return "Sync is on. " + live.condition().status + "."; },
                asJson, give));
    }
    void operator()(const SyncOffCommand& /*command*/) const
    {
        sync.turnOff();
        give(done("Sync is off.", asJson));
    }
    void operator()(const SyncNowCommand& /*command*/) const
    {
        sync.exchange(answering(
            [&live = sync] { return "Exchanged records. " + live.condition().status + "."; },
            asJson, give));
    }
    void operator()(const SyncUploadAgainCommand& /*command*/) const
    {
        sync.uploadAgain(answering(
            [&live = sync] {
                return "Uploaded all records again. " + live.condition().status + ".";
            },
            asJson, give));
    }
    /// All others are for the store.
    template <class Other>
    void operator()(const Other& /*command*/) const
    {
        throw std::logic_error("This command is for the store.");
    }
};

} // namespace

bool isForLiveSync(const StoreCommand& command)
{
    return needsApplication(command) || std::holds_alternative<SyncOffCommand>(command);
}

void carryOut(
    const StoreCommand& command, LiveSync& sync, const CommandContext& context, const Give& give)
{
    LocalAnswer begun = answerOrFailure(context.asJson, [&] {
        std::visit(Beginning{sync, context.asJson, give}, command);
        return LocalAnswer{};
    });
    if (begun.status != static_cast<int>(ExitStatus::done)) {
        give(std::move(begun));
    }
}

} // namespace Kestry
