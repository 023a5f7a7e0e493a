// No second is lost or invented wherever the clocks are set: the figures of days, months and
// clients add up, on random ledgers around every change of the clocks from 2000 to 2040.
//
// Sums of seconds are exact, and are compared as such. Earnings divide by the seconds of an hour
// and are rounded in each slice: a sum of n positive terms is off by less than n + 1 units in the
// last place, and there are never as many as 4,000 slices in one ledger, which is less than 1e-12
// of the sum.
//
// KESTRY_SUMS_SEED replays a run from the seed that it printed, KESTRY_SUMS_LEDGERS sets how many
// ledgers there are for each change.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>

#include "LedgerAround.h"
#include "PlainMetrics.h"
#include "SampleLedger.h"
#include "ZoneCalendar.h"
#include "ZoneTransitions.h"

namespace KestryCore {
namespace {

constexpr double hour = 3600.0;
constexpr unsigned clientCount = LedgerAround::clientCount;

/// What sums are compared in.
struct Sums {
    double seconds = 0.0;
    double billable = 0.0;
    double unpriced = 0.0;
    double earned = 0.0;
    int sessions = 0;

    void add(const MonthMetrics& month)
    {
        seconds += month.seconds;
        billable += month.billableSeconds;
        unpriced += month.unpricedSeconds;
        earned += month.earnedCents;
        sessions += month.sessionCount;
    }
};

void expectSameEarnings(double left, double right)
{
    EXPECT_LE(std::abs(left - right), 1e-12 * std::max(std::abs(left), std::abs(right)));
}

void expectSameSums(const Sums& parts, const Sums& whole)
{
    EXPECT_EQ(parts.seconds, whole.seconds);
    EXPECT_EQ(parts.billable, whole.billable);
    EXPECT_EQ(parts.unpriced, whole.unpriced);
    EXPECT_EQ(parts.sessions, whole.sessions);
    expectSameEarnings(parts.earned, whole.earned);
}

/// The sessions that belong to nobody, as a ledger of their own.
LedgerData orphansOf(const LedgerData& ledger)
{
    LedgerData orphans = ledger;
    orphans.projects = {};
    for (const Project& project : ledger.projects) {
        for (const TimeEntry& entry : ledger.entries) {
            if (entry.projectID == project.id) {
                orphans.entries.remove(entry.id);
            }
        }
        if (orphans.active && orphans.active->projectID == project.id) {
            orphans.active.reset();
        }
    }
    return orphans;
}

/// One ledger on the clocks of one zone, at one moment.
class Books {
public:
    Books(const LedgerData& ledger, const ZoneCalendar& calendar, Date now)
        : ledger_(ledger), orphans_(orphansOf(ledger)), calendar_(calendar), now_(now),
          sessions_(plainSessions(ledger, now, std::nullopt))
    {
    }

    void check() const
    {
        std::array<Sums, clientCount> clients;
        Sums whole;
        for (Date date = firstDate(); !(lastDate() < date);) {
            const MonthInterval month = calendar_.month(date).value();
            const MonthMetrics figures = checkMonth(month, clients);
            whole.add(figures);
            checkDays(month, figures);
            date = month.end;
        }
        EXPECT_EQ(whole.seconds, totalOf(sessions_));
        for (unsigned number = 1; number <= clientCount; ++number) {
            checkClient(Sample::clientID(number), clients.at(number - 1));
        }
    }

private:
    [[nodiscard]] Date firstDate() const
    {
        Date first = sessions_.front().startedAt();
        for (const TimeEntry& entry : sessions_) {
            first = entry.spans.empty() ? first : std::min(first, entry.startedAt());
        }
        return first;
    }

    [[nodiscard]] Date lastDate() const
    {
        Date last = sessions_.front().endedAt();
        for (const TimeEntry& entry : sessions_) {
            last = std::max(last, entry.endedAt());
        }
        return last;
    }

    static double totalOf(const std::vector<TimeEntry>& sessions)
    {
        double total = 0.0;
        for (const TimeEntry& entry : sessions) {
            total += entry.duration();
        }
        return total;
    }

    /// The month's clients, and what belongs to none, are the whole month, and all of them are as
    /// the rules give them step by step.
    MonthMetrics checkMonth(
        const MonthInterval& month, std::array<Sums, clientCount>& clients) const
    {
        const Date anchor = monthAnchor(month.start, now_, calendar_).value();
        const MonthMetrics figures = metrics(ledger_, anchor, calendar_, {}, now_);
        EXPECT_EQ(figures, plainMetrics(ledger_, anchor, calendar_, {}, now_));
        Sums parts;
        for (unsigned number = 1; number <= clientCount; ++number) {
            const MonthMetrics part =
                metrics(ledger_, anchor, calendar_, Sample::clientID(number), now_);
            clients.at(number - 1).add(part);
            parts.add(part);
        }
        parts.add(metrics(orphans_, anchor, calendar_, {}, now_));
        Sums whole;
        whole.add(figures);
        expectSameSums(parts, whole);
        return figures;
    }

    /// The days follow one another from one end of the month to the other, and each holds just
    /// the parts of the spans that lie in it.
    void checkDays(const MonthInterval& month, const MonthMetrics& figures) const
    {
        ASSERT_EQ(figures.daily.front().date, month.start);
        double seconds = 0.0;
        double earned = 0.0;
        for (std::size_t index = 0; index < figures.daily.size(); ++index) {
            const DailyTotal& daily = figures.daily[index];
            const Date end =
                index + 1 < figures.daily.size() ? figures.daily[index + 1].date : month.end;
            ASSERT_LT(daily.date, end);
            ASSERT_LE(end - daily.date, 28 * hour); // Clocks never went back by more than three.
            ASSERT_EQ(daily.seconds, secondsWithin(daily.date, end));
            seconds += daily.seconds;
            earned += daily.earnedCents;
        }
        EXPECT_EQ(seconds, figures.seconds);
        EXPECT_EQ(earned, figures.earnedCents);
    }

    [[nodiscard]] double secondsWithin(Date start, Date end) const
    {
        double seconds = 0.0;
        for (const TimeEntry& entry : sessions_) {
            for (const TimeSpan& span : entry.spans) {
                const double overlap = std::min(end, span.end) - std::max(start, span.start);
                seconds += std::max(0.0, overlap) * plainScale(entry);
            }
        }
        return seconds;
    }

    /// The client's months are the client's total.
    void checkClient(const Uuid& client, const Sums& months) const
    {
        const ClientMetrics totals = clientMetrics(ledger_, client, now_, calendar_);
        EXPECT_EQ(totals, plainClientMetrics(ledger_, client, now_, calendar_));
        EXPECT_EQ(months.seconds, totals.seconds);
        EXPECT_EQ(months.unpriced, totals.unpricedSeconds);
        expectSameEarnings(months.earned, totals.earnedCents);
    }

    const LedgerData& ledger_;
    LedgerData orphans_;
    const ZoneCalendar& calendar_;
    Date now_;
    std::vector<TimeEntry> sessions_;
};

std::uint64_t numberFromEnvironment(const char* name, std::uint64_t otherwise)
{
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::stoull(text);
}

Date startOfYear(int year)
{
    return dateInUtc({{year, 1, 1}, 0, 0, 0.0});
}

TEST(MetricsSums, AddUpAroundEveryChangeOfTheClocks)
{
    std::uint64_t seed = numberFromEnvironment("KESTRY_SUMS_SEED", std::random_device{}());
    const std::uint64_t rounds = numberFromEnvironment("KESTRY_SUMS_LEDGERS", 1);
    std::cout << "KESTRY_SUMS_SEED=" << seed << "\n";
    std::size_t transitions = 0;
    std::size_t ledgers = 0;
    for (const ZoneTransitions& zone : allZoneTransitions(startOfYear(2000), startOfYear(2041))) {
        const ZoneCalendar calendar(zone.zone, "en_US");
        for (const auto& transition : zone.transitions) {
            ++transitions;
            for (std::uint64_t round = 0; round < rounds; ++round, ++ledgers) {
                SCOPED_TRACE(zone.zone + " " + std::to_string(transition.date.seconds));
                LedgerAround around(transition.date, seed++);
                const LedgerData ledger = around.make();
                Books(ledger, calendar, transition.date + around.distance()).check();
                ASSERT_FALSE(HasFailure());
            }
        }
    }
    std::cout << "Covered " << ledgers << " ledgers around " << transitions << " changes.\n";
    EXPECT_GT(transitions, 5'000U);
}

} // namespace
} // namespace KestryCore
