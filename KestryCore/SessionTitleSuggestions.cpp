#include "SessionTitleSuggestions.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

#include "LedgerError.h"
#include "Text.h"
#include "TitleFolding.h"
#include "TitlePrefix.h"

namespace KestryCore::SessionTitleSuggestions {

namespace {

/// The latest session known to have a title.
struct Suggestion {
    std::string folded;
    const TimeEntry* session = nullptr;
    std::size_t position = 0;
};

/// The suggestions found so far, best first. What comes later than the last of a full list is not
/// worth a look at its title.
class BestSuggestions {
public:
    explicit BestSuggestions(std::size_t limit) : limit_(limit) { }

    bool wouldTake(const TimeEntry& session, std::size_t position) const
    {
        return best_.size() < limit_ || isBetter(session, position, best_.back());
    }

    void take(Suggestion suggestion)
    {
        const auto known = std::ranges::find(best_, suggestion.folded, &Suggestion::folded);
        if (known != best_.end()) {
            if (!isBetter(*suggestion.session, suggestion.position, *known)) {
                return;
            }
            best_.erase(known);
        } else if (best_.size() == limit_) {
            best_.pop_back();
        }
        const auto place = std::ranges::find_if(best_, [&](const Suggestion& other) {
            return isBetter(*suggestion.session, suggestion.position, other);
        });
        best_.insert(place, std::move(suggestion));
    }

    std::vector<std::string> titles() const
    {
        std::vector<std::string> result;
        for (const Suggestion& suggestion : best_) {
            result.emplace_back(trimmed(suggestion.session->title));
        }
        return result;
    }

private:
    static bool isBetter(const TimeEntry& session, std::size_t position, const Suggestion& other)
    {
        const Date ended = session.endedAt();
        const Date otherEnded = other.session->endedAt();
        return ended == otherEnded ? position < other.position : ended > otherEnded;
    }

    std::size_t limit_;
    std::vector<Suggestion> best_;
};

/// The ends of a text's characters as people count them, each with its marks, in bytes.
class CharacterEnds {
public:
    explicit CharacterEnds(std::string_view text)
    {
        UErrorCode status = U_ZERO_ERROR;
        characters_.reset(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        bytes_.reset(
            utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status));
        if (U_SUCCESS(status)) {
            characters_->setText(bytes_.get(), status);
        }
        if (U_FAILURE(status)) {
            throw LedgerError("A title could not be taken apart into characters.");
        }
    }

    /// None after the last one.
    std::optional<std::size_t> next()
    {
        const std::int32_t end = characters_->next();
        return end == icu::BreakIterator::DONE ? std::nullopt
                                               : std::optional(static_cast<std::size_t>(end));
    }

private:
    struct CloseText {
        void operator()(UText* text) const { utext_close(text); }
    };

    std::unique_ptr<UText, CloseText> bytes_;
    std::unique_ptr<icu::BreakIterator> characters_;
};

} // namespace

std::vector<std::string> matches(
    std::string_view prefix, const RecordList<TimeEntry>& entries, int limit)
{
    const std::string_view words = trimmed(prefix);
    const std::string begin = foldedTitle(words);
    if (begin.empty() || limit < 1) {
        return {};
    }
    TitlePrefix quick(words);
    BestSuggestions best(static_cast<std::size_t>(limit));
    // From the back, where the latest sessions mostly are: they leave the rest little to look at.
    std::size_t position = entries.size();
    for (std::size_t index = entries.blockCount(); index-- > 0;) {
        const auto& sessions = entries.block(index).records;
        for (auto session = sessions.rbegin(); session != sessions.rend(); ++session) {
            --position;
            if (!best.wouldTake(*session, position) || !quick.mayBegin(session->title)) {
                continue;
            }
            std::string folded = foldedTitle(trimmed(session->title));
            if (folded.starts_with(begin) && folded != begin) {
                best.take({std::move(folded), &*session, position});
            }
        }
    }
    return best.titles();
}

std::optional<std::string> inlineSuffix(std::string_view typed, std::string_view suggestion)
{
    const std::string begin = foldedTitle(typed);
    if (trimmed(typed).empty() || begin.empty()) {
        return std::nullopt;
    }
    CharacterEnds ends(suggestion);
    std::string folded;
    std::size_t start = 0;
    while (folded != begin) {
        const auto end = ends.next();
        if (!end || !begin.starts_with(folded)) {
            return std::nullopt;
        }
        folded += foldedTitle(suggestion.substr(start, *end - start));
        start = *end;
    }
    if (start == suggestion.size()) {
        return std::nullopt;
    }
    return std::string(suggestion.substr(start));
}

} // namespace KestryCore::SessionTitleSuggestions
