#pragma once

#include <QDBusVariant>
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QVariant>

#include <map>
#include <optional>
#include <string>

#include "DesktopFont.h"
#include "DesktopPreferences.h"

namespace Kestry {

/// Reads the desktop's settings into preferences and follows their changes: from the settings
/// portal, or without one from the files of common desktops.
class DesktopSettings final : public QObject {
    Q_OBJECT
public:
    /// `configuration` is the user's configuration directory. Reads nothing before `follow`.
    DesktopSettings(DesktopPreferences& preferences, QString configuration);

    /// Requests the settings, without waiting for the answer, and follows their changes.
    void follow();

    /// Takes one setting of the portal, by its namespace and key. Ignores unknown ones.
    void take(const QString& group, const QString& key, const QVariant& value);
    /// Reads the files of common desktops.
    void readFiles();

private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void followFiles();
    void takeFont(const QString& group, const QString& key, const QVariant& value);
    void apply();
    [[nodiscard]] double textScale() const;

    DesktopPreferences& preferences_;
    QString configuration_;
    QFileSystemWatcher watcher_;
    // Several settings mean the same preference; one that is on is enough.
    std::map<std::string, bool> motion_;
    std::map<std::string, bool> contrast_;
    // A desktop that is not KDE does not write KDE's font, but KDE may run what writes GTK's.
    std::optional<DesktopFont> kdeFont_;
    std::optional<DesktopFont> gtkFont_;
    double gtkTextScale_ = 1.0;
};

} // namespace Kestry
