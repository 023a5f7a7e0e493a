#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ClientColor.h"
#include "Ledger.h"

namespace KestryCore {

/// Name of the hidden project of a client without projects, made on first need.
inline constexpr std::string_view clientDefaultProjectName = "Client sessions";
/// Name of the catch-all project of a client with projects, made on first need.
inline constexpr std::string_view unassignedProjectName = "Unassigned";

/// What an edit says of a client's logo: `replace` with bytes, or with none to clear it.
struct ClientLogoChange {
    static ClientLogoChange unchanged() { return {}; }
    static ClientLogoChange replace(std::optional<std::string> logo)
    {
        return {true, std::move(logo)};
    }

    bool replaces = false;
    std::optional<std::string> logoData;
};

/// The values of a new client.
struct NewClient {
    std::string name{};
    Cents rateCents = 0;
    std::string colorHex{ClientColor::initialHex};
    bool rateIsKnown = true;
    std::optional<std::string> logoData{};
    bool projectsEnabled = true;
};

/// The values that an edit gives a client.
struct ClientChange {
    std::string name{};
    Cents rateCents = 0;
    std::string colorHex{};
    bool rateIsKnown = true;
    ClientLogoChange logo{};
    std::optional<bool> projectsEnabled{}; ///< None leaves it as it is.
};

/// The values of a new project, or those that an edit gives one.
struct ProjectValues {
    std::string name{};
    Cents rateCents = 0;
    bool rateIsKnown = true;
};

/// Time added by hand.
struct NewEntry {
    Uuid clientID{};
    std::optional<Uuid> projectID{};
    std::string title{}; ///< Stored as it is.
    Date start{};
    double duration = 0.0; ///< Seconds.
};

/// The values that an edit gives a saved session; what is none stays.
struct EntryChange {
    std::string title{}; ///< Stored as it is.
    Date start{};
    double duration = 0.0; ///< Seconds. Equal to the session's: the intervals are only moved.
    std::optional<bool> isBillable{};
    std::optional<Cents> rateCents{}; ///< Also makes the rate known.
    std::optional<Uuid> projectID{};
};

/// A rate as a session freezes it.
struct Rate {
    Cents hourlyRateCents = 0;
    bool isKnown = true;
};

// Rules on a ledger copy. Each fails with a `LedgerError`, after which the copy is of no use.

/// The trimmed name; fails with "Enter a name." when nothing is left of it.
[[nodiscard]] std::string validatedName(std::string_view name);

/// The client's first project, other than a hidden one, that is called "Unassigned" in any case
/// and with any blanks around it; null when there is none.
[[nodiscard]] const Project* unassignedProject(const LedgerData& ledger, const Uuid& clientID);

/// The project of a new session, which may be made and appended here. `newUuid` is called only
/// for that.
[[nodiscard]] Project resolveProject(LedgerData& ledger, const Uuid& clientID,
    const std::optional<Uuid>& projectID, const UuidSource& newUuid);

/// The rate for new sessions of a project: the client's while it has no projects, else the
/// project's own.
[[nodiscard]] Rate effectiveRate(const LedgerData& ledger, const Project& project);

/// The project with this identifier, or "Project no longer exists."
[[nodiscard]] const Project& requireProject(const LedgerData& ledger, const Uuid& id);

/// Allows a session to move between the named projects of one client and nowhere else.
void checkProjectMove(const LedgerData& ledger, const Uuid& newProject, const Uuid& oldProject);

/// Refuses a length that is not finite, negative or beyond 744 hours.
void requireAcceptableDuration(double seconds);

void updateClient(LedgerData& ledger, const Uuid& id, const ClientChange& change);
void updateProject(LedgerData& ledger, const Uuid& id, const ProjectValues& values);

/// Appends a session of one interval; returns its identifier.
Uuid addEntry(LedgerData& ledger, const NewEntry& entry, const UuidSource& newUuid);

/// Changes a saved session. A different length replaces the intervals by one; the same length
/// with another start moves them all. Refuses a session that ends after `now`.
void updateEntry(LedgerData& ledger, const Uuid& id, const EntryChange& change, Date now);

} // namespace KestryCore
