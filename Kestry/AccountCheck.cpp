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

/// Stores speak to those who are signed in: they promise what becomes of changes that wait, and say
/// where to sign in. Whoever signs in is there already, and has to try again.
std::string signInText(std::string words)
{
    struct Wording {
        std::string_view ofStore;
        std::string_view here;
    };
    constexpr Wording wordings[] = {{" Your local changes are saved and will retry.",
                                        " Check the address and the network, or sign in again "
                                        "later."},
        {"; your local changes are saved and will retry.", ", then sign in again."},
        {", then sync again.", ", then sign in again."},
        {" Sign in again under Connections in Settings.", " Check both, then sign in again."},
        {" Choose your own under Connections in Settings,", " Enter the address of your own,"},
        {" under Connections in Settings", ""}};
    for (const auto& [ofStore, here] : wordings) {
        const std::size_t at = words.find(ofStore);
        if (at != std::string::npos) {
            words.replace(at, ofStore.size(), here);
        }
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
