// What the figures and lists that the screens ask for again and again cost beside a plain pass over
// the same ledger, which reads every span and every byte of every title once. The list by title is
// measured beside a pass that has the library make a sort key of each title, and sorts the keys.
// The two take turns.

#include <fmt/core.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "CsvExport.h"
#include "LedgerGenerator.h"
#include "Measurement.h"
#include "Metrics.h"
#include "RecordIndex.h"
#include "SessionLabel.h"
#include "SessionQuery.h"
#include "SessionTitleSuggestions.h"
#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

/// Where results go, so that none of the work that leads to them can be left out.
volatile double sink = 0.0;

/// The least that any answer about all sessions has to do: the sum of all lengths and of all bytes.
double readPlainly(const LedgerData& ledger)
{
    double seconds = 0.0;
    std::uint64_t letters = 0;
    for (const TimeEntry& entry : ledger.entries) {
        for (const TimeSpan& span : entry.spans) {
            seconds += span.end - span.start;
        }
        for (const char letter : entry.title) {
            letters += static_cast<unsigned char>(letter);
        }
    }
    return seconds + static_cast<double>(letters);
}

/// The least that a list by title has to do: a sort key of each title, and the keys in their order.
class TitleKeySort {
public:
    explicit TitleKeySort(const std::string& locale)
    {
        UErrorCode status = U_ZERO_ERROR;
        collator_.reset(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
        if (U_FAILURE(status)) {
            throw std::runtime_error("There is no order for this locale.");
        }
        collator_->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        collator_->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    }

    [[nodiscard]] double sort(const LedgerData& ledger) const
    {
        const RecordIndex index(ledger);
        std::vector<std::string> keys;
        keys.reserve(ledger.entries.size());
        std::array<std::uint8_t, 1024> room{};
        for (const TimeEntry& entry : ledger.entries) {
            const std::string_view title = sessionLabel(entry, index);
            const auto text = icu::UnicodeString::fromUTF8(
                icu::StringPiece(title.data(), static_cast<std::int32_t>(title.size())));
            const std::int32_t length =
                collator_->getSortKey(text, room.data(), static_cast<std::int32_t>(room.size()));
            if (length < 1 || length > static_cast<std::int32_t>(room.size())) {
                throw std::runtime_error("A title is too long for this measurement.");
            }
            keys.emplace_back(room.begin(), room.begin() + length);
        }
        std::ranges::sort(keys);
        return static_cast<double>(keys.size());
    }

private:
    std::unique_ptr<icu::Collator> collator_;
};

/// The limit of what is measured to be known only.
constexpr double unlimited = std::numeric_limits<double>::infinity();

/// Something that a screen asks of the ledger.
struct Case {
    std::string name;
    double limit; ///< As a multiple of the reference.
    std::function<void()> action;
    std::function<void()> reference{}; ///< The plain pass when there is none.
};

/// A moment at which work in the middle of the ledger is in progress.
Date middleOf(const LedgerData& ledger)
{
    auto entry = ledger.entries.begin();
    std::advance(entry, ledger.entries.size() / 2);
    return entry->startedAt();
}

/// The suggestions for one keystroke, after which the title begins so.
Case keystroke(std::string name, std::string prefix, const LedgerData& ledger)
{
    return {std::move(name), 6.0, [prefix = std::move(prefix), &ledger] {
                const auto titles = SessionTitleSuggestions::matches(prefix, ledger.entries, 4);
                sink = static_cast<double>(titles.size());
            }};
}

/// What is measured of one ledger, which must outlive the list.
std::vector<Case> casesFor(const LedgerData& ledger)
{
    const auto calendar = std::make_shared<ZoneCalendar>("Europe/Berlin", "de_DE");
    const Date now = middleOf(ledger);
    const Uuid client = ledger.clients.front().id;
    const LocalizedOrder order("de_DE");
    const auto list = [=, &ledger](const SessionSort& sort, const std::string& search) {
        SessionQuery query;
        query.setSort(sort);
        query.setSearch(search);
        sink = static_cast<double>(query.sessions({ledger, *calendar, order, {}}).size());
    };
    const auto titleKeySort = [keySort = std::make_shared<TitleKeySort>("de_DE"), &ledger] {
        sink = keySort->sort(ledger);
    };
    return {
        {"month metrics", 4.0, [=, &ledger] { sink = metrics(ledger, now, *calendar).seconds; }},
        {"client metrics", 4.0,
            [=, &ledger] { sink = clientMetrics(ledger, client, now, *calendar).seconds; }},
        {"sessions by date", 8.0,
            [=] {
                list({SessionSortField::date, false}, "");
            }},
        {"sessions by title", 1.5,
            [=] {
                list({SessionSortField::title, true}, "");
            },
            titleKeySort},
        {"titles, first time", 1.5,
            [=, &ledger] {
                // A new order remembers no key yet. Making it counts too.
                const LocalizedOrder unused("de_DE");
                SessionQuery query;
                query.setSort({SessionSortField::title, true});
                sink = static_cast<double>(query.sessions({ledger, *calendar, unused, {}}).size());
            },
            titleKeySort},
        {"sessions searched", unlimited,
            [=] {
                list({SessionSortField::date, false}, "for M");
            }},
        keystroke("titles, a letter", "d", ledger),
        keystroke("titles, a phrase", "Ubersetzt ma", ledger),
        keystroke("titles, none", "zz", ledger),
        {"CSV export", 40.0, [&] { sink = static_cast<double>(exportCSV(ledger).size()); }},
    };
}

void measure(const Case& measured, const LedgerData& ledger, Limits& limits)
{
    constexpr std::size_t mostTurns = 1001;
    constexpr double secondsForEach = 5.0;
    const Turns turns = takeTurns([&] { return secondsOf(measured.action); },
        [&] {
            return secondsOf(
                measured.reference ? measured.reference : [&] { sink = readPlainly(ledger); });
        },
        mostTurns, secondsForEach);
    fmt::print("{:>9}  {:<18}{:>11.3f}{:>14.3f}{:>8.2f}{:>7.1f}  {}\n", ledger.entries.size(),
        measured.name, median(turns.ours) * 1e3, median(turns.theirs) * 1e3, turns.ratio(),
        measured.limit, limits.judge(turns, measured.limit));
    std::fflush(stdout);
}

} // namespace
} // namespace KestryCore

/// Takes the numbers of sessions to measure; the usual ones without any.
int main(int argc, char** argv)
{
    using namespace KestryCore;
    fmt::print("Medians of each answer and of its reference on the same ledger, in turns.\n"
               "{:>9}  {:<18}{:>11}{:>14}{:>8}{:>7}  {}\n",
        "sessions", "what", "ms", "reference ms", "ratio", "limit", "verdict");
    Limits limits;
    for (const std::size_t size : sessionCounts({argv + 1, argv + argc})) {
        const LedgerData ledger = generateLedger({.sessions = size});
        for (const Case& measured : casesFor(ledger)) {
            measure(measured, ledger, limits);
        }
    }
    return limits.exitStatus();
}
