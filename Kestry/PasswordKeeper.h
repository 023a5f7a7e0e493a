#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "Scheduler.h"
#include "SecretStore.h"

namespace Kestry {

/// Has the desktop keep and forget passwords, one request after the other. A desktop may be long
/// about one, and what the user wished last must be what stands in the end: so a request is never
/// dropped, and the next one waits for its answer.
///
/// Not thread-safe.
class PasswordKeeper {
public:
    /// After so many seconds nobody waits for the desktop any more. What it does later counts all
    /// the same.
    static constexpr double patienceSeconds = 60.0;
    /// Told once, with `refused` when the desktop does not answer in time.
    using Answered = SecretStore::Answered;

    /// Both must outlive the keeper.
    PasswordKeeper(SecretStore& secrets, KestryCore::Scheduler& scheduler)
        : secrets_(secrets), scheduler_(scheduler)
    {
    }

    /// The observers are called on a later turn, and not at all when the keeper goes first.
    void write(const std::string& key, const std::string& password, Answered answered);
    void remove(const std::string& key, Answered answered);

private:
    /// Whoever waits for an answer.
    struct Wait {
        Answered answered; ///< Empty once it was told.
        KestryCore::Timer patience;
    };
    struct Request {
        std::function<void(Answered)> carryOut;
        std::shared_ptr<Wait> wait;
    };

    void queue(std::function<void(Answered)> carryOut, Answered answered);
    void begin();
    void tell(Wait& wait, SecretAnswer answer);

    SecretStore& secrets_;
    KestryCore::Scheduler& scheduler_;
    std::deque<Request> requests_; ///< The first one is under way.
    std::shared_ptr<void> life_ = std::make_shared<int>();
};

} // namespace Kestry
