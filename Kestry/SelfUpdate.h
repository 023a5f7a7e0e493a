#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "BackgroundWork.h"
#include "Scheduler.h"
#include "StartConfirmation.h"
#include "TreeFiles.h"
#include "UpdateDownload.h"
#include "UpdateFramework.h"
#include "UserDefaults.h"

namespace Kestry {

/// What this process becomes once it has ended.
struct Successor {
    std::string program; ///< Empty when it just ends.
    std::vector<std::string> arguments;
};

/// The arguments with which a newer version takes this one's place: without those that were meant
/// for this start alone.
[[nodiscard]] std::vector<std::string> successorArguments(
    const std::vector<std::string>& arguments);

/// What the program needs to replace itself: the network, the files, the settings, and another
/// thread.
class SelfUpdate {
public:
    /// All of it must outlive the object.
    struct Platform {
        KestryCore::Scheduler& scheduler;
        KestryCore::TreeFiles& files;
        UserDefaults& defaults;
        Successor& successor;
        std::string program{}; ///< The path of the running program's file.
        std::string version{}; ///< Of the running program.
        std::vector<std::string> arguments{};
    };

    explicit SelfUpdate(Platform platform);

    /// Makes the framework, which must not outlive this object.
    [[nodiscard]] UpdateFrameworkFactory frameworkFactory();
    /// The program has started well. Does nothing where it stands in no installation of its own.
    void confirmStart();

private:
    [[nodiscard]] std::function<void(std::function<void()>, std::function<void()>)> worker();

    Platform platform_;
    std::optional<UpdateDownload> download_; // made for a framework: it loads what TLS needs
    BackgroundWork work_;                    // ends before what it works with
    std::optional<StartConfirmation> confirmation_;
};

} // namespace Kestry
