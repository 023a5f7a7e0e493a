#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include "AppState.h"
#include "FileChooser.h"
#include "Scheduler.h"
#include "TimeStore.h"
#include "UserDefaults.h"

namespace Kestry {

/// Writes all saved sessions to a file that the user chooses. The file is written whole or not at
/// all. What became of it is published as the state's `exportMessage`, a failure as the store's
/// `errorMessage`.
class SessionExport final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one command.")
    Q_PROPERTY(bool isWriting READ isWriting NOTIFY changed)

public:
    /// All of it must outlive the command.
    struct World {
        KestryCore::TimeStore& store;
        AppState& state;
        FileChooser& chooser;
        UserDefaults& defaults;
        KestryCore::Scheduler& scheduler;
        KestryCore::Clock now;
        QString documents; ///< The folder to propose first.
    };

    explicit SessionExport(World world);

    /// True from the choice of a file until it is written.
    [[nodiscard]] bool isWriting() const { return isWriting_; }

    /// Asks for a file and writes it. Does nothing while one is written. Refused while there is no
    /// ledger that could be read: that is not one without sessions.
    Q_INVOKABLE void start();
    /// Writes at once what is still to be written, as before the program ends. Returns false when
    /// that failed.
    bool finish();

signals:
    void changed();

private:
    void writeSoon(const QString& path);
    bool write(const QString& path);
    [[nodiscard]] QString folder() const;

    World world_;
    bool isWriting_ = false;
    QString path_; ///< That is to be written.
    KestryCore::Timer writing_;
};

} // namespace Kestry
