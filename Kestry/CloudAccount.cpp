#include "CloudAccount.h"

#include <exception>
#include <utility>

#include "AccountCheck.h"
#include "Reply.h"

namespace Kestry {
namespace {

using KestryCore::CloudContainer;
using KestryCore::CloudError;
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

/// Why there is no password, by what the desktop said; nullopt when it said nothing.
std::string unreadText(std::optional<SecretAnswer> answer)
{
    if (!answer) {
        return "The desktop has not handed out the password of the record store yet. See whether "
               "its keyring asks for something, then press \"Sync now\".";
    }
    switch (*answer) {
    case SecretAnswer::refused:
        return "The desktop did not hand out the password of the record store. Unlock its keyring, "
               "then press \"Sync now\".";
    case SecretAnswer::noService:
        return "This desktop keeps no passwords now. Sign in again in Settings.";
    default:
        return "The password of the record store is not known any more. Sign in again in Settings.";
    }
}

constexpr const char* leftBehindText =
    "The desktop did not forget the password. Remove \"org.kestry.Kestry\" in its password "
    "manager.";

} // namespace

CloudAccount::CloudAccount(World world)
    : world_(std::move(world)), name_(storedName(world_.defaults)),
      passwords_(world_.secrets, world_.scheduler)
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

bool CloudAccount::canTry(const Name& name) const
{
    try {
        return world_.open({name.address, name.user, ""}, StoreUse::work) != nullptr;
    } catch (const CloudError&) {
        return false;
    }
}

void CloudAccount::signIn(CloudCredentials credentials, Done done)
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
    if (const auto name = std::exchange(writing_, std::nullopt)) {
        takeBackPassword(*name);
    }
    end(reason);
}

/// The desktop may keep it already, or will.
void CloudAccount::takeBackPassword(const Name& name)
{
    if (*name_ != name) {
        forgetPassword(name, {});
    } else if (password_) {
        passwords_.write(secretKey(name), *password_, [](SecretAnswer) {});
    }
    // Else the older password was not read yet, and the store has just accepted the new one.
}

void CloudAccount::forgetPassword(const Name& name, Done done)
{
    passwords_.remove(secretKey(name), [this, name, done = std::move(done)](SecretAnswer answer) {
        const bool isLeft = answer == SecretAnswer::refused;
        if (isLeft) {
            left_ = name;
            leftBehind_.assign(leftBehindText);
        } else {
            dismissLeft(name);
        }
        if (done) {
            done(isLeft ? std::optional<std::string>(leftBehindText) : std::nullopt);
        }
    });
}

/// The password of this account is gone, or is to be there.
void CloudAccount::dismissLeft(const Name& name)
{
    if (left_ == name) {
        left_.reset();
        leftBehind_.assign(std::nullopt);
    }
}

// Told in a later turn: who is told may begin another one, which ends this task.
void CloudAccount::end(std::optional<std::string> failure)
{
    if (auto done = std::exchange(signedIn_, {})) {
        later(std::move(done), std::move(failure));
    }
}

void CloudAccount::later(Done done, std::optional<std::string> failure)
{
    world_.scheduler.post(
        [life = std::weak_ptr<void>(life_), done = std::move(done), failure = std::move(failure)] {
            if (!life.expired()) {
                done(failure);
            }
        });
}

Task<void> CloudAccount::check(CloudCredentials credentials)
{
    std::optional<std::string> failure;
    try {
        Container container = world_.open(credentials, StoreUse::signIn);
        if (!container) {
            throw CloudError("Enter the address of a record store.");
        }
        Task<void> checking = requireAccount(container, !world_.hasSynced());
        co_await checking;
        Task<void> keeping = keep(credentials);
        co_await keeping;
    } catch (const std::exception& refused) {
        failure = refused.what();
    }
    end(std::move(failure));
}

Task<void> CloudAccount::keep(CloudCredentials credentials)
{
    const Name name{credentials.address, credentials.user};
    bool isKept = true;
    if (!name.user.empty()) {
        Reply<SecretAnswer> reply(world_.scheduler);
        writing_ = name;
        passwords_.write(secretKey(name), credentials.password,
            [sender = reply.sender()](SecretAnswer answer) { sender.give(answer); });
        const SecretAnswer answer = co_await reply;
        writing_.reset();
        isKept = answer == SecretAnswer::done;
    }
    const auto before = *name_;
    dismissLeft(name);
    if (before && *before != name && !before->user.empty()) {
        forgetPassword(*before, {});
    }
    storeName(world_.defaults, name);
    password_ = credentials.password;
    unread_.reset();
    container_.reset(); // from now on a store that is gone is not made anew
    isForgotten_.assign(!isKept);
    if (*name_ != name) {
        name_.assign(name);
    }
}

void CloudAccount::signOut(Done done)
{
    cancelSignIn();
    const auto before = *name_;
    if (before) {
        storeName(world_.defaults, {});
        password_.reset();
        unread_.reset();
        container_.reset();
        isForgotten_.assign(false);
        name_.assign(std::nullopt);
    }
    if (before && !before->user.empty()) {
        forgetPassword(*before, std::move(done));
    } else if (done) {
        later(std::move(done), std::nullopt);
    }
}

Task<void> CloudAccount::readPassword(Name name)
{
    if (unread_) {
        throw CloudError(*unread_);
    }
    Reply<std::optional<SecretAnswer>> reply(world_.scheduler);
    const auto sender = reply.sender();
    world_.secrets.read(secretKey(name),
        [this, life = std::weak_ptr<void>(life_), name, sender](
            SecretAnswer answer, const std::string& secret) {
            if (!life.expired()) {
                takePassword(name, answer, secret);
                sender.give(answer);
            }
        });
    const KestryCore::Timer patience = world_.scheduler.after(
        PasswordKeeper::patienceSeconds, [sender] { sender.give(std::nullopt); });
    const std::optional<SecretAnswer> answer = co_await reply;
    if (*name_ != name) {
        throw CloudError("The account of the record store has changed.");
    }
    if (password_) {
        co_return;
    }
    if (answer != SecretAnswer::noService) { // That one asks nobody, and may only start late.
        unread_ = unreadText(answer);
    }
    throw CloudError(unreadText(answer));
}

/// An answer that comes after all counts as well.
void CloudAccount::takePassword(const Name& name, SecretAnswer answer, const std::string& secret)
{
    if (answer == SecretAnswer::done && *name_ == name && !password_) {
        password_ = secret;
        unread_.reset();
    }
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
