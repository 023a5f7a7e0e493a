#pragma once

#include <optional>

#include "AppDelegate.h"
#include "ApplicationSync.h"
#include "CloudAccount.h"
#include "CommandService.h"
#include "LocalServer.h"
#include "Observable.h"

namespace Kestry {

/// Serves other processes of this user: carries out their command lines on the store, and takes
/// the URLs and activations of further starts of the program.
class ApplicationServer {
public:
    /// All of it must outlive the server.
    struct World {
        AppDelegate& delegate;
        CloudAccount& account;
        KestryCore::Scheduler& scheduler;
        KestryCore::FileSystem& files;
    };

    /// Accepts connections on `socket` from the first turn of the event loop. Without a socket, no
    /// process can connect.
    ApplicationServer(World world, std::optional<ListeningSocket> socket);
    ApplicationServer(const ApplicationServer&) = delete;
    ApplicationServer& operator=(const ApplicationServer&) = delete;
    ~ApplicationServer() { close(); }

    /// Tells those who wait for a record store that the program ends, and stops serving.
    void close();

private:
    [[nodiscard]] LocalServices services();
    [[nodiscard]] bool isForMissingDirectory() const;
    void followDirectory();

    AppDelegate& delegate_;
    ApplicationSync sync_;
    CommandService commands_;
    LocalServer server_;
    KestryCore::Subscription directory_;
};

} // namespace Kestry
