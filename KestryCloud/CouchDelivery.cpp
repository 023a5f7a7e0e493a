#include "CouchDelivery.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "CouchBodies.h"
#include "CouchErrors.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr const char* conflictWord = "conflict";
constexpr int countAttempts = 3;

CloudError goneError()
{
    return CloudError("A record that was to be changed is no longer on the record store. Your "
                      "local changes are saved.");
}

template <class Found>
std::map<std::string, const Found*> byID(const std::vector<Found>& all)
{
    std::map<std::string, const Found*> found;
    for (const Found& one : all) {
        found[one.id] = &one;
    }
    return found;
}

} // namespace

CouchDelivery::CouchDelivery(CouchServer& server, CouchZoneState zone, std::string device)
    : server_(server), zone_(std::move(zone)), device_(std::move(device))
{
}

Task<std::vector<CloudRecordResult>> CouchDelivery::carryOut(std::vector<CloudRecord> records)
{
    for (CloudRecord& record : records) {
        Item& item = items_.emplace_back();
        item.record = std::move(record);
        prepare(item);
    }
    std::deque<Group> waiting = groups();
    Task<void> delivering = deliver(waiting);
    co_await delivering;
    std::vector<CloudRecordResult> results;
    for (Item& item : items_) {
        if (item.result) {
            results.push_back({item.record.id, *std::move(item.result)});
        }
    }
    co_return results;
}

/// What the server would refuse together with all that is sent beside it is not sent at all.
void CouchDelivery::prepare(Item& item) const
{
    CouchDocument document = documentOf(item.record);
    if (!item.record.serverVersion.empty()) {
        const auto revision = zone_.revision(item.record.serverVersion);
        if (!revision) {
            item.isRefused = true;
            return;
        }
        document.revision = *revision;
    }
    try {
        item.json = couchJson(document);
    } catch (const CloudError& failure) {
        item.result = failure;
    }
}

std::deque<CouchDelivery::Group> CouchDelivery::groups()
{
    std::deque<Group> groups;
    std::size_t bytes = 0;
    for (Item& item : items_) {
        const std::size_t size = item.json.size();
        if (groups.empty() || bytes + size > server_.limits().requestBytes) {
            groups.emplace_back();
            bytes = 0;
        }
        groups.back().push_back(&item);
        bytes += size;
    }
    return groups;
}

Task<void> CouchDelivery::deliver(std::deque<Group>& groups)
{
    bool isFirst = true;
    while (!groups.empty()) {
        Group group = std::move(groups.front());
        groups.pop_front();
        std::optional<CloudError> failed;
        Task<bool> sending = send(group);
        try {
            const bool isSent = co_await sending;
            if (!isSent) {
                const auto middle = group.begin() + static_cast<std::ptrdiff_t>(group.size() / 2);
                groups.emplace_front(middle, group.end());
                groups.emplace_front(group.begin(), middle);
                continue;
            }
        } catch (const CloudError& failure) {
            if (isFirst) {
                throw;
            }
            failed = failure;
        }
        isFirst = false;
        if (!failed) {
            continue;
        }
        groups.push_front(std::move(group));
        for (const Group& unsent : groups) {
            for (Item* const item : unsent) {
                if (!item->result) {
                    item->result = *failed;
                }
            }
        }
        groups.clear();
    }
}

/// False when the server takes this many at once by no means.
Task<bool> CouchDelivery::send(Group group)
{
    std::vector<std::string> documents;
    for (const Item* const item : group) {
        if (!item->json.empty()) {
            documents.push_back(item->json);
        }
    }
    if (!documents.empty()) {
        documents.push_back(deviceJson());
        Task<std::vector<CouchSaved>> saving = server_.save(std::move(documents));
        std::optional<CloudError> tooLarge;
        try {
            const std::vector<CouchSaved> saved = co_await saving;
            take(group, saved);
        } catch (const CouchTooLarge& failure) {
            tooLarge = failure;
        }
        if (tooLarge && group.size() > 1) {
            co_return false;
        }
        if (tooLarge) {
            group.front()->result = *tooLarge;
            co_return true;
        }
        Task<void> counting = countOnce();
        co_await counting;
        Task<void> confirming = confirm(group);
        co_await confirming;
    }
    Task<void> settling = settle(group);
    co_await settling;
    co_return true;
}

void CouchDelivery::take(const Group& group, const std::vector<CouchSaved>& saved)
{
    const auto answers = byID(saved);
    for (Item* const item : group) {
        const auto answer = answers.find(recordDocument(item->record.id));
        if (item->json.empty() || answer == answers.end()) {
            continue;
        }
        item->revision = answer->second->revision;
        item->isRefused = answer->second->error == conflictWord;
        if (!item->isRefused && !answer->second->error.empty()) {
            item->result = saveFailure(answer->second->error);
        }
    }
    const auto device = answers.find(deviceDocument(device_));
    isCounted_ = device != answers.end() && !device->second->revision.empty();
    if (isCounted_) {
        zone_.deviceRevision = device->second->revision;
    }
}

/// Counts the last request where it did not count itself: when the device's document was changed by
/// a copy of this device, or by a request whose answer got lost.
Task<void> CouchDelivery::countOnce()
{
    for (int attempt = 0; !isCounted_ && attempt < countAttempts; ++attempt) {
        std::vector<std::string> ids{deviceDocument(device_)};
        Task<std::vector<CouchRow>> asking = server_.documents(std::move(ids), false);
        const std::vector<CouchRow> rows = co_await asking;
        const bool isThere = !rows.empty() && !rows.front().isMissing && !rows.front().isDeleted;
        zone_.deviceRevision = isThere ? rows.front().revision : std::string();
        std::vector<std::string> documents{deviceJson()};
        Task<std::vector<CouchSaved>> saving = server_.save(std::move(documents));
        const std::vector<CouchSaved> saved = co_await saving;
        isCounted_ = !saved.empty() && !saved.front().revision.empty();
        if (isCounted_) {
            zone_.deviceRevision = saved.front().revision;
        }
    }
}

/// Looks whether what was saved is what the server shows.
Task<void> CouchDelivery::confirm(Group group)
{
    look_.reset();
    std::vector<std::string> ids;
    for (const Item* const item : group) {
        if (!item->revision.empty()) {
            ids.push_back(recordDocument(item->record.id));
        }
    }
    if (ids.empty()) {
        co_return;
    }
    std::ranges::move(zone_.look.documents(), std::back_inserter(ids));
    Task<std::vector<CouchRow>> asking = server_.documents(std::move(ids), false);
    const std::vector<CouchRow> rows = co_await asking;
    look_ = zone_.look.again(rows);
    const auto shown = byID(rows);
    for (Item* const item : group) {
        const auto row = shown.find(recordDocument(item->record.id));
        if (item->revision.empty() || row == shown.end()) {
            continue;
        }
        if (row->second->revision == item->revision) {
            keep(*item, item->revision);
        } else {
            item->isRefused = true; // or was followed by another change
        }
    }
}

/// Finds out what the server has in place of what was sent.
Task<void> CouchDelivery::settle(Group group)
{
    std::vector<std::string> ids;
    for (const Item* const item : group) {
        if (item->isRefused && !item->result) {
            ids.push_back(recordDocument(item->record.id));
        }
    }
    const CouchBodiesLimits limits;
    Task<CouchBodies> reading = readBodies(server_, std::move(ids), limits);
    const CouchBodies bodies = co_await reading;
    const auto found = byID(bodies.rows);
    for (Item* const item : group) {
        if (!item->isRefused || item->result) {
            continue;
        }
        const auto row = found.find(recordDocument(item->record.id));
        if (row == found.end()) {
            continue; // The server says nothing about it.
        }
        if (!row->second->document || row->second->isDeleted) {
            item->result = goneError();
            continue;
        }
        const CouchDocument& shown = *row->second->document;
        const bool isSame = shown.type == item->record.type && shown.fields == item->record.fields;
        bool isKept = isSame && !item->json.empty();
        std::string revision = shown.revision;
        if (!isKept && !item->revision.empty()) {
            Task<bool> asking = isAncestor(item->revision, shown);
            isKept = co_await asking;
            revision = item->revision;
        }
        if (isKept) {
            keep(*item, revision);
            continue;
        }
        if (item->revision.empty() && !shown.overruled.empty()) {
            Task<std::string> looking = acceptedBefore(*item, shown);
            item->revision = co_await looking;
        }
        item->result = overruledBy(*item, shown);
    }
}

/// The overruled version that an earlier request has saved, whose answer got lost; empty when there
/// is none.
Task<std::string> CouchDelivery::acceptedBefore(const Item& item, CouchDocument shown)
{
    std::vector<std::pair<std::string, std::string>> revisions;
    for (const std::string& revision : shown.overruled) {
        revisions.emplace_back(shown.id, revision);
    }
    Task<std::vector<CouchDocument>> asking = server_.versions(std::move(revisions));
    const std::vector<CouchDocument> versions = co_await asking;
    const auto found = std::ranges::find_if(versions, [&](const CouchDocument& version) {
        return version.type == item.record.type && version.fields == item.record.fields;
    });
    co_return found != versions.end() ? found->revision : std::string();
}

Task<bool> CouchDelivery::isAncestor(std::string revision, CouchDocument shown)
{
    std::vector<std::pair<std::string, std::string>> revisions{{shown.id, shown.revision}};
    Task<std::vector<CouchDocument>> asking = server_.versions(std::move(revisions));
    const std::vector<CouchDocument> versions = co_await asking;
    co_return std::ranges::any_of(versions, [&](const CouchDocument& version) {
        return std::ranges::find(version.history, revision) != version.history.end();
    });
}

void CouchDelivery::keep(Item& item, const std::string& revision) const
{
    CloudRecord saved = item.record;
    saved.serverVersion = zone_.version(revision);
    item.result = std::move(saved);
}

/// What the server had accepted stays there behind what it shows.
CloudError CouchDelivery::overruledBy(const Item& item, const CouchDocument& shown) const
{
    const CloudError changed = changedTo(shown);
    if (item.revision.empty()) {
        return changed;
    }
    CloudRecord saved = item.record;
    saved.serverVersion = zone_.version(item.revision);
    return changed.overruling(std::move(saved));
}

CloudError CouchDelivery::changedTo(const CouchDocument& shown) const
{
    CloudRecord server = recordOf(shown);
    server.serverVersion = zone_.version(shown.revision);
    return CloudError::changed(
        "The record was changed on the record store by another device.", std::move(server));
}

std::string CouchDelivery::deviceJson() const
{
    CouchDocument document;
    document.id = deviceDocument(device_);
    document.revision = zone_.deviceRevision;
    document.type = "device";
    return couchJson(document);
}

} // namespace Kestry
