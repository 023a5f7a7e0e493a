#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Date.h"
#include "Observable.h"
#include "PanelPlace.h"
#include "Routes.h"
#include "UserDefaults.h"
#include "Uuid.h"

namespace Kestry {

/// The state that all surfaces share: the page, the open form, the selection, and the choices for
/// the next session. It changes nothing in the ledger. There is one for the whole run.
class AppState {
public:
    using Action = std::function<void()>;

    /// Reads the two switches from the defaults, which must outlive the state.
    explicit AppState(UserDefaults& defaults);

    KestryCore::Observable<Destination> destination{Destination::overview};
    KestryCore::Observable<std::optional<Editor>> editor;
    KestryCore::Observable<std::optional<KestryCore::Uuid>> selectedClient;
    /// Limits the sessions page to the month of this date.
    KestryCore::Observable<std::optional<KestryCore::Date>> sessionsMonth;
    KestryCore::Observable<std::optional<KestryCore::Uuid>> selectedProject;
    KestryCore::Observable<std::optional<KestryCore::Uuid>> sessionClientID; ///< For the next one.
    KestryCore::Observable<std::string> sessionTitle;                        ///< For the next one.
    KestryCore::Observable<std::optional<std::string>> exportMessage;
    /// Why an update was postponed, until it has been read.
    KestryCore::Observable<std::optional<std::string>> updateMessage;

    /// True unless the user switched it off.
    [[nodiscard]] const KestryCore::Observable<bool>& notchEnabled() const { return notchEnabled_; }
    /// False unless the user switched it on.
    [[nodiscard]] const KestryCore::Observable<bool>& menuBarEnabled() const
    {
        return menuBarEnabled_;
    }
    /// Where the strip is wanted.
    [[nodiscard]] const KestryCore::Observable<PanelPlace>& panelPlace() const
    {
        return panelPlace_;
    }
    /// Publish the value, then store it at once.
    void setNotchEnabled(bool enabled);
    void setMenuBarEnabled(bool enabled);
    void setPanelPlace(const PanelPlace& place);

    // Actions that other parts of the program install. Calling one before does nothing.

    void openDashboard() const;
    void toggleNotch() const;
    void setNotchVisible(bool visible) const;
    void installOpenDashboard(Action action) { openDashboard_ = std::move(action); }
    void installNotch(Action toggle, std::function<void(bool)> setVisible);

    bool dashboardInitialized = false; ///< The window has been hidden once already.

private:
    UserDefaults& defaults_;
    KestryCore::Observable<bool> notchEnabled_;
    KestryCore::Observable<bool> menuBarEnabled_;
    KestryCore::Observable<PanelPlace> panelPlace_;
    Action openDashboard_;
    Action toggleNotch_;
    std::function<void(bool)> setNotchVisible_;
};

} // namespace Kestry
