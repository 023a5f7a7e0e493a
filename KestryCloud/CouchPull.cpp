#include "CouchPull.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "CouchBodies.h"
#include "Reply.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::size_t mostRows = 5'000; // taken in and saved in about the time of one save
constexpr std::size_t paceGrowth = 16;

[[noreturn]] void refuseHidden()
{
    throw CloudError("The record store tells of a record and does not show it. Your local changes "
                     "are saved and will retry.");
}

} // namespace

CouchPull::CouchPull(CouchServer& server, Scheduler& scheduler, Pace& pace, CloudZoneID zone,
    CouchZoneState state, CouchCursor cursor)
    : server_(server), scheduler_(scheduler), pace_(pace), zone_(std::move(zone)),
      state_(std::move(state)), cursor_(std::move(cursor)), isFirst_(cursor_.isFirstReading)
{
}

void CouchPull::use(CouchEarlyFeed& early)
{
    early_ = !isFirst_ && early.isSince(cursor_.since) ? &early : nullptr;
}

Task<CloudChanges> CouchPull::carryOut()
{
    Task<CouchFeed> asking = readFeed();
    CouchFeed feed = co_await asking;
    if (isFirst_) {
        Delay turn(scheduler_, 0); // Reading so long an answer was one.
        co_await turn;
        takeBodies(feed);
    } else {
        Task<void> reading = read(unread(feed), server_.limits().pageBytes);
        co_await reading;
    }
    learnPace();
    const std::size_t rows = rowsThatFit(feed);
    if (rows < feed.changes.size()) {
        Task<void> shortening = shorten(feed, rows);
        co_await shortening;
    }
    Task<void> catchingUp = catchUp(feed);
    co_await catchingUp;
    takeRows(feed);
    Task<void> reading = readOverruled();
    co_await reading;
    moveOn(feed);
    page_.cursor = cursor_.encoded();
    co_return std::move(page_);
}

Task<CouchFeed> CouchPull::readFeed()
{
    limit_ = isFirst_ ? pace_.rows : rowsWithoutBodies;
    if (early_ != nullptr) {
        Reply<CouchFeed>& answer = early_->answer();
        try {
            CouchFeed feed = co_await answer;
            co_return feed;
        } catch (const CouchAnswerTooLong&) {
            // Fewer rows are asked for below.
        } catch (const CouchNoDatabase&) {
            // It came after this was asked, and before the look at the zone.
        }
    }
    while (true) {
        Task<CouchFeed> asking = server_.changes(cursor_.since, limit_, isFirst_);
        try {
            CouchFeed feed = co_await asking;
            co_return feed;
        } catch (const CouchAnswerTooLong&) {
            if (limit_ == 1) {
                throw;
            }
        }
        limit_ = std::max<std::size_t>(1, limit_ / 8);
        pace_.rows = std::min(pace_.rows, limit_);
    }
}

bool CouchPull::isOurs(const std::string& document) const
{
    const auto id = recordOfDocument(document);
    return id && id->zone == zone_;
}

void CouchPull::takeBodies(CouchFeed& feed)
{
    for (CouchChange& change : feed.changes) {
        if (isOurs(change.id)) {
            Found& found = found_[change.id];
            if (found.revision.empty() || isBehind(found.revision, change.revision)) {
                found = {change.revision, change.isDeleted, std::move(change.document)};
            }
        }
    }
}

/// The records of which this version was not read.
std::vector<std::string> CouchPull::unread(const CouchFeed& feed) const
{
    std::vector<std::string> ids;
    std::set<std::string> named;
    for (const CouchChange& change : feed.changes) {
        const auto known = found_.find(change.id);
        const bool isKnown = known != found_.end() && known->second.revision == change.revision;
        if (isOurs(change.id) && !isKnown && named.insert(change.id).second) {
            ids.push_back(change.id);
        }
    }
    return ids;
}

Task<void> CouchPull::read(std::vector<std::string> ids, std::size_t mostBytes)
{
    const CouchBodiesLimits limits{pace_.rows, mostBytes};
    Task<CouchBodies> reading = readBodies(server_, std::move(ids), limits);
    CouchBodies bodies = co_await reading;
    for (CouchRow& row : bodies.rows) {
        found_[row.id] = {row.revision, row.isDeleted || row.isMissing, std::move(row.document)};
    }
}

/// The records of which an older version was read than the feed tells of.
std::vector<std::string> CouchPull::outdated(const CouchFeed& feed) const
{
    std::set<std::string> ids;
    for (const CouchChange& change : feed.changes) {
        const auto known = found_.find(change.id);
        if (known == found_.end() || (known->second.isGone && change.isDeleted)) {
            continue; // Of what is gone, some servers show no revision.
        }
        if (isBehind(known->second.revision, change.revision)) {
            ids.insert(change.id);
        }
    }
    return {ids.begin(), ids.end()};
}

/// Gives a machine that lags behind another the time to follow.
Task<void> CouchPull::catchUp(CouchFeed feed)
{
    std::vector<std::string> ids = outdated(feed);
    if (ids.empty()) {
        co_return;
    }
    Delay pause(scheduler_, server_.limits().patienceSeconds);
    co_await pause;
    Task<void> reading = read(std::move(ids), std::numeric_limits<std::size_t>::max());
    co_await reading;
    if (!outdated(feed).empty()) {
        refuseHidden();
    }
}

/// Rows up to the one that fills the page, or to the first that was not read.
std::size_t CouchPull::rowsThatFit(const CouchFeed& feed) const
{
    std::size_t bytes = 0;
    std::set<std::string> counted;
    for (std::size_t index = 0; index < feed.changes.size(); ++index) {
        const std::string& id = feed.changes[index].id;
        if (!isOurs(id) || !counted.insert(id).second) {
            continue;
        }
        const auto known = found_.find(id);
        if (known == found_.end() || bytes >= server_.limits().pageBytes) {
            return std::max<std::size_t>(1, index);
        }
        bytes += known->second.document ? fieldBytes(*known->second.document) : 0;
    }
    return feed.changes.size();
}

/// Asks for fewer rows. What has changed meanwhile is read anew.
Task<void> CouchPull::shorten(CouchFeed& feed, std::size_t rows)
{
    std::set<std::string> ids;
    for (std::size_t index = 0; index < rows; ++index) {
        ids.insert(feed.changes[index].id);
    }
    isCut_ = true;
    limit_ = ids.size();
    Task<CouchFeed> asking = server_.changes(cursor_.since, limit_, false);
    feed = co_await asking;
    Task<void> reading = read(unread(feed), std::numeric_limits<std::size_t>::max());
    co_await reading;
}

void CouchPull::takeRows(const CouchFeed& feed)
{
    std::set<std::string> taken;
    for (const CouchChange& change : feed.changes) {
        if (const auto device = deviceOfDocument(change.id)) {
            cursor_.see(*device, generationOf(change.revision));
        }
        const auto known = found_.find(change.id);
        if (!isOurs(change.id) || !taken.insert(change.id).second) {
            continue;
        }
        if (known != found_.end() && known->second.document && !known->second.isGone) {
            takeRecord(change.id, *std::move(known->second.document));
        } else if (known != found_.end() && known->second.isGone && change.isDeleted) {
            // To a first reader a record that is gone was never there.
            if (!isFirst_) {
                page_.deletions.push_back(*recordOfDocument(change.id));
            }
        } else {
            refuseHidden();
        }
    }
}

void CouchPull::takeRecord(const std::string& id, CouchDocument document)
{
    for (const std::string& revision : document.overruled) {
        overruled_.emplace_back(id, revision);
    }
    CloudRecord record = recordOf(std::move(document));
    record.serverVersion = state_.version(record.serverVersion);
    CloudRecordID name = record.id;
    page_.modifications.push_back({std::move(name), std::move(record)});
}

Task<void> CouchPull::readOverruled()
{
    if (overruled_.empty()) {
        co_return;
    }
    Task<std::vector<CouchDocument>> asking = server_.versions(overruled_);
    const std::vector<CouchDocument> versions = co_await asking;
    for (const CouchDocument& version : versions) {
        if (!version.isDeleted && isOurs(version.id)) {
            CloudRecord record = recordOf(version);
            record.serverVersion = state_.version(version.revision);
            page_.overruled.push_back(std::move(record));
        }
    }
}

void CouchPull::moveOn(const CouchFeed& feed)
{
    const std::string before = cursor_.since;
    if (!feed.changes.empty() || before.empty()) {
        // A server at rest may spell the same place in another way each time.
        cursor_.since = feed.last;
    }
    const bool isPending =
        feed.pending ? *feed.pending > 0 : isCut_ || feed.changes.size() >= limit_;
    page_.moreComing = isPending && cursor_.since != before;
    cursor_.isFirstReading = isFirst_ && page_.moreComing;
}

void CouchPull::learnPace()
{
    std::size_t bytes = 0;
    std::size_t count = 0;
    for (const auto& [id, found] : found_) {
        bytes += found.document ? fieldBytes(*found.document) : 0;
        count += found.document ? 1 : 0;
    }
    if (count > 0) {
        const std::size_t average = std::max<std::size_t>(1, bytes / count);
        pace_.rows = std::clamp<std::size_t>(
            server_.limits().pageBytes / average, 1, std::min(mostRows, pace_.rows * paceGrowth));
    }
}

} // namespace Kestry
