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

void requireLedger(const KestryCore::TimeStore& store)
{
    // Sessions that are still in memory are worth a file all the more when the ledger is damaged.
    if (store.data()->entries.empty() && !*store.recoveryAvailable()) {
        store.requireSaving();
    }
}

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

void SessionExport::start()
{
    if (isWriting_) {
        return;
    }
    try {
        requireLedger(world_.store);
    } catch (const KestryCore::LedgerError& refusal) {
        world_.store.reportFailure(refusal.what());
        return;
    }
    const FileQuestion question{.purpose = FileQuestion::Purpose::save,
        .title = "Export saved sessions",
        .fileName = QString::fromStdString(KestryCore::csvFileName(world_.now())),
        .folder = folder(),
        .typeName = "Comma-separated text",
        .mimeTypes = {"text/csv"},
        .endings = {".csv"}};
    world_.chooser.ask(question, [this](const FileAnswer& answer) {
        if (answer.kind == FileAnswer::Kind::chosen) {
            writeSoon(answer.path);
        }
    });
}

void SessionExport::writeSoon(const QString& path)
{
    isWriting_ = true;
    path_ = path;
    emit changed();
    writing_ = world_.scheduler.after(frameSeconds, [this] { finish(); });
}

bool SessionExport::finish()
{
    if (!isWriting_) {
        return true;
    }
    writing_.cancel();
    const bool isWritten = write(path_);
    isWriting_ = false;
    emit changed();
    return isWritten;
}

bool SessionExport::write(const QString& path)
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
        return true;
    } catch (const std::exception& failure) {
        world_.store.reportFailure(KestryCore::failureText(failure));
        return false;
    }
}

} // namespace Kestry
