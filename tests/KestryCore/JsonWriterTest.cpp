#include "JsonWriter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "ArbitraryText.h"
#include "JsonReader.h"
#include "Refusal.h"

namespace KestryCore {
namespace {

template <class Value>
std::string written(const Value& content)
{
    JsonWriter writer;
    writer.value(content);
    return writer.take();
}

double readBack(double number)
{
    return JsonDocument(written(number)).root().number();
}

TEST(JsonWriter, NumbersWithoutFractionHaveNoPointAndNoExponent)
{
    EXPECT_EQ(written(785000000.0), "785000000");
    EXPECT_EQ(written(800000000.0), "800000000");
    EXPECT_EQ(written(-978307200.0), "-978307200");
    EXPECT_EQ(written(6279811200.0), "6279811200");
    EXPECT_EQ(written(0.0), "0");
}

TEST(JsonWriter, FractionsAreTheShortestDigitsThatReadBack)
{
    EXPECT_EQ(written(785000000.25), "785000000.25");
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(written(1.0 / 3.0), "0.3333333333333333");
}

TEST(JsonWriter, MagnitudesFrom10To16HaveAnExponent)
{
    EXPECT_EQ(written(9999999999999998.0), "9999999999999998");
    EXPECT_EQ(written(1e16), "1e+16");
    EXPECT_EQ(written(-1.5e300), "-1.5e+300");
}

TEST(JsonWriter, MagnitudesBelowATenThousandthHaveAnExponent)
{
    EXPECT_EQ(written(0.0001), "0.0001");
    EXPECT_EQ(written(0.00012345), "0.00012345");
    EXPECT_EQ(written(0.00009), "9e-05");
    EXPECT_EQ(written(5e-324), "5e-324");
}

TEST(JsonWriter, NegativeZeroIsWrittenAsZeroSoThatEqualRecordsGiveEqualBytes)
{
    EXPECT_EQ(written(-0.0), "0");
}

TEST(JsonWriter, WholeNumbersReachBothEndsOf64Bits)
{
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(JsonWriter, NumbersThatAreNotFiniteAreRefused)
{
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(refusalOf([&] { (void)written(number); }),
            "A number in the data is not finite and can't be saved.");
    }
}

TEST(JsonWriter, TextEscapesQuoteBackslashAndSolidus)
{
    EXPECT_EQ(written("a\"b\\c/d"), R"("a\"b\\c\/d")");
}

TEST(JsonWriter, TextEscapesControlCharactersWithTheirShortFormsWhereTheyHaveOne)
{
    EXPECT_EQ(written("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(written(std::string_view("\0\x01\x1B\x1F", 4)), R"("\u0000\u0001\u001b\u001f")");
}

TEST(JsonWriter, OtherTextIsRawUtf8)
{
    EXPECT_EQ(written("Ж€𝄞\x7F\u2028'<&"), "\"Ж€𝄞\x7F\u2028'<&\"");
}

TEST(JsonWriter, TextThatIsNotUtf8IsRefused)
{
    EXPECT_EQ(refusalOf([] { (void)written("\xC3("); }),
        "A text in the data is not valid UTF-8 and can't be saved.");
}

TEST(JsonWriter, OutputHasNoBlanksAndNoLineEnds)
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("b", true);
    writer.key("a");
    writer.beginArray();
    writer.value(std::int64_t{1});
    writer.null();
    writer.endArray();
    writer.endObject();
    EXPECT_EQ(writer.take(), R"({"b":true,"a":[1,null]})");
}

TEST(JsonWriter, ADocumentCanBeTakenInPiecesWithTextOfOthersBetween)
{
    JsonWriter writer;
    writer.beginArray();
    writer.value(std::int64_t{1});
    writer.elementWrittenElsewhere();
    const std::string before = writer.take();
    writer.value(std::int64_t{4});
    writer.endArray();
    EXPECT_EQ(before + "2,3" + writer.take(), "[1,2,3,4]");
}

TEST(JsonWriter, EmptyContainersAreBrackets)
{
    JsonWriter writer;
    writer.beginArray();
    writer.beginObject();
    writer.endObject();
    writer.beginArray();
    writer.endArray();
    writer.endArray();
    EXPECT_EQ(writer.take(), "[{},[]]");
}

TEST(JsonWriter, SortedKeysAreInByteOrderAtEveryDepth)
{
    JsonWriter writer(JsonKeyOrder::sorted);
    writer.beginObject();
    writer.member("b", "1,\"x\":");
    writer.key("a");
    writer.beginObject();
    writer.member("z", true);
    writer.member("B", false);
    writer.member("é", std::int64_t{2});
    writer.endObject();
    writer.endObject();
    EXPECT_EQ(writer.take(), R"({"a":{"B":false,"z":true,"é":2},"b":"1,\"x\":"})");
}

RC_GTEST_PROP(JsonWriter, AnyFiniteNumberReadsBackExactly, (std::uint64_t bits))
{
    const auto number = std::bit_cast<double>(bits);
    RC_PRE(std::isfinite(number));
    RC_ASSERT(readBack(number) == number);
}

RC_GTEST_PROP(JsonWriter, AnyDateOfALedgerReadsBackExactly, ())
{
    const auto whole = *rc::gen::inRange<std::int64_t>(-978'307'200, 6'279'811'200);
    const double date = static_cast<double>(whole) + *rc::gen::inRange(0, 1'000'000) / 1e6;
    RC_ASSERT(readBack(date) == date);
    RC_ASSERT(written(date).find('e') == std::string::npos);
}

RC_GTEST_PROP(JsonWriter, AnyWellFormedTextReadsBack, ())
{
    const std::string text = *arbitraryText();
    RC_ASSERT(JsonDocument(written(text)).root().text() == text);
}

} // namespace
} // namespace KestryCore
