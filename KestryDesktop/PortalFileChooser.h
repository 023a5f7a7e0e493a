#pragma once

#include "FileChooser.h"
#include "PortalRequest.h"

namespace Kestry {

/// The dialog for files of the desktop's portal.
class PortalFileChooser final : public FileChooser {
public:
    /// `bus` is called with the first question: the session bus is connected to no earlier. The
    /// portal opens its dialog within `patienceMilliseconds`, or there is none.
    explicit PortalFileChooser(
        PortalRequest::Bus bus = [] { return QDBusConnection::sessionBus(); },
        int patienceMilliseconds = 5000);

    void ask(const FileQuestion& question, Answered answered) override;

private:
    PortalRequest request_;
};

} // namespace Kestry
