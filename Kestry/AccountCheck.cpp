#include "AccountCheck.h"

#include <string>
#include <string_view>
#include <utility>

#include "SyncCloudRecord.h"

namespace Kestry {

using KestryCore::CloudContainer;
using KestryCore::CloudError;
using KestryCore::CloudErrorCode;
using KestryCore::Task;

namespace {

/// What stores promise of changes that wait is for those who are signed in. Others have to try
/// again themselves.
std::string signInText(std::string words)
{
    constexpr std::string_view alone = " Your local changes are saved and will retry.";
    constexpr std::string_view afterStep = "; your local changes are saved and will retry.";
    if (words.ends_with(alone)) {
        words.resize(words.size() - alone.size());
        return words + " Check the address and the network, or sign in again later.";
    }
    if (words.ends_with(afterStep)) {
        words.resize(words.size() - afterStep.size());
        return words + ", then sign in again.";
    }
    return words;
}

Task<void> askForAccount(std::shared_ptr<CloudContainer> container, bool mayMakeZone)
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

} // namespace

Task<void> requireAccount(std::shared_ptr<CloudContainer> container, bool mayMakeZone)
{
    Task<void> asking = askForAccount(std::move(container), mayMakeZone);
    try {
        co_await asking;
    } catch (const CloudError& failure) {
        throw CloudError(signInText(failure.what()), failure.code());
    }
}

} // namespace Kestry
