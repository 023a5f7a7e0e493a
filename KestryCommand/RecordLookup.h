#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Ledger.h"
#include "LedgerError.h"

namespace Kestry {

/// A name that matches no record, or several.
class LookupError : public KestryCore::LedgerError {
public:
    using LedgerError::LedgerError;
};

/// A record with the name by which it can be found.
struct NamedRecord {
    KestryCore::Uuid id;
    std::string name;
    std::string detail; ///< Distinguishes it from others of the same name, for people.
};

/// The record that a name means: the one with exactly this name, else the one with this name in any
/// case, else the one whose name begins with it in any case. Returns nullopt when there is none.
/// Throws a `LookupError` that lists the candidates when there are several.
[[nodiscard]] std::optional<KestryCore::Uuid> recordNamed(
    std::string_view name, const std::vector<NamedRecord>& records);

// The record that was typed: a UUID is returned as it is, whether or not a record has it, and the
// ledger's operations refuse an unknown one; anything else is a name. Each throws a `LookupError`
// when no record matches the name, or several do.

[[nodiscard]] KestryCore::Uuid findClient(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// The client that was typed, if one was. Throws a `LookupError` for the UUID of no client too: for
/// commands that only read, where no operation of the ledger would refuse it.
[[nodiscard]] std::optional<KestryCore::Uuid> knownClient(
    const KestryCore::LedgerData& ledger, const std::optional<std::string>& words);

/// A name means a project of this client when there is one, else of any client.
[[nodiscard]] KestryCore::Uuid findProject(const KestryCore::LedgerData& ledger,
    std::string_view words, const std::optional<KestryCore::Uuid>& clientID = std::nullopt);

/// A saved session, by its name in lists.
[[nodiscard]] KestryCore::Uuid findEntry(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// A saved session or the one in progress.
[[nodiscard]] KestryCore::Uuid findSession(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// A session's name in lists: its title, or its project's name, or "Session".
[[nodiscard]] std::string sessionName(const KestryCore::LedgerData& ledger,
    const std::string& title, const KestryCore::Uuid& projectID);

} // namespace Kestry
