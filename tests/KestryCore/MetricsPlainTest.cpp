// The figures beside those that the rules give when they are followed step by step, on random
// ledgers. RapidCheck prints the seed of each run; RC_PARAMS="seed=…" replays it.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <map>

#include "ArbitraryLedger.h"
#include "PlainMetrics.h"
#include "SampleLedger.h"
#include "StandInCalendar.h"
#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

const ZoneCalendar& anyZone()
{
    static std::map<std::string, ZoneCalendar> calendars;
    const std::string name = *rc::gen::element<std::string>("UTC", "Europe/Berlin",
        "America/St_Johns", "America/Havana", "Atlantic/Azores", "Australia/Lord_Howe",
        "Asia/Kathmandu", "Pacific/Chatham", "Pacific/Apia", "Asia/Beirut", "America/Los_Angeles");
    return calendars.try_emplace(name, name, "en_US").first->second;
}

/// A date in or near the work of the ledger, if there is any.
Date anyDate(const LedgerData& ledger)
{
    std::vector<Date> dates{Date{Sample::noon}};
    for (const TimeEntry& entry : plainSessions(ledger, Date{Sample::noon}, std::nullopt)) {
        for (const TimeSpan& span : entry.spans) {
            dates.insert(dates.end(), {span.start, span.end});
        }
    }
    return *rc::gen::elementOf(dates) + static_cast<double>(*rc::gen::inRange(-90'000, 90'000));
}

/// Any client of the ledger, one that it does not know, or none.
std::optional<Uuid> anyClient(const LedgerData& ledger)
{
    std::vector<std::optional<Uuid>> clients{std::nullopt, Sample::clientID()};
    for (const Client& client : ledger.clients) {
        clients.emplace_back(client.id);
    }
    return *rc::gen::elementOf(clients);
}

/// Makes a calendar unable to step beyond some of its days: it knows no next one, or one that is
/// not later.
void forgetDays(StandInCalendar& broken, const Calendar& real)
{
    const int period = *rc::gen::inRange(2, 20);
    const bool isUnknown = *rc::gen::arbitrary<bool>();
    broken.startOfNextDayAnswer = [=, &real](Date date) -> std::optional<Date> {
        const Date start = real.startOfDay(date);
        if (static_cast<int>(std::floor(start.seconds / 86'400.0)) % period == 0) {
            return isUnknown ? std::nullopt : std::optional(start);
        }
        return real.startOfNextDay(date);
    };
}

RC_GTEST_PROP(AnyMonth, HasTheFiguresThatTheRulesGiveStepByStep, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const ZoneCalendar& calendar = anyZone();
    for (int question = 0; question < 5; ++question) {
        const Date month = anyDate(ledger);
        const std::optional<Uuid> client = anyClient(ledger);
        const auto asOf = question % 2 == 0 ? std::optional(anyDate(ledger)) : std::nullopt;
        RC_ASSERT(metrics(ledger, month, calendar, client, asOf)
            == plainMetrics(ledger, month, calendar, client, asOf));
    }
}

RC_GTEST_PROP(AnyMonth, IsTheSavedOneWithTheSessionInProgressBesides, ())
{
    const LedgerData ledger = *rc::gen::suchThat(
        arbitraryLedger(), [](const LedgerData& any) { return any.active.has_value(); });
    LedgerData saved = ledger;
    saved.active.reset();
    const ZoneCalendar& calendar = anyZone();
    for (int question = 0; question < 5; ++question) {
        const Date month = anyDate(ledger);
        const Date asOf = anyDate(ledger);
        RC_ASSERT(
            withSession(metrics(saved, month, calendar), *ledger.active, month, calendar, asOf)
            == metrics(ledger, month, calendar, std::nullopt, asOf));
    }
}

RC_GTEST_PROP(AnyMonth, HasTheseFiguresAlsoWhereTheCalendarFails, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const ZoneCalendar& calendar = anyZone();
    StandInCalendar broken(calendar);
    forgetDays(broken, calendar);
    for (int question = 0; question < 5; ++question) {
        const Date month = anyDate(ledger);
        RC_ASSERT(metrics(ledger, month, broken)
            == plainMetrics(ledger, month, broken, std::nullopt, std::nullopt));
    }
}

RC_GTEST_PROP(AnyClient, HasTheFiguresThatTheRulesGiveStepByStep, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const ZoneCalendar& calendar = anyZone();
    for (int question = 0; question < 5; ++question) {
        const Date now = anyDate(ledger);
        const Uuid client = anyClient(ledger).value_or(Uuid{});
        RC_ASSERT(clientMetrics(ledger, client, now, calendar)
            == plainClientMetrics(ledger, client, now, calendar));
    }
}

RC_GTEST_PROP(AnyClient, IsTheSavedOneWithTheSessionInProgressBesides, ())
{
    const LedgerData ledger = *rc::gen::suchThat(
        arbitraryLedger(), [](const LedgerData& any) { return any.active.has_value(); });
    LedgerData saved = ledger;
    saved.active.reset();
    const Project* project = ledger.projects.find(ledger.active->projectID);
    RC_PRE(project != nullptr);
    const Uuid client = project->clientID;
    const ZoneCalendar& calendar = anyZone();
    for (int question = 0; question < 5; ++question) {
        const Date now = anyDate(ledger);
        const Date before = *rc::gen::element(calendar.month(now)->start, now);
        RC_ASSERT(withSession(clientMetrics(saved, client, before, calendar),
                      metrics(saved, before, calendar, client), *ledger.active, now, calendar, now)
            == clientMetrics(ledger, client, now, calendar));
    }
}

} // namespace
} // namespace KestryCore
