#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Ledger.h"
#include "LedgerError.h"

namespace Kestry {

/// Words for a record that mean none, or several.
class LookupError : public KestryCore::LedgerError {
public:
    using LedgerError::LedgerError;
};

/// Something that may be meant by a name.
struct NamedRecord {
    KestryCore::Uuid id;
    std::string name;
    std::string detail; ///< What tells it from others of the same name, for people.
};

/// The one record that is meant: the one with exactly this name, else the one with this name in
/// any case, else the one whose name begins with it in any case. None when there is no such
/// record. Fails with a `LookupError` that lists the candidates when several are.
[[nodiscard]] std::optional<KestryCore::Uuid> recordNamed(
    std::string_view name, const std::vector<NamedRecord>& records);

// What the words for a record mean: a UUID means the record that has it, and whether there is one
// is for the ledger to judge; anything else is a name. Each fails with a `LookupError` when no
// record has that name or several have.

[[nodiscard]] KestryCore::Uuid findClient(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// The client that is meant, if any is; fails as well when a UUID is no client's: for commands that
/// only look, and have nobody else to judge it.
[[nodiscard]] std::optional<KestryCore::Uuid> knownClient(
    const KestryCore::LedgerData& ledger, const std::optional<std::string>& words);

/// A project by name is one of this client's when there is one, else any client's.
[[nodiscard]] KestryCore::Uuid findProject(const KestryCore::LedgerData& ledger,
    std::string_view words, const std::optional<KestryCore::Uuid>& clientID = std::nullopt);

/// A saved session, by what stands for it in lists.
[[nodiscard]] KestryCore::Uuid findEntry(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// A saved session or the one in progress.
[[nodiscard]] KestryCore::Uuid findSession(
    const KestryCore::LedgerData& ledger, std::string_view words);

/// What stands for a session in lists: its title, or its project's name, or "Session".
[[nodiscard]] std::string sessionName(const KestryCore::LedgerData& ledger,
    const std::string& title, const KestryCore::Uuid& projectID);

} // namespace Kestry
