#include "ListChanges.h"

#include <algorithm>
#include <cassert>
#include <unordered_map>
#include <utility>

namespace Kestry {

using KestryCore::Uuid;

namespace {

using Ranks = std::vector<std::size_t>;
using Steps = std::vector<ListStep>;

/// Which ranks are part of a longest rising run; the others have to move.
std::vector<bool> staying(const Ranks& ranks)
{
    std::vector<std::size_t> ends; // indexes: of the lowest rank that ends a run of each length
    std::vector<std::size_t> before(ranks.size(), ranks.size());
    for (std::size_t index = 0; index < ranks.size(); ++index) {
        const auto end = std::ranges::lower_bound(
            ends, ranks[index], {}, [&](std::size_t each) { return ranks[each]; });
        if (end != ends.begin()) {
            before[index] = *std::prev(end);
        }
        if (end == ends.end()) {
            ends.push_back(index);
        } else {
            *end = index;
        }
    }
    std::vector<bool> stays(ranks.size(), false);
    for (std::size_t index = ends.empty() ? ranks.size() : ends.back(); index < ranks.size();
         index = before[index]) {
        stays[ranks[index]] = true;
    }
    return stays;
}

/// Moves one rank to its place among those that are in order already.
ListStep move(Ranks& ranks, std::size_t rank, const std::vector<bool>& inOrder)
{
    const auto found = std::ranges::find(ranks, rank);
    const auto from = found - ranks.begin();
    ranks.erase(found);
    const auto next =
        std::ranges::find_if(ranks, [&](std::size_t each) { return inOrder[each] && each > rank; });
    const auto to = next - ranks.begin();
    ranks.insert(next, rank);
    return {
        .kind = ListStep::Kind::move, .row = static_cast<int>(from), .to = static_cast<int>(to)};
}

/// The rows of a list for which a condition is true, as runs from the front.
template <class Condition>
Steps runs(ListStep::Kind kind, std::size_t count, Condition condition)
{
    Steps steps;
    for (std::size_t row = 0; row < count; ++row) {
        if (!condition(row)) {
            continue;
        }
        if (!steps.empty() && steps.back().row + steps.back().count == static_cast<int>(row)) {
            ++steps.back().count;
        } else {
            steps.push_back({.kind = kind, .row = static_cast<int>(row)});
        }
    }
    return steps;
}

/// The part of both lists between what they begin and end with in common.
struct Middle {
    std::size_t first = 0;
    std::vector<Uuid> before;
    std::vector<Uuid> after;
};

Middle middleOf(const std::vector<Uuid>& before, const std::vector<Uuid>& after)
{
    const auto [left, right] = std::ranges::mismatch(before, after);
    auto leftEnd = before.end();
    auto rightEnd = after.end();
    while (leftEnd != left && rightEnd != right && *std::prev(leftEnd) == *std::prev(rightEnd)) {
        --leftEnd;
        --rightEnd;
    }
    return {static_cast<std::size_t>(left - before.begin()), {left, leftEnd}, {right, rightEnd}};
}

} // namespace

std::optional<std::vector<ListStep>> listSteps(
    const std::vector<Uuid>& before, const std::vector<Uuid>& after, std::size_t mostSteps)
{
    const Middle middle = middleOf(before, after);
    std::unordered_map<Uuid, std::size_t> places;
    for (std::size_t place = 0; place < middle.after.size(); ++place) {
        places.emplace(middle.after[place], place);
    }
    assert(places.size() == middle.after.size());
    std::vector<bool> isKept(middle.after.size(), false);
    Ranks keptPlaces; // in the old order
    Steps steps = runs(ListStep::Kind::remove, middle.before.size(), [&](std::size_t row) {
        const auto found = places.find(middle.before[row]);
        if (found == places.end()) {
            return true;
        }
        isKept[found->second] = true;
        keptPlaces.push_back(found->second);
        return false;
    });
    std::ranges::reverse(steps);

    Ranks rankOfPlace(middle.after.size(), 0);
    for (std::size_t place = 0, rank = 0; place < isKept.size(); ++place) {
        rankOfPlace[place] = rank;
        rank += isKept[place] ? 1 : 0;
    }
    Ranks ranks;
    ranks.reserve(keptPlaces.size());
    for (const std::size_t place : keptPlaces) {
        ranks.push_back(rankOfPlace[place]);
    }
    std::vector<bool> inOrder = staying(ranks);
    const Steps insertions = runs(ListStep::Kind::insert, middle.after.size(),
        [&](std::size_t place) { return !isKept[place]; });
    const auto moves = static_cast<std::size_t>(std::ranges::count(inOrder, false));
    if (steps.size() + moves + insertions.size() > mostSteps) {
        return std::nullopt;
    }
    for (std::size_t rank = 0; rank < inOrder.size(); ++rank) {
        if (!inOrder[rank]) {
            steps.push_back(move(ranks, rank, inOrder));
            inOrder[rank] = true;
        }
    }
    steps.insert(steps.end(), insertions.begin(), insertions.end());
    for (ListStep& step : steps) {
        step.row += static_cast<int>(middle.first);
        step.to += step.kind == ListStep::Kind::move ? static_cast<int>(middle.first) : 0;
    }
    return steps;
}

} // namespace Kestry
