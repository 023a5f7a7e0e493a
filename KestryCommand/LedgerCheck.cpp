#include "LedgerCheck.h"

#include <optional>
#include <vector>

#include "JsonWriter.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "PlainText.h"

namespace Kestry {

using KestryCore::FileSystem;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;

namespace {

/// The report on one ledger file. The ledger itself may be too large to keep while the other file
/// is read.
struct LedgerCounts {
    std::size_t clients = 0;
    std::size_t projects = 0;
    std::size_t entries = 0;
    bool active = false;
};

struct FileCheck {
    bool exists = false;
    std::optional<LedgerCounts> counts; ///< Set when the file is valid.
    std::optional<std::string> message;

    [[nodiscard]] bool isSound() const { return !exists || counts.has_value(); }
};

FileCheck checkFile(FileSystem& files, const std::string& path)
{
    FileCheck check;
    check.exists = exists(files, path);
    if (!check.exists) {
        return check;
    }
    try {
        const LedgerData ledger = KestryCore::decodeLedger(readFile(files, path));
        validate(ledger);
        check.counts = LedgerCounts{ledger.clients.size(), ledger.projects.size(),
            ledger.entries.size(), ledger.active.has_value()};
    } catch (const std::exception& failure) {
        check.message = wellFormed(failure.what());
    }
    return check;
}

std::vector<std::string> preservedLedgers(FileSystem& files, const std::string& directory)
{
    std::vector<std::string> names;
    if (exists(files, directory)) {
        for (const std::string& name : files.list(directory)) {
            if (name.starts_with("ledger.corrupt-") && name.ends_with(".json")) {
                names.push_back(name);
            }
        }
    }
    return names;
}

void writeCheck(JsonWriter& json, const FileCheck& check)
{
    json.beginObject();
    json.member("exists", check.exists);
    json.member("valid", check.counts.has_value());
    json.key("message");
    if (check.message) {
        json.value(*check.message);
    } else {
        json.null();
    }
    const auto count = [&](std::string_view name, std::size_t LedgerCounts::*size) {
        json.key(name);
        if (check.counts) {
            json.value(static_cast<std::int64_t>((*check.counts).*size));
        } else {
            json.null();
        }
    };
    count("clients", &LedgerCounts::clients);
    count("projects", &LedgerCounts::projects);
    count("entries", &LedgerCounts::entries);
    json.member("active", check.counts && check.counts->active);
    json.endObject();
}

std::string checkText(const FileCheck& check)
{
    if (!check.exists) {
        return "not there";
    }
    if (!check.counts) {
        return "NOT VALID: " + check.message.value_or("");
    }
    return "valid: " + counted(check.counts->clients, "client") + ", "
        + counted(check.counts->projects, "project") + ", "
        + counted(check.counts->entries, "saved session")
        + (check.counts->active ? ", one in progress" : "");
}

TextCell checkCell(const FileCheck& check)
{
    return {checkText(check), check.isSound() ? Tint::plain : Tint::warning};
}

} // namespace

CommandAnswer checkLedgers(const std::string& directory, const CommandContext& context)
{
    const FileCheck primary =
        checkFile(context.files, KestryCore::joinPath(directory, "ledger.json"));
    const FileCheck backup =
        checkFile(context.files, KestryCore::joinPath(directory, "ledger.backup.json"));
    JsonWriter json;
    TextTable table;
    json.beginObject();
    json.key("ledger");
    writeCheck(json, primary);
    table.add({{"Ledger", Tint::heading}, checkCell(primary)});
    json.key("backup");
    writeCheck(json, backup);
    table.add({{"Backup", Tint::heading}, checkCell(backup)});
    json.key("preserved");
    json.beginArray();
    for (const std::string& name : preservedLedgers(context.files, directory)) {
        json.value(wellFormed(name));
        table.add({{"Preserved", Tint::heading}, {name}});
    }
    json.endArray();
    json.endObject();
    return {table.text(context.isColored), json.take(), primary.isSound() && backup.isSound()};
}

} // namespace Kestry
