#include "CsvFile.h"

#include <filesystem>

#include "CsvExport.h"
#include "DurableFiles.h"
#include "JsonWriter.h"
#include "LedgerError.h"
#include "PlainText.h"

namespace Kestry {

using KestryCore::JsonWriter;
using KestryCore::LedgerError;
using KestryCore::TimeStore;

namespace {

/// Where the export goes. Everything that may stand there but a file is refused: replacing a
/// device or a pipe by a file would be a disaster or a disappointment.
std::filesystem::path destination(const std::string& file, const CommandContext& context)
{
    const std::string path = context.path(file);
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    if (std::filesystem::is_directory(status)) {
        throw LedgerError(file + " is a directory.");
    }
    if (std::filesystem::is_regular_file(status)) {
        return std::filesystem::canonical(path);
    }
    const auto name = std::filesystem::symlink_status(path, failure);
    if (std::filesystem::is_symlink(name) && !std::filesystem::exists(status)) {
        throw LedgerError(file + " is a link that leads nowhere.");
    }
    if (std::filesystem::exists(name)) {
        throw LedgerError(
            file + " is no ordinary file. Leave FILE out to write to the standard output.");
    }
    return path;
}

/// Nothing but the store writes its files, whatever they will be called one day.
void requireNotTheStores(const std::filesystem::path& path, const TimeStore& store)
{
    std::error_code failure;
    const std::filesystem::path parent = KestryCore::parentPath(path.string());
    const bool isInside = std::filesystem::equivalent(parent, store.directory(), failure);
    if (isInside && path.extension() != ".csv") {
        throw LedgerError("\"" + path.filename().string()
            + "\" may be one of the ledger's own files. In its folder, an export needs a name that "
              "ends in \".csv\".");
    }
}

void writeExport(const std::string& file, const std::string& bytes, const TimeStore& store,
    const CommandContext& context)
{
    const std::filesystem::path path = destination(file, context);
    requireNotTheStores(path, store);
    const std::string temporary = KestryCore::joinPath(
        KestryCore::parentPath(path.string()), ".kestry-export-" + context.newUuid().text());
    try {
        KestryCore::DurableFiles(context.files).write(path.string(), bytes, temporary);
    } catch (const KestryCore::FileError& failure) {
        // The temporary name says nothing to anybody.
        throw KestryCore::fileError(file, "written", failure.code());
    }
}

std::string exportJson(
    std::size_t sessions, const std::optional<std::string>& file, const std::string* csv)
{
    JsonWriter json;
    json.beginObject();
    json.member("ok", true);
    json.member("sessions", static_cast<std::int64_t>(sessions));
    json.key("file");
    if (file) {
        json.value(*file);
    } else {
        json.null();
    }
    json.key("csv");
    if (csv != nullptr) {
        json.value(*csv);
    } else {
        json.null();
    }
    json.endObject();
    return json.take();
}

} // namespace

CommandAnswer exportSessions(
    const TimeStore& store, const std::optional<std::string>& file, const CommandContext& context)
{
    const std::size_t sessions = store.data()->entries.size();
    std::string csv = KestryCore::exportCSV(*store.data());
    if (!file) {
        return context.asJson ? CommandAnswer{{}, exportJson(sessions, file, &csv)}
                              : CommandAnswer{std::move(csv), {}};
    }
    writeExport(*file, csv, store, context);
    const std::string name = std::filesystem::path(*file).filename().string();
    return {printable(KestryCore::exportMessage(sessions, name)) + "\n",
        exportJson(sessions, file, nullptr)};
}

} // namespace Kestry
