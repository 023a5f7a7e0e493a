#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Uuid.h"

namespace Kestry {

/// The pages of the workspace window.
enum class Destination { overview, sessions, client, settings };

/// All pages in their order.
inline constexpr std::array allDestinations{
    Destination::overview, Destination::sessions, Destination::client, Destination::settings};

/// The name of the page, "Overview" for the first. Views and tests use it as an identifier.
[[nodiscard]] std::string_view rawValue(Destination destination);

/// Which form is open over the workspace window.
struct Editor {
    struct ClientForm {
        std::optional<KestryCore::Uuid> clientID; ///< nullopt for a new client.
        friend bool operator==(const ClientForm&, const ClientForm&) = default;
    };
    struct ProjectForm {
        std::optional<KestryCore::Uuid> projectID; ///< nullopt for a new project.
        std::optional<KestryCore::Uuid> clientID;  ///< Preset for a new project.
        friend bool operator==(const ProjectForm&, const ProjectForm&) = default;
    };
    struct EntryForm {
        std::optional<KestryCore::Uuid> entryID; ///< nullopt for time added by hand.
        friend bool operator==(const EntryForm&, const EntryForm&) = default;
    };
    struct ActiveForm {
        KestryCore::Uuid sessionID;
        friend bool operator==(const ActiveForm&, const ActiveForm&) = default;
    };

    std::variant<ClientForm, ProjectForm, EntryForm, ActiveForm> form;

    /// Identifies the form and its subject, as in "client-new" or "entry-" and a UUID.
    [[nodiscard]] std::string id() const;

    friend bool operator==(const Editor&, const Editor&) = default;
};

} // namespace Kestry
