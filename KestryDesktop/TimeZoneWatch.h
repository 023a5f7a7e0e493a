#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>

#include "Descriptor.h"
#include "Environment.h"
#include "SystemTimeZone.h"

namespace Kestry {

/// Notices when the system's time zone changes: another zone was chosen, or an update has replaced
/// its file.
class TimeZoneWatch {
public:
    /// Calls `changed` from the event loop, within a second, with the new zone.
    TimeZoneWatch(KestryCore::EnvironmentLookup environment, std::string localTimePath,
        std::function<void(const KestryCore::SystemTimeZone&)> changed);

private:
    void watch(const std::string& path);
    void watchFiles();
    void readEvents();
    void look();

    KestryCore::EnvironmentLookup environment_;
    std::string localTimePath_;
    std::function<void(const KestryCore::SystemTimeZone&)> changed_;
    KestryCore::SystemTimeZone zone_;
    Descriptor inotify_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer settling_;
};

} // namespace Kestry
