#pragma once

#include <QDBusVariant>
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QVariant>

#include <map>
#include <optional>
#include <string>

#include "DesktopPreferences.h"

namespace Kestry {

/// Reads the desktop's settings into preferences and follows them: from the settings portal, and
/// where there is none from the files of the usual desktops.
class DesktopSettings final : public QObject {
    Q_OBJECT
public:
    /// `configuration` is the user's configuration directory. Nothing is read before `follow`.
    DesktopSettings(DesktopPreferences& preferences, QString configuration);

    /// Asks for the settings, without waiting for the answer, and follows them from then on.
    void follow();

    /// Takes one setting of the portal, by its namespace and key; unknown ones say nothing.
    void take(const QString& group, const QString& key, const QVariant& value);
    /// Reads the desktops' own files.
    void readFiles();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void followFiles();
    void apply();

    DesktopPreferences& preferences_;
    QString configuration_;
    QFileSystemWatcher watcher_;
    // Several settings ask for the same thing, and any one of them is enough.
    std::map<std::string, bool> motion_;
    std::map<std::string, bool> transparency_;
};

} // namespace Kestry
