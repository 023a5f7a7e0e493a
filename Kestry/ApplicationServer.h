#pragma once

#include <optional>

#include "AppDelegate.h"
#include "CommandService.h"
#include "LocalServer.h"
#include "Observable.h"

namespace Kestry {

/// What the running application does for other processes: it carries out command lines on its
/// store, and hears of further starts of the program.
class ApplicationServer {
public:
    /// Serves callers from the first turn of the event loop. `socket` is where they call; without
    /// one nobody does. Delegate and files must outlive the server.
    ApplicationServer(AppDelegate& delegate, KestryCore::FileSystem& files,
        std::optional<ListeningSocket> socket);

    /// Serves nobody from here on.
    void close();

private:
    [[nodiscard]] LocalServices services();
    [[nodiscard]] bool isForMissingDirectory() const;
    void followDirectory();

    AppDelegate& delegate_;
    CommandService commands_;
    LocalServer server_;
    KestryCore::Subscription directory_;
};

} // namespace Kestry
