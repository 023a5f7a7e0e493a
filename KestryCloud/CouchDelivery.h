#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "CloudDatabase.h"
#include "CouchServer.h"
#include "CouchZone.h"
#include "Task.h"

namespace Kestry {

/// Saves records in requests of bounded size, and finds out what became of each.
///
/// That the server says "saved" is not enough: a cluster can say so to two writers of one version.
/// So each record counts as saved when a read shows it as the version that the server gives to
/// everybody, or as an ancestor of that. A record that the server refuses because it is there
/// already, word for word, was saved by an earlier request whose answer got lost.
class CouchDelivery {
public:
    /// `device` is the document that counts the deliveries. The server must outlive the delivery.
    CouchDelivery(CouchServer& server, CouchZoneState zone, std::string device);

    /// The delivery must outlive the task. A request that fails makes the task fail when it is the
    /// first; afterwards the records of that one and of all that would follow fail.
    [[nodiscard]] KestryCore::Task<std::vector<KestryCore::CloudRecordResult>> carryOut(
        std::vector<KestryCore::CloudRecord> records);

    /// The zone after the last request, by what is looked at in any case; nullopt when its identity
    /// has to be found out anew.
    [[nodiscard]] const std::optional<CouchZoneLook>& look() const { return look_; }
    /// Of the device's document, as it was saved last.
    [[nodiscard]] const std::string& deviceRevision() const { return zone_.deviceRevision; }

private:
    struct Item {
        KestryCore::CloudRecord record;
        std::string json;     ///< Empty when it cannot be sent.
        std::string revision; ///< As the server says that it was saved.
        std::optional<std::variant<KestryCore::CloudRecord, KestryCore::CloudError>> result;
        bool isRefused = false; ///< Because the server has another version.
    };
    using Group = std::vector<Item*>;

    void prepare(Item& item) const;
    [[nodiscard]] std::deque<Group> groups();
    [[nodiscard]] KestryCore::Task<void> deliver(std::deque<Group>& groups);
    [[nodiscard]] KestryCore::Task<bool> send(Group group);
    void take(const Group& group, const std::vector<CouchSaved>& saved);
    [[nodiscard]] KestryCore::Task<void> countOnce();
    [[nodiscard]] KestryCore::Task<void> confirm(Group group);
    [[nodiscard]] KestryCore::Task<void> settle(Group group);
    [[nodiscard]] KestryCore::Task<std::string> acceptedBefore(
        const Item& item, CouchDocument shown);
    [[nodiscard]] KestryCore::Task<bool> isAncestor(std::string revision, CouchDocument shown);
    void keep(Item& item, const std::string& revision) const;
    [[nodiscard]] KestryCore::CloudError overruledBy(
        const Item& item, const CouchDocument& shown) const;
    [[nodiscard]] KestryCore::CloudError changedTo(const CouchDocument& shown) const;
    [[nodiscard]] std::string deviceJson() const;

    CouchServer& server_;
    CouchZoneState zone_;
    std::string device_;
    std::optional<CouchZoneLook> look_;
    std::vector<Item> items_;
    bool isCounted_ = false; // in the last request
};

} // namespace Kestry
