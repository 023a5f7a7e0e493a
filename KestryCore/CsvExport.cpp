#include "CsvExport.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <vector>

#include "JsonWriter.h"
#include "RecordIndex.h"
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

/// What a line without its title takes at most, unless names are long: all cells but two are of
/// limited size.
constexpr std::size_t usualLineSize = 240;

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

/// The characters that most cells begin with, and no formula.
bool isLetterOrDigit(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z')
        || (character >= '0' && character <= '9');
}

/// Lines of quoted cells.
class CsvLines {
public:
    /// Makes room for a text of about so many bytes: growing into it would copy it all.
    explicit CsvLines(std::size_t expectedSize) { text_.reserve(expectedSize); }

    void cell(std::string_view value)
    {
        text_ += isInLine_ ? ",\"" : "\"";
        isInLine_ = true;
        if (!value.empty() && !isLetterOrDigit(value.front()) && looksLikeFormula(value)) {
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

    void endLine()
    {
        text_ += endOfLine;
        isInLine_ = false;
    }

    void bareLine(std::string_view line)
    {
        text_ += line;
        endLine();
    }

    std::string take() { return std::move(text_); }

private:
    std::string text_;
    bool isInLine_ = false;
};

/// A session in the order of the file, with what that order looks at.
struct Line {
    Date start;
    const TimeEntry* entry = nullptr;
};

void appendSession(CsvLines& lines, const RecordIndex& index, const TimeEntry& entry)
{
    const Project* project = index.projectOf(entry);
    const Client* client = index.clientOf(project);
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
    std::vector<Line> sorted;
    sorted.reserve(ledger.entries.size());
    std::size_t expectedSize = header.size();
    for (const TimeEntry& entry : ledger.entries) {
        sorted.push_back({entry.startedAt(), &entry});
        expectedSize += usualLineSize + entry.title.size();
    }
    std::ranges::stable_sort(sorted, {}, [](const Line& line) { return line.start.seconds; });
    const RecordIndex index(ledger);
    CsvLines lines(expectedSize);
    lines.bareLine(header);
    for (const Line& line : sorted) {
        appendSession(lines, index, *line.entry);
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
