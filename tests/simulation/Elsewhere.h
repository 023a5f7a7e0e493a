#pragma once

#include <string>

#include "World.h"

namespace KestryCore {

/// A newer version of the program on another device, of which only its deliveries are seen: it
/// can delete clients and projects, and is always in step with the store.
class Elsewhere {
public:
    explicit Elsewhere(World& world) : world_(world) { }

    /// Deletes a client with its projects and sessions, or a project with its sessions.
    void deleteSomething();
    /// Deletes whatever refers to something that is not there any more.
    void deleteOrphans();
    /// Saves a record anew as the store has it, or as given where the store has none.
    void saveAnew(const SyncRecord& record);
    /// Deletes a session in progress of which the store knows nothing: a device shows it that
    /// heard of it before the store was lost, and its own device has ended it.
    void endLost(const std::string& recordID);

private:
    void deleteRecord(const std::string& recordID);
    void deliver(SyncRecord record);
    [[nodiscard]] bool isLive(const std::string& recordID) const;
    [[nodiscard]] std::string anyLive(const std::string& kind);

    World& world_;
};

} // namespace KestryCore
