#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace Kestry {

/// A text whose changes are animated, and the number that it shows; nullopt without one.
struct MorphContent {
    QString text;
    std::optional<double> value{};

    friend bool operator==(const MorphContent&, const MorphContent&) = default;
};

/// How one text becomes another: at once, by digits that roll in a direction, or by fading.
enum class MorphEffect { none, rollUp, rollDown, crossFade };

/// How `before` becomes `after`. A growing value rolls up and a shrinking one down; without values
/// digits roll up, and a new text without digits fades in. Returns `none` for less motion.
[[nodiscard]] MorphEffect morphEffect(
    const MorphContent& before, const MorphContent& after, bool reducesMotion);

/// A digit, or what stands between two digits.
struct MorphRun {
    QString text;
    bool isDigit = false;
    /// The text that it is of runs from right to left.
    bool isRightToLeft = false;

    friend bool operator==(const MorphRun&, const MorphRun&) = default;
};

/// Splits a text into runs, from left to right as they are seen, whatever the script.
[[nodiscard]] std::vector<MorphRun> morphRuns(const QString& text);

enum class RunChange {
    still, ///< The same run as before.
    roll,  ///< One digit became another.
    fade,  ///< Before it was something else, or nothing.
};

/// What happens to each run of `after`. Both texts are aligned at their right ends, where a number
/// has its ones.
[[nodiscard]] std::vector<RunChange> runChanges(
    const std::vector<MorphRun>& before, const std::vector<MorphRun>& after);

} // namespace Kestry
