#include "SoftwareUpdater.h"

#include <exception>
#include <utility>

#include "UpdateSafety.h"

namespace Kestry {
namespace {

constexpr const char* blockedWords =
    "Save your changes and finish the current session before installing an update.";
constexpr const char* checkingWords = "Checking for updates…";

} // namespace

SoftwareUpdater::SoftwareUpdater(World world) : world_(std::move(world)) { }

bool SoftwareUpdater::needsAttention() const
{
    return KestryCore::UpdateSafety::hasUnfinishedWork(
        world_.store.data()->active, world_.state.editor->has_value(), *world_.state.sessionTitle);
}

void SoftwareUpdater::configure()
{
    if (world_.store.isDemo()) {
        fields_.status.assign("Software updates are unavailable in demo mode.");
        return;
    }
    if (world_.configuration.isFromStore) {
        fields_.status.assign("Get updates from the App Store.");
        return;
    }
    const auto& feed = world_.configuration.feed;
    if (!feed || !world_.makeFramework || !startFramework(*feed)) {
        return;
    }
    fields_.isConfigured.assign(true);
    fields_.status.assign("Updates are ready to check.");
    mirrorFramework();
}

bool SoftwareUpdater::startFramework(const UpdateFeed& feed)
{
    try {
        if (!controller_) {
            controller_ =
                world_.makeFramework({feed.url, feed.publicKey, [this] { return terminate(); }});
            controller_->start(*this);
        }
        return true;
    } catch (const std::exception& failure) {
        controller_.reset();
        fail(KestryCore::failureText(failure));
        return false;
    }
}

// A quit that was cancelled is over: a later one is the user's own.
bool SoftwareUpdater::terminate()
{
    const bool leaves = world_.terminate && world_.terminate();
    installRequested_ = installRequested_ && leaves;
    return leaves;
}

void SoftwareUpdater::mirrorFramework()
{
    const auto mirror = [this](const auto& theirs, auto& ours) {
        ours.assign(*theirs);
        subscriptions_.push_back(
            theirs.observe([&ours](const auto& value) { ours.assign(value); }));
    };
    const UpdateFrameworkFields& framework = controller_->fields();
    mirror(framework.canCheckForUpdates, fields_.canCheck);
    mirror(framework.automaticallyChecksForUpdates, fields_.automaticChecks);
    mirror(framework.lastUpdateCheckDate, fields_.lastCheckDate);
    mirror(framework.stage, fields_.stage);
}

// What the user does.

void SoftwareUpdater::checkForUpdates()
{
    if (!mayCheck()) {
        return;
    }
    if (needsAttention()) {
        showPostponed();
        return;
    }
    tell(checkingWords);
    controller_->checkForUpdates();
}

void SoftwareUpdater::setAutomaticChecks(bool isAutomatic)
{
    if (controller_) {
        controller_->setAutomaticallyChecksForUpdates(isAutomatic);
    }
}

// The framework asks before the relaunch. Asked here as well, nobody waits for a download that is
// then refused.
void SoftwareUpdater::install()
{
    if (!controller_) {
        return;
    }
    if (needsAttention()) {
        showPostponed();
        return;
    }
    controller_->install();
}

void SoftwareUpdater::dismiss()
{
    if (controller_) {
        controller_->dismiss();
    }
}

void SoftwareUpdater::showPostponed()
{
    fail(blockedWords);
    world_.state.updateMessage.assign(blockedWords);
}

bool SoftwareUpdater::refusesQuit()
{
    if (!installRequested_ || !needsAttention()) {
        return false;
    }
    installRequested_ = false;
    fail(blockedWords);
    return true;
}

// What the framework asks and tells.

std::optional<std::string> SoftwareUpdater::mayPerformUpdateCheck()
{
    if (!needsAttention()) {
        return std::nullopt;
    }
    fail(blockedWords);
    return blockedWords;
}

bool SoftwareUpdater::shouldRelaunchApplication()
{
    installRequested_ = !needsAttention();
    if (!installRequested_) {
        fail(blockedWords);
    }
    return installRequested_;
}

void SoftwareUpdater::didFindValidUpdate()
{
    tell("An update is available.");
}

void SoftwareUpdater::didNotFindUpdate()
{
    tell("You’re up to date.");
}

void SoftwareUpdater::didAbortWithError(const std::string& words)
{
    fail(words);
}

void SoftwareUpdater::didFinishUpdateCycle(const std::optional<std::string>& error)
{
    if (error) {
        installRequested_ = false;
        fail(*error);
    } else if (*fields_.status == checkingWords) {
        fields_.status.assign("Update check finished.");
    }
}

void SoftwareUpdater::tell(const std::string& status)
{
    fields_.errorMessage.assign(std::nullopt);
    fields_.status.assign(status);
}

void SoftwareUpdater::fail(const std::string& words)
{
    fields_.errorMessage.assign(words);
    fields_.status.assign(words);
}

} // namespace Kestry
