#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "CloudDatabase.h"
#include "Observable.h"
#include "PasswordKeeper.h"
#include "Scheduler.h"
#include "SecretStore.h"
#include "Task.h"
#include "TaskOwner.h"
#include "UserDefaults.h"

namespace Kestry {

/// Who the user is at a record store.
struct CloudCredentials {
    std::string address;  ///< A server's, or `sqlite:` and a path.
    std::string user;     ///< Empty where the store knows no users.
    std::string password; ///< Goes to the store and the desktop's keeping, into no message or file.
};

/// What a record store is opened for.
enum class StoreUse {
    signIn, ///< The user names it for the first time: it may be made.
    work    ///< It was there before.
};

/// The record store to which the user has signed in, on this machine. The address and the user are
/// in the user's defaults. The password is with the desktop, and where that keeps none, in memory
/// until the program ends.
///
/// Not thread-safe.
class CloudAccount {
public:
    struct Name {
        std::string address;
        std::string user;

        friend bool operator==(const Name&, const Name&) = default;
    };
    using Open = std::function<std::unique_ptr<KestryCore::CloudContainer>(
        const CloudCredentials&, StoreUse)>;
    /// Gives the words of a failure; nullopt when all went well.
    using Done = std::function<void(std::optional<std::string> failure)>;

    /// All of it must outlive the account.
    struct World {
        UserDefaults& defaults;
        SecretStore& secrets;
        KestryCore::Scheduler& scheduler;
        /// See `openRecordStore`.
        Open open;
        /// Whether the ledger has a place for its records in some store: none is made then.
        std::function<bool()> hasSynced = [] { return false; };
    };

    explicit CloudAccount(World world);

    /// Nothing while the user is signed out. Told when it is another one.
    [[nodiscard]] const KestryCore::Observable<std::optional<Name>>& name() const { return name_; }
    /// Whether the password will be gone with the program, since the desktop keeps none.
    [[nodiscard]] const KestryCore::Observable<bool>& isForgotten() const { return isForgotten_; }
    /// Why the desktop still has a password that it was to forget, and what to do; nullopt when it
    /// has none.
    [[nodiscard]] const KestryCore::Observable<std::optional<std::string>>& leftBehind() const
    {
        return leftBehind_;
    }

    /// Calls an observer whenever the user is signed in as another one. Not when he signs out.
    [[nodiscard]] KestryCore::Subscription observeSignIn(std::function<void()> observer) const;

    /// Whether a store can be asked for this account: its address and its user have the right form.
    [[nodiscard]] bool canTry(const Name& name) const;
    /// Checks an account with its store, and keeps it when the store takes it. Until then, and
    /// after a failure, the user stays who he was. Another call, `cancelSignIn` or `signOut` ends
    /// the one under way, and whoever began that is told so. All are told in a later turn, and not
    /// at all when the account goes first.
    void signIn(CloudCredentials credentials, Done done);
    void cancelSignIn();
    /// Forgets the account at once, and has the desktop forget its password: whether that went well
    /// is told. What is in the store stays there.
    void signOut(Done done = {});

    /// The user has pressed something that needs the store: a password that the desktop did not
    /// hand out is asked for again.
    void askAgain() { unread_.reset(); }

    /// The signed-in user's store; without one the store that the identifier names, null for none.
    /// Throws `CloudError` when it cannot be opened, or the password is gone. A desktop that did
    /// not hand out the password is not asked again before `askAgain`: it may ask the user each
    /// time.
    [[nodiscard]] KestryCore::Task<std::shared_ptr<KestryCore::CloudContainer>> container(
        std::string identifier);

private:
    using Container = std::shared_ptr<KestryCore::CloudContainer>;

    [[nodiscard]] KestryCore::Task<void> check(CloudCredentials credentials);
    [[nodiscard]] KestryCore::Task<void> keep(CloudCredentials credentials);
    [[nodiscard]] KestryCore::Task<void> readPassword(Name name);
    void stopSignIn(const std::string& reason);
    void takeBackPassword(const Name& name);
    void forgetPassword(const Name& name, Done done);
    void dismissLeft(const Name& name);
    void takePassword(const Name& name, SecretAnswer answer, const std::string& secret);
    void end(std::optional<std::string> failure);
    void later(Done done, std::optional<std::string> failure);

    World world_;
    KestryCore::Observable<std::optional<Name>> name_;
    KestryCore::Observable<bool> isForgotten_{false};
    KestryCore::Observable<std::optional<std::string>> leftBehind_;
    std::optional<Name> left_; // whose password it is
    PasswordKeeper passwords_;
    std::optional<std::string> password_; // once it was read or entered
    std::optional<std::string> unread_;   // why it could not be read
    std::optional<Name> writing_;         // whose password is being kept before it is signed in
    Container container_;                 // of `name_`, or of `identifier_` without one
    std::string identifier_;
    Done signedIn_; // to be called when the sign-in under way is over
    std::shared_ptr<void> life_ = std::make_shared<int>();
    std::unique_ptr<KestryCore::TaskOwner> signingIn_; // its frame uses all others
};

} // namespace Kestry
