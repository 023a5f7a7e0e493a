#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppcastChoice.h"
#include "Reply.h"
#include "TaskOwner.h"
#include "UpdateFramework.h"
#include "UpdateInstallation.h"
#include "UpdateSchedule.h"
#include "UpdateSource.h"

namespace Kestry {

/// Updates an installation that holds versions side by side; see `UpdatePrefix`.
///
/// `checking` fetches the feed. `downloading` and `unpacking` lay the new version down beside the
/// running one. Only when the application agrees to quit is the link switched, and it goes back
/// when the application stays after all. What becomes of the new version is for `StartGuard`.
class PrefixUpdateFramework final : public UpdateFramework {
public:
    /// Values that outlive the process; all texts.
    struct Settings {
        std::function<std::optional<std::string>(const std::string& key)> read{};
        std::function<void(const std::string& key, const std::string& value)> write{};
    };
    /// What it works with. All of it must outlive the framework.
    struct Platform {
        KestryCore::Scheduler& scheduler;
        KestryCore::TreeFiles& files;
        UpdateSource& source;
        std::string program{};        ///< The path of the running program's file.
        std::string runningVersion{}; ///< Such as "1.2.0".
        std::string systemVersion{};  ///< Of the kernel.
        KestryCore::Clock now{};
        std::function<double()> random{}; ///< From 0 to below 1.
        Settings settings{};
        /// Does work beside the event loop, then calls `done` on it.
        std::function<void(std::function<void()> work, std::function<void()> done)> work{};
        /// This process is to become that program once it has ended.
        std::function<void(const std::string& program)> relaunch{};
    };

    PrefixUpdateFramework(Platform platform, UpdateFrameworkSetup setup);

    [[nodiscard]] const UpdateFrameworkFields& fields() const override { return fields_; }
    void start(UpdateDelegate& delegate) override;
    void setAutomaticallyChecksForUpdates(bool isAutomatic) override;
    void checkForUpdates() override;
    void install() override;
    void dismiss() override;

private:
    enum class Wish { ofUser, ofSchedule };
    struct Job;

    [[nodiscard]] bool beginCheck(Wish wish);
    [[nodiscard]] KestryCore::Task<void> check(unsigned generation);
    [[nodiscard]] KestryCore::Task<void> layDown(AppcastItem item, unsigned generation);
    [[nodiscard]] KestryCore::Task<void> verify(std::shared_ptr<Job> job);
    void run(KestryCore::Task<void> task);
    void endTasks();
    void relaunch();
    [[nodiscard]] std::optional<UpdatePrefix::Trial> takeFailed();
    void tellOfFailedStart(const UpdatePrefix::Trial& failed);
    void fail(const std::string& words, AnnouncedUpdate update);
    [[nodiscard]] AnnouncedUpdate announced() const;
    void endCycle(const std::optional<std::string>& error);
    void show(UpdateStage::Step step);
    void letGo();
    [[nodiscard]] UpdateTrust trust() const;
    [[nodiscard]] std::optional<KestryCore::Date> storedDate(const std::string& key) const;
    void storeDate(const std::string& key, KestryCore::Date date) const;

    Platform platform_;
    UpdateFrameworkSetup setup_;
    UpdateFrameworkFields fields_;
    UpdateSchedule schedule_;
    UpdateDelegate* delegate_ = nullptr;
    std::optional<UpdateVersion> running_;
    std::optional<UpdatePrefix> prefix_;
    std::unique_ptr<KestryCore::DirectoryLock> lock_; // while something lies in the room
    std::optional<AppcastItem> item_;                 // from `found` to `ready`
    Wish wish_ = Wish::ofUser;
    bool isCycleOpen_ = false;
    unsigned generation_ = 0; ///< Of the task that is under way; one of an earlier one has ended.
    KestryCore::Timer later_;
    std::shared_ptr<KestryCore::TaskOwner> tasks_;
    std::vector<std::shared_ptr<KestryCore::TaskOwner>> ended_; // let go in a later turn
    KestryCore::Timer letGoOfEnded_;
};

} // namespace Kestry
