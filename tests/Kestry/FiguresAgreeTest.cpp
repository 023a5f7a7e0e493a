// The same hour and the same cent on every surface: what one shows of a ledger is compared, text
// for text, with what the others show, on random ledgers around moments at which clocks are set.
//
// KESTRY_FIGURES_SEED replays a run from the seed that it printed.

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iostream>
#include <random>

#include "ApplicationWorld.h"
#include "ClientDashboardBridge.h"
#include "CsvExport.h"
#include "LedgerAround.h"
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
            checkBars(report.value(QLatin1String("daily")).toArray());
            overview_.previousMonth();
        }
        overview_.close();
    }

    /// The first day of a month; nullopt for the present one.
    [[nodiscard]] std::optional<KestryCore::CalendarDay> monthAgo(int count) const
    {
        if (count == 0) {
            return std::nullopt;
        }
        KestryCore::CalendarDay day = calendar_->wallTime(now_).day;
        const int months = day.year * 12 + day.month - 1 - count;
        return KestryCore::CalendarDay{months / 12, months % 12 + 1, 1};
    }

    /// A bar's label ends with the length of its day.
    void checkBars(const QJsonArray& daily)
    {
        const ActivityBars& bars = *overview_.bars();
        ASSERT_EQ(bars.rowCount(), daily.size());
        for (int row = 0; row < daily.size(); ++row) {
            const double seconds =
                daily.at(row).toObject().value(QLatin1String("seconds")).toDouble();
            const QString label = bars.data(bars.index(row), ActivityBars::LabelRole).toString();
            EXPECT_TRUE(
                label.endsWith(": " + QString::fromStdString(KestryCore::durationText(seconds))))
                << label.toStdString() << " of " << seconds << " seconds";
        }
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
        const QJsonArray listed = parsed(sessionListing(*store_.data(), {}, terminal())).array();
        ASSERT_EQ(table_.list()->rows()->rowCount(), listed.size());
        for (int row = 0; row < listed.size(); ++row) {
            const QJsonObject session = listed.at(row).toObject();
            EXPECT_EQ(cell(row, SessionsModel::LabelRole), json(session, "label"));
            EXPECT_EQ(cell(row, SessionsModel::DurationRole), json(session, "durationText"));
            EXPECT_EQ(cell(row, SessionsModel::ValueRole), json(session, "valueText"));
        }
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
