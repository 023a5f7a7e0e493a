#include "PathForm.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace Kestry {

void PathForm::ask(const FileQuestion& question, Answered answered)
{
    question_ = question;
    answered_ = std::move(answered);
    isOpen_ = false;
    emit changed();
    dialog_.ask(question, [this](const FileAnswer& answer) {
        if (answer.kind == FileAnswer::Kind::unavailable) {
            open();
        } else {
            finish(answer);
        }
    });
}

void PathForm::finish(const FileAnswer& answer)
{
    isOpen_ = false;
    emit changed();
    if (const Answered answered = std::exchange(answered_, nullptr)) {
        answered(answer);
    }
}

bool PathForm::isSaving() const
{
    return question_.purpose == FileQuestion::Purpose::save;
}

QString PathForm::folder() const
{
    return question_.folder.isEmpty() ? QDir::homePath() : question_.folder;
}

void PathForm::open()
{
    path_ = isSaving() ? QDir(folder()).filePath(question_.fileName) : QString();
    note_.clear();
    toReplace_.clear();
    isOpen_ = true;
    emit changed();
}

void PathForm::setPath(const QString& path)
{
    if (path != path_) {
        path_ = path;
        note_.clear();
        toReplace_.clear();
        emit changed();
    }
}

QString PathForm::acceptLabel() const
{
    if (!isSaving()) {
        return "Open";
    }
    return toReplace_.isEmpty() ? "Save" : "Replace";
}

QString PathForm::typedPath() const
{
    const QString typed = path_.trimmed();
    if (typed == "~" || typed.startsWith("~/")) {
        return QDir::cleanPath(QDir::home().filePath(typed.mid(2)));
    }
    return QDir::cleanPath(QDir(folder()).filePath(typed));
}

void PathForm::refuse(const QString& note)
{
    note_ = note;
    emit changed();
}

/// Why a path cannot be the answer; empty when it can.
QString PathForm::objectionTo(const QString& path)
{
    const QFileInfo file(path);
    if (path_.trimmed().isEmpty() || file.isDir()) {
        return "Enter the name of a file.";
    }
    if (!file.dir().exists()) {
        return "There is no folder \"" + file.path() + "\". Enter the path of an existing one.";
    }
    if (!isSaving()) {
        return file.exists() ? QString()
                             : "There is no file \"" + file.fileName()
                + "\" in that folder. Enter the name of an existing one.";
    }
    if (file.exists() && path != toReplace_) {
        toReplace_ = path;
        return "\"" + file.fileName() + "\" already exists. Replace it, or enter another name.";
    }
    return {};
}

void PathForm::accept()
{
    if (!isOpen_) {
        return;
    }
    const QString path = typedPath();
    const QString objection = objectionTo(path);
    if (objection.isEmpty()) {
        finish({FileAnswer::Kind::chosen, path});
    } else {
        refuse(objection);
    }
}

void PathForm::cancel()
{
    if (isOpen_) {
        finish({FileAnswer::Kind::cancelled});
    }
}

} // namespace Kestry
