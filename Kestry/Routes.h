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

/// The page's value as text, "Overview" for the first.
[[nodiscard]] std::string_view rawValue(Destination destination);

/// The form that lies over the workspace window.
struct Editor {
    struct ClientForm { ///< None: a new client.
        std::optional<KestryCore::Uuid> clientID;
        friend bool operator==(const ClientForm&, const ClientForm&) = default;
    };
    struct ProjectForm { ///< None: a new project, for the client if there is one.
        std::optional<KestryCore::Uuid> projectID;
        std::optional<KestryCore::Uuid> clientID;
        friend bool operator==(const ProjectForm&, const ProjectForm&) = default;
    };
    struct EntryForm { ///< None: time added by hand.
        std::optional<KestryCore::Uuid> entryID;
        friend bool operator==(const EntryForm&, const EntryForm&) = default;
    };
    struct ActiveForm {
        KestryCore::Uuid sessionID;
        friend bool operator==(const ActiveForm&, const ActiveForm&) = default;
    };

    std::variant<ClientForm, ProjectForm, EntryForm, ActiveForm> form;

    /// Names the form and its subject, as in "client-new" or "entry-" and an identifier.
    [[nodiscard]] std::string id() const;

    friend bool operator==(const Editor&, const Editor&) = default;
};

} // namespace Kestry
