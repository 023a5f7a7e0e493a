#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include "AppState.h"
#include "FileChooser.h"
#include "Scheduler.h"
#include "TimeStore.h"
#include "UserDefaults.h"

namespace Kestry {

/// Writes all saved sessions to a file that the user chooses: in the desktop's own dialog, or in a
/// form of ours where there is none. The file is written whole or not at all. What became of it is
/// published as the state's `exportMessage`, a failure as the store's `errorMessage`.
class SessionExport final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one command.")
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY changed)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed)
    Q_PROPERTY(QString saveLabel READ saveLabel NOTIFY changed)
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

    /// Whether the form of ours is open.
    [[nodiscard]] bool isAsking() const { return isAsking_; }
    /// What is typed there: a path, or a name in the proposed folder.
    [[nodiscard]] QString path() const { return path_; }
    void setPath(const QString& path);
    /// Why the form is still open after `save`; empty before.
    [[nodiscard]] QString note() const { return note_; }
    /// "Replace" once the user knows that the file exists.
    [[nodiscard]] QString saveLabel() const;
    /// True from the choice of a file until it is written.
    [[nodiscard]] bool isWriting() const { return isWriting_; }

    /// Asks for a file and writes it. Does nothing while one is written.
    Q_INVOKABLE void start();
    /// Writes the file that the form names, or puts the reason why not into `note`.
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();

signals:
    void changed();

private:
    void answer(const SaveAnswer& answer);
    void openForm();
    void refuse(const QString& note);
    void writeSoon(const QString& path);
    void write(const QString& path);
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QString fileName() const;
    [[nodiscard]] QString typedPath() const;

    World world_;
    bool isAsking_ = false;
    bool isWriting_ = false;
    QString path_;
    QString note_;
    QString toReplace_; ///< The file that the user knows to exist.
    KestryCore::Timer writing_;
};

} // namespace Kestry
