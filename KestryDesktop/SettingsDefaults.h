#pragma once

#include <QSettings>

#include "UserDefaults.h"

namespace Kestry {

/// The user's settings in one INI file.
class SettingsDefaults final : public UserDefaults {
public:
    /// The file under the user's configuration directory.
    SettingsDefaults();
    explicit SettingsDefaults(const QString& path);

    [[nodiscard]] std::optional<bool> boolean(const std::string& key) const override;
    void setBoolean(const std::string& key, bool value) override;
    [[nodiscard]] std::optional<std::string> string(const std::string& key) const override;
    void setString(const std::string& key, const std::string& value) override;

private:
    QSettings settings_;
};

} // namespace Kestry
