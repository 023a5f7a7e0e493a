#pragma once

#include <functional>
#include <optional>

#include "AppState.h"
#include "TimeStore.h"

namespace Kestry {

/// What menus and shortcuts command. A failure stays in the store's `errorMessage`; nothing here
/// throws.
class ShellCommands {
public:
    /// Store and state must outlive the commands. `quit` asks the application to terminate.
    ShellCommands(KestryCore::TimeStore& store, AppState& state, KestryCore::Clock now,
        std::function<void()> quit);

    /// Starts a session with what is chosen for the next one, pauses the running one or resumes
    /// the paused one.
    void toggleSession();
    /// Saves the session in progress; nothing without one.
    void stopSession();

    void openMain();
    void showNotch();
    void openSettings();
    void quit();

    void newClient();
    /// Opens the form of a new project for `clientForNewProject`; nothing without one.
    void newProject();
    /// The selected client when it has projects, else the first that has. None: no client has.
    [[nodiscard]] std::optional<KestryCore::Uuid> clientForNewProject() const;

    [[nodiscard]] const KestryCore::TimeStore& store() const { return store_; }
    [[nodiscard]] AppState& state() { return state_; }

private:
    KestryCore::TimeStore& store_;
    AppState& state_;
    KestryCore::Clock now_;
    std::function<void()> quit_;
};

} // namespace Kestry
