#include "CloudAccount.h"

#include <exception>
#include <utility>

#include "Reply.h"
#include "SyncCloudRecord.h"

namespace Kestry {
namespace {

using KestryCore::CloudContainer;
using KestryCore::CloudError;
using KestryCore::CloudErrorCode;
using KestryCore::Reply;
using KestryCore::Task;

constexpr const char* addressKey = "cloudAddress";
constexpr const char* userKey = "cloudUser";

/// Under which the desktop keeps the password.
std::string secretKey(const CloudAccount::Name& name)
{
    return name.user + " " + name.address;
}

std::optional<CloudAccount::Name> storedName(const UserDefaults& defaults)
{
    const std::string address = defaults.string(addressKey).value_or("");
    if (address.empty()) {
        return std::nullopt;
    }
    return CloudAccount::Name{address, defaults.string(userKey).value_or("")};
}

void storeName(UserDefaults& defaults, const CloudAccount::Name& name)
{
    defaults.setString(addressKey, name.address);
    defaults.setString(userKey, name.user);
}

} // namespace

CloudAccount::CloudAccount(World world)
    : world_(std::move(world)), name_(storedName(world_.defaults))
{
}

KestryCore::Subscription CloudAccount::observeSignIn(std::function<void()> observer) const
{
    return name_.observe([observer = std::move(observer)](const std::optional<Name>& name) {
        if (name) {
            observer();
        }
    });
}

void CloudAccount::signIn(CloudCredentials credentials, SignedIn done)
{
    stopSignIn("Another sign-in has taken the place of this one.");
    signedIn_ = std::move(done);
    signingIn_ = std::make_unique<KestryCore::TaskOwner>(
        world_.scheduler, [](const std::exception_ptr& /*none comes here*/) {});
    signingIn_->start(check(std::move(credentials)));
}

void CloudAccount::cancelSignIn()
{
    stopSignIn("The sign-in was cancelled.");
}

void CloudAccount::stopSignIn(const std::string& reason)
{
    signingIn_.reset();
    end(reason);
}

// Told in a later turn: who is told may begin another one, which ends this task.
void CloudAccount::end(std::optional<std::string> failure)
{
    if (auto done = std::exchange(signedIn_, {})) {
        world_.scheduler.post([life = std::weak_ptr<void>(life_), done = std::move(done),
                                  failure = std::move(failure)] {
            if (!life.expired()) {
                done(failure);
            }
        });
    }
}

Task<void> CloudAccount::check(CloudCredentials credentials)
{
    std::optional<std::string> failure;
    try {
        Container container = world_.open(credentials, StoreUse::signIn);
        if (!container) {
            throw CloudError("Enter the address of a record store.");
        }
        Task<void> checking = requireAccount(container);
        co_await checking;
        Task<void> keeping = keep(credentials);
        co_await keeping;
    } catch (const std::exception& refused) {
        failure = refused.what();
    }
    end(std::move(failure));
}

Task<void> CloudAccount::requireAccount(Container container)
{
    Task<bool> asking = container->isAccountAvailable();
    const bool isAvailable = co_await asking;
    if (!isAvailable) {
        throw CloudError("The record store does not know this account.");
    }
    Task<std::string> naming = container->userRecordName();
    (void)co_await naming;
    bool hasZone = true;
    Task<void> fetching = container->privateDatabase().fetchZone(KestryCore::workspaceZone());
    try {
        co_await fetching;
    } catch (const CloudError& failure) {
        if (failure.code() != CloudErrorCode::zoneNotFound) {
            throw;
        }
        hasZone = false;
    }
    if (!hasZone) {
        Task<void> creating = container->privateDatabase().createZone(KestryCore::workspaceZone());
        co_await creating;
    }
}

Task<void> CloudAccount::keep(CloudCredentials credentials)
{
    const Name name{credentials.address, credentials.user};
    bool isKept = true;
    if (!name.user.empty()) {
        Reply<bool> reply(world_.scheduler);
        world_.secrets.write(secretKey(name), credentials.password,
            [sender = reply.sender()](bool kept) { sender.give(kept); });
        const bool answer = co_await reply;
        isKept = answer;
    }
    const auto before = *name_;
    if (before && *before != name && !before->user.empty()) {
        world_.secrets.remove(secretKey(*before));
    }
    storeName(world_.defaults, name);
    password_ = credentials.password;
    isWithheld_ = false;
    container_.reset(); // from now on a store that is gone is not made anew
    isForgotten_.assign(!isKept);
    if (*name_ != name) {
        name_.assign(name);
    }
}

void CloudAccount::signOut()
{
    cancelSignIn();
    const auto before = *name_;
    if (!before) {
        return;
    }
    if (!before->user.empty()) {
        world_.secrets.remove(secretKey(*before));
    }
    storeName(world_.defaults, {});
    password_.reset();
    isWithheld_ = false;
    container_.reset();
    isForgotten_.assign(false);
    name_.assign(std::nullopt);
}

Task<void> CloudAccount::readPassword(Name name)
{
    SecretAnswer answer;
    if (!isWithheld_) {
        Reply<SecretAnswer> reply(world_.scheduler);
        world_.secrets.read(secretKey(name),
            [sender = reply.sender()](SecretAnswer given) { sender.give(std::move(given)); });
        SecretAnswer given = co_await reply;
        answer = std::move(given);
        if (*name_ != name) {
            throw CloudError("The account of the record store has changed.");
        }
        isWithheld_ = !answer.secret && !answer.mayComeLater;
    }
    if (!answer.secret) {
        throw CloudError("The password of the record store is not known any more. Sign in again "
                         "in Settings.");
    }
    password_ = std::move(answer.secret);
}

Task<std::shared_ptr<CloudContainer>> CloudAccount::container(std::string identifier)
{
    if (const auto name = *name_) {
        if (!name->user.empty() && !password_) {
            Task<void> reading = readPassword(*name);
            co_await reading;
        }
        if (!container_) {
            container_ =
                world_.open({name->address, name->user, password_.value_or("")}, StoreUse::work);
        }
        co_return container_;
    }
    if (!container_ || identifier_ != identifier) {
        container_ = world_.open({identifier, "", ""}, StoreUse::signIn);
        identifier_ = identifier;
    }
    co_return container_;
}

} // namespace Kestry
