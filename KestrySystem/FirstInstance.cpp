#include "FirstInstance.h"

#include "LedgerError.h"
#include "LocalClient.h"
#include "PrivateDirectories.h"

namespace Kestry {

namespace {

using Outcome = InstanceClaim::Outcome;

InstanceClaim refused(std::string reason)
{
    return {Outcome::refused, nullptr, std::nullopt, std::move(reason), {}};
}

/// Whether the holder of the lock will soon end or listen.
bool isPassing(const std::string& holder)
{
    return holder.empty() || holder.starts_with("kestry");
}

struct OpenedSocket {
    std::optional<ListeningSocket> socket;
    std::string notice;
};

OpenedSocket openSocketFor(const std::string& directory)
{
    KestryCore::ListeningPlace place = KestryCore::listeningPlace();
    return {ListeningSocket::open(place.path, localSocketName(directory)), std::move(place.notice)};
}

/// One try; nullopt when another try may succeed.
std::optional<InstanceClaim> tryToClaim(
    const std::string& directory, const std::shared_ptr<KestryCore::WriterLock>& lock)
{
    if (!lock->acquire()) {
        return isPassing(lock->holder()) ? std::nullopt : std::optional(refused(lock->refusal()));
    }
    try {
        // A missing directory can't be locked. Then the socket decides between two processes
        // that start at once.
        OpenedSocket opened = openSocketFor(directory);
        if (!opened.socket) {
            return std::nullopt;
        }
        return InstanceClaim{
            Outcome::first, lock, std::move(opened.socket), {}, std::move(opened.notice)};
    } catch (const KestryCore::LedgerError&) {
        // The lock protects the ledger without a socket. Only other processes can't be served.
        return InstanceClaim{Outcome::first, lock, std::nullopt, {}, {}};
    }
}

} // namespace

std::optional<ListeningSocket> listenAt(const std::string& directory)
{
    try {
        return openSocketFor(directory).socket;
    } catch (const KestryCore::LedgerError&) {
        return std::nullopt;
    }
}

InstanceClaim claimInstance(KestryCore::FileSystem& files, const std::string& directory,
    const LocalActivation& activation, const std::function<void(double seconds)>& sleep)
{
    constexpr double mostSeconds = 5.0;
    constexpr double pause = 0.05;
    const auto lock = std::make_shared<KestryCore::WriterLock>(files, directory);
    for (double waited = 0.0;; waited += pause) {
        const LocalReply reply = handOver(directory, encodeMessage(activation));
        if (reply.outcome == LocalReply::Outcome::answered) {
            return {Outcome::handedOver, nullptr, std::nullopt, {}, {}};
        }
        if (reply.outcome == LocalReply::Outcome::silent) {
            return refused("Kestry (process " + std::to_string(reply.process)
                + ") is using this data directory and does not answer.");
        }
        try {
            if (auto claim = tryToClaim(directory, lock)) {
                return std::move(*claim);
            }
        } catch (const std::exception& failure) {
            return refused(failure.what());
        }
        if (waited >= mostSeconds) {
            return refused(lock->refusal());
        }
        sleep(pause);
    }
}

} // namespace Kestry
