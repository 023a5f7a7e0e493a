#pragma once

#include <string>

#include "Elsewhere.h"
#include "SimulatedUser.h"
#include "World.h"

namespace KestryCore {

/// The end of a simulation: faults are off, everybody is online and decides on every conflict.
/// All devices must then come to rest with the ledger that the store holds, but for records of
/// which somebody chose the store's version in a conflict, which does not write it. When those
/// are saved anew elsewhere, nothing may differ any more.
class Settling {
public:
    Settling(World& world, SimulatedUser& user) : world_(world), user_(user), elsewhere_(world) { }

    void run();

private:
    void prepare();
    void settle(bool isFinal);
    bool exchange();
    void checkTold() const;
    void makeReady(Member& member);
    void decide(Member& member, bool isFinal);
    void endSessions();
    void tidy();
    bool saveUnwrittenAnew();
    void checkEqual(bool allowsUnwritten) const;
    /// No version that the store has overruled is forgotten by its writer.
    void checkOverruled() const;

    World& world_;
    SimulatedUser& user_;
    Elsewhere elsewhere_;
};

} // namespace KestryCore
