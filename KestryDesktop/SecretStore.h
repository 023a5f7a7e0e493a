#pragma once

#include <functional>
#include <optional>
#include <string>

namespace Kestry {

/// Where the desktop keeps passwords for the user. Answers come later, from the event loop; the
/// store must not be destroyed by one.
class SecretStore {
public:
    SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    virtual ~SecretStore() = default;

    /// Gives the secret; nullopt when there is none, or the desktop keeps none.
    virtual void read(
        const std::string& key, std::function<void(std::optional<std::string>)> answered) = 0;
    /// Keeps a secret in place of an older one; tells whether it is kept.
    virtual void write(const std::string& key, const std::string& secret,
        std::function<void(bool isKept)> answered) = 0;
    /// Forgets a secret, if there is one.
    virtual void remove(const std::string& key) = 0;
};

} // namespace Kestry
