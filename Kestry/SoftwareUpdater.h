#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppState.h"
#include "TimeStore.h"
#include "UpdateConfiguration.h"
#include "UpdateFramework.h"

namespace Kestry {

/// What people see of updates.
struct SoftwareUpdaterFields {
    KestryCore::Observable<bool> isConfigured{false}; ///< The framework is running.
    KestryCore::Observable<bool> canCheck{false};
    KestryCore::Observable<bool> automaticChecks{false};
    KestryCore::Observable<std::optional<KestryCore::Date>> lastCheckDate;
    KestryCore::Observable<std::string> status{
        "Software updates are not enabled in this build."};          ///< One line.
    KestryCore::Observable<std::optional<std::string>> errorMessage; ///< The last failure's words.
    KestryCore::Observable<UpdateStage> stage; ///< Of the update that is under way.
};

/// Wraps the update framework, and keeps one rule: no update is checked for or installed while the
/// user could lose anything.
class SoftwareUpdater final : public UpdateDelegate {
public:
    /// Store and state must outlive the updater.
    struct World {
        const KestryCore::TimeStore& store;
        AppState& state;
        UpdateConfiguration configuration{};
        /// Makes the framework. Without it this build has no updates, whatever is configured.
        UpdateFrameworkFactory makeFramework{};
        /// Asks the application to quit; false when it stays.
        std::function<bool()> terminate{};
    };

    explicit SoftwareUpdater(World world);

    [[nodiscard]] const SoftwareUpdaterFields& fields() const { return fields_; }

    /// Starts the framework, if this build and this run have one. Never throws: a failure is
    /// published, and the program runs without updates.
    void configure();
    /// Whether the user may check now.
    [[nodiscard]] bool mayCheck() const { return *fields_.isConfigured && *fields_.canCheck; }
    /// Checks because the user wants it. While something could be lost an alert says so instead,
    /// and nothing is checked. Does nothing when the user may not check.
    void checkForUpdates();
    /// Writes the choice through to the framework. Does nothing without one.
    void setAutomaticChecks(bool isAutomatic);
    /// Installs what was found. While something could be lost an alert says so instead.
    void install();
    /// The user wants no more of the update for now.
    void dismiss();

    /// Asked at each quit, before anything else. Returns true when the quit is for an update and
    /// something could be lost by now: it must be cancelled, and the update waits for a later
    /// check.
    [[nodiscard]] bool refusesQuit();
    /// The application ends whatever happens: an update asks for nothing any more.
    void withdrawInstallation() { installRequested_ = false; }

    [[nodiscard]] std::optional<std::string> mayPerformUpdateCheck() override;
    [[nodiscard]] bool shouldRelaunchApplication() override;
    void didFindValidUpdate() override;
    void didNotFindUpdate() override;
    void didAbortWithError(const std::string& words) override;
    void didFinishUpdateCycle(const std::optional<std::string>& error) override;

private:
    [[nodiscard]] bool needsAttention() const;
    [[nodiscard]] bool startFramework(const UpdateFeed& feed);
    [[nodiscard]] bool terminate();
    void mirrorFramework();
    void tell(const std::string& status);
    void fail(const std::string& words);
    void showPostponed();

    World world_;
    SoftwareUpdaterFields fields_;
    bool installRequested_ = false; ///< The framework has asked to relaunch and install.
    std::unique_ptr<UpdateFramework> controller_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
