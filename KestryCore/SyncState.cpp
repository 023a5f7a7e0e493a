#include "SyncState.h"

namespace KestryCore {

std::string_view environmentName(CloudSyncEnvironment environment)
{
    return environment == CloudSyncEnvironment::production ? "Production" : "Development";
}

} // namespace KestryCore
