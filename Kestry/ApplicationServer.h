#pragma once

#include <optional>

#include "AppDelegate.h"
#include "CommandService.h"
#include "LocalServer.h"
#include "Observable.h"

namespace Kestry {

/// Serves other processes of this user: carries out their command lines on the store, and takes
/// the URLs and activations of further starts of the program.
class ApplicationServer {
public:
    /// Accepts connections on `socket` from the first turn of the event loop. Without a socket, no
    /// process can connect. Delegate and files must outlive the server.
    ApplicationServer(AppDelegate& delegate, KestryCore::FileSystem& files,
        std::optional<ListeningSocket> socket);

    /// Stops serving.
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
