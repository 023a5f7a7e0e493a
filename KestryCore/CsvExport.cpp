#include "CsvExport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <vector>

#include "JsonWriter.h"
#include "Text.h"

namespace KestryCore {

namespace {

using Milliseconds = std::chrono::sys_time<std::chrono::milliseconds>;

constexpr double centsPerDollar = 100.0;
constexpr double secondsPerHour = 3600.0;
constexpr std::string_view endOfLine = "\r\n";
constexpr std::string_view header =
    "Client,Project,Description,Start,End,Hours,Hourly rate,Earned,Billable,Rate known,"
    "Duration seconds,Recorded duration seconds,Source ID";

/// The year of `distantPast` counts by the Julian calendar, as history does; the reckoning below
/// knows the Gregorian one alone, in which every date of a ledger lies.
constexpr std::string_view distantPastText = "0001-01-01T00:00:00.000Z";

/// To the nearest millisecond, for most decimal fractions have no exact binary form: cut off,
/// 0.589 would show as 588.
Milliseconds roundedToMilliseconds(Date date)
{
    const double whole = std::floor(date.seconds);
    const double thousandths = std::floor((date.seconds - whole) * 1000.0 + 0.5);
    const std::chrono::seconds since1970(
        static_cast<std::int64_t>(whole + referenceDateSecondsSince1970));
    return Milliseconds(since1970 + std::chrono::milliseconds(static_cast<int>(thousandths)));
}

/// Writes a number with leading zeros at `place`, which moves behind it.
void writeDigits(char*& place, int number, int digits)
{
    for (int index = digits; index-- > 0; number /= 10) {
        place[index] = static_cast<char>('0' + number % 10);
    }
    place += digits;
}

/// "2026-03-14"
void writeDay(char*& place, std::chrono::sys_days day)
{
    const std::chrono::year_month_day date(day);
    writeDigits(place, static_cast<int>(date.year()), 4);
    *place++ = '-';
    writeDigits(place, static_cast<int>(static_cast<unsigned>(date.month())), 2);
    *place++ = '-';
    writeDigits(place, static_cast<int>(static_cast<unsigned>(date.day())), 2);
}

/// Texts for one cell, good until the next one is asked for.
class CellText {
public:
    /// "2026-03-14T09:26:53.589Z"
    std::string_view timestamp(Date date)
    {
        if (date == distantPast) {
            return distantPastText;
        }
        const Milliseconds moment = roundedToMilliseconds(date);
        const auto day = std::chrono::floor<std::chrono::days>(moment);
        const std::chrono::hh_mm_ss time(moment - day);
        char* place = room_.data();
        writeDay(place, day);
        *place++ = 'T';
        writeDigits(place, static_cast<int>(time.hours().count()), 2);
        *place++ = ':';
        writeDigits(place, static_cast<int>(time.minutes().count()), 2);
        *place++ = ':';
        writeDigits(place, static_cast<int>(time.seconds().count()), 2);
        *place++ = '.';
        writeDigits(place, static_cast<int>(time.subseconds().count()), 3);
        *place++ = 'Z';
        return upTo(place);
    }

    /// The exact value rounded to so many decimals, with a point.
    std::string_view decimals(double value, int count)
    {
        return upTo(std::to_chars(
            room_.data(), room_.data() + room_.size(), value, std::chars_format::fixed, count)
                        .ptr);
    }

    /// The shortest digits that read back, recognisable as a number that need not be whole.
    std::string_view shortest(double value)
    {
        std::array<char, longestNumber> digits{};
        const std::string_view text = numberText(value, digits);
        char* place = std::ranges::copy(text, room_.data()).out;
        if (text.find_first_of(".e") == std::string_view::npos) {
            *place++ = '.';
            *place++ = '0';
        }
        return upTo(place);
    }

private:
    std::string_view upTo(const char* end) const
    {
        return {room_.data(), static_cast<std::size_t>(end - room_.data())};
    }

    /// For the largest of numbers in plain notation.
    std::array<char, 320> room_{};
};

/// Whether a spreadsheet might take the text for a formula, also after skipping blanks or taking
/// a control character for a separator.
bool looksLikeFormula(std::string_view value)
{
    const std::string_view words = trimmed(value);
    if (!words.empty() && std::string_view("=+-@").find(words.front()) != std::string_view::npos) {
        return true;
    }
    const bool beginsWithControl =
        !value.empty() && (value[0] == '\t' || value[0] == '\r' || value[0] == '\n');
    return beginsWithControl && !value.starts_with(endOfLine);
}

/// Lines of quoted cells.
class CsvLines {
public:
    void cell(std::string_view value)
    {
        text_ += text_.ends_with('"') ? ",\"" : "\"";
        if (looksLikeFormula(value)) {
            text_ += '\'';
        }
        for (auto quote = value.find('"'); quote != std::string_view::npos;
             quote = value.find('"')) {
            text_ += value.substr(0, quote + 1);
            text_ += '"';
            value.remove_prefix(quote + 1);
        }
        text_ += value;
        text_ += '"';
    }

    void bareLine(std::string_view line) { text_.append(line).append(endOfLine); }
    void endLine() { text_ += endOfLine; }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

void appendSession(CsvLines& lines, const LedgerData& ledger, const TimeEntry& entry)
{
    const Project* project = ledger.projects.find(entry.projectID);
    const Client* client = project == nullptr ? nullptr : ledger.clients.find(project->clientID);
    const bool isUnpriced = entry.isBillable && !entry.rateIsKnown;
    const double duration = entry.duration();
    CellText text;
    const auto flag = [](bool value) -> std::string_view { return value ? "true" : "false"; };
    lines.cell(client == nullptr ? std::string_view() : client->name);
    lines.cell(project == nullptr ? std::string_view() : project->name);
    lines.cell(entry.title);
    lines.cell(text.timestamp(entry.startedAt()));
    lines.cell(text.timestamp(entry.endedAt()));
    lines.cell(text.decimals(duration / secondsPerHour, 6));
    const double rate = static_cast<double>(entry.hourlyRateCents) / centsPerDollar;
    lines.cell(entry.rateIsKnown ? text.decimals(rate, 2) : std::string_view());
    const double earned = entry.earnedCents() / centsPerDollar;
    lines.cell(isUnpriced ? std::string_view() : text.decimals(earned, 2));
    lines.cell(flag(entry.isBillable));
    lines.cell(flag(entry.rateIsKnown));
    lines.cell(text.shortest(duration));
    lines.cell(
        entry.recordedDuration ? text.shortest(*entry.recordedDuration) : std::string_view());
    lines.cell(entry.sourceID ? std::string_view(*entry.sourceID) : std::string_view());
    lines.endLine();
}

} // namespace

std::string exportCSV(const LedgerData& ledger)
{
    std::vector<const TimeEntry*> sessions;
    sessions.reserve(ledger.entries.size());
    for (const TimeEntry& entry : ledger.entries) {
        sessions.push_back(&entry);
    }
    std::ranges::stable_sort(
        sessions, {}, [](const TimeEntry* entry) { return entry->startedAt().seconds; });
    CsvLines lines;
    lines.bareLine(header);
    for (const TimeEntry* entry : sessions) {
        appendSession(lines, ledger, *entry);
    }
    return lines.take();
}

std::string csvFileName(Date now)
{
    const std::chrono::sys_seconds moment(std::chrono::seconds(
        static_cast<std::int64_t>(std::floor(now.seconds + referenceDateSecondsSince1970))));
    std::array<char, 16> day{};
    char* place = day.data();
    writeDay(place, std::chrono::floor<std::chrono::days>(moment));
    return "Kestry-sessions-" + std::string(day.data(), place) + ".csv";
}

std::string exportMessage(std::size_t sessionCount, std::string_view fileName)
{
    std::string message = "Exported " + std::to_string(sessionCount) + " saved sessions to ";
    return message.append(fileName).append(".");
}

} // namespace KestryCore
