#include "CsvFile.h"

#include <filesystem>

#include "CsvExport.h"
#include "JsonWriter.h"
#include "OutputFile.h"
#include "PlainText.h"

namespace Kestry {

using KestryCore::JsonWriter;
using KestryCore::TimeStore;

namespace {

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
        if (context.asJson) {
            return {{}, exportJson(sessions, file, &csv)};
        }
        return {context.writesToTerminal ? shownCsv(csv) : std::move(csv), {}};
    }
    const std::string name = std::filesystem::path(*file).filename().string();
    CommandAnswer answer{printable(KestryCore::exportMessage(sessions, name)) + "\n",
        exportJson(sessions, file, nullptr)};
    answer.file = FileToWrite{*file, std::move(csv)};
    return answer;
}

} // namespace Kestry
