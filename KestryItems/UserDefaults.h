#pragma once

#include <optional>
#include <string>

namespace Kestry {

/// The user's settings outside the ledger: a store of keys that tells an absent value from a
/// false one.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// The value of a key; nullopt when the key is absent or its value is not a boolean.
    [[nodiscard]] virtual std::optional<bool> boolean(const std::string& key) const = 0;
    /// Stores the value at once.
    virtual void setBoolean(const std::string& key, bool value) = 0;

    /// The text of a key; nullopt when the key is absent.
    [[nodiscard]] virtual std::optional<std::string> string(const std::string& key) const = 0;
    /// Stores the text at once.
    virtual void setString(const std::string& key, const std::string& value) = 0;
};

} // namespace Kestry
