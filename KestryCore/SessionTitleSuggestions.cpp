#include "SessionTitleSuggestions.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>
#include <unordered_set>

#include "LedgerError.h"
#include "Text.h"
#include "TitleFolding.h"
#include "TitlePrefix.h"

namespace KestryCore::SessionTitleSuggestions {

namespace {

/// A session whose title may begin with the prefix.
struct Candidate {
    Date ended;
    std::size_t position = 0;
    const TimeEntry* session = nullptr;

    bool isBetterThan(const Candidate& other) const
    {
        return ended == other.ended ? position < other.position : ended > other.ended;
    }
};

/// Hands out candidates, the best first. Only as many are put in order as are asked for, a few at
/// first: as a rule the first ones are all that anybody wants.
class BestFirst {
public:
    explicit BestFirst(std::vector<Candidate> candidates) : candidates_(std::move(candidates)) { }

    /// Null after the last one.
    const TimeEntry* next()
    {
        if (next_ == candidates_.size()) {
            return nullptr;
        }
        if (next_ == sorted_) {
            sortMore();
        }
        return candidates_[next_++].session;
    }

private:
    void sortMore()
    {
        const auto isBetter = [](const Candidate& left, const Candidate& right) {
            return left.isBetterThan(right);
        };
        const std::size_t size = std::min(batchSize_, candidates_.size() - sorted_);
        const auto first = candidates_.begin() + static_cast<std::ptrdiff_t>(sorted_);
        const auto last = first + static_cast<std::ptrdiff_t>(size);
        std::nth_element(first, last, candidates_.end(), isBetter);
        std::sort(first, last, isBetter);
        sorted_ += size;
        batchSize_ *= 8;
    }

    std::vector<Candidate> candidates_;
    std::size_t next_ = 0;
    std::size_t sorted_ = 0;
    std::size_t batchSize_ = 16;
};

BestFirst candidatesFor(const std::string& foldedPrefix, const RecordList<TimeEntry>& entries)
{
    TitlePrefix prefix(foldedPrefix);
    std::vector<Candidate> candidates;
    std::size_t position = 0;
    for (const TimeEntry& session : entries) {
        if (prefix.mayBegin(session.title)) {
            candidates.push_back({session.endedAt(), position, &session});
        }
        ++position;
    }
    return BestFirst(std::move(candidates));
}

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

    /// Nullopt after the last one.
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
    const std::string begin = foldedTitle(trimmed(prefix));
    std::vector<std::string> titles;
    if (begin.empty() || limit < 1) {
        return titles;
    }
    BestFirst candidates = candidatesFor(begin, entries);
    std::unordered_set<std::string_view> spellings;
    std::unordered_set<std::string> folds;
    while (titles.size() < static_cast<std::size_t>(limit)) {
        const TimeEntry* session = candidates.next();
        if (session == nullptr) {
            break;
        }
        const std::string_view title = trimmed(session->title);
        if (!spellings.insert(title).second) {
            continue; // People do the same thing again and again.
        }
        std::string folded = foldedTitle(title);
        if (folded.starts_with(begin) && folded != begin
            && folds.insert(std::move(folded)).second) {
            titles.emplace_back(title);
        }
    }
    return titles;
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
