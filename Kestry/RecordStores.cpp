#include "RecordStores.h"

#include <pwd.h>
#include <unistd.h>

#include <string>

#include "SqliteCloudContainer.h"

namespace Kestry {
namespace {

std::string userOfThisMachine()
{
    const passwd* user = getpwuid(getuid());
    return user != nullptr ? user->pw_name : std::to_string(getuid());
}

} // namespace

std::unique_ptr<KestryCore::CloudContainer> openRecordStore(
    const CloudCredentials& credentials, StoreUse use, KestryCore::Scheduler& scheduler)
{
    if (const auto path = KestryCore::sqliteStorePath(credentials.address)) {
        if (!path->starts_with('/')) {
            throw KestryCore::CloudError("Enter the whole path of the file, as in "
                                         "sqlite:/home/mia/kestry.sqlite.");
        }
        const auto whenMissing = use == StoreUse::signIn ? KestryCore::MissingStore::make
                                                         : KestryCore::MissingStore::isUnavailable;
        return std::make_unique<KestryCore::SqliteCloudContainer>(scheduler,
            KestryCore::SqliteStorePlace{
                .path = *path, .user = userOfThisMachine(), .whenMissing = whenMissing});
    }
    if (use == StoreUse::signIn && !credentials.user.empty()) {
        throw KestryCore::CloudError("Enter an address that begins with sqlite:/.");
    }
    return nullptr;
}

} // namespace Kestry
