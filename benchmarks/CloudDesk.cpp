#include "CloudDesk.h"

#include <QThread>

#include <algorithm>
#include <stdexcept>

#include "CouchCloudContainer.h"
#include "LedgerValidation.h"
#include "Measurement.h"
#include "SqliteCloudContainer.h"

namespace Kestry {

using namespace KestryCore;

bool WatchedApplication::notify(QObject* receiver, QEvent* event)
{
    if (QThread::currentThread() != thread()) {
        return QCoreApplication::notify(receiver, event);
    }
    ++depth_;
    bool isTaken = false;
    const double seconds = secondsOf([&] { isTaken = QCoreApplication::notify(receiver, event); });
    --depth_;
    if (depth_ == 0) {
        longest_ = std::max(longest_, seconds);
    }
    return isTaken;
}

double WatchedApplication::takeLongestTurn()
{
    return std::exchange(longest_, 0.0);
}

std::unique_ptr<TimeStore> openStore(FileSystem& files, const std::string& directory)
{
    StoreOptions options;
    options.directory = directory;
    options.lock = std::make_shared<WriterLock>(files, directory);
    require(options.lock->acquire(), "lock");
    // A made-up ledger may reach beyond today.
    auto store = std::make_unique<TimeStore>(
        StorePlatform{files, [] { return latestDate; }}, std::move(options));
    if (*store->errorMessage()) {
        throw std::runtime_error(**store->errorMessage());
    }
    return store;
}

namespace {

CloudConfiguration configured(const std::string& address)
{
    return {address, true, CloudSyncEnvironment::development};
}

std::unique_ptr<CloudContainer> openContainer(const std::string& address, Scheduler& scheduler)
{
    if (const auto path = sqliteStorePath(address)) {
        return std::make_unique<SqliteCloudContainer>(
            scheduler, SqliteStorePlace{*path, cloudUser, MissingStore::make});
    }
    return std::make_unique<CouchCloudContainer>(CouchAddress::parse(address, cloudUser),
        CouchAccount{cloudUser, cloudPassword}, CouchPlatform{scheduler});
}

} // namespace

CloudDesk::CloudDesk(const std::string& directory, const std::string& address)
    : store_(openStore(files_, directory)),
      controller_(*store_, configured(address),
          {scheduler_,
              [this](
                  const std::string& identifier) { return openContainer(identifier, scheduler_); },
              [] { return std::string("Desk"); }})
{
}

void CloudDesk::finishExchange()
{
    runUntil([this] { return !*controller_.fields().isSyncing; });
}

void CloudDesk::connect()
{
    bool isOver = false;
    scheduler_.post([&] { controller_.enable([&] { isOver = true; }); });
    runUntil([&] { return isOver; });
    requireSuccess();
    controller_.stop(); // What is measured is asked for.
}

void CloudDesk::exchange()
{
    bool isOver = false;
    scheduler_.post([&] { controller_.syncNow([&] { isOver = true; }); });
    runUntil([&] { return isOver; });
    requireSuccess();
}

void CloudDesk::requireSuccess() const
{
    if (const auto& message = *controller_.fields().errorMessage) {
        throw std::runtime_error(*message);
    }
    if (*controller_.fields().status != "Up to date") {
        throw std::runtime_error("It ended with \"" + *controller_.fields().status + "\".");
    }
}

void CloudDesk::edit(const std::string& title)
{
    const TimeEntry entry = store_->data()->entries.front();
    EntryChange change;
    change.title = title;
    change.start = entry.startedAt();
    change.duration = entry.duration();
    store_->updateEntry(entry.id, change);
}

} // namespace Kestry
