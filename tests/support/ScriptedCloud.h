#pragma once

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "CloudDatabase.h"
#include "Reply.h"
#include "Scheduler.h"
#include "SyncState.h"

namespace KestryCore {

/// A cloud store that answers when a test tells it to, one question after the other, so that
/// anything can happen in between. Each answer is worked out at the moment it is given.
///
/// Without more words the account is "account", the zone is there, nothing has changed since the
/// cursor "start", and every save is taken.
class ScriptedCloud {
public:
    using Results = std::vector<CloudRecordResult>;
    using Changes = std::variant<CloudChanges, CloudError>;

    explicit ScriptedCloud(Scheduler& scheduler) : scheduler_(scheduler) { }

    // What it answers.

    bool isAvailable = true;
    std::string userName = "account";
    bool hasZone = true;
    std::deque<Changes> changes;                ///< The next answers about what has changed.
    std::map<std::string, CloudError> failures; ///< By question; each is given once.
    /// Changes the results of a save before they are given.
    std::function<void(Results&)> onSave;

    // What it was asked: "status", "name", "zone", "create", "changes", "save" and
    // "discard".

    [[nodiscard]] const std::vector<std::string>& asked() const { return asked_; }
    /// How often it was asked this.
    [[nodiscard]] int times(const std::string& question) const;
    std::vector<std::optional<std::string>> cursors;  ///< Of the questions for changes.
    std::vector<std::vector<CloudRecord>> deliveries; ///< Each batch that it was to save.
    std::vector<CloudRecord> discarded;               ///< Overruled versions that may go.
    /// What it adds to a cursor that is kept with acknowledgements.
    std::string addedToCursor;
    std::string container; ///< The identifier that was opened last.
    int opened = 0;
    int frames = 0; ///< Of questions that wait for their answer.

    /// The question that has waited longest; empty when none does.
    [[nodiscard]] std::string waiting();
    /// Gives the answer to it. The task goes on in the next turn.
    void answer();

    /// A container whose questions come here; this must outlive it.
    [[nodiscard]] std::unique_ptr<CloudContainer> open(const std::string& identifier);

    // Records and answers.

    /// A record as another device has saved it.
    [[nodiscard]] static CloudRecord stored(
        const SyncRecord& record, const std::string& version = "v1");
    [[nodiscard]] static CloudChanges page(const std::vector<CloudRecord>& records,
        const std::string& cursor, bool moreComing = false);
    [[nodiscard]] static CloudRecordResult failed(const CloudRecordID& id, const CloudError& error)
    {
        return {id, error};
    }

private:
    class Container;
    class Database;

    struct Question {
        std::string name;
        std::function<void()> answer;
        std::function<void(const CloudError&)> fail;
        std::function<bool()> isAwaited;
    };

    template <class Value>
    [[nodiscard]] Task<Value> ask(std::string name, std::function<Value()> work);
    [[nodiscard]] Task<void> askForNothing(std::string name, std::function<void()> work);
    [[nodiscard]] CloudChanges nextChanges(const std::optional<CloudCursor>& since);
    [[nodiscard]] Results save(const std::vector<CloudRecord>& records);

    Scheduler& scheduler_;
    std::vector<std::string> asked_;
    std::list<Question> questions_;
    int versions_ = 0;
};

} // namespace KestryCore
