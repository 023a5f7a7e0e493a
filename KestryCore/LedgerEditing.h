#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ClientColor.h"
#include "Ledger.h"
#include "LedgerError.h"

namespace KestryCore {

/// Name of the hidden project of a client without projects, made on first need.
inline constexpr std::string_view clientDefaultProjectName = "Client sessions";
/// Name of the catch-all project of a client with projects, made on first need.
inline constexpr std::string_view unassignedProjectName = "Unassigned";

/// How an edit changes the logo of a client: `replace` with bytes, or with nullopt to remove it.
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
    std::optional<bool> projectsEnabled{}; ///< Nullopt: unchanged.
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
    bool isBillable = true;
};

/// The values that an edit gives to a saved session. Nullopt: unchanged.
struct EntryChange {
    std::string title{}; ///< Stored as it is.
    Date start{};
    double duration = 0.0; ///< Seconds. Equal to the session's: the intervals are only moved.
    std::optional<bool> isBillable{};
    std::optional<Cents> rateCents{}; ///< Also makes the rate known.
    std::optional<Uuid> projectID{};
};

/// The rate that a session keeps.
struct Rate {
    Cents hourlyRateCents = 0;
    bool isKnown = true;
};

// Rules on a ledger copy. Each fails with a `LedgerError`, after which the copy is of no use.

/// Returns the trimmed name. Throws "Enter a name." for the caller alone when nothing remains.
[[nodiscard]] std::string validatedName(std::string_view name);

/// The client's first project, other than a hidden one, that is called "Unassigned" in any case and
/// with any blanks around it; null when there is none.
[[nodiscard]] const Project* unassignedProject(const LedgerData& ledger, const Uuid& clientID);

/// The project of a new session, which is made and appended when it is missing. `newUuid` is called
/// only for that.
[[nodiscard]] Project resolveProject(LedgerData& ledger, const Uuid& clientID,
    const std::optional<Uuid>& projectID, const UuidSource& newUuid);

/// The rate for new sessions of a project: the client's while it has no projects, else the
/// project's own.
[[nodiscard]] Rate effectiveRate(const LedgerData& ledger, const Project& project);

/// Returns the project with this identifier. Throws "Project no longer exists." for the audience
/// when there is none.
[[nodiscard]] const Project& requireProject(
    const LedgerData& ledger, const Uuid& id, Audience audience = Audience::user);

/// Allows a session to move between the named projects of one client and nowhere else.
void checkProjectMove(const LedgerData& ledger, const Uuid& newProject, const Uuid& oldProject);

/// Refuses, for the caller alone, a length in seconds that is not finite, negative or more than 744
/// hours.
void requireAcceptableDuration(double seconds);

void updateClient(LedgerData& ledger, const Uuid& id, const ClientChange& change);
void updateProject(LedgerData& ledger, const Uuid& id, const ProjectValues& values);

/// Appends a session of one interval; returns its identifier.
Uuid addEntry(LedgerData& ledger, const NewEntry& entry, const UuidSource& newUuid);

/// Changes a saved session. A different length replaces the intervals by one; the same length
/// with another start moves them all. Refuses a session that ends after `now`.
void updateEntry(LedgerData& ledger, const Uuid& id, const EntryChange& change, Date now);

} // namespace KestryCore
