#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace Kestry {

/// A text that changes before the user's eyes, and the number that it stands for if there is one.
struct MorphContent {
    QString text;
    std::optional<double> value{};

    friend bool operator==(const MorphContent&, const MorphContent&) = default;
};

/// How one text becomes another: at once, by digits that roll in a direction, or by fading.
enum class MorphEffect { none, rollUp, rollDown, crossFade };

/// A growing value rolls up and a shrinking one down; without values digits count upwards, and a
/// new text without any digit fades in. Nothing moves for those who want less motion.
[[nodiscard]] MorphEffect morphEffect(
    const MorphContent& before, const MorphContent& after, bool reducesMotion);

/// A digit, or what stands between two digits.
struct MorphRun {
    QString text;
    bool isDigit = false;

    friend bool operator==(const MorphRun&, const MorphRun&) = default;
};

/// The text in runs, from left to right.
[[nodiscard]] std::vector<MorphRun> morphRuns(const QString& text);

enum class RunChange {
    still, ///< The same run as before.
    roll,  ///< One digit became another.
    fade,  ///< It was something else, or nothing.
};

/// What happens to each run of `after` on the way from `before`. Both are laid one over the other
/// at their right ends, where a number has its ones.
[[nodiscard]] std::vector<RunChange> runChanges(
    const std::vector<MorphRun>& before, const std::vector<MorphRun>& after);

} // namespace Kestry
