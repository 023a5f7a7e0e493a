#include "TimeZoneWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <utility>

namespace Kestry {

namespace {

// An update touches many files, and one is not there while it is replaced.
constexpr int settlingMilliseconds = 300;
// For systems that have nobody left to tell of changes.
constexpr int pollingMilliseconds = 5'000;

} // namespace

TimeZoneWatch::TimeZoneWatch(KestryCore::EnvironmentLookup environment, std::string localTimePath,
    std::function<void(const KestryCore::SystemTimeZone&)> changed)
    : environment_(std::move(environment)), localTimePath_(std::move(localTimePath)),
      changed_(std::move(changed)), zone_(KestryCore::systemTimeZone(environment_, localTimePath_)),
      inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    QObject::connect(&settling_, &QTimer::timeout, &settling_, [this] { look(); });
    if (inotify_.number() < 0) {
        settling_.start(pollingMilliseconds);
        return;
    }
    settling_.setSingleShot(true);
    settling_.setInterval(settlingMilliseconds);
    notifier_ = std::make_unique<QSocketNotifier>(inotify_.number(), QSocketNotifier::Read);
    QObject::connect(
        notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { readEvents(); });
    watchFiles();
}

/// Watches the folder of a file: a watch on the file would follow a link, and end with the file.
void TimeZoneWatch::watch(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().string();
    (void)inotify_add_watch(
        inotify_.number(), folder.c_str(), IN_MOVED_TO | IN_CREATE | IN_CLOSE_WRITE | IN_DELETE);
}

void TimeZoneWatch::watchFiles()
{
    watch(localTimePath_);
    if (!zone_.path.empty()) {
        watch(zone_.path);
    }
}

void TimeZoneWatch::readEvents()
{
    const std::string localTime = std::filesystem::path(localTimePath_).filename().string();
    const std::string zoneFile = std::filesystem::path(zone_.path).filename().string();
    alignas(inotify_event) std::array<char, 4096> room{};
    ssize_t size = 0;
    while ((size = read(inotify_.number(), room.data(), room.size())) > 0) {
        for (const char* place = room.data(); place < room.data() + size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(place);
            const std::string name = event->len > 0 ? event->name : "";
            if (name == localTime || name == zoneFile || (event->mask & IN_Q_OVERFLOW) != 0) {
                settling_.start();
            }
            place += sizeof(inotify_event) + event->len;
        }
    }
}

void TimeZoneWatch::look()
{
    KestryCore::SystemTimeZone now = KestryCore::systemTimeZone(environment_, localTimePath_);
    if (now == zone_) {
        return;
    }
    zone_ = std::move(now);
    if (notifier_) {
        watchFiles();
    }
    changed_(zone_);
}

} // namespace Kestry
