#include "CloudSyncSwitch.h"

#include <utility>

namespace KestryCore {

CloudSyncSwitch::CloudSyncSwitch(TimeStore& store, CloudSyncFields& fields,
    std::optional<CloudSyncEnvironment> environment, UuidSource newUuid)
    : store_(store), fields_(fields), environment_(environment), newUuid_(std::move(newUuid)),
      generation_(newUuid_())
{
}

bool CloudSyncSwitch::isEnabled() const
{
    const auto& state = store_.data()->replication;
    return state && state->enabled && !accountSuspended_ && !isOffUnsaved_
        && state->environment == environment_;
}

void CloudSyncSwitch::turnOff()
{
    endRuns();
    const auto& state = store_.data()->replication;
    if (state && state->enabled) {
        try {
            store_.setSyncEnabled(false);
        } catch (const std::exception&) {
            isOffUnsaved_ = true; // The store has told the user.
        }
    }
    fields_.offersUpload.assign(false);
    fields_.status.assign("iCloud sync is off");
}

void CloudSyncSwitch::suspendAccount()
{
    accountSuspended_ = true;
    turnOff();
    fields_.status.assign("iCloud account changed. Enable sync to verify your original account.");
}

void CloudSyncSwitch::turnedOn()
{
    accountSuspended_ = false;
    isOffUnsaved_ = false;
}

} // namespace KestryCore
