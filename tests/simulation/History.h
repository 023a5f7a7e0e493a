#pragma once

#include <string>
#include <utility>
#include <vector>

namespace KestryCore {

/// What happened in a run, line by line, for whoever looks into a failure. Not kept unless asked
/// for: the same seed tells it again.
class History {
public:
    explicit History(bool isKept) : isKept_(isKept) { }

    /// `words` makes the line, and is called only when it is kept.
    template <class Words>
    void note(Words words)
    {
        if (isKept_) {
            lines_.push_back(words());
        }
    }

    [[nodiscard]] bool isKept() const { return isKept_; }
    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

private:
    bool isKept_;
    std::vector<std::string> lines_;
};

} // namespace KestryCore
