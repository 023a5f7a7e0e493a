#pragma once

#include <functional>
#include <optional>
#include <string>

namespace Kestry {

/// What the desktop says to a question for a secret.
struct SecretAnswer {
    std::optional<std::string> secret{};
    /// Whether one that is not there may be later, since the desktop could not be asked. Otherwise
    /// there is none, or its user would not open the keeping, and would be asked once more.
    bool mayComeLater = false;
};

/// Where the desktop keeps passwords for the user. Answers come later, from the event loop; the
/// store must not be destroyed by one.
class SecretStore {
public:
    SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    virtual ~SecretStore() = default;

    /// Gives the secret, if there is one. The desktop may have to ask its user first.
    virtual void read(const std::string& key, std::function<void(SecretAnswer)> answered) = 0;
    /// Keeps a secret in place of an older one; tells whether it is kept.
    virtual void write(const std::string& key, const std::string& secret,
        std::function<void(bool isKept)> answered) = 0;
    /// Forgets a secret, if there is one.
    virtual void remove(const std::string& key) = 0;
};

} // namespace Kestry
