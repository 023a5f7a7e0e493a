#pragma once

#include <optional>

#include "World.h"

namespace KestryCore {

/// What befalls devices from outside the program.
class Mishaps {
public:
    explicit Mishaps(World& world) : world_(world) { }

    /// Perhaps something happens to a device, or to the store.
    void perhaps(Member& member);

private:
    void perhapsToStore();
    void perhapsToAccount(Member& member);
    void hideZone();
    void perhapsReplaceStore();
    void troubleStore();
    void removeRecord();
    void signOut(Member& member);
    void changeAccount(Member& member, double secondsUntilBack);
    void goOffline(Member& member);
    void setClock(Member& member);
    void makeCopy(Member& member);
    void returnToCopy(Member& member);
    void damageLedger(Member& member);
    void exchangeDirectory(Member& member);

    World& world_;
    std::optional<CloudStore::Backup> storeBackup_;
};

} // namespace KestryCore
