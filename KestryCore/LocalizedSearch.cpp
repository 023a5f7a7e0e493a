#include "LocalizedSearch.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>

#include "LedgerError.h"

namespace KestryCore {

namespace {

void requireSuccess(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError("Texts cannot be searched in this locale.");
    }
}

const icu::Normalizer2& composed()
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFCInstance(status);
    requireSuccess(status);
    return *form;
}

const icu::Normalizer2& decomposed()
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFDInstance(status);
    requireSuccess(status);
    return *form;
}

/// What a language says of capitals that most do not.
enum class CaseRule {
    usual,
    dotlessI,       ///< "I" is the capital of "ı", and "İ" that of "i".
    dotBelowAccents ///< Small "i" and "j" show their dot below an accent.
};

CaseRule caseRule(const std::string& locale)
{
    const std::string_view language = icu::Locale(locale.c_str()).getLanguage();
    if (language == "tr" || language == "az") {
        return CaseRule::dotlessI;
    }
    return language == "lt" ? CaseRule::dotBelowAccents : CaseRule::usual;
}

/// The text in a form that is equal for texts that differ in case or composition alone.
icu::UnicodeString comparable(std::string_view text, CaseRule rule)
{
    const icu::StringPiece piece(text.data(), static_cast<std::int32_t>(text.size()));
    UErrorCode status = U_ZERO_ERROR;
    // Composed first: taken apart, an "İ" would be an "I" to the folding.
    icu::UnicodeString result = composed().normalize(icu::UnicodeString::fromUTF8(piece), status);
    if (rule == CaseRule::dotBelowAccents) {
        result.toUpper(icu::Locale("lt"));
    }
    result.foldCase(
        rule == CaseRule::dotlessI ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    result = decomposed().normalize(result, status);
    requireSuccess(status);
    return result;
}

/// Whether a letter begins or ends here, so that no mark is torn from the letter that bears it.
bool isLetterBoundary(const icu::UnicodeString& text, std::int32_t position)
{
    return position == 0 || position == text.length()
        || u_getCombiningClass(text.char32At(position)) == 0;
}

} // namespace

struct LocalizedSearch::Wanted {
    CaseRule rule;
    icu::UnicodeString text;
};

LocalizedSearch::LocalizedSearch(std::string_view wanted, const std::string& locale)
{
    const CaseRule rule = caseRule(locale);
    wanted_ = std::make_shared<const Wanted>(Wanted{rule, comparable(wanted, rule)});
}

bool LocalizedSearch::isFoundIn(std::string_view text) const
{
    const icu::UnicodeString& wanted = wanted_->text;
    if (wanted.isEmpty()) {
        return true;
    }
    const icu::UnicodeString searched = comparable(text, wanted_->rule);
    for (std::int32_t place = searched.indexOf(wanted); place >= 0;
         place = searched.indexOf(wanted, place + 1)) {
        if (isLetterBoundary(searched, place)
            && isLetterBoundary(searched, place + wanted.length())) {
            return true;
        }
    }
    return false;
}

} // namespace KestryCore
