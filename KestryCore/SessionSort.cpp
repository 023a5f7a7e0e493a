#include "SessionSort.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstdint>
#include <functional>
#include <span>

#include "KeySort.h"

namespace KestryCore {

namespace {

bool isPriced(const TimeEntry& entry)
{
    return entry.isBillable && entry.rateIsKnown;
}

/// A number that stands to other such numbers as the value does to other values.
std::uint64_t orderedBits(double value)
{
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0); // makes one zero of both
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

/// A session by its place in the list, with what it is sorted by just now: lower goes first.
struct SortItem {
    std::uint64_t key;
    std::uint32_t place;
};

std::uint64_t directed(std::uint64_t bits, bool ascending)
{
    return ascending ? bits : ~bits;
}

/// More than the key of any priced session: only that of no number at all is as high.
constexpr std::uint64_t unpriced = ~std::uint64_t{0};

/// The key of a field that is a number.
std::uint64_t numericKey(const TimeEntry& entry, const SessionSort& sort)
{
    switch (sort.field) {
    case SessionSortField::date:
        return directed(orderedBits(entry.startedAt().seconds), sort.ascending);
    case SessionSortField::duration:
        return directed(orderedBits(entry.duration()), sort.ascending);
    case SessionSortField::value:
        return isPriced(entry) ? directed(orderedBits(entry.earnedCents()), sort.ascending)
                               : unpriced;
    case SessionSortField::title:
        break;
    }
    return 0;
}

std::vector<std::uint32_t> titleRanks(const std::vector<const TimeEntry*>& sessions,
    const SessionTitle& title, const LocalizedOrder& order)
{
    std::vector<std::string_view> titles;
    titles.reserve(sessions.size());
    for (const TimeEntry* session : sessions) {
        titles.push_back(title(*session));
    }
    return order.ranks(titles);
}

std::vector<SortItem> sortItems(const std::vector<const TimeEntry*>& sessions,
    const SessionSort& sort, const SessionTitle& title, const LocalizedOrder& order)
{
    const bool isByTitle = sort.field == SessionSortField::title;
    const auto ranks =
        isByTitle ? titleRanks(sessions, title, order) : std::vector<std::uint32_t>{};
    std::vector<SortItem> items;
    items.reserve(sessions.size());
    for (std::uint32_t place = 0; place < sessions.size(); ++place) {
        items.push_back({isByTitle ? directed(ranks[place], sort.ascending)
                                   : numericKey(*sessions[place], sort),
            place});
    }
    return items;
}

/// Brings sessions that are the same so far into the one order between equals.
void sortEquals(std::span<SortItem> equals, const std::vector<const TimeEntry*>& sessions,
    std::vector<SortItem>& spare)
{
    if (equals.size() == 1) {
        return;
    }
    for (SortItem& item : equals) {
        item.key = ~orderedBits(sessions[item.place]->startedAt().seconds);
    }
    sortByKey(equals, spare);
    forEachEqualKey(equals, [&](std::span<SortItem> together) {
        std::ranges::sort(together, std::less{},
            [&](const SortItem& item) -> const Uuid& { return sessions[item.place]->id; });
    });
}

std::partial_ordering comparedByValue(const TimeEntry& left, const TimeEntry& right)
{
    return isPriced(left) && isPriced(right) ? left.earnedCents() <=> right.earnedCents()
                                             : std::partial_ordering::equivalent;
}

std::partial_ordering compared(const TimeEntry& left, const TimeEntry& right,
    SessionSortField field, const SessionTitle& title, const LocalizedOrder& order)
{
    switch (field) {
    case SessionSortField::title:
        return order.compare(title(left), title(right));
    case SessionSortField::date:
        return left.startedAt() <=> right.startedAt();
    case SessionSortField::duration:
        return left.duration() <=> right.duration();
    case SessionSortField::value:
        break;
    }
    return comparedByValue(left, right);
}

} // namespace

std::string_view sessionSortFieldName(SessionSortField field)
{
    switch (field) {
    case SessionSortField::title:
        return "title";
    case SessionSortField::date:
        return "date";
    case SessionSortField::duration:
        return "duration";
    case SessionSortField::value:
        break;
    }
    return "value";
}

void SessionSort::select(SessionSortField selected)
{
    ascending = selected == field ? !ascending : selected == SessionSortField::title;
    field = selected;
}

bool SessionSort::precedes(const TimeEntry& left, const TimeEntry& right, const SessionTitle& title,
    const LocalizedOrder& order) const
{
    if (field == SessionSortField::value && isPriced(left) != isPriced(right)) {
        return isPriced(left);
    }
    const std::partial_ordering first = compared(left, right, field, title, order);
    if (first != 0) {
        return ascending ? first < 0 : first > 0;
    }
    if (left.startedAt() != right.startedAt()) {
        return left.startedAt() > right.startedAt();
    }
    return left.id < right.id; // as their texts, whose digits are in the order of their values
}

std::vector<const TimeEntry*> SessionSort::sorted(const std::vector<const TimeEntry*>& sessions,
    const SessionTitle& title, const LocalizedOrder& order) const
{
    std::vector<SortItem> items = sortItems(sessions, *this, title, order);
    std::vector<SortItem> spare;
    sortByKey(std::span(items), spare);
    forEachEqualKey(
        std::span(items), [&](std::span<SortItem> equals) { sortEquals(equals, sessions, spare); });
    std::vector<const TimeEntry*> result;
    result.reserve(items.size());
    for (const SortItem& item : items) {
        result.push_back(sessions[item.place]);
    }
    return result;
}

} // namespace KestryCore
