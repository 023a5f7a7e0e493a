#include "SimulatedDevice.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace KestryCore {

SimulatedDevice::SimulatedDevice(
    std::string name, Choices& choices, UuidSource newUuid, const Date& now, double clockOffset)
    : name_(std::move(name)), choices_(choices), newUuid_(std::move(newUuid)), worldNow_(now),
      clockOffset_(clockOffset)
{
    constexpr std::size_t wholeFiles = 1'000'000;
    files_.limitWrites(wholeFiles);
    files_.putDirectory(directory);
}

const LedgerSyncState* SimulatedDevice::state() const
{
    return isRunning() && ledger().replication ? &*ledger().replication : nullptr;
}

SimulatedDevice::Outcome SimulatedDevice::open(DiskFault fault)
{
    StoreOptions options;
    options.directory = directory;
    const StorePlatform platform{
        files_, [this] { return now(); }, newUuid_, [this] { return steadySeconds(); }};
    options.lock = std::make_shared<WriterLock>(files_, directory);
    const auto start = [&] {
        (void)options.lock->acquire();
        store_.emplace(platform, options);
    };
    return run(start, fault);
}

SimulatedDevice::Outcome SimulatedDevice::perform(
    const std::function<void(TimeStore&)>& action, DiskFault fault)
{
    return run([&] { action(*store_); }, fault);
}

SimulatedDevice::Outcome SimulatedDevice::run(const std::function<void()>& action, DiskFault fault)
{
    Outcome outcome = Outcome::done;
    plan(fault);
    try {
        action();
    } catch (const PowerCut&) {
        outcome = Outcome::crashed;
    } catch (const LedgerError&) {
        outcome = Outcome::refused;
    }
    hadPassingFailure_ = fault == DiskFault::passingFailure && files_.faultHappened();
    hadFailingCall_ =
        hadPassingFailure_ || (fault == DiskFault::failingCall && files_.faultHappened());
    if (fault == DiskFault::powerCut && files_.faultHappened()) {
        outcome = Outcome::crashed; // Also where the call was one whose failure matters to nobody.
        losePower();
    }
    if (files_.callCount() > 0) {
        usualCalls_ = static_cast<std::size_t>(files_.callCount());
    }
    files_.heal();
    return outcome;
}

void SimulatedDevice::plan(DiskFault fault)
{
    constexpr std::array damaging{EIO, ENOSPC, EDQUOT};
    constexpr std::array passing{EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS};
    files_.heal();
    if (fault == DiskFault::none) {
        return;
    }
    const int number = static_cast<int>(1 + choices_.below(usualCalls_));
    if (fault == DiskFault::powerCut) {
        files_.cutPowerBefore(number);
        return;
    }
    const bool isOnce = choices_.below(2) == 0;
    const int code = fault == DiskFault::passingFailure
        ? passing.at(choices_.below(passing.size()))
        : damaging.at(choices_.below(damaging.size()));
    if (isOnce) {
        files_.failCall(number, code);
    } else {
        files_.failCallsFrom(number, code);
    }
}

void SimulatedDevice::losePower()
{
    store_.reset();
    Disk left = files_.disk();
    left.cutPower(choices_);
    files_.restart(Unsynced::kept);
    files_.mount(std::move(left));
}

void SimulatedDevice::setClockForward(double seconds)
{
    constexpr double tolerance = 60.0;
    clockOffset_ += seconds;
    if (seconds > 0.0 && seconds <= tolerance) {
        forgivenSeconds_ += seconds;
    }
}

void SimulatedDevice::kill()
{
    store_.reset();
}

void SimulatedDevice::putBack(const Copy& copy)
{
    files_.put(primaryPath, copy.primary);
    if (copy.backup) {
        files_.put(backupPath, *copy.backup);
    } else {
        files_.erase(backupPath);
    }
}

void SimulatedDevice::exchangeDirectory(const Copy& copy)
{
    files_.removeDirectory(elsewhere);
    files_.moveDirectory(directory, elsewhere);
    files_.putDirectory(directory);
    putBack(copy);
}

void SimulatedDevice::moveDirectoryBack()
{
    files_.removeDirectory(directory);
    files_.moveDirectory(elsewhere, directory);
}

SimulatedDevice::Copy SimulatedDevice::copyElsewhere() const
{
    const std::string place = elsewhere;
    return {files_.content(place + "/ledger.json").value(),
        files_.content(place + "/ledger.backup.json")};
}

void SimulatedDevice::damagePrimary()
{
    std::string bytes = primary().value();
    const std::size_t place = choices_.below(bytes.size());
    // One file under both names, as a power cut may leave it, would be damaged under both.
    const bool isAlsoBackup = files_.disk().find(primaryPath) == files_.disk().find(backupPath);
    switch (choices_.below(isAlsoBackup ? 2 : 3)) {
    case 0:
        files_.put(primaryPath, bytes.substr(0, place / 2)); // never all but a line end
        break;
    case 1:
        files_.put(primaryPath, "");
        break;
    default:
        bytes[place] = '\0';
        files_.overwrite(primaryPath, bytes);
    }
}

} // namespace KestryCore
