#pragma once

#include "ApplicationWorld.h"
#include "CloudAccount.h"
#include "FakeSecrets.h"
#include "ScriptedCloud.h"

namespace Kestry {

/// The world around an account, whose store is a cloud that answers when told.
class AccountWorld {
public:
    /// Answers until nothing is asked any more.
    void answerAll()
    {
        world.scheduler.turn();
        while (!cloud.waiting().empty()) {
            cloud.answer();
            world.scheduler.turn();
        }
    }

    ApplicationWorld world;
    FakeSecrets secrets;
    KestryCore::ScriptedCloud cloud{world.scheduler};
    CloudCredentials opened;
    CloudAccount account{{world.defaults, secrets, world.scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            opened = credentials;
            return cloud.open(credentials.address);
        }}};
};

} // namespace Kestry
