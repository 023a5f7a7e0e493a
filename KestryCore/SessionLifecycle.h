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

/// An interval to add to a session.
struct TrackingGap {
    Uuid sessionID;
    Date start;
    Date end;
};

// What happens to the one session in progress, as rules on a ledger copy. Each throws LedgerError,
// after which the copy is of no use. Dates are compared at full precision, and an equal date is
// never "earlier".

/// Starts a session that keeps the present rate of its project; returns its identifier.
Uuid startSession(LedgerData& ledger, const SessionStart& start, const UuidSource& newUuid);

/// Closes the open interval at `at`.
void pauseSession(LedgerData& ledger, Date at);

/// Opens a new interval at `at`.
void resumeSession(LedgerData& ledger, Date at);

/// Saves the session; one without any interval simply ends. Returns its identifier.
Uuid stopSession(LedgerData& ledger, Date at);

/// Moves the checkpoint of the session in progress to `now`. There must be a session.
void checkpointSession(LedgerData& ledger, Date now);

/// Changes title and project of the session in progress; its rate stays.
void updateSession(LedgerData& ledger, const Uuid& id, const std::string& title,
    const std::optional<Uuid>& projectID);

/// Refuses, for the caller alone, an interval that is not finite, is empty, begins before 1970 or
/// ends after `now`.
void requirePastInterval(const TrackingGap& gap, Date now);

/// Adds a missing interval to the active or a saved session. Adding it again changes nothing.
void restoreGap(LedgerData& ledger, const TrackingGap& gap);

/// Pauses a session that was running when its process ended: the open interval ends at the last
/// checkpoint, which stays unchanged. Returns false, with nothing changed, when none was running.
bool recoverSession(LedgerData& ledger);

} // namespace KestryCore
