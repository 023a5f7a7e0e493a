#include "RecordStores.h"

#include <pwd.h>
#include <unistd.h>

#include <string>

#include "CouchCloudContainer.h"
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
    if (credentials.user.empty()) {
        return nullptr;
    }
    return std::make_unique<CouchCloudContainer>(
        CouchAddress::parse(credentials.address, credentials.user),
        CouchAccount{credentials.user, credentials.password}, CouchPlatform{scheduler});
}

} // namespace Kestry
