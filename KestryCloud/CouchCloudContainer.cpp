#include "CouchCloudContainer.h"

#include <utility>

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr double refusedSeconds = 300.0; // as long as a server locks an account, at most

} // namespace

CouchCloudContainer::CouchCloudContainer(
    const CouchAddress& address, const CouchAccount& account, CouchPlatform platform)
    : platform_(std::move(platform)), client_(platform_.scheduler, platform_.userAgent),
      server_(client_, platform_.scheduler, address, account, platform_.limits, platform_.now),
      database_(server_, platform_.scheduler, platform_.newUuid)
{
}

Task<bool> CouchCloudContainer::isAccountAvailable()
{
    if (server_.user().empty()) {
        co_return false;
    }
    Task<void> verifying = verify();
    co_await verifying;
    co_return true;
}

Task<std::string> CouchCloudContainer::userRecordName()
{
    Task<void> verifying = verify();
    co_await verifying;
    co_return server_.user() + "@" + *identity_;
}

Task<void> CouchCloudContainer::verify()
{
    // Each request has the password with it, so what the server has just answered was to the user.
    if (identity_ && server_.isTrusted()) {
        co_return;
    }
    if (refusal_ && platform_.scheduler.now() - refusedAt_ < refusedSeconds) {
        throw CouchRefused(*refusal_);
    }
    refusal_.reset();
    Task<void> asking = askServer();
    try {
        co_await asking;
    } catch (const CouchRefused& refusal) {
        refusal_ = refusal;
        refusedAt_ = platform_.scheduler.now();
        throw;
    }
}

Task<void> CouchCloudContainer::askServer()
{
    Task<CouchWelcome> greeting = server_.welcome();
    const CouchWelcome welcome = co_await greeting;
    Task<void> requiring = server_.requireUser();
    co_await requiring;
    // A server that has no identity is known by where it is.
    identity_ = welcome.identity.empty() ? server_.address().server : welcome.identity;
}

} // namespace Kestry
