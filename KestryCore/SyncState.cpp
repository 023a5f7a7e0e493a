#include "SyncState.h"

namespace KestryCore {

std::string_view environmentName(CloudSyncEnvironment environment)
{
    return environment == CloudSyncEnvironment::production ? "Production" : "Development";
}

// Here and not beside the ledger, because the state is compared too.
bool operator==(const LedgerData& left, const LedgerData& right)
{
    return left.clients == right.clients && left.projects == right.projects
        && left.entries == right.entries && left.active == right.active
        && left.replication == right.replication;
}

} // namespace KestryCore
