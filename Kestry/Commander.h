#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "AppState.h"
#include "TimeStore.h"

namespace Kestry {

/// What the desktop offers to do with the program from outside, as on its icon's menu.
enum class DesktopAction { start, toggle, stop, showControls };

/// The action that a desktop entry names; nullopt for any other word.
[[nodiscard]] std::optional<DesktopAction> desktopAction(std::string_view name);

/// What every surface can do: panels, windows, menus, keys and the desktop all call this one
/// object. No function throws: a failure is published as the store's `errorMessage`, and nothing
/// has changed then.
class Commander {
public:
    /// Store and state must outlive the commander. `quit` asks the application to terminate.
    Commander(KestryCore::TimeStore& store, AppState& state, KestryCore::Clock now,
        std::function<void()> quit);

    /// Starts a session with what the state has chosen for the next one, then clears the title and
    /// the project. Opens the form for a new client when there is no client.
    void startSession();
    /// Starts a session on a project, with the title typed for the next one, then clears the title
    /// and the selected project. The next session is for that client too.
    void startSessionOn(const KestryCore::Uuid& projectID);
    /// Starts a session, pauses the running one or resumes the paused one.
    void toggleSession();
    /// Pauses the running session or resumes the paused one. Without a session it fails in words.
    /// Before a pause the title that is typed is written; the pause fails with it.
    void pauseOrResume();
    /// Saves the session in progress, with the title that is typed: when that cannot be written,
    /// neither is the session, and both stay as they are. Does nothing without a session.
    void stopSession();
    /// Renames the session in progress. Refused when it is no longer the one with this identifier;
    /// returns whether the title has been written.
    bool renameSession(const KestryCore::Uuid& session, const std::string& title);
    /// Says how a title that is being typed is written: the call writes it, if there is one, and
    /// returns false when that was refused. An empty function takes it back.
    void installTitleWriter(std::function<bool()> write);
    /// Writes the title that is being typed. Returns false when that was refused.
    bool writeTitle();
    void perform(DesktopAction action);

    void openMain();
    void showNotch();
    void openSettings();
    void quit();

    /// Opens the form for a new client.
    void newClient();
    /// Opens the form for a new project of `clientForNewProject`. Does nothing without one.
    void newProject();
    /// The selected client if it has projects, else the first client that has; nullopt when no
    /// client has.
    [[nodiscard]] std::optional<KestryCore::Uuid> clientForNewProject() const;

private:
    bool attempt(const std::function<void()>& change);
    void clearChoices(const KestryCore::Uuid& clientID);

    KestryCore::TimeStore& store_;
    AppState& state_;
    KestryCore::Clock now_;
    std::function<void()> quit_;
    std::function<bool()> writeTitle_;
};

} // namespace Kestry
