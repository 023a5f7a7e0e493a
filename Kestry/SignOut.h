#pragma once

#include "CloudAccount.h"
#include "CloudSyncController.h"

namespace Kestry {

/// Turns replication off, and then forgets the account and its password. The ledger keeps what it
/// knows of the record store. Tells whether the desktop has forgotten the password.
void signOut(KestryCore::CloudSyncController& controller, CloudAccount& account,
    CloudAccount::Done done = {});

} // namespace Kestry
