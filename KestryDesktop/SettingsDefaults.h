#pragma once

#include <QSettings>

#include <functional>

#include "UserDefaults.h"

namespace Kestry {

/// The user's settings in one INI file. A value that cannot be stored lasts as long as the process.
class SettingsDefaults final : public UserDefaults {
public:
    /// The file under the user's configuration directory.
    SettingsDefaults();
    explicit SettingsDefaults(const QString& path);

    [[nodiscard]] std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    [[nodiscard]] std::optional<std::string> string(const std::string& key) const override;
    void setString(const std::string& key, const std::string& value) override;

    /// Sets what is told when a value cannot be stored: one sentence fit to show, and nothing more
    /// until a value could be stored again.
    void setFailureAction(std::function<void(const std::string&)> failed);

private:
    void store(const std::string& key, const QVariant& value);

    QSettings settings_;
    std::function<void(const std::string&)> failed_;
    bool hasFailed_ = false; ///< With the latest value.
};

} // namespace Kestry
