#include "SessionExport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <string>
#include <utility>

#include "CsvExport.h"
#include "LocalMessage.h"
#include "OutputFile.h"

namespace Kestry {
namespace {

constexpr auto folderKey = "exportFolder";
// Long enough for a frame that says what is being done.
constexpr double frameSeconds = 0.05;

} // namespace

SessionExport::SessionExport(World world) : world_(std::move(world)) { }

QString SessionExport::folder() const
{
    const QString last = QString::fromStdString(world_.defaults.string(folderKey).value_or(""));
    for (const QString& each : {last, world_.documents}) {
        if (!each.isEmpty() && QFileInfo(each).isDir()) {
            return each;
        }
    }
    return QDir::homePath();
}

QString SessionExport::fileName() const
{
    return QString::fromStdString(KestryCore::csvFileName(world_.now()));
}

void SessionExport::start()
{
    if (isWriting_ || isAsking_) {
        return;
    }
    const SaveQuestion question{.title = "Export saved sessions",
        .fileName = fileName(),
        .folder = folder(),
        .typeName = "Comma-separated text",
        .mimeType = "text/csv",
        .ending = ".csv"};
    world_.chooser.askWhereToSave(question, [this](const SaveAnswer& each) { answer(each); });
}

void SessionExport::answer(const SaveAnswer& answer)
{
    switch (answer.kind) {
    case SaveAnswer::Kind::cancelled:
        break;
    case SaveAnswer::Kind::unavailable:
        openForm();
        break;
    case SaveAnswer::Kind::chosen:
        writeSoon(answer.path);
        break;
    }
}

// The form of ours.

void SessionExport::openForm()
{
    path_ = QDir(folder()).filePath(fileName());
    note_.clear();
    toReplace_.clear();
    isAsking_ = true;
    emit changed();
}

void SessionExport::setPath(const QString& path)
{
    if (path != path_) {
        path_ = path;
        note_.clear();
        toReplace_.clear();
        emit changed();
    }
}

QString SessionExport::saveLabel() const
{
    return toReplace_.isEmpty() ? "Save" : "Replace";
}

QString SessionExport::typedPath() const
{
    const QString typed = path_.trimmed();
    if (typed.startsWith("~/")) {
        return QDir::cleanPath(QDir::home().filePath(typed.mid(2)));
    }
    return QDir::cleanPath(QDir(folder()).filePath(typed));
}

void SessionExport::refuse(const QString& note)
{
    note_ = note;
    emit changed();
}

void SessionExport::save()
{
    if (!isAsking_) {
        return;
    }
    const QString path = typedPath();
    const QFileInfo file(path);
    if (path_.trimmed().isEmpty() || file.isDir()) {
        refuse("Enter the name of a file.");
    } else if (!file.dir().exists()) {
        refuse("There is no folder \"" + file.path() + "\". Enter the path of an existing one.");
    } else if (file.exists() && path != toReplace_) {
        toReplace_ = path;
        refuse("\"" + file.fileName() + "\" already exists. Replace it, or enter another name.");
    } else {
        isAsking_ = false;
        writeSoon(path);
    }
}

void SessionExport::cancel()
{
    isAsking_ = false;
    emit changed();
}

// The file.

void SessionExport::writeSoon(const QString& path)
{
    isWriting_ = true;
    emit changed();
    writing_ = world_.scheduler.after(frameSeconds, [this, path] {
        write(path);
        isWriting_ = false;
        emit changed();
    });
}

void SessionExport::write(const QString& path)
{
    const QFileInfo file(path);
    try {
        // A pipe would be waited for until somebody reads it.
        if (path.isEmpty() || (file.exists() && !file.isFile())) {
            throw KestryCore::LedgerError("Sessions are exported to an ordinary file on this "
                                          "computer. Choose another file.");
        }
        const KestryCore::LedgerData& ledger = *world_.store.data();
        writeOutputFile({QFile::encodeName(path).toStdString(), KestryCore::exportCSV(ledger)},
            world_.store.directory());
        world_.defaults.setString(folderKey, file.path().toStdString());
        world_.state.exportMessage.assign(
            KestryCore::exportMessage(ledger.entries.size(), file.fileName().toStdString()));
    } catch (const std::exception& failure) {
        world_.store.reportFailure(KestryCore::failureText(failure));
    }
}

} // namespace Kestry
