#include "SessionSort.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstdint>

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

/// What sessions are sorted by: the lower key goes first, the identifier decides when all is equal.
struct SortKey {
    std::uint64_t first;
    std::uint64_t newestFirst;
    const TimeEntry* entry;

    friend bool operator<(const SortKey& left, const SortKey& right)
    {
        if (left.first != right.first) {
            return left.first < right.first;
        }
        if (left.newestFirst != right.newestFirst) {
            return left.newestFirst < right.newestFirst;
        }
        return left.entry->id < right.entry->id;
    }
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

std::vector<SortKey> sortKeys(const std::vector<const TimeEntry*>& sessions,
    const SessionSort& sort, const SessionTitle& title, const LocalizedOrder& order)
{
    const bool isByTitle = sort.field == SessionSortField::title;
    const auto ranks =
        isByTitle ? titleRanks(sessions, title, order) : std::vector<std::uint32_t>{};
    std::vector<SortKey> keys;
    keys.reserve(sessions.size());
    for (std::size_t index = 0; index < sessions.size(); ++index) {
        const TimeEntry& entry = *sessions[index];
        keys.push_back(
            {isByTitle ? directed(ranks[index], sort.ascending) : numericKey(entry, sort),
                ~orderedBits(entry.startedAt().seconds), &entry});
    }
    return keys;
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
    std::vector<SortKey> keys = sortKeys(sessions, *this, title, order);
    std::ranges::sort(keys, std::less{});
    std::vector<const TimeEntry*> result;
    result.reserve(keys.size());
    for (const SortKey& key : keys) {
        result.push_back(key.entry);
    }
    return result;
}

} // namespace KestryCore
