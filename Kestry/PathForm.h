#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include "FileChooser.h"

namespace Kestry {

/// Lets the user choose a file: in the desktop's dialog, or where there is none in a form of ours
/// that asks for the path. It always has an answer other than `unavailable`.
class PathForm final : public QObject, public FileChooser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one form.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString line READ line NOTIFY changed)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed)
    Q_PROPERTY(QString acceptLabel READ acceptLabel NOTIFY changed)

public:
    /// The dialog must outlive the form.
    explicit PathForm(FileChooser& dialog) : dialog_(dialog) { }

    void ask(const FileQuestion& question, Answered answered) override;

    /// Whether the form of ours is open.
    [[nodiscard]] bool isOpen() const { return isOpen_; }
    [[nodiscard]] QString title() const { return question_.title; }
    /// The type of files that are asked for.
    [[nodiscard]] QString line() const { return question_.typeName; }
    /// What is typed: a path, or a name in the folder where the choice begins.
    [[nodiscard]] QString path() const { return path_; }
    void setPath(const QString& path);
    /// Why the form is still open after `accept`; empty before.
    [[nodiscard]] QString note() const { return note_; }
    /// "Replace" once the user knows that the file to save exists.
    [[nodiscard]] QString acceptLabel() const;

    /// Answers with the path, or puts the reason why not into `note`.
    Q_INVOKABLE void accept();
    Q_INVOKABLE void cancel();

signals:
    void changed();

private:
    void open();
    void refuse(const QString& note);
    void finish(const FileAnswer& answer);
    [[nodiscard]] bool isSaving() const;
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QString typedPath() const;
    [[nodiscard]] QString objectionTo(const QString& path);

    FileChooser& dialog_;
    FileQuestion question_;
    Answered answered_;
    bool isOpen_ = false;
    QString path_;
    QString note_;
    QString toReplace_; ///< The file that the user knows to exist.
};

} // namespace Kestry
