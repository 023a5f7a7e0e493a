#pragma once

#include <optional>
#include <string>

#include "AppState.h"
#include "MenuEntry.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// The client that a new session would be for: the one picked for it, else the one selected, else
/// that of the selected project, else the ledger's first. Returns nullopt without clients.
[[nodiscard]] std::optional<KestryCore::Client> clientForNewSession(
    const KestryCore::TimeStore& store, const AppState& state);
/// The project that a new session would be on: the selected one if it is a named project of the
/// client, else the client's "Unassigned". Returns nullopt for a client without projects.
[[nodiscard]] std::optional<KestryCore::Project> projectForNewSession(
    const KestryCore::TimeStore& store, const AppState& state,
    const std::optional<KestryCore::Client>& client);

/// The client that a new project would be of: the selected one if it has projects, else the first
/// that has. Returns nullopt while none has.
[[nodiscard]] std::optional<KestryCore::Uuid> clientForNewProject(
    const KestryCore::TimeStore& store, const AppState& state);

/// What the next session is for, as text: the client, its project if it has projects, the rate.
struct SessionTarget {
    std::string client;  ///< The name, or "Choose client".
    std::string project; ///< Empty for a client without projects.
    std::string rate;
    std::string accessibilityLabel;

    friend bool operator==(const SessionTarget&, const SessionTarget&) = default;
};

[[nodiscard]] SessionTarget sessionTarget(
    const KestryCore::TimeStore& store, const AppState& state, const KestryCore::MoneyText& words);

/// The menu to choose it from: the clients, then the projects of the chosen client, then the
/// entries that open the forms for a new client and a new project: of the chosen client, or of
/// `clientForNewProject` where that one has no projects.
[[nodiscard]] Menu targetMenu(
    const KestryCore::TimeStore& store, AppState& state, const KestryCore::MoneyText& words);

} // namespace Kestry
