#include "CouchEarlyFeed.h"

#include <utility>

namespace Kestry {

using namespace KestryCore;

CouchEarlyFeed::CouchEarlyFeed(
    CouchServer& server, Scheduler& scheduler, std::string since, std::size_t limit)
    : since_(std::move(since)), answer_(scheduler),
      task_(
          scheduler, [this](const std::exception_ptr& failure) { answer_.sender().fail(failure); })
{
    task_.start(ask(server, limit));
}

Task<void> CouchEarlyFeed::ask(CouchServer& server, std::size_t limit)
{
    Task<CouchFeed> asking = server.changes(since_, limit, false);
    CouchFeed feed = co_await asking;
    answer_.sender().give(std::move(feed));
}

} // namespace Kestry
