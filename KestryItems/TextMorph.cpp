#include "TextMorph.h"

#include <algorithm>

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
