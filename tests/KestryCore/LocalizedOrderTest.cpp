#include "LocalizedOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <compare>
#include <memory>
#include <numeric>

#include "AllCodePoints.h"
#include "ArbitraryText.h"

namespace KestryCore {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(
    const std::string& locale, const std::vector<std::string_view>& texts)
{
    const LocalizedOrder order(locale);
    const auto keys = order.keys(texts);
    std::vector<std::size_t> places(texts.size());
    std::iota(places.begin(), places.end(), 0U);
    std::ranges::stable_sort(places, {}, [&](std::size_t place) { return keys[place]; });
    std::vector<std::string> result;
    for (const std::size_t place : places) {
        result.emplace_back(texts[place]);
    }
    return result;
}

std::strong_ordering compared(
    const LocalizedOrder& order, std::string_view left, std::string_view right)
{
    const auto keys = order.keys({left, right});
    return keys[0] <=> keys[1];
}

bool isSame(std::string_view left, std::string_view right, const std::string& locale = "en_US")
{
    return compared(LocalizedOrder(locale), left, right) == 0;
}

TEST(LocalizedOrder, NumbersGoByTheirValue)
{
    EXPECT_THAT(sorted("en_US", {"Item 10", "Item 2", "Item 1", "Item"}),
        ElementsAre("Item", "Item 1", "Item 2", "Item 10"));
    EXPECT_THAT(
        sorted("en_US", {"v1.10", "v1.9", "v1.9.1"}), ElementsAre("v1.9", "v1.9.1", "v1.10"));
}

TEST(LocalizedOrder, NumbersBeyondTheWordsOfAMachineGoByTheirValue)
{
    EXPECT_THAT(sorted("en_US",
                    {"100000000000000000000", "99999999999999999999", "18446744073709551616",
                        "18446744073709551615", "9"}),
        ElementsAre("9", "18446744073709551615", "18446744073709551616", "99999999999999999999",
            "100000000000000000000"));
}

/// A number of so many digits that begins and goes on with these.
std::string number(std::size_t digits, char first, char other)
{
    return first + std::string(digits - 1, other);
}

TEST(LocalizedOrder, NumbersOfHundredsOfDigitsGoByTheirValue)
{
    const LocalizedOrder order("en_US");
    std::string last = "0";
    for (const std::size_t digits : {2, 20, 252, 253, 254, 255, 256, 507, 508, 509, 1000}) {
        for (const std::string& next :
            {number(digits, '1', '0'), number(digits, '1', '1'), number(digits, '9', '9')}) {
            EXPECT_TRUE(compared(order, "n" + last + " z", "n" + next + " a") < 0) << digits;
            EXPECT_TRUE(compared(order, "n" + last + "z", "n" + next + "a") < 0) << digits;
            last = next;
        }
    }
}

TEST(LocalizedOrder, TheLastOfHundredsOfDigitsCounts)
{
    for (const std::size_t digits : {253, 254, 255, 600}) {
        const std::string base = number(digits, '7', '0');
        const LocalizedOrder order("en_US");
        EXPECT_EQ(compared(order, base + "1", base + "2"), std::strong_ordering::less);
        EXPECT_EQ(compared(order, base + "2b", base + "2a"), std::strong_ordering::greater);
    }
}

TEST(LocalizedOrder, LeadingZerosDoNotCount)
{
    EXPECT_TRUE(isSame("Item 2", "Item 02"));
    EXPECT_TRUE(isSame("0", "000"));
    EXPECT_TRUE(isSame("Item " + number(300, '4', '2'), "Item 000" + number(300, '4', '2')));
    EXPECT_TRUE(isSame(std::string(400, '0') + "5", "5"));
}

TEST(LocalizedOrder, DigitsOfOtherScriptsCountAfterACommonBeginning)
{
    for (const std::string locale : {"en_US", "cs_CZ", "tr_TR"}) {
        const LocalizedOrder order(locale);
        EXPECT_EQ(compared(order, "12z", "12\u0663A"), std::strong_ordering::less) << locale;
        EXPECT_TRUE(isSame("12\u0663", "\u06612\u0663", locale));
    }
}

TEST(LocalizedOrder, SmallLettersAndCapitalsStandTogether)
{
    EXPECT_THAT(sorted("en_US", {"b", "B", "A", "a", "Ab"}), ElementsAre("a", "A", "Ab", "b", "B"));
}

TEST(LocalizedOrder, GermanSortsUmlautsWithTheirLetters)
{
    EXPECT_THAT(sorted("de_DE", {"Zoo", "Ärger", "Apfel", "Arger", "Straße", "Strasse", "Strand"}),
        ElementsAre("Apfel", "Arger", "Ärger", "Strand", "Strasse", "Straße", "Zoo"));
}

TEST(LocalizedOrder, SwedishSortsÅÄAndÖLast)
{
    EXPECT_THAT(sorted("sv_SE", {"Ö", "Zoo", "Ä", "Å", "Apfel", "O"}),
        ElementsAre("Apfel", "O", "Zoo", "Å", "Ä", "Ö"));
}

TEST(LocalizedOrder, TurkishSortsTheDotlessIBeforeTheOther)
{
    EXPECT_THAT(sorted("tr_TR", {"J", "i", "İ", "I", "ı", "H", "ç", "d", "c"}),
        ElementsAre("c", "ç", "d", "H", "ı", "I", "i", "İ", "J"));
}

TEST(LocalizedOrder, LithuanianSortsYWithI)
{
    EXPECT_THAT(sorted("lt_LT", {"jb", "yb", "ia", "yc", "ic", "z"}),
        ElementsAre("ia", "yb", "ic", "yc", "jb", "z"));
}

TEST(LocalizedOrder, CzechSortsChAfterH)
{
    EXPECT_THAT(sorted("cs_CZ", {"chata", "ixa", "cz", "hrad", "Chata", "c"}),
        ElementsAre("c", "cz", "hrad", "chata", "Chata", "ixa"));
}

TEST(LocalizedOrder, SpanishAndDanishHaveLettersOfTheirOwn)
{
    EXPECT_THAT(sorted("es_ES", {"oz", "ñ", "nz"}), ElementsAre("nz", "ñ", "oz"));
    EXPECT_THAT(sorted("da_DK", {"aa", "å", "z", "ø", "æ", "A", "a"}),
        ElementsAre("A", "a", "z", "æ", "ø", "å", "aa"));
}

TEST(LocalizedOrder, ComposedAndDecomposedAreTheSame)
{
    EXPECT_TRUE(isSame("café", "cafe\u0301"));
    EXPECT_TRUE(isSame("s\u0307\u0323", "s\u0323\u0307"));
}

TEST(LocalizedOrder, AnUnknownLocaleSortsAsMostDo)
{
    EXPECT_THAT(sorted("xx_YY", {"b", "ä", "a"}), ElementsAre("a", "ä", "b"));
}

TEST(LocalizedOrder, NoTextsHaveNoKeys)
{
    EXPECT_TRUE(LocalizedOrder("en_US").keys({}).empty());
}

TEST(LocalizedOrder, EqualTextsHaveEqualKeys)
{
    const LocalizedOrder order("en_US");
    const auto keys = order.keys({"b 1", "a", "b 01", "a", "日本", "日本"});
    EXPECT_EQ(keys[0], keys[2]);
    EXPECT_EQ(keys[1], keys[3]);
    EXPECT_EQ(keys[4], keys[5]);
    EXPECT_NE(keys[0], keys[1]);
}

TEST(LocalizedOrder, AKeyIsTheSameWhenItIsAskedForAgain)
{
    const LocalizedOrder order("en_US");
    const std::string first(order.keys({"Draft"}).front());
    EXPECT_EQ(order.keys({"Other", "Draft"}).back(), first);
    EXPECT_EQ(LocalizedOrder("en_US").keys({"Draft"}).front(), first);
}

TEST(LocalizedOrder, AKeyOfAnyLengthIsWhole)
{
    const std::string text(2000, 'a');
    EXPECT_FALSE(isSame(text + "b", text + "c"));
}

TEST(LocalizedOrder, MoreTextsThanAreRememberedStillSort)
{
    const LocalizedOrder order("en_US");
    std::vector<std::string> many;
    for (int number = 0; number < 300'000; ++number) {
        many.push_back("Item " + std::to_string(number));
    }
    const std::vector<std::string_view> views(many.begin(), many.end());
    (void)order.keys(views); // so many that the next call forgets them
    EXPECT_TRUE(std::ranges::is_sorted(order.keys(views)));
}

/// The library's own comparison of two texts. It does not see digits beyond ASCII after a common
/// beginning in some languages, so it gets those of ASCII instead.
class Peer {
public:
    explicit Peer(const std::string& locale)
        : collator_(icu::Collator::createInstance(icu::Locale(locale.c_str()), status_))
    {
        collator_->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status_);
        collator_->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status_);
    }

    [[nodiscard]] std::strong_ordering compare(std::string_view left, std::string_view right)
    {
        const UCollationResult result =
            collator_->compare(withAsciiDigits(left), withAsciiDigits(right), status_);
        EXPECT_TRUE(U_SUCCESS(status_));
        return result <=> 0;
    }

private:
    static icu::UnicodeString withAsciiDigits(std::string_view text)
    {
        const auto wide = icu::UnicodeString::fromUTF8(std::string(text));
        icu::UnicodeString result;
        for (std::int32_t place = 0; place < wide.length(); place = wide.moveIndex32(place, 1)) {
            const UChar32 character = wide.char32At(place);
            const bool isDigit = u_charType(character) == U_DECIMAL_DIGIT_NUMBER;
            result.append(isDigit ? '0' + u_charDigitValue(character) : character);
        }
        return result;
    }

    UErrorCode status_ = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator_;
};

/// Whether the keys order texts as the library does when it compares them in pairs.
void expectKeysAgree(const std::string& locale, const std::vector<std::string_view>& texts)
{
    Peer peer(locale);
    const LocalizedOrder order(locale);
    const auto keys = order.keys(texts);
    std::vector<std::size_t> places(texts.size());
    std::iota(places.begin(), places.end(), 0U);
    std::ranges::sort(places, {}, [&](std::size_t place) { return keys[place]; });
    // Neighbours tell of all pairs, as the order is transitive.
    for (std::size_t index = 1; index < places.size(); ++index) {
        const std::size_t left = places[index - 1];
        const std::size_t right = places[index];
        ASSERT_EQ(peer.compare(texts[left], texts[right]), keys[left] <=> keys[right])
            << locale << ": \"" << texts[left] << "\", \"" << texts[right] << '"';
    }
}

std::vector<std::string_view> viewsOf(const std::vector<std::string>& texts)
{
    return {texts.begin(), texts.end()};
}

class OrderOfEveryLanguage : public testing::TestWithParam<std::string> { };

TEST_P(OrderOfEveryLanguage, KeysOfPairsOfLettersGoAsThePairsCompare)
{
    std::vector<std::string> letters{
        "", "ß", "œ", "Æ", "…", "–", "·", "\u00AD", "\u0301", "ㄱ", "日"};
    for (char32_t character = 0; character < 0x80; ++character) {
        letters.emplace_back(1, static_cast<char>(character));
    }
    for (const char32_t start : {0x00A0U, 0x00C0U, 0x0108U, 0x0160U, 0x0391U, 0x0430U}) {
        for (char32_t character = start; character < start + 12; ++character) {
            letters.push_back(utf8(character));
        }
    }
    std::vector<std::string> pairs;
    for (const std::string& first : letters) {
        for (const std::string& second : letters) {
            pairs.push_back(first + second);
        }
    }
    expectKeysAgree(GetParam(), viewsOf(pairs));
}

/// A title of letters that often meet in one.
std::string anyTitle()
{
    const auto part = rc::gen::elementOf(std::vector<std::string>{"a", "A", "b", "c", "h", "l", "s",
        "z", "d", "i", "y", "I", "ä", "Å", "ß", "ss", "é", "e\u0301", "ø", "č", "ч", "日", " ", "-",
        "·", "0", "1", "2", "12", "007", "99999999999999999999", "٣", "\u00AD", "…", "Item "});
    std::string title;
    for (int count = *rc::gen::inRange(0, 12); count > 0; --count) {
        title += *part;
    }
    return title;
}

RC_GTEST_PROP(AnyOrder, KeysGoAsTheirTextsCompare, ())
{
    const auto locale = *rc::gen::element<std::string>(
        "en_US", "de_DE", "sv_SE", "tr_TR", "lt_LT", "cs_CZ", "hu_HU", "fr_CA", "ja_JP");
    std::vector<std::string> texts{""};
    for (int count = *rc::gen::inRange(0, 200); count > 0; --count) {
        texts.push_back(*rc::gen::inRange(0, 4) == 0 ? *arbitraryText() : anyTitle());
    }
    expectKeysAgree(locale, viewsOf(texts));
}

INSTANTIATE_TEST_SUITE_P(Each, OrderOfEveryLanguage,
    testing::Values("en_US", "de_DE", "sv_SE", "da_DK", "tr_TR", "lt_LT", "cs_CZ", "hr_HR", "hu_HU",
        "es_ES", "fr_CA", "cy_GB", "et_EE", "ru_RU", "el_GR", "th_TH", "ja_JP", "zh_CN"),
    [](const auto& language) { return language.param; });

} // namespace
} // namespace KestryCore
