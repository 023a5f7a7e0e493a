#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/usetiter.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CollationUnits.h"
#include "LedgerError.h"

namespace KestryCore {

namespace {

/// The bytes that stand for a text on the collator's first level.
using FirstLevel = std::string;

void requireSuccess(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError("Texts cannot be compared in the order of this locale.");
    }
}

/// A middle dot may join the letter before it in any language; marks always do.
bool joinsInAnyLanguage(char32_t character)
{
    constexpr char32_t middleDot = 0xB7;
    constexpr char32_t greekMiddleDot = 0x387;
    return character == middleDot || character == greekMiddleDot
        || (U_GET_GC_MASK(static_cast<UChar32>(character)) & U_GC_M_MASK) != 0;
}

/// Whether a character is common enough to have a unit of its own, for there are not enough for all
/// of them; the others may share one.
bool isCommon(char32_t character)
{
    return character < 0x180 || (character >= 0x386 && character <= 0x3CE) || character >= 0x401;
}

icu::UnicodeString textOf(char32_t character)
{
    return {static_cast<UChar32>(character)};
}

/// The spellings that a character may be sorted by, if the collator agrees.
std::vector<icu::UnicodeString> likelySpellings(char32_t character)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* plain = icu::Normalizer2::getNFKDInstance(status);
    requireSuccess(status);
    const icu::UnicodeString text = textOf(character);
    icu::UnicodeString folded = text;
    return {plain->normalize(text, status), folded.foldCase(), "ae", "oe"};
}

} // namespace

/// Fills the tables of the units of one collator.
class CollationUnits::Builder {
public:
    Builder(const icu::Collator& collator, CollationUnits& units)
        : units_(units), firstLevelOnly_(collator.clone())
    {
        firstLevelOnly_->setStrength(icu::Collator::PRIMARY);
        markJoining(collator);
        collectCharacters();
        numberCharacters();
        for (const char32_t character : beginningLikeOthers_) {
            spell(character);
        }
    }

private:
    [[nodiscard]] FirstLevel firstLevel(const icu::UnicodeString& text) const
    {
        const std::int32_t length = firstLevelOnly_->getSortKey(text, nullptr, 0);
        FirstLevel bytes(static_cast<std::size_t>(length), '\0');
        firstLevelOnly_->getSortKey(text, reinterpret_cast<std::uint8_t*>(bytes.data()), length);
        bytes.pop_back(); // the zero at the end
        return bytes;
    }

    Code* find(char32_t character)
    {
        if (character < lettersEnd) {
            return &units_.codes_[character];
        }
        const bool isSign = character >= signsBegin && character < signsEnd;
        return isSign ? &units_.codes_[lettersEnd + (character - signsBegin)] : nullptr;
    }

    /// Marks the characters of everything that the language sorts as one letter.
    void markJoining(const icu::Collator& collator)
    {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::UnicodeSet> own(collator.getTailoredSet(status));
        requireSuccess(status);
        for (icu::UnicodeSetIterator each(*own); each.nextRange();) {
            if (each.isString()) {
                markJoining(each.getString());
            }
        }
    }

    void markJoining(const icu::UnicodeString& letter)
    {
        for (std::int32_t place = 0; place < letter.length();) {
            const std::int32_t next = letter.moveIndex32(place, 1);
            if (Code* code = find(static_cast<char32_t>(letter.char32At(place)))) {
                *code |= place > 0 ? joinsPrevious : Code{0};
                *code |= next < letter.length() ? joinsNext : Code{0};
            }
            place = next;
        }
    }

    void collectCharacters()
    {
        for (char32_t character = 0; character < lettersEnd; ++character) {
            collect(character);
        }
        for (char32_t character = signsBegin; character < signsEnd; ++character) {
            collect(character);
        }
    }

    void collect(char32_t character)
    {
        Code& code = *find(character);
        if (character >= '0' && character <= '9') {
            code |= isDigit;
            return;
        }
        code |= hasNoUnits; // until it turns out otherwise
        if (joinsInAnyLanguage(character)) {
            return;
        }
        const FirstLevel bytes = firstLevel(textOf(character));
        if (bytes.empty()) {
            code &= static_cast<Code>(~hasNoUnits);
        } else {
            characters_[bytes].push_back(character);
        }
    }

    /// Numbers the characters in their order, and numbers among them.
    void numberCharacters()
    {
        const FirstLevel number = firstLevel("1");
        const FirstLevel* last = nullptr;
        unsigned unit = 0;
        for (const auto& [bytes, characters] : characters_) {
            if (units_.numberUnit_ == 0 && bytes > number) {
                units_.numberUnit_ = static_cast<std::uint8_t>(++unit);
            }
            if (last != nullptr && bytes.starts_with(*last)) {
                beginningLikeOthers_.insert(
                    beginningLikeOthers_.end(), characters.begin(), characters.end());
                continue;
            }
            last = &bytes;
            const bool isWanted = std::ranges::any_of(characters, isCommon);
            if (isWanted && bytes.front() != number.front() && unit < highestUnit) {
                give(characters, static_cast<Code>(++unit));
            }
        }
        if (units_.numberUnit_ == 0) {
            // No character goes behind numbers.
            units_.numberUnit_ = static_cast<std::uint8_t>(++unit);
        }
    }

    void give(const std::vector<char32_t>& characters, Code unit)
    {
        for (const char32_t character : characters) {
            Code& code = *find(character);
            code = static_cast<Code>((code & ~hasNoUnits) | unit);
        }
    }

    /// Gives a character the units of the letters that it is sorted as.
    void spell(char32_t character)
    {
        for (const icu::UnicodeString& letters : likelySpellings(character)) {
            if (spellingCount_ == units_.spellings_.size()
                || firstLevel(letters) != firstLevel(textOf(character))) {
                continue;
            }
            std::string text;
            letters.toUTF8String(text);
            std::array<std::uint8_t, 32> written{};
            if (most(text.size()) >= written.size()) {
                continue;
            }
            const auto length = units_.write(text, written.data());
            Spelling& spelling = units_.spellings_[spellingCount_];
            if (length && *length <= spelling.units.size()) {
                spelling.length = *length;
                std::copy_n(written.begin(), *length, spelling.units.begin());
                Code& code = *find(character);
                code = static_cast<Code>(
                    (code & ~hasNoUnits) | isSpelled | static_cast<Code>(spellingCount_++));
                return;
            }
        }
    }

    /// One is kept for numbers.
    static constexpr unsigned highestUnit = 254;

    CollationUnits& units_;
    std::unique_ptr<icu::Collator> firstLevelOnly_;
    std::map<FirstLevel, std::vector<char32_t>> characters_;
    /// Those whose bytes begin with all the bytes of another one: they may be several letters.
    std::vector<char32_t> beginningLikeOthers_;
    std::size_t spellingCount_ = 0;
};

CollationUnits::CollationUnits(const icu::Collator& collator)
{
    Builder(collator, *this);
}

} // namespace KestryCore
