#include "SignOut.h"

#include <utility>

namespace Kestry {

// In this order: what is under way ends before its account goes, be it an exchange or that it is
// turned on.
void signOut(
    KestryCore::CloudSyncController& controller, CloudAccount& account, CloudAccount::Done done)
{
    controller.leaveAccount();
    account.signOut(std::move(done));
}

} // namespace Kestry
