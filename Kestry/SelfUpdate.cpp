#include "SelfUpdate.h"

#include <QRandomGenerator>
#include <QSysInfo>

#include <memory>
#include <utility>

#include "Date.h"
#include "LedgerError.h"
#include "PrefixUpdateFramework.h"

namespace Kestry {

using namespace KestryCore;

std::vector<std::string> successorArguments(const std::vector<std::string>& arguments)
{
    std::vector<std::string> kept;
    for (std::size_t place = 0; place < arguments.size(); ++place) {
        if (arguments[place] == "--update-token") {
            ++place; // and its value
        } else if (!arguments[place].starts_with("kestry:")) {
            kept.push_back(arguments[place]);
        }
    }
    return kept;
}

SelfUpdate::SelfUpdate(Platform platform) : platform_(std::move(platform)) { }

std::function<void(std::function<void()>, std::function<void()>)> SelfUpdate::worker()
{
    return [this](std::function<void()> work, std::function<void()> done) {
        work_.run(std::move(work), std::move(done));
    };
}

UpdateFrameworkFactory SelfUpdate::frameworkFactory()
{
    return [this](UpdateFrameworkSetup setup) -> std::unique_ptr<UpdateFramework> {
        if (!download_) {
            download_.emplace(platform_.scheduler, platform_.files, DownloadLimits{},
                qEnvironmentVariable("SSL_CERT_FILE").toStdString());
        }
        PrefixUpdateFramework::Platform platform{platform_.scheduler, platform_.files, *download_};
        platform.program = platform_.program;
        platform.runningVersion = platform_.version;
        platform.systemVersion = QSysInfo::kernelVersion().toStdString();
        platform.now = currentDate;
        platform.random = [] { return QRandomGenerator::global()->generateDouble(); };
        platform.settings = {
            [this](const std::string& key) { return platform_.defaults.string(key); },
            [this](const std::string& key, const std::string& value) {
                platform_.defaults.setString(key, value);
            }};
        platform.work = worker();
        platform.relaunch = [this](const std::string& program) {
            platform_.successor = {program, successorArguments(platform_.arguments)};
        };
        return std::make_unique<PrefixUpdateFramework>(std::move(platform), std::move(setup));
    };
}

void SelfUpdate::confirmStart()
{
    try {
        std::optional<UpdatePrefix> prefix =
            UpdatePrefix::ofProgram(platform_.files, platform_.program);
        const std::optional<UpdateVersion> version = UpdateVersion::parse(platform_.version);
        if (prefix && version) {
            confirmation_.emplace(platform_.scheduler, worker(), *std::move(prefix), *version);
            confirmation_->begin();
        }
    } catch (const LedgerError&) {
        return; // The next start confirms.
    }
}

} // namespace Kestry
