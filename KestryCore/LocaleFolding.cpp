#include "LocaleFolding.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "LedgerError.h"

namespace KestryCore {

namespace {

void requireFolding(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError("Texts cannot be searched in this locale.");
    }
}

icu::UnicodeString normalized(const icu::Normalizer2* form, const icu::UnicodeString& text)
{
    UErrorCode status = form == nullptr ? U_INTERNAL_PROGRAM_ERROR : U_ZERO_ERROR;
    requireFolding(status);
    icu::UnicodeString result = form->normalize(text, status);
    requireFolding(status);
    return result;
}

icu::UnicodeString composed(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    return normalized(icu::Normalizer2::getNFCInstance(status), text);
}

icu::UnicodeString decomposed(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    return normalized(icu::Normalizer2::getNFDInstance(status), text);
}

icu::UnicodeString foldedAsAWhole(const icu::UnicodeString& text, bool dotlessI, bool dotBelow)
{
    // Composed first: taken apart, an "İ" would be an "I" to the folding.
    icu::UnicodeString result = composed(text);
    if (dotBelow) {
        result.toUpper(icu::Locale("lt"));
    }
    result.foldCase(dotlessI ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    return decomposed(result);
}

bool isMark(char32_t character)
{
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) & U_GC_M_MASK) != 0;
}

} // namespace

LocaleFolding::LocaleFolding(const std::string& locale) : rule_(caseRule(locale)) { }

LocaleFolding::CaseRule LocaleFolding::caseRule(const std::string& locale)
{
    const icu::Locale parsed(locale.c_str());
    const std::string_view language = parsed.getLanguage();
    if (language == "tr" || language == "az") {
        return CaseRule::dotlessI;
    }
    return language == "lt" ? CaseRule::dotBelowAccents : CaseRule::usual;
}

void LocaleFolding::fold(std::string_view text, std::u16string& folded)
{
    if (foldLetters(text, folded)) {
        return;
    }
    const icu::StringPiece piece(text.data(), static_cast<std::int32_t>(text.size()));
    const icu::UnicodeString whole = foldedAsAWhole(icu::UnicodeString::fromUTF8(piece),
        rule_ == CaseRule::dotlessI, rule_ == CaseRule::dotBelowAccents);
    folded.assign(whole.getBuffer(), static_cast<std::size_t>(whole.length()));
}

bool LocaleFolding::foldLetters(std::string_view text, std::u16string& folded)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    // Every form is written in full and then cut to its length: quicker than asking first.
    folded.resize(text.size() * std::tuple_size_v<decltype(Letter::form)>);
    char16_t* end = folded.data();
    for (std::size_t position = 0; position < text.size();) {
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(bytes, position, text.size(), character);
        const Letter* known = letter(static_cast<char32_t>(character));
        if (known == nullptr || known->dependsOnNeighbours) {
            return false;
        }
        std::ranges::copy(known->form, end);
        end += known->length;
    }
    folded.resize(static_cast<std::size_t>(end - folded.data()));
    return true;
}

const LocaleFolding::Letter* LocaleFolding::letter(char32_t character)
{
    const bool isSign = character >= signsBegin && character < signsEnd;
    if (!isSign && character >= lettersEnd) {
        return nullptr;
    }
    Letter& known = letters_[isSign ? lettersEnd + (character - signsBegin) : character];
    if (known.length == 0) {
        known = learned(character);
    }
    return &known;
}

LocaleFolding::Letter LocaleFolding::learned(char32_t character) const
{
    const icu::UnicodeString form =
        foldedAsAWhole(icu::UnicodeString(static_cast<UChar32>(character)),
            rule_ == CaseRule::dotlessI, rule_ == CaseRule::dotBelowAccents);
    Letter letter;
    const auto length = static_cast<std::size_t>(form.length());
    letter.dependsOnNeighbours = isMark(character) || length > letter.form.size();
    letter.length = static_cast<std::uint8_t>(std::min(length, letter.form.size()));
    std::copy_n(form.getBuffer(), letter.length, letter.form.begin());
    return letter;
}

} // namespace KestryCore
