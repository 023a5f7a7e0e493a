#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kestry {

/// A newer version that the feed has announced.
struct AnnouncedUpdate {
    std::string version{};      ///< As people read it, such as "1.3.0".
    std::string releaseNotes{}; ///< An https link to what is new; empty without one.
    std::int64_t bytes = 0;     ///< How much is downloaded; 0 when the feed does not tell.

    friend bool operator==(const AnnouncedUpdate&, const AnnouncedUpdate&) = default;
};

/// How far an update has come, as the framework's own sheet shows it.
struct UpdateStage {
    enum class Step {
        nothing,     ///< There is nothing to show.
        checking,    ///< A check that the user has asked for.
        upToDate,    ///< What that check has found: no newer version.
        found,       ///< A newer version, which the user may install.
        downloading, ///< `received` bytes of it are here.
        unpacking,   ///< It has come whole, and is being verified and laid down.
        ready,       ///< It is laid down. The application did not relaunch; the user may try again.
        failed,      ///< `failure` says why the check or the installation ended.
    };

    Step step = Step::nothing;
    /// From `found` to `ready`, and of `failed` when it was the installation that failed.
    AnnouncedUpdate update{};
    std::int64_t received = 0; ///< Of `downloading`.
    std::string failure{};     ///< Of `failed`: words for people.

    friend bool operator==(const UpdateStage&, const UpdateStage&) = default;
};

} // namespace Kestry
