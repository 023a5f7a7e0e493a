#include "SettingsDefaults.h"

#include <utility>

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
    store(key, value);
}

std::optional<std::string> SettingsDefaults::string(const std::string& key) const
{
    const QVariant value = settings_.value(QString::fromStdString(key));
    return value.isValid() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

void SettingsDefaults::setString(const std::string& key, const std::string& value)
{
    store(key, QString::fromStdString(value));
}

void SettingsDefaults::setFailureAction(std::function<void(const std::string&)> failed)
{
    failed_ = std::move(failed);
}

void SettingsDefaults::store(const std::string& key, const QVariant& value)
{
    // It shares its values with all of the same file, but keeps an error for itself, and for good.
    QSettings settings(settings_.fileName(), QSettings::IniFormat);
    settings.setValue(QString::fromStdString(key), value);
    settings.sync();
    const bool hadFailed = std::exchange(hasFailed_, settings.status() == QSettings::AccessError);
    if (hasFailed_ && !hadFailed && failed_) {
        failed_("Your settings could not be stored in " + settings_.fileName().toStdString()
            + ". Changes to them last until you quit Kestry.");
    }
}

} // namespace Kestry
