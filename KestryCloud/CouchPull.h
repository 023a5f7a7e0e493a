#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CloudDatabase.h"
#include "CouchCursor.h"
#include "CouchEarlyFeed.h"
#include "CouchServer.h"
#include "CouchZone.h"
#include "Scheduler.h"
#include "Task.h"

namespace Kestry {

/// Reads one page of changes, bounded in bytes.
///
/// - The first reading of a zone takes the bodies from the feed, in one go. Afterwards the feed
/// only
///   tells what has changed, and bodies are read by name: the feed of a cluster may go back and
///   tell an older version once more, which must not replace a newer one here. A body that is older
///   than its row comes from a machine that lags behind: the cursor does not pass it.
/// - The cursor behind a page is always that of a whole answer. Where an answer has more than a
///   page, the feed is asked again for as many rows as fit: the order of rows means nothing.
class CouchPull {
public:
    /// How many documents are asked for at once, found out from page to page.
    struct Pace {
        std::size_t rows = 200;
    };

    /// Server, scheduler and pace must outlive the pull.
    CouchPull(CouchServer& server, KestryCore::Scheduler& scheduler, Pace& pace,
        KestryCore::CloudZoneID zone, CouchZoneState state, CouchCursor cursor);

    /// How many rows of the feed are asked for at once after the first reading.
    static constexpr std::size_t rowsWithoutBodies = 2'000;

    /// Takes what was asked for already, if that was from where this pull reads on and for as many
    /// rows. It must outlive the task.
    void use(CouchEarlyFeed& early);
    /// The pull must outlive the task.
    [[nodiscard]] KestryCore::Task<KestryCore::CloudChanges> carryOut();
    /// Behind the page.
    [[nodiscard]] const CouchCursor& cursor() const { return cursor_; }

private:
    /// A document as it was read.
    struct Found {
        std::string revision;
        bool isGone = false;
        std::optional<CouchDocument> document;
    };

    [[nodiscard]] KestryCore::Task<CouchFeed> readFeed();
    void takeBodies(CouchFeed& feed);
    [[nodiscard]] std::vector<std::string> unread(const CouchFeed& feed) const;
    [[nodiscard]] KestryCore::Task<void> read(std::vector<std::string> ids, std::size_t mostBytes);
    [[nodiscard]] KestryCore::Task<void> shorten(CouchFeed& feed, std::size_t rows);
    [[nodiscard]] std::vector<std::string> outdated(const CouchFeed& feed) const;
    [[nodiscard]] KestryCore::Task<void> catchUp(CouchFeed feed);
    [[nodiscard]] bool isOurs(const std::string& document) const;
    [[nodiscard]] std::size_t rowsThatFit(const CouchFeed& feed) const;
    void takeRows(const CouchFeed& feed);
    void takeRecord(const std::string& id, CouchDocument document);
    [[nodiscard]] KestryCore::Task<void> readOverruled();
    void moveOn(const CouchFeed& feed);
    void learnPace();

    CouchServer& server_;
    KestryCore::Scheduler& scheduler_;
    Pace& pace_;
    KestryCore::CloudZoneID zone_;
    CouchZoneState state_;
    CouchCursor cursor_;
    CouchEarlyFeed* early_ = nullptr;
    bool isFirst_;          ///< It belongs to the first reading.
    std::size_t limit_ = 0; ///< Of rows in the feed.
    bool isCut_ = false;    ///< More rows were there than fit.
    std::map<std::string, Found> found_;
    std::vector<std::pair<std::string, std::string>> overruled_;
    KestryCore::CloudChanges page_;
};

} // namespace Kestry
