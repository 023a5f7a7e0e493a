#include "CloudArchive.h"

#include <string_view>

namespace KestryCore {

namespace {

// Lines, the last of which is what the store told and may contain anything. A ledger keeps one
// archive for each record, so they are short.
constexpr char lineEnd = '\n';

/// Takes the next line off the text; nullopt when no line ends in it.
std::optional<std::string> takeLine(std::string_view& text)
{
    const std::size_t end = text.find(lineEnd);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    std::string line(text.substr(0, end));
    text.remove_prefix(end + 1);
    return line;
}

} // namespace

std::string archiveSystemFields(const CloudRecord& record)
{
    return record.id.name + lineEnd + record.id.zone.name + lineEnd + record.type + lineEnd
        + record.serverVersion;
}

std::optional<CloudRecord> recordFromSystemFields(const std::string& archive)
{
    std::string_view rest = archive;
    auto name = takeLine(rest);
    auto zone = takeLine(rest);
    auto type = takeLine(rest);
    if (!name || !zone || !type) {
        return std::nullopt;
    }
    CloudRecord record;
    record.id = {*std::move(name), {*std::move(zone)}};
    record.type = *std::move(type);
    record.serverVersion = rest;
    return record;
}

std::string archiveCursor(const CloudZoneID& zone, const CloudCursor& cursor)
{
    return zone.name + lineEnd + cursor.bytes;
}

std::optional<CloudCursor> cursorFromArchive(const CloudZoneID& zone, const std::string& archive)
{
    std::string_view rest = archive;
    if (takeLine(rest) != zone.name) {
        return std::nullopt;
    }
    return CloudCursor{std::string(rest)};
}

} // namespace KestryCore
