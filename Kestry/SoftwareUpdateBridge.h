#pragma once

#include <QLocale>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

#include "SoftwareUpdater.h"
#include "UpdateSheetText.h"

namespace Kestry {

/// Gives the settings page what it shows of updates, and the sheet what it shows of one.
class SoftwareUpdateBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(bool isAutomatic READ isAutomatic NOTIFY changed)
    Q_PROPERTY(bool canSwitch READ canSwitch NOTIFY changed)
    Q_PROPERTY(bool canCheck READ canCheck NOTIFY changed)
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY sheetChanged)
    Q_PROPERTY(QString title READ title NOTIFY sheetChanged)
    Q_PROPERTY(QString message READ message NOTIFY sheetChanged)
    Q_PROPERTY(QString installLabel READ installLabel NOTIFY sheetChanged)
    Q_PROPERTY(QString dismissLabel READ dismissLabel NOTIFY sheetChanged)
    Q_PROPERTY(bool canDismiss READ canDismiss NOTIFY sheetChanged)
    Q_PROPERTY(double progress READ progress NOTIFY sheetChanged)
    Q_PROPERTY(bool hasReleaseNotes READ hasReleaseNotes NOTIFY sheetChanged)

public:
    /// The updater must outlive the bridge.
    struct World {
        SoftwareUpdater& updater;
        QString version; ///< Of the running program; empty for a build without one.
        QLocale locale;
        /// Opens a page in the user's browser; false when there is none.
        std::function<bool(const QString& link)> openLink;
        /// Shows a failure in the window.
        std::function<void(const std::string& words)> fail;
    };

    explicit SoftwareUpdateBridge(World world);

    // Of the settings.

    [[nodiscard]] bool isAutomatic() const { return *fields().automaticChecks; }
    [[nodiscard]] bool canSwitch() const { return *fields().isConfigured; }
    [[nodiscard]] bool canCheck() const { return world_.updater.mayCheck(); }
    /// One line on how it stands.
    [[nodiscard]] QString status() const { return QString::fromStdString(*fields().status); }
    Q_INVOKABLE void toggleAutomatic();
    Q_INVOKABLE void check();

    // Of the sheet; see `UpdateSheetText`.

    [[nodiscard]] bool isOpen() const { return !text_.title.isEmpty(); }
    [[nodiscard]] QString title() const { return text_.title; }
    [[nodiscard]] QString message() const { return text_.message; }
    [[nodiscard]] QString installLabel() const { return text_.install; }
    [[nodiscard]] QString dismissLabel() const { return text_.dismiss; }
    [[nodiscard]] bool canDismiss() const { return text_.canDismiss; }
    /// From 0 to 1; less than 0 while nothing can be measured.
    [[nodiscard]] double progress() const { return text_.progress.value_or(-1.0); }
    /// Whether there is a page that tells what is new.
    [[nodiscard]] bool hasReleaseNotes() const;
    Q_INVOKABLE void install();
    /// Leaves the update for now. Does nothing while it cannot be left.
    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void openReleaseNotes();

signals:
    void changed();
    void sheetChanged();

private:
    [[nodiscard]] const SoftwareUpdaterFields& fields() const { return world_.updater.fields(); }
    [[nodiscard]] QString releaseNotes() const;
    void refresh();

    World world_;
    UpdateSheetText text_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
