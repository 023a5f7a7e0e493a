#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Command.h"
#include "CommandContext.h"

namespace Kestry {

/// Replication in the running application, as commands use it.
class LiveSync {
public:
    /// Gives the words of a failure, fit to show; nullopt when all went well. It is called once, on
    /// a later turn of the event loop, and not when this object goes before.
    using Done = std::function<void(std::optional<std::string> failure)>;

    LiveSync() = default;
    LiveSync(const LiveSync&) = delete;
    LiveSync& operator=(const LiveSync&) = delete;
    virtual ~LiveSync() = default;

    [[nodiscard]] virtual SyncCondition condition() const = 0;

    /// Whether the command's address and user are such that a sign-in can be tried. Asks nobody.
    [[nodiscard]] virtual bool canTry(const SyncSignInCommand& command) const = 0;
    /// Checks the account with its store, and keeps it when the store takes it.
    virtual void signIn(const SyncSignInCommand& command, Done done) = 0;
    /// Turns replication off and forgets the account, in this call, and then has the desktop forget
    /// the password. Throws a `LedgerError` when nobody is signed in.
    virtual void signOut(Done done) = 0;
    /// Turns replication on, and waits for the end of the exchange that follows.
    virtual void turnOn(Done done) = 0;
    /// Throws a `LedgerError` when that cannot be saved. It is off all the same, until the program
    /// ends.
    virtual void turnOff() = 0;
    /// Exchanges records, once an exchange under way is over.
    virtual void exchange(Done done) = 0;
    /// Delivers all records of this device anew, and exchanges records.
    virtual void uploadAgain(Done done) = 0;
};

} // namespace Kestry
