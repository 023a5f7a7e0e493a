#include "SettingsDefaults.h"

namespace Kestry {

SettingsDefaults::SettingsDefaults()
    : settings_(QSettings::IniFormat, QSettings::UserScope, "Kestry", "Kestry")
{
}

SettingsDefaults::SettingsDefaults(const QString& path) : settings_(path, QSettings::IniFormat) { }

std::optional<bool> SettingsDefaults::boolean(const std::string& key) const
{
    // An INI file keeps text only, so a boolean is what is written as one.
    const QString text = settings_.value(QString::fromStdString(key)).toString();
    if (text == "true") {
        return true;
    }
    return text == "false" ? std::optional(false) : std::nullopt;
}

void SettingsDefaults::setBoolean(const std::string& key, bool value)
{
    settings_.setValue(QString::fromStdString(key), value);
    settings_.sync();
}

std::optional<std::string> SettingsDefaults::string(const std::string& key) const
{
    const QVariant value = settings_.value(QString::fromStdString(key));
    return value.isValid() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

void SettingsDefaults::setString(const std::string& key, const std::string& value)
{
    settings_.setValue(QString::fromStdString(key), QString::fromStdString(value));
    settings_.sync();
}

} // namespace Kestry
