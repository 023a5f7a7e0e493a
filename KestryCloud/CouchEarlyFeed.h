#pragma once

#include <string>

#include "CouchServer.h"
#include "Reply.h"
#include "Scheduler.h"
#include "TaskOwner.h"

namespace Kestry {

/// What has changed since a place in the feed, asked for while something else is asked that has to
/// be known first: two answers for the time of one. Destroying it breaks off the request.
class CouchEarlyFeed {
public:
    /// Asks. Server and scheduler must outlive this object.
    CouchEarlyFeed(CouchServer& server, KestryCore::Scheduler& scheduler, std::string since,
        std::size_t limit);

    /// Whether it was asked from this place.
    [[nodiscard]] bool isSince(const std::string& place) const { return place == since_; }
    /// The answer or the failure, to be awaited once.
    [[nodiscard]] KestryCore::Reply<CouchFeed>& answer() { return answer_; }

private:
    [[nodiscard]] KestryCore::Task<void> ask(CouchServer& server, std::size_t limit);

    std::string since_;
    KestryCore::Reply<CouchFeed> answer_;
    KestryCore::TaskOwner task_; // the last member: its frame uses all others
};

} // namespace Kestry
