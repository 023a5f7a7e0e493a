#pragma once

#include <QCoreApplication>

#include <memory>
#include <string>

#include "CloudSyncController.h"
#include "PosixFileSystem.h"
#include "QtScheduler.h"
#include "TimeStore.h"

namespace Kestry {

/// An event loop that knows for how long it was not in charge.
class WatchedApplication final : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Seconds of the longest turn of this thread since the last call.
    [[nodiscard]] double takeLongestTurn();

private:
    int depth_ = 0;
    double longest_ = 0.0;
};

/// Who replicates with a server in these measurements.
inline constexpr const char* cloudUser = "anna";
inline constexpr const char* cloudPassword = "secret";

/// A machine with a ledger on its disk, as far as it replicates. The account is at an address as
/// people enter it: a database of a server, or "sqlite:" and a path.
class CloudDesk {
public:
    CloudDesk(const std::string& directory, const std::string& address);

    /// Turns replication on, and exchanges all there is. Throws when that fails.
    void connect();
    /// One exchange. Throws when that fails.
    void exchange();
    /// Begins one exchange.
    void beginExchange() { controller_.syncNow(); }
    /// Lets the loop run until there is no exchange under way.
    void finishExchange();

    /// Changes the title of one session, always the same, and saves.
    void edit(const std::string& title);

    [[nodiscard]] KestryCore::TimeStore& store() { return *store_; }

private:
    void requireSuccess() const;

    KestryCore::PosixFileSystem files_;
    QtScheduler scheduler_;
    std::unique_ptr<KestryCore::TimeStore> store_;
    KestryCore::CloudSyncController controller_;
};

/// A store of the ledger in a directory, on real files.
[[nodiscard]] std::unique_ptr<KestryCore::TimeStore> openStore(
    KestryCore::FileSystem& files, const std::string& directory);

/// Lets the event loop run until something holds.
template <class Condition>
void runUntil(Condition holds)
{
    while (!holds()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace Kestry
