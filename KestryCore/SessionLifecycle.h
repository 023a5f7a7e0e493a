#pragma once

#include <optional>
#include <string>

#include "Ledger.h"

namespace KestryCore {

/// The session to start.
struct SessionStart {
    Uuid clientID;
    std::optional<Uuid> projectID;
    std::string title; ///< Stored trimmed; may be empty.
    Date at;
};

/// An interval to put back into a session.
struct TrackingGap {
    Uuid sessionID;
    Date start;
    Date end;
};

// The course of the one session in progress, as rules on a ledger copy. Each fails with a
// `LedgerError`, after which the copy is of no use. Dates are taken at full precision, and an
// equal date is never "earlier".

/// Starts a session with the rate of its project frozen in it; returns its identifier.
Uuid startSession(LedgerData& ledger, const SessionStart& start, const UuidSource& newUuid);

/// Closes the open interval at `at`.
void pauseSession(LedgerData& ledger, Date at);

/// Opens a new interval at `at`.
void resumeSession(LedgerData& ledger, Date at);

/// Turns the session into a saved one; a session without any interval simply ends. Returns the
/// session's identifier.
Uuid stopSession(LedgerData& ledger, Date at);

/// Moves the checkpoint of the running session, which must be there, to `now`.
void checkpointSession(LedgerData& ledger, Date now);

/// Changes title and project of the session in progress; its rate stays.
void updateSession(LedgerData& ledger, const Uuid& id, const std::string& title,
    const std::optional<Uuid>& projectID);

/// Refuses an interval that is not finite, empty, before 1970 or not past at `now`.
void requirePastInterval(const TrackingGap& gap, Date now);

/// Puts a missing interval into the active or a saved session. Doing it again changes nothing.
void restoreGap(LedgerData& ledger, const TrackingGap& gap);

/// Pauses a session found running after its process ended: the open interval is closed at the
/// last checkpoint, which stays where it is. False, and no change, when none was running.
bool recoverSession(LedgerData& ledger);

} // namespace KestryCore
