#include "MetricsReport.h"

#include <fmt/format.h>

#include "JsonWriter.h"
#include "LedgerError.h"
#include "Metrics.h"
#include "PlainText.h"
#include "RecordLookup.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::CalendarDay;
using KestryCore::ClientMetrics;
using KestryCore::DailyTotal;
using KestryCore::Date;
using KestryCore::durationText;
using KestryCore::JsonWriter;
using KestryCore::LedgerData;
using KestryCore::MoneyText;
using KestryCore::MonthMetrics;
using KestryCore::rateNotSet;

namespace {

std::string dayText(const CalendarDay& day)
{
    return fmt::format("{:04}-{:02}-{:02}", day.year, day.month, day.day);
}

std::string monthText(const CalendarDay& day)
{
    return fmt::format("{:04}-{:02}", day.year, day.month);
}

/// An amount that leaves out unpriced time. With nothing but unpriced time there is no amount.
std::string earnedText(double cents, double unpricedSeconds, const MoneyText& words)
{
    return unpricedSeconds > 0.0 && cents == 0.0 ? rateNotSet : words.money(cents);
}

/// A month to report on.
struct Month {
    CalendarDay firstDay;
    bool isCurrent = false;
    MonthMetrics metrics;
};

/// The figures as text. The projection of a finished month is the month itself.
struct MonthTexts {
    MonthTexts(const Month& month, const MoneyText& words)
        : earned(earnedText(month.metrics.earnedCents, month.metrics.unpricedSeconds, words)),
          duration(durationText(month.metrics.seconds)),
          projectedDuration(durationText(
              month.isCurrent ? month.metrics.projectedSeconds : month.metrics.seconds))
    {
        if (month.metrics.unpricedSeconds > 0.0) {
            projected = rateNotSet;
        } else if (month.isCurrent) {
            projected = words.wholeMoney(month.metrics.projectedCents);
        } else {
            projected = words.money(month.metrics.earnedCents);
        }
    }

    std::string earned;
    std::string projected;
    std::string duration;
    std::string projectedDuration;
};

Month month(const LedgerData& ledger, const ReportCommand& command, const CommandContext& context)
{
    const auto& calendar = context.calendar;
    const CalendarDay today = calendar.day(context.at);
    const CalendarDay thisMonth{today.year, today.month, 1};
    const CalendarDay firstDay = command.month.value_or(thisMonth);
    const auto anchor = monthAnchor(calendar.startOfDay(firstDay), context.at, calendar);
    if (!anchor) {
        throw KestryCore::LedgerError("The calendar does not reach that month.");
    }
    const auto client = knownClient(ledger, command.client);
    return {firstDay, firstDay == thisMonth,
        KestryCore::metrics(ledger, *anchor, calendar, client, context.at)};
}

void writeDay(JsonWriter& json, const DailyTotal& day, const CommandContext& context)
{
    json.beginObject();
    json.member("day", dayText(context.calendar.day(day.date)));
    json.member("date", day.date);
    json.member("seconds", day.seconds);
    json.member("earnedCents", day.earnedCents);
    json.endObject();
}

std::string monthJson(const Month& month, const MonthTexts& texts, const CommandContext& context)
{
    const MonthMetrics& metrics = month.metrics;
    JsonWriter json;
    json.beginObject();
    json.member("month", monthText(month.firstDay));
    json.member("timeZone", context.calendar.timeZone());
    json.member("sessionCount", static_cast<std::int64_t>(metrics.sessionCount));
    json.member("seconds", metrics.seconds);
    json.member("earnedCents", metrics.earnedCents);
    json.member("projectedSeconds", metrics.projectedSeconds);
    json.member("projectedCents", metrics.projectedCents);
    json.member("billableSeconds", metrics.billableSeconds);
    json.member("unpricedSeconds", metrics.unpricedSeconds);
    json.key("daily");
    json.beginArray();
    for (const DailyTotal& day : metrics.daily) {
        writeDay(json, day, context);
    }
    json.endArray();
    json.key("text");
    json.beginObject();
    json.member("earned", texts.earned);
    json.member("projected", texts.projected);
    json.member("duration", texts.duration);
    json.member("projectedDuration", texts.projectedDuration);
    json.endObject();
    json.endObject();
    return json.take();
}

Tint moneyTint(const std::string& text)
{
    return text == rateNotSet ? Tint::warning : Tint::plain;
}

void addCard(TextTable& table, const char* heading, const std::string& value,
    const std::string& line, Tint tint = Tint::plain)
{
    table.add({{heading, Tint::heading}, {value, tint}, {line}});
}

/// The overview's cards, with the same words.
std::string cardsText(const Month& month, const MonthTexts& texts,
    const std::optional<std::string>& client, const CommandContext& context)
{
    const MonthMetrics& metrics = month.metrics;
    const bool isPriced = metrics.unpricedSeconds <= 0.0;
    const char* const pace = "At your daily pace";
    TextTable table;
    addCard(table, "Month", monthText(month.firstDay), context.calendar.timeZone());
    if (client) {
        addCard(table, "Client", *client, "");
    }
    addCard(table, "Billable earnings", texts.earned,
        isPriced ? "Recorded billable value"
                 : durationText(metrics.unpricedSeconds) + " still unpriced",
        moneyTint(texts.earned));
    addCard(table, "Tracked time", texts.duration,
        "Across " + counted(metrics.sessionCount, "session"));
    addCard(table, month.isCurrent ? "Projected earnings" : "Month-end earnings", texts.projected,
        !isPriced             ? "Rate needed to estimate"
            : month.isCurrent ? pace
                              : "Final billable value",
        moneyTint(texts.projected));
    addCard(table, month.isCurrent ? "Projected time" : "Month-end time", texts.projectedDuration,
        month.isCurrent ? pace : "Final tracked time");
    return table.text(context.isColored);
}

/// One line for each day. A day without earnings shows no amount: only for the month is it known
/// whether a rate was missing.
std::string daysText(const Month& month, const MoneyText& words, const CommandContext& context)
{
    const CalendarDay today = context.calendar.day(context.at);
    TextTable table;
    table.add(
        {{"DAY", Tint::heading}, {"TIME", Tint::heading, true}, {"EARNED", Tint::heading, true}});
    for (const DailyTotal& daily : month.metrics.daily) {
        const CalendarDay day = context.calendar.day(daily.date);
        const bool hasTime = daily.seconds > 0.0;
        table.add({{dayText(day), day == today ? Tint::good : Tint::plain},
            {hasTime ? durationText(daily.seconds) : "", Tint::plain, true},
            {daily.earnedCents > 0.0 ? words.money(daily.earnedCents) : "", Tint::plain, true}});
    }
    return table.text(context.isColored);
}

std::optional<std::string> clientName(
    const LedgerData& ledger, const std::optional<std::string>& client)
{
    const auto id = knownClient(ledger, client);
    return id ? std::optional(ledger.clients.find(*id)->name) : std::nullopt;
}

std::string clientJson(const std::string& name, const ClientMetrics& metrics)
{
    JsonWriter json;
    json.beginObject();
    json.member("client", name);
    json.member("seconds", metrics.seconds);
    json.member("earnedCents", metrics.earnedCents);
    json.member("monthSeconds", metrics.monthSeconds);
    json.member("averageMonthlySeconds", metrics.averageMonthlySeconds);
    json.member("monthCount", static_cast<std::int64_t>(metrics.monthCount));
    json.key("firstSessionDate");
    if (metrics.firstSessionDate) {
        json.value(*metrics.firstSessionDate);
    } else {
        json.null();
    }
    json.member("unpricedSeconds", metrics.unpricedSeconds);
    json.endObject();
    return json.take();
}

/// The cards of a client's dashboard, with the same words.
std::string clientText(
    const std::string& name, const ClientMetrics& metrics, const CommandContext& context)
{
    const std::string earned = earnedText(
        metrics.earnedCents, metrics.unpricedSeconds, MoneyText(context.calendar.locale()));
    TextTable table;
    addCard(table, "Client", name, "");
    addCard(table, "Total earnings", earned, "All-time billable value", moneyTint(earned));
    addCard(table, "Total hours", durationText(metrics.seconds), "All time");
    addCard(table, "Hours this month", durationText(metrics.monthSeconds),
        monthText(context.calendar.day(context.at)));
    addCard(table, "Avg. hours / month", durationText(metrics.averageMonthlySeconds),
        metrics.monthCount == 0 ? "No tracked time yet"
                                : "Across " + counted(metrics.monthCount, "calendar month"));
    if (metrics.firstSessionDate) {
        addCard(
            table, "First session", dayText(context.calendar.day(*metrics.firstSessionDate)), "");
    }
    const std::string unpriced = metrics.unpricedSeconds > 0.0
        ? durationText(metrics.unpricedSeconds)
            + " of billable time has no rate and is excluded from earnings.\n"
        : "";
    return table.text(context.isColored) + unpriced;
}

} // namespace

CommandAnswer monthReport(
    const LedgerData& ledger, const ReportCommand& command, const CommandContext& context)
{
    const MoneyText words(context.calendar.locale());
    const Month chosen = month(ledger, command, context);
    const MonthTexts texts(chosen, words);
    const std::string cards = cardsText(chosen, texts, clientName(ledger, command.client), context);
    return {cards + "\n" + daysText(chosen, words, context), monthJson(chosen, texts, context)};
}

CommandAnswer clientReport(
    const LedgerData& ledger, const ClientReportCommand& command, const CommandContext& context)
{
    const KestryCore::Uuid id = knownClient(ledger, command.client).value();
    const std::string& name = ledger.clients.find(id)->name;
    const ClientMetrics metrics =
        KestryCore::clientMetrics(ledger, id, context.at, context.calendar);
    return {clientText(name, metrics, context), clientJson(name, metrics)};
}

} // namespace Kestry
