#include "SignOut.h"

namespace Kestry {

// In this order: an exchange under way ends before its account goes.
void signOut(KestryCore::CloudSyncController& controller, CloudAccount& account)
{
    if (controller.isEnabled()) {
        controller.disable();
    }
    account.signOut();
}

} // namespace Kestry
