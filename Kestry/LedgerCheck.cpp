#include "LedgerCheck.h"

#include <optional>
#include <vector>

#include "JsonWriter.h"
#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "PlainText.h"

namespace Kestry {

using KestryCore::FileSystem;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;

namespace {

struct FileCheck {
    bool exists = false;
    std::optional<LedgerData> ledger; ///< There when the file is valid.
    std::optional<std::string> message;

    [[nodiscard]] bool isSound() const { return !exists || ledger.has_value(); }
};

FileCheck checkFile(FileSystem& files, const std::string& path)
{
    FileCheck check;
    check.exists = exists(files, path);
    if (!check.exists) {
        return check;
    }
    try {
        LedgerData ledger = KestryCore::decodeLedger(readFile(files, path));
        validate(ledger);
        check.ledger = std::move(ledger);
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
    json.member("valid", check.ledger.has_value());
    json.key("message");
    if (check.message) {
        json.value(*check.message);
    } else {
        json.null();
    }
    const auto count = [&](std::string_view name, std::size_t size) {
        json.key(name);
        if (check.ledger) {
            json.value(static_cast<std::int64_t>(size));
        } else {
            json.null();
        }
    };
    const LedgerData& ledger = check.ledger ? *check.ledger : LedgerData();
    count("clients", ledger.clients.size());
    count("projects", ledger.projects.size());
    count("entries", ledger.entries.size());
    json.member("active", ledger.active.has_value());
    json.endObject();
}

std::string counted(std::size_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string checkText(const FileCheck& check)
{
    if (!check.exists) {
        return "not there";
    }
    if (!check.ledger) {
        return "NOT VALID: " + check.message.value_or("");
    }
    const LedgerData& ledger = *check.ledger;
    return "valid: " + counted(ledger.clients.size(), "client") + ", "
        + counted(ledger.projects.size(), "project") + ", "
        + counted(ledger.entries.size(), "saved session")
        + (ledger.active ? ", one in progress" : "");
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
