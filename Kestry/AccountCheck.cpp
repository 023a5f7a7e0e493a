#include "AccountCheck.h"

#include <string>

#include "SyncCloudRecord.h"

namespace Kestry {

using KestryCore::CloudContainer;
using KestryCore::CloudError;
using KestryCore::CloudErrorCode;
using KestryCore::Task;

Task<void> requireAccount(std::shared_ptr<CloudContainer> container, bool mayMakeZone)
{
    Task<bool> asking = container->isAccountAvailable();
    const bool isAvailable = co_await asking;
    if (!isAvailable) {
        throw CloudError("The record store does not know this account.");
    }
    Task<std::string> naming = container->userRecordName();
    (void)co_await naming;
    bool hasZone = true;
    Task<void> fetching = container->privateDatabase().fetchZone(KestryCore::workspaceZone());
    try {
        co_await fetching;
    } catch (const CloudError& failure) {
        if (failure.code() != CloudErrorCode::zoneNotFound) {
            throw;
        }
        hasZone = false;
    }
    if (!hasZone && mayMakeZone) {
        Task<void> creating = container->privateDatabase().createZone(KestryCore::workspaceZone());
        co_await creating;
    }
}

} // namespace Kestry
