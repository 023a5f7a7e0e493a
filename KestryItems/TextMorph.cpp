#include "TextMorph.h"

#include <unicode/ubidi.h>

#include <algorithm>
#include <memory>

namespace Kestry {
namespace {

bool hasDigit(const QString& text)
{
    return std::ranges::any_of(text, [](QChar character) { return character.isDigit(); });
}

RunChange changeOf(const MorphRun& before, const MorphRun& after)
{
    if (before == after) {
        return RunChange::still;
    }
    return before.isDigit && after.isDigit ? RunChange::roll : RunChange::fade;
}

/// Whether some of it may be seen in another order than it is read in.
bool mayBeReordered(const QString& text)
{
    constexpr char16_t firstOfHebrew = 0x590;
    return std::ranges::any_of(
        text, [](QChar character) { return character.unicode() >= firstOfHebrew; });
}

/// Puts the runs of a text, which stand in its order, into the order in which they are seen.
void putInVisualOrder(std::vector<MorphRun>& runs, const QString& text)
{
    const std::unique_ptr<UBiDi, decltype(&ubidi_close)> paragraph(ubidi_open(), &ubidi_close);
    UErrorCode status = U_ZERO_ERROR;
    ubidi_setPara(paragraph.get(), reinterpret_cast<const UChar*>(text.utf16()),
        static_cast<std::int32_t>(text.size()), UBIDI_DEFAULT_LTR, nullptr, &status);
    std::vector<std::pair<std::int32_t, MorphRun>> places;
    std::int32_t start = 0;
    for (MorphRun& run : runs) {
        run.isRightToLeft = ubidi_getParaLevel(paragraph.get()) % 2 == 1;
        const auto length = static_cast<std::int32_t>(run.text.size());
        places.emplace_back(ubidi_getVisualIndex(paragraph.get(), start, &status), std::move(run));
        start += length;
    }
    std::ranges::sort(places, {}, [](const auto& place) { return place.first; });
    std::ranges::transform(
        places, runs.begin(), [](auto& place) { return std::move(place.second); });
}

} // namespace

MorphEffect morphEffect(const MorphContent& before, const MorphContent& after, bool reducesMotion)
{
    if (reducesMotion || before == after) {
        return MorphEffect::none;
    }
    if (after.value) {
        const bool shrinks = before.value && *after.value < *before.value;
        return shrinks ? MorphEffect::rollDown : MorphEffect::rollUp;
    }
    return hasDigit(after.text) ? MorphEffect::rollUp : MorphEffect::crossFade;
}

std::vector<MorphRun> morphRuns(const QString& text)
{
    std::vector<MorphRun> runs;
    for (const QChar character : text) {
        const bool isDigit = character.isDigit();
        if (isDigit || runs.empty() || runs.back().isDigit) {
            runs.push_back({character, isDigit});
        } else {
            runs.back().text += character;
        }
    }
    if (mayBeReordered(text)) {
        putInVisualOrder(runs, text);
    }
    return runs;
}

std::vector<RunChange> runChanges(
    const std::vector<MorphRun>& before, const std::vector<MorphRun>& after)
{
    std::vector<RunChange> changes(after.size(), RunChange::fade);
    const std::size_t common = std::min(before.size(), after.size());
    for (std::size_t fromRight = 1; fromRight <= common; ++fromRight) {
        changes[after.size() - fromRight] =
            changeOf(before[before.size() - fromRight], after[after.size() - fromRight]);
    }
    return changes;
}

} // namespace Kestry
