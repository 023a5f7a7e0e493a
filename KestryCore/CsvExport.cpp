#include "CsvExport.h"

#include <algorithm>
#include <vector>

#include "CsvWriter.h"
#include "RecordIndex.h"
#include "UtcText.h"

namespace KestryCore {

namespace {

constexpr double centsPerDollar = 100.0;
constexpr double secondsPerHour = 3600.0;
constexpr std::string_view header =
    "Client,Project,Description,Start,End,Hours,Hourly rate,Earned,Billable,Rate known,"
    "Duration seconds,Recorded duration seconds,Source ID";

/// What a line without its title takes at most, unless names are long.
constexpr std::size_t usualLineSize = 240;

/// A session in the order of the file, with what that order looks at.
struct Line {
    double start = 0.0;
    const TimeEntry* entry = nullptr;
};

std::vector<Line> sortedByStart(const RecordList<TimeEntry>& entries)
{
    std::vector<Line> lines;
    lines.reserve(entries.size());
    for (const TimeEntry& entry : entries) {
        lines.push_back({entry.startedAt().seconds, &entry});
    }
    std::ranges::stable_sort(lines, {}, &Line::start);
    return lines;
}

std::size_t expectedSize(const RecordList<TimeEntry>& entries)
{
    std::size_t size = header.size();
    for (const TimeEntry& entry : entries) {
        size += usualLineSize + entry.title.size();
    }
    return size;
}

void writeMoney(CsvWriter& writer, double cents, bool isKnown)
{
    if (isKnown) {
        writer.number(cents / centsPerDollar, CsvWriter::Decimals::two);
    } else {
        writer.empty();
    }
}

void writeSession(CsvWriter& writer, const RecordIndex& index, const TimeEntry& entry)
{
    const Project* project = index.projectOf(entry);
    const Client* client = index.clientOf(project);
    const double duration = entry.duration();
    writer.text(client == nullptr ? std::string_view() : client->name);
    writer.text(project == nullptr ? std::string_view() : project->name);
    writer.text(entry.title);
    writer.time(entry.startedAt());
    writer.time(entry.endedAt());
    writer.number(duration / secondsPerHour, CsvWriter::Decimals::six);
    writeMoney(writer, static_cast<double>(entry.hourlyRateCents), entry.rateIsKnown);
    writeMoney(writer, entry.earnedCents(), entry.rateIsKnown || !entry.isBillable);
    writer.flag(entry.isBillable);
    writer.flag(entry.rateIsKnown);
    writer.exactNumber(duration);
    if (entry.recordedDuration) {
        writer.exactNumber(*entry.recordedDuration);
    } else {
        writer.empty();
    }
    writer.text(entry.sourceID ? std::string_view(*entry.sourceID) : std::string_view());
    writer.endLine();
}

} // namespace

std::string exportCSV(const LedgerData& ledger)
{
    const RecordIndex index(ledger);
    CsvWriter writer(header, expectedSize(ledger.entries));
    for (const Line& line : sortedByStart(ledger.entries)) {
        writeSession(writer, index, *line.entry);
    }
    return writer.take();
}

std::string csvFileName(Date now)
{
    return "Kestry-sessions-" + utcDayText(now) + ".csv";
}

std::string exportMessage(std::size_t sessionCount, std::string_view fileName)
{
    std::string message = "Exported " + std::to_string(sessionCount) + " saved sessions to ";
    return message.append(fileName).append(".");
}

} // namespace KestryCore
