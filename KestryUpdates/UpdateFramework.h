#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Date.h"
#include "Observable.h"
#include "UpdateStage.h"

namespace Kestry {

/// What a framework asks and tells the application. All calls come on the main thread.
///
/// An update cycle is one check with all that follows from it. It begins with
/// `mayPerformUpdateCheck` and ends with exactly one `didFinishUpdateCycle`.
class UpdateDelegate {
public:
    UpdateDelegate() = default;
    UpdateDelegate(const UpdateDelegate&) = delete;
    UpdateDelegate& operator=(const UpdateDelegate&) = delete;
    virtual ~UpdateDelegate() = default;

    /// Asked before each check, also one that the user did not ask for. Returns why there must be
    /// none now, in words for people; the cycle then ends with these words as its error, nothing
    /// is fetched, and the stage stays `nothing`. Returns nullopt when the check may go on.
    [[nodiscard]] virtual std::optional<std::string> mayPerformUpdateCheck() = 0;
    /// Asked once an update is laid down, right before the application is asked to quit. After
    /// false the application goes on as it is, and the cycle ends without an error.
    [[nodiscard]] virtual bool shouldRelaunchApplication() = 0;
    /// The check has found a newer version that suits this machine.
    virtual void didFindValidUpdate() = 0;
    /// The check has found none.
    virtual void didNotFindUpdate() = 0;
    /// The check, the download or the installation has failed. `didFinishUpdateCycle` follows with
    /// the same words. Not called when the user has called it off.
    virtual void didAbortWithError(const std::string& words) = 0;
    /// The end of a cycle, with what went wrong if anything did.
    virtual void didFinishUpdateCycle(const std::optional<std::string>& error) = 0;
};

/// What a framework publishes.
struct UpdateFrameworkFields {
    /// False before `start`, and while a check, a download or an installation is going on.
    KestryCore::Observable<bool> canCheckForUpdates{false};
    KestryCore::Observable<bool> automaticallyChecksForUpdates{false};
    /// The end of the last check that got an answer from the feed.
    KestryCore::Observable<std::optional<KestryCore::Date>> lastUpdateCheckDate;
    KestryCore::Observable<UpdateStage> stage;
};

/// Finds, verifies and installs newer versions of the program. Not thread-safe; it calls its
/// delegate and its observers on the main thread, and never from within `start`.
class UpdateFramework {
public:
    UpdateFramework() = default;
    UpdateFramework(const UpdateFramework&) = delete;
    UpdateFramework& operator=(const UpdateFramework&) = delete;
    virtual ~UpdateFramework() = default;

    [[nodiscard]] virtual const UpdateFrameworkFields& fields() const = 0;

    /// Called once, before everything below. The delegate must outlive the framework. Throws with
    /// words for people when updates are not possible here, for example because the program does
    /// not stand where one can be installed; it may be called again then.
    virtual void start(UpdateDelegate& delegate) = 0;
    /// Whether the framework checks by itself, once a day. Keeps the choice for later runs.
    virtual void setAutomaticallyChecksForUpdates(bool isAutomatic) = 0;
    /// Checks because the user wants it: every outcome shows in the stage. Does nothing while
    /// `canCheckForUpdates` is false. An update that waits at `found` or `ready` is looked for
    /// anew.
    virtual void checkForUpdates() = 0;
    /// Downloads, verifies and lays down the update that was found, then asks the delegate whether
    /// to relaunch. From `ready` only the last of it. Does nothing at any other stage.
    virtual void install() = 0;
    /// The user wants no more of it for now: ends the check or the download, and the stage is
    /// `nothing`. Nothing installed changes. Does nothing while it is `unpacking`.
    virtual void dismiss() = 0;
};

/// What a framework is made with.
struct UpdateFrameworkSetup {
    std::string feedURL;                    ///< An https URL with a host.
    std::array<std::uint8_t, 32> publicKey; ///< Of Ed25519; signs the whole archive.
    /// Asks the application to quit. Returns false when it stays: then the new version must not be
    /// started. After true the process ends as soon as the caller returns to the event loop.
    std::function<bool()> terminate;
};

using UpdateFrameworkFactory =
    std::function<std::unique_ptr<UpdateFramework>(UpdateFrameworkSetup setup)>;

} // namespace Kestry
