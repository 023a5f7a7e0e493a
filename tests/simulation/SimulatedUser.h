#pragma once

#include <optional>
#include <string>

#include "World.h"

namespace KestryCore {

/// What people do at a device: they work, edit, remove, decide on conflicts, turn replication on
/// and off, and restore backups.
class SimulatedUser {
public:
    explicit SimulatedUser(World& world) : world_(world) { }

    /// Does one of the things that can be done at this device now.
    void act(Member& member);

    /// Two people change one client at two devices at once, and both devices deliver that.
    void editTogether(Member& one, Member& other);

    /// Ends the session in progress, if there is one.
    void endSession(Member& member);
    void resolve(Member& member, const std::string& recordID, ConflictChoice choice);
    /// Gets a program that refuses to save going again.
    void recover(Member& member);
    /// Connects the ledger, or turns replication on again.
    void connect(Member& member);
    void remove(Member& member, const Uuid& sessionID);
    /// The store was restored or made anew: everything goes up again.
    void uploadAgain(Member& member);

private:
    void track(Member& member);
    void start(Member& member);
    void editRecords(Member& member);
    void add(Member& member);
    void editClient(Member& member);
    void editProject(Member& member);
    void editSession(Member& member);
    void restoreGap(Member& member);
    void resolveSome(Member& member);
    void restore(Member& member);
    void change(
        Member& member, const std::string& what, const std::function<void(TimeStore&)>& action);

    [[nodiscard]] std::string words();
    template <class Record>
    [[nodiscard]] const Record* any(const RecordList<Record>& records);

    World& world_;
    unsigned lastWord_ = 0;
};

} // namespace KestryCore
