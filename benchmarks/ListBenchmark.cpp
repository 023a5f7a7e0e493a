// What the list of all sessions costs a person who waits for it, without a window: a key in the
// search field until the rows on the screen are known, beside one pass of the library's search over
// the same texts; and a press on the head of a column until the list is in the new order, beside
// the sort alone. The two take turns.

#include <QCoreApplication>

#include <fmt/core.h>
#include <unicode/coll.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>
#include <unicode/unistr.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ApplicationWorld.h"
#include "LedgerGenerator.h"
#include "Measurement.h"
#include "RecordIndex.h"
#include "SessionLabel.h"
#include "SessionsBridge.h"

namespace Kestry {
namespace {

using KestryCore::LedgerData;
using KestryCore::SessionSort;
using KestryCore::SessionSortField;
using KestryCore::TimeEntry;

constexpr const char* locale = "de_DE";
constexpr int rowsOnScreen = 14;
constexpr double searchLimit = 2.0;
constexpr double sortLimit = 1.3;

/// Where results go, so that none of the work that leads to them can be left out.
volatile double sink = 0.0;

/// The page of all sessions of a ledger, as the window has it.
class Page {
public:
    explicit Page(const LedgerData& ledger) : store_(world_.storePlatform(), inMemory(ledger))
    {
        list_.open();
    }

    SessionsBridge& list() { return list_; }

    /// All that a view asks of the rows that it shows first.
    void readRows()
    {
        qsizetype letters = 0;
        SessionsModel& rows = *list_.list()->rows();
        const int count = std::min(rows.rowCount(), rowsOnScreen);
        for (int row = 0; row < count; ++row) {
            for (int role = SessionsModel::LabelRole; role <= SessionsModel::SpokenRole; ++role) {
                letters += rows.data(rows.index(row), role).toString().size();
            }
        }
        sink = static_cast<double>(letters);
    }

private:
    static KestryCore::StoreOptions inMemory(const LedgerData& ledger)
    {
        KestryCore::StoreOptions options;
        options.demoLedger = ledger;
        return options;
    }

    ApplicationWorld world_;
    KestryCore::TimeStore store_;
    AppState state_{world_.defaults};
    Commander commander_{store_, state_, [this] { return world_.now(); }, [] {}};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_{
        KestryCore::ZoneCalendar("Europe/Berlin", locale)};
    SessionDeletion deletion_{store_, world_.scheduler};
    SessionsBridge list_{
        {commander_, store_, state_, world_.scheduler, [this] { return world_.now(); }, calendar_,
            KestryCore::MoneyText(locale),
            [](const Menu& /*menu*/, const QString& /*name*/, const QQuickItem& /*item*/) {},
            deletion_},
        KestryCore::SessionListPlace::page};
};

/// The library's own search, over texts that it has been given in its own form beforehand.
class PlainSearch {
public:
    explicit PlainSearch(const LedgerData& ledger)
    {
        const KestryCore::RecordIndex index(ledger);
        for (const TimeEntry& entry : ledger.entries) {
            const KestryCore::Project* project = index.projectOf(entry);
            const KestryCore::Client* client = index.clientOf(project);
            texts_.push_back(icu::UnicodeString::fromUTF8(entry.title + " "
                + (project ? project->name : "") + " " + (client ? client->name : "")));
        }
        UErrorCode status = U_ZERO_ERROR;
        collator_.reset(dynamic_cast<icu::RuleBasedCollator*>(
            icu::Collator::createInstance(icu::Locale(locale), status)));
        if (U_FAILURE(status) || !collator_) {
            throw std::runtime_error("There is no order for this locale.");
        }
        collator_->setStrength(icu::Collator::SECONDARY); // capitals are equal, accents are not
    }

    void search(const std::string& wanted)
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::StringSearch search(
            icu::UnicodeString::fromUTF8(wanted), texts_.front(), collator_.get(), nullptr, status);
        int found = 0;
        for (const icu::UnicodeString& text : texts_) {
            search.setText(text, status);
            found += search.first(status) == USEARCH_DONE ? 0 : 1;
        }
        if (U_FAILURE(status)) {
            throw std::runtime_error("The library could not search.");
        }
        sink = found;
    }

private:
    std::vector<icu::UnicodeString> texts_;
    std::unique_ptr<icu::RuleBasedCollator> collator_;
};

void print(std::size_t sessions, const std::string& what, const KestryCore::Turns& turns,
    double limit, KestryCore::Limits& limits)
{
    fmt::print("{:>9}  {:<28}{:>11.3f}{:>14.3f}{:>8.2f}{:>7.1f}  {}\n", sessions, what,
        KestryCore::median(turns.ours) * 1e3, KestryCore::median(turns.theirs) * 1e3, turns.ratio(),
        limit, limits.judge(turns, limit));
    std::fflush(stdout);
}

constexpr std::size_t mostTurns = 301;
constexpr double secondsForEach = 6.0;

/// Each turn is the next key of one who types words, and takes them back.
void measureKeys(const LedgerData& ledger, Page& page, KestryCore::Limits& limits)
{
    const std::array<std::string, 10> keys{
        "d", "de", "des", "desi", "design", "r", "re", "for M", "zz", "ü"};
    PlainSearch plain(ledger);
    std::size_t ourTurn = 0;
    std::size_t theirTurn = 0;
    const auto turns = KestryCore::takeTurns(
        [&] {
            const QString key = QString::fromStdString(keys[ourTurn++ % keys.size()]);
            return KestryCore::secondsOf([&] {
                page.list().setSearch(key);
                page.readRows();
            });
        },
        [&] {
            const std::string& key = keys[theirTurn++ % keys.size()];
            return KestryCore::secondsOf([&] { plain.search(key); });
        },
        mostTurns, secondsForEach);
    print(ledger.entries.size(), "key in the search field", turns, searchLimit, limits);
    page.list().setSearch("");
}

/// Each turn turns the direction round.
void measureSort(
    SessionSortField field, const LedgerData& ledger, Page& page, KestryCore::Limits& limits)
{
    const KestryCore::RecordIndex index(ledger);
    const KestryCore::LocalizedOrder order(locale);
    std::vector<const TimeEntry*> all;
    for (const TimeEntry& entry : ledger.entries) {
        all.push_back(&entry);
    }
    const auto title = [&](const TimeEntry& each) { return KestryCore::sessionLabel(each, index); };
    SessionSort sort;
    sort.select(field);
    page.list().sortBy(static_cast<int>(field));
    sink = static_cast<double>(sort.sorted(all, title, order).size()); // the keys are known then
    const auto turns = KestryCore::takeTurns(
        [&] {
            const double seconds =
                KestryCore::secondsOf([&] { page.list().sortBy(static_cast<int>(field)); });
            page.readRows();
            return seconds;
        },
        [&] {
            return KestryCore::secondsOf([&] {
                sort.select(field);
                sink = static_cast<double>(sort.sorted(all, title, order).size());
            });
        },
        mostTurns, secondsForEach);
    print(ledger.entries.size(), fmt::format("sort by {}", sessionSortFieldName(field)), turns,
        sortLimit, limits);
}

} // namespace
} // namespace Kestry

/// Takes the numbers of sessions to measure.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    fmt::print("Medians of the list and of its reference on the same sessions, in turns.\n"
               "{:>9}  {:<28}{:>11}{:>14}{:>8}{:>7}  {}\n",
        "sessions", "what", "ms", "reference ms", "ratio", "limit", "verdict");
    KestryCore::Limits limits;
    for (const std::size_t size : KestryCore::sessionCounts({argv + 1, argv + argc})) {
        const KestryCore::LedgerData ledger = KestryCore::generateLedger({.sessions = size});
        Kestry::Page page(ledger);
        Kestry::measureKeys(ledger, page, limits);
        for (const auto field : KestryCore::allSessionSortFields) {
            Kestry::measureSort(field, ledger, page, limits);
        }
    }
    return limits.exitStatus();
}
