#include "AccountContainer.h"

namespace Kestry {

using KestryCore::CloudChanges;
using KestryCore::CloudCursor;
using KestryCore::CloudError;
using KestryCore::CloudRecord;
using KestryCore::CloudRecordResult;
using KestryCore::CloudZoneID;
using KestryCore::Task;

Task<bool> AccountContainer::isAccountAvailable()
{
    current_.reset();
    Task<Container> opening = account_.container(identifier_);
    Container container = co_await opening;
    current_ = container;
    if (!container) {
        co_return false;
    }
    Task<bool> asking = container->isAccountAvailable();
    const bool isAvailable = co_await asking;
    co_return isAvailable;
}

Task<std::string> AccountContainer::userRecordName()
{
    const Container container = current_;
    if (!container) {
        throw CloudError("Nobody is signed in to a record store.");
    }
    Task<std::string> naming = container->userRecordName();
    std::string name = co_await naming;
    co_return name;
}

AccountContainer::Container AccountContainer::Database::used() const
{
    if (!current_) {
        throw CloudError("Nobody is signed in to a record store.");
    }
    return current_;
}

Task<void> AccountContainer::Database::fetchZone(CloudZoneID zone)
{
    const Container container = used();
    Task<void> fetching = container->privateDatabase().fetchZone(std::move(zone));
    co_await fetching;
}

Task<void> AccountContainer::Database::createZone(CloudZoneID zone)
{
    const Container container = used();
    Task<void> creating = container->privateDatabase().createZone(std::move(zone));
    co_await creating;
}

Task<CloudChanges> AccountContainer::Database::changes(
    CloudZoneID zone, std::optional<CloudCursor> since)
{
    const Container container = used();
    Task<CloudChanges> asking =
        container->privateDatabase().changes(std::move(zone), std::move(since));
    CloudChanges changes = co_await asking;
    co_return changes;
}

Task<std::vector<CloudRecordResult>> AccountContainer::Database::save(
    std::vector<CloudRecord> records)
{
    const Container container = used();
    Task<std::vector<CloudRecordResult>> saving =
        container->privateDatabase().save(std::move(records));
    std::vector<CloudRecordResult> results = co_await saving;
    co_return results;
}

Task<void> AccountContainer::Database::discard(std::vector<CloudRecord> overruled)
{
    const Container container = used();
    Task<void> discarding = container->privateDatabase().discard(std::move(overruled));
    co_await discarding;
}

CloudCursor AccountContainer::Database::witnessed(CloudCursor saved) const
{
    return current_ ? current_->privateDatabase().witnessed(std::move(saved)) : saved;
}

} // namespace Kestry
