// The same hour and the same cent on every surface: what one shows of a ledger is compared, text
// for text, with what the others show, on random ledgers around moments at which clocks are set.
//
// KESTRY_FIGURES_SEED replays a run from the seed that it printed.

#include <gtest/gtest.h>

#include <QDate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <limits>
#include <random>

#include "ApplicationWorld.h"
#include "ClientDashboardBridge.h"
#include "CsvExport.h"
#include "LedgerAround.h"
#include "Listings.h"
#include "MetricsReport.h"
#include "OverviewBridge.h"
#include "SessionBridge.h"
#include "SessionDeletion.h"
#include "SessionListing.h"
#include "SidebarSession.h"
#include "StatusReport.h"

namespace Kestry {
namespace {

using KestryCore::Date;
using KestryCore::LedgerData;
using KestryCore::Uuid;

constexpr const char* locale = "en_US";

/// A zone, and a moment at which its clocks were set.
struct ClockChange {
    const char* zone;
    KestryCore::WallTime inUtc;
};

constexpr std::array<ClockChange, 6> clockChanges{{
    {"Europe/Berlin", {{2025, 10, 26}, 1, 0, 0.0}},
    {"America/New_York", {{2025, 3, 9}, 7, 0, 0.0}},
    {"Australia/Lord_Howe", {{2025, 4, 5}, 15, 0, 0.0}},
    {"Africa/Cairo", {{2025, 4, 24}, 22, 0, 0.0}},
    {"Pacific/Chatham", {{2025, 9, 27}, 14, 0, 0.0}},
    {"UTC", {{2025, 12, 31}, 0, 0, 0.0}},
}};

/// A ledger in which sessions in progress are of every kind too.
LedgerData randomLedger(KestryCore::LedgerAround& around, std::uint64_t seed)
{
    LedgerData ledger = around.make();
    if (ledger.active) {
        ledger.active->isBillable = seed % 5 != 0;
        ledger.active->rateIsKnown = seed % 7 != 0;
    }
    return ledger;
}

QString json(const QJsonObject& object, const char* name)
{
    return object.value(QLatin1String(name)).toString();
}

QJsonDocument parsed(const CommandAnswer& answer)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(answer.json));
}

/// What the exported file says of a session that a list shows with `value`. The file is for
/// programs and has the two decimals that these read from the binary number, where lists round half
/// a cent up: the one place at which they may differ by a cent.
QString inExport(QString value, double earnedCents)
{
    if (!value.startsWith('$')) {
        return value;
    }
    const bool isHalfACent = std::abs(earnedCents - std::floor(earnedCents) - 0.5) < 1e-6;
    return isHalfACent ? QString::fromStdString(fmt::format("{:.2f}", earnedCents / 100.0))
                       : value.remove('$').remove(',');
}

/// The length "2h 5m" as it is spoken: "2 hours 5 minutes".
QString spokenLength(const QString& length)
{
    const int hours = length.section("h ", 0, 0).toInt();
    const int minutes = length.section("h ", 1).chopped(1).toInt();
    const auto counted = [](int count, const QString& unit) {
        return QString::number(count) + " " + unit + (count == 1 ? "" : "s");
    };
    if (hours == 0) {
        return counted(minutes, "minute");
    }
    return counted(hours, "hour") + (minutes == 0 ? "" : " " + counted(minutes, "minute"));
}

/// A day of a report, "2025-10-26", in other words.
QString dayInWords(const QString& day, const QString& words)
{
    return QLocale(locale).toString(QDate::fromString(day, Qt::ISODate), words);
}

/// A day of a report with its length.
struct ReportedDay {
    explicit ReportedDay(const QJsonValue& day)
        : name(json(day.toObject(), "day")),
          seconds(day.toObject().value(QLatin1String("seconds")).toDouble()),
          length(QString::fromStdString(KestryCore::durationText(seconds)))
    {
    }

    QString name;
    double seconds;
    QString length;
};

/// All that shows figures of one ledger, at one moment.
class EverySurface {
public:
    EverySurface(const LedgerData& ledger, const char* zone, Date now)
        : now_(now), calendar_(KestryCore::ZoneCalendar(zone, locale)),
          store_({.files = world_.files, .now = [this] { return now_; }}, openedWith(ledger))
    {
        table_.open();
    }

    void check()
    {
        checkMonth();
        checkOverview();
        checkSession();
        checkSavedSessions();
        checkExport();
        for (const KestryCore::Client& client : store_.data()->clients) {
            checkClient(client.id);
        }
    }

private:
    static KestryCore::StoreOptions openedWith(const LedgerData& ledger)
    {
        KestryCore::StoreOptions options;
        options.demoLedger = ledger;
        options.runningSession = KestryCore::RunningSessionPolicy::keep;
        return options;
    }

    [[nodiscard]] KestryCore::Clock clock()
    {
        return [this] { return now_; };
    }
    [[nodiscard]] SessionList::World lists()
    {
        return {commander_, store_, state_, world_.scheduler, clock(), calendar_, words_,
            [](const Menu&, const QString&, const QQuickItem&) {}, deletion_};
    }
    [[nodiscard]] CommandContext terminal()
    {
        return {
            .files = world_.files, .calendar = *calendar_, .at = now_, .now = now_, .asJson = true};
    }

    /// The panel and a report of the month.
    void checkMonth()
    {
        const QJsonObject report = parsed(monthReport(*store_.data(), {}, terminal())).object();
        const QJsonObject texts = report.value(QLatin1String("text")).toObject();
        if (store_.data()->active) {
            // The panel tells apart what is not priced.
            const QString earned = json(texts, "earned");
            EXPECT_EQ(session_.monthValue(), earned == "Rate not set" ? "$0.00" : earned);
        }
        double seconds = 0.0;
        for (const auto& day : report.value(QLatin1String("daily")).toArray()) {
            seconds += day.toObject().value(QLatin1String("seconds")).toDouble();
        }
        EXPECT_EQ(
            QString::fromStdString(KestryCore::durationText(seconds)), json(texts, "duration"));
    }

    /// The cards of the Overview and a report, of this month and the ones before it.
    void checkOverview()
    {
        overview_.open();
        for (int monthsAgo = 0; monthsAgo < 3; ++monthsAgo) {
            const QJsonObject report =
                parsed(monthReport(*store_.data(), {monthAgo(monthsAgo), {}}, terminal())).object();
            const QJsonObject texts = report.value(QLatin1String("text")).toObject();
            EXPECT_EQ(overview_.billableEarnings().value, json(texts, "earned"));
            EXPECT_EQ(overview_.trackedTime().value, json(texts, "duration"));
            EXPECT_EQ(overview_.projectedEarnings().value, json(texts, "projected"));
            EXPECT_EQ(overview_.projectedTime().value, json(texts, "projectedDuration"));
            const QJsonArray daily = report.value(QLatin1String("daily")).toArray();
            checkBars(daily);
            checkScale(daily);
            checkSpokenActivity(daily, json(texts, "duration"));
            checkRecentRows(monthsAgo);
            overview_.previousMonth();
        }
        overview_.close();
    }

    /// The first day of a month; nullopt for the present one.
    [[nodiscard]] std::optional<KestryCore::CalendarDay> monthAgo(int count) const
    {
        return count == 0 ? std::nullopt : std::optional(firstOfMonthAgo(count));
    }
    [[nodiscard]] KestryCore::CalendarDay firstOfMonthAgo(int count) const
    {
        const KestryCore::CalendarDay day = calendar_->wallTime(now_).day;
        const int months = day.year * 12 + day.month - 1 - count;
        return KestryCore::CalendarDay{months / 12, months % 12 + 1, 1};
    }

    /// A bar's label is the day of the report and its length.
    void checkBars(const QJsonArray& daily)
    {
        const ActivityBars& bars = *overview_.bars();
        ASSERT_EQ(bars.rowCount(), daily.size());
        for (int row = 0; row < daily.size(); ++row) {
            const ReportedDay day(daily.at(row));
            EXPECT_EQ(bars.data(bars.index(row), ActivityBars::LabelRole).toString(),
                dayInWords(day.name, "MMM d") + ": " + day.length);
        }
    }

    /// The axis holds the longest day of the report: an even number of hours, at least four.
    void checkScale(const QJsonArray& daily)
    {
        int hours = 4;
        for (const auto& day : daily) {
            while (ReportedDay(day).seconds > 3600.0 * hours) {
                hours += 2;
            }
        }
        const auto label = [](int count) { return QString::number(count) + "h"; };
        EXPECT_EQ(overview_.scaleLabels(), QStringList({label(hours), label(hours / 2), "0h"}));
    }

    /// What a screen reader says of the chart.
    void checkSpokenActivity(const QJsonArray& daily, const QString& length)
    {
        ReportedDay most(daily.first());
        int busy = 0;
        for (const auto& each : daily) {
            const ReportedDay day(each);
            busy += day.seconds > 0.0 ? 1 : 0;
            most = day.seconds > most.seconds ? day : most;
        }
        const QString month = dayInWords(most.name, "MMMM yyyy");
        EXPECT_EQ(overview_.spokenActivity(),
            busy == 0 ? "No time tracked in " + month + "."
                      : QString("%1 on %2 in %3. The most was %4 on %5.")
                            .arg(spokenLength(length),
                                QString::number(busy) + (busy == 1 ? " day" : " days"), month,
                                spokenLength(most.length), dayInWords(most.name, "MMMM d")));
    }

    /// A row of a list is what a terminal lists.
    static void checkRow(const SessionsModel& rows, int row, const QJsonObject& session)
    {
        const auto text = [&](SessionsModel::Role role) {
            return rows.data(rows.index(row), role).toString();
        };
        EXPECT_EQ(rows.recordID(row), json(session, "id"));
        EXPECT_EQ(text(SessionsModel::LabelRole), json(session, "label"));
        EXPECT_EQ(text(SessionsModel::DurationRole), json(session, "durationText"));
        EXPECT_EQ(text(SessionsModel::ValueRole), json(session, "valueText"));
    }

    /// The rows of a list are the first ones that a terminal lists, at most so many.
    void checkRows(const SessionsModel& rows, const SessionsCommand& command, std::size_t most)
    {
        const QJsonArray listed =
            parsed(sessionListing(*store_.data(), command, terminal())).array();
        ASSERT_EQ(static_cast<std::size_t>(rows.rowCount()),
            std::min(most, static_cast<std::size_t>(listed.size())));
        for (int row = 0; row < rows.rowCount(); ++row) {
            checkRow(rows, row, listed.at(row).toObject());
        }
    }

    /// Whether a session has time in a month, and not only a moment.
    static bool hasTimeIn(
        const KestryCore::MonthInterval& month, const KestryCore::TimeEntry& session)
    {
        return session.duration() > 0.0
            && std::ranges::any_of(session.spans, [&](const KestryCore::TimeSpan& span) {
                   return std::max(span.start, month.start) < std::min(span.end, month.end);
               });
    }

    /// The Overview's rows of a month are the first ones that a terminal lists. It shows besides
    /// the sessions that were only a moment long.
    void checkRecentRows(int monthsAgo)
    {
        SessionsCommand ofMonth;
        ofMonth.month = firstOfMonthAgo(monthsAgo);
        const QJsonArray listed =
            parsed(sessionListing(*store_.data(), ofMonth, terminal())).array();
        const auto month = calendar_->month(calendar_->startOfDay(*ofMonth.month));
        const SessionsModel& rows = *overview_.sessions()->rows();
        qsizetype next = 0;
        for (int row = 0; row < rows.rowCount(); ++row) {
            if (hasTimeIn(*month, *rows.entry(row))) {
                checkRow(rows, row, listed.at(next++).toObject());
            }
        }
        EXPECT_TRUE(rows.rowCount() == RecentSessions::most || next == listed.size());
    }

    /// The session in progress: panel, sidebar, table and status.
    void checkSession()
    {
        if (!store_.data()->active) {
            EXPECT_EQ(session_.sessionValue(), "");
            EXPECT_FALSE(table_.list()->showsActive());
            return;
        }
        const QJsonObject status = parsed(statusReport(store_, terminal())).object();
        const QString value = json(status, "valueText");
        EXPECT_EQ(session_.elapsed(), json(status, "clock"));
        EXPECT_EQ(session_.sessionValue(), value);
        EXPECT_EQ(table_.list()->elapsed(), json(status, "clock"));
        EXPECT_EQ(table_.list()->activeValue(), value);
        const QString inSidebar = value == "Nonbillable" ? "Nonbillable session"
            : value == "Rate not set"                    ? "Hourly rate not set"
                                                         : value + " earned";
        EXPECT_EQ(sidebar_.value(), inSidebar);
    }

    [[nodiscard]] QString cell(int row, SessionsModel::Role role)
    {
        SessionsModel* rows = table_.list()->rows();
        return rows->data(rows->index(row), role).toString();
    }

    /// The rows of the table and those of a terminal.
    void checkSavedSessions()
    {
        checkRows(*table_.list()->rows(), {}, std::numeric_limits<std::size_t>::max());
    }

    /// The rows of the table and the lines of the exported file, which begins with the earliest.
    void checkExport()
    {
        QMap<QPair<QString, QString>, int> inFile;
        const QStringList lines =
            QString::fromStdString(KestryCore::exportCSV(*store_.data())).split("\r\n");
        ASSERT_EQ(lines.size(), table_.list()->rows()->rowCount() + 2);
        for (qsizetype line = 1; line + 1 < lines.size(); ++line) {
            const QStringList cells = QString(lines.at(line)).remove('"').split(',');
            const QString value = cells.at(8) == "false" ? "Nonbillable"
                : cells.at(9) == "false"                 ? "Rate not set"
                                                         : cells.at(7);
            const double seconds = cells.at(10).toDouble();
            ++inFile[{QString::fromStdString(KestryCore::durationText(seconds)), value}];
        }
        for (int row = 0; row < table_.list()->rows()->rowCount(); ++row) {
            const double earned = table_.list()->rows()->entry(row)->earnedCents();
            --inFile[{cell(row, SessionsModel::DurationRole),
                inExport(cell(row, SessionsModel::ValueRole), earned)}];
        }
        for (auto each = inFile.cbegin(); each != inFile.cend(); ++each) {
            EXPECT_EQ(each.value(), 0)
                << each.key().first.toStdString() << ", " << each.key().second.toStdString();
        }
    }

    /// The cards of a client's page and its report, cell for cell.
    void checkClient(const Uuid& client)
    {
        state_.selectedClient.assign(client);
        dashboard_.open();
        const CommandAnswer report = clientReport(*store_.data(), {client.text()}, terminal());
        const QStringList lines = QString::fromStdString(report.text).split('\n');
        EXPECT_EQ(valueIn(lines, dashboard_.earnings()), dashboard_.earnings().value);
        EXPECT_EQ(valueIn(lines, dashboard_.hours()), dashboard_.hours().value);
        EXPECT_EQ(valueIn(lines, dashboard_.monthHours()), dashboard_.monthHours().value);
        EXPECT_EQ(valueIn(lines, dashboard_.average()), dashboard_.average().value);
        EXPECT_EQ(lines.filter(" is excluded from earnings.").value(0), dashboard_.unpriced());
        checkMonthOf(client);
        checkListsOf(client);
        dashboard_.close();
        state_.selectedClient.assign(std::nullopt);
    }

    /// The month's hours on a client's page and in the report of that month.
    void checkMonthOf(const Uuid& client)
    {
        const ReportCommand command{{}, client.text()};
        const QJsonObject report =
            parsed(monthReport(*store_.data(), command, terminal())).object();
        EXPECT_EQ(dashboard_.monthHours().value,
            json(report.value(QLatin1String("text")).toObject(), "duration"));
    }

    /// The projects of a client's page, and its sessions.
    void checkListsOf(const Uuid& client)
    {
        const SessionsCommand command{client.text(), {}, {}, {}};
        if (!dashboard_.hasProjects()) {
            dashboard_.sessions()->open();
            checkRows(*dashboard_.sessions()->list()->rows(), command,
                KestryCore::SessionQuery::pageLength);
            dashboard_.sessions()->close();
            return;
        }
        checkRows(*dashboard_.recent()->rows(), command, RecentSessions::most);
        static const QRegularExpression gap("  +");
        const QStringList lines =
            QString::fromStdString(projectListing(*store_.data(), client, terminal()).text)
                .split('\n');
        const ProjectsModel& rows = *dashboard_.projects();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const auto text = [&](ProjectsModel::Role role) {
                return rows.data(rows.index(row), role).toString();
            };
            const QStringList cells =
                lines.filter(text(ProjectsModel::RecordIDRole)).value(0).split(gap);
            ASSERT_GE(cells.size(), 5);
            EXPECT_EQ(text(ProjectsModel::RateRole), cells.at(2));
            EXPECT_EQ(text(ProjectsModel::CountRole), cells.at(3) + " saved sessions");
        }
    }

    /// What a report says in the line of a card.
    static QString valueIn(const QStringList& lines, const DashboardFigure& figure)
    {
        static const QRegularExpression gap("  +");
        for (const QString& line : lines) {
            const QStringList cells = line.split(gap);
            if (cells.first() == figure.title) {
                return cells.value(1);
            }
        }
        return "no line";
    }

    ApplicationWorld world_;
    Date now_;
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_;
    KestryCore::MoneyText words_{locale};
    KestryCore::TimeStore store_;
    AppState state_{world_.defaults};
    Commander commander_{store_, state_, clock(), [] {}};
    SessionBridge session_{
        commander_, store_, state_, clock(), world_.scheduler, {calendar_, words_}};
    SidebarSession sidebar_{session_, store_, state_, clock(), words_};
    SessionDeletion deletion_{store_, world_.scheduler};
    SessionsBridge table_{lists(), KestryCore::SessionListPlace::page};
    Today today_{world_.scheduler, clock(), calendar_};
    OverviewBridge overview_{lists(), today_};
    ClientDashboardBridge dashboard_{lists(), today_};
};

std::uint64_t seedOfFigures()
{
    const QByteArray text = qgetenv("KESTRY_FIGURES_SEED");
    return text.isEmpty() ? std::random_device{}() : text.toULongLong();
}

TEST(Figures, AgreeTextForTextOnEverySurface)
{
    std::uint64_t seed = seedOfFigures();
    std::cout << "KESTRY_FIGURES_SEED=" << seed << "\n";
    for (std::size_t number = 0; number < 300; ++number, ++seed) {
        SCOPED_TRACE("KESTRY_FIGURES_SEED=" + std::to_string(seed));
        const ClockChange& change = clockChanges.at(number % clockChanges.size());
        const Date moment = KestryCore::dateInUtc(change.inUtc);
        KestryCore::LedgerAround around(moment, seed);
        const LedgerData ledger = randomLedger(around, seed);
        EverySurface(ledger, change.zone, moment + around.distance()).check();
        ASSERT_FALSE(::testing::Test::HasFailure());
    }
}

} // namespace
} // namespace Kestry
