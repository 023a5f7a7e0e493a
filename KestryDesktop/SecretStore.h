#pragma once

#include <functional>
#include <string>

namespace Kestry {

/// What the desktop says to a request for a secret.
enum class SecretAnswer {
    done,     ///< It was read, is kept, or is gone.
    noEntry,  ///< There is no such secret; some desktops also say so when the user does not unlock.
    refused,  ///< There may be one: the keyring is locked, or the user or the desktop said no.
    noService ///< This desktop keeps no secrets.
};

/// Where the desktop keeps passwords for the user. Answers come later, from the event loop, and may
/// be long in coming while the desktop asks the user something; the store must not be destroyed by
/// one.
class SecretStore {
public:
    using Answered = std::function<void(SecretAnswer)>;

    SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    virtual ~SecretStore() = default;

    /// Gives the secret, which is empty unless the answer is `done`.
    virtual void read(const std::string& key,
        std::function<void(SecretAnswer, const std::string& secret)> answered) = 0;
    /// Keeps a secret in place of an older one.
    virtual void write(const std::string& key, const std::string& secret, Answered answered) = 0;
    /// Forgets a secret.
    virtual void remove(const std::string& key, Answered answered) = 0;
};

} // namespace Kestry
