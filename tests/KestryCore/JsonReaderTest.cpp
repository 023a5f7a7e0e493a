#include "JsonReader.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "Refusal.h"

namespace KestryCore {
namespace {

std::string verdict(const std::string& json)
{
    return refusalOf([&] { JsonDocument document(json); });
}

template <class Type>
Type valueOf(const JsonValue& value)
{
    if constexpr (std::is_same_v<Type, bool>) {
        return value.flag();
    } else if constexpr (std::is_same_v<Type, double>) {
        return value.number();
    } else if constexpr (std::is_same_v<Type, std::int64_t>) {
        return value.integer();
    } else {
        return std::string(value.text());
    }
}

template <class Type>
Type read(const std::string& json)
{
    const JsonDocument document(json);
    return valueOf<Type>(document.root());
}

template <class Type>
std::string refusalToRead(const std::string& json)
{
    return refusalOf([&] { (void)read<Type>(json); });
}

template <class Type>
Type readMember(const std::string& json, std::string_view key)
{
    const JsonDocument document(json);
    const JsonValue root = document.root();
    JsonObject object(root);
    return valueOf<Type>(object.required(key));
}

std::string nested(std::size_t depth)
{
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonReader, AnEmptyOrBlankFileIsRefused)
{
    EXPECT_EQ(verdict(""), "The file is empty.");
    EXPECT_EQ(verdict(" \n\t"), "The file is empty.");
}

TEST(JsonReader, BlanksAroundTheDocumentAreRead)
{
    EXPECT_EQ(verdict(" \r\n\t{ } \n"), accepted);
}

TEST(JsonReader, AByteOrderMarkIsRefused)
{
    EXPECT_EQ(
        verdict("\xEF\xBB\xBF{}"), "The file isn't valid JSON: it begins with a byte order mark.");
}

TEST(JsonReader, AnythingAfterTheDocumentIsRefused)
{
    for (const char* json : {"{} {}", "{}x", "{},", "[]]", "1 2", "{}\"\""}) {
        EXPECT_NE(verdict(json), accepted) << json;
    }
    EXPECT_NE(verdict(std::string("{}\0", 3)), accepted);
}

TEST(JsonReader, WhatOtherDialectsAllowIsRefused)
{
    for (const char* json : {"{\"a\":1,}", "[1,]", "{a:1}", "{'a':1}", "[01]", "[1.]", "[.5]",
             "[+1]", "[0x10]", "[NaN]", "[Infinity]", "[1] // end", "[nul]", "[True]", "[1 2]",
             "{\"a\" 1}", "{\"a\":}", "{1:2}", "[\"a", "[\"\t\"]", "[\"\\x\"]", "[\"\\u12\"]"}) {
        EXPECT_NE(verdict(json), accepted) << json;
    }
}

TEST(JsonReader, BytesThatAreNotUtf8AreRefused)
{
    for (const char* text : {"\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xE2\x82", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(verdict(std::string("[\"") + text + "\"]"), "The file isn't valid UTF-8 text.");
    }
}

TEST(JsonReader, ALoneSurrogateIsRefused)
{
    for (const char* escape : {R"(\ud800)", R"(\udc00)", R"(\udfffx)", R"(\ud83dx)", R"(\ud83d\n)",
             R"(\ud83d\ud83d)", R"(\ud83d\u0041)"}) {
        EXPECT_NE(refusalToRead<std::string>(std::string("\"") + escape + "\""), accepted)
            << escape;
    }
}

TEST(JsonReader, ASurrogatePairReadsAsOneCharacter)
{
    EXPECT_EQ(read<std::string>(R"("\ud834\uDD1E")"), "𝄞");
}

TEST(JsonReader, EscapesReadAsTheirCharacters)
{
    EXPECT_EQ(read<std::string>(R"("\/\"\\\b\f\n\r\t\u00e9/")"), "/\"\\\b\f\n\r\té/");
    EXPECT_EQ(read<std::string>(R"("a\u0000b")"), std::string("a\0b", 3));
}

TEST(JsonReader, NestingIsReadTo128AndRefusedDeeper)
{
    EXPECT_EQ(verdict(nested(128)), accepted);
    EXPECT_EQ(verdict(nested(129)), "The JSON in the file is nested too deeply.");
}

TEST(JsonReader, AFileOfNothingButBracketsOrDigitsIsRefused)
{
    constexpr std::size_t size = 4'000'000;
    EXPECT_NE(verdict(std::string(size, '[')), accepted);
    EXPECT_EQ(verdict(nested(size)), "The JSON in the file is nested too deeply.");
    EXPECT_NE(verdict('[' + std::string(size, '9') + ']'), accepted);
    EXPECT_NE(verdict('"' + std::string(size, 'a')), accepted);
}

TEST(JsonReader, ANumberBeyondADoubleIsRefused)
{
    EXPECT_NE(verdict("[1e400]"), accepted);
    EXPECT_NE(verdict("[-1e400]"), accepted);
    EXPECT_NE(verdict("[" + std::string(5000, '9') + "]"), accepted);
}

TEST(JsonReader, ANumberTooSmallForADoubleReadsAsZero)
{
    EXPECT_EQ(read<double>("1e-400"), 0.0);
}

TEST(JsonReader, AWholeDoubleReadsAsAnInteger)
{
    EXPECT_EQ(read<std::int64_t>("15000.0"), 15'000);
    EXPECT_EQ(read<std::int64_t>("1.5e4"), 15'000);
    EXPECT_EQ(read<std::int64_t>("-0.0"), 0);
    EXPECT_EQ(read<std::int64_t>("-9223372036854775808.0"), INT64_MIN);
}

TEST(JsonReader, AFractionIsNoInteger)
{
    EXPECT_EQ(refusalToRead<std::int64_t>("15000.5"),
        "The data is malformed: the document isn't a whole number of 64 bits.");
    EXPECT_NE(refusalToRead<std::int64_t>("1e-3"), accepted);
}

TEST(JsonReader, IntegersReachTheEndsOf64BitsAndNoFurther)
{
    EXPECT_EQ(read<std::int64_t>("9223372036854775807"), INT64_MAX);
    EXPECT_EQ(read<std::int64_t>("-9223372036854775808"), INT64_MIN);
    for (const char* json : {"9223372036854775808", "9223372036854775808.0", "-9223372036854775809",
             "18446744073709551616", "1e19", "-1e19"}) {
        EXPECT_NE(refusalToRead<std::int64_t>(json), accepted) << json;
    }
}

TEST(JsonReader, AnIntegerReadsAsADouble)
{
    EXPECT_EQ(read<double>("785000000"), 785'000'000.0);
    EXPECT_EQ(read<double>("18446744073709551615"), 18446744073709551615.0);
}

TEST(JsonReader, NoTypeButNumbersIsConverted)
{
    for (const char* json : {"true", "\"1\"", "null", "[]", "{}"}) {
        EXPECT_NE(refusalToRead<double>(json), accepted) << json;
        EXPECT_NE(refusalToRead<std::int64_t>(json), accepted) << json;
    }
    for (const char* json : {"1", "0", "\"true\"", "null", "[]", "{}"}) {
        EXPECT_NE(refusalToRead<bool>(json), accepted) << json;
    }
    for (const char* json : {"1", "true", "null", "[\"\"]", "{}"}) {
        EXPECT_NE(refusalToRead<std::string>(json), accepted) << json;
    }
}

TEST(JsonReader, MembersAreFoundInAnyOrderAndOthersIgnored)
{
    const JsonDocument document(R"({"c":3,"x":[{}],"a":1,"b":2})");
    const JsonValue root = document.root();
    JsonObject object(root);
    EXPECT_EQ(object.required("a").integer(), 1);
    EXPECT_EQ(object.required("b").integer(), 2);
    EXPECT_EQ(object.required("c").integer(), 3);
}

TEST(JsonReader, MembersAreFoundAmongMany)
{
    std::string json = R"({"first":-1)";
    for (int number = 0; number < 40; ++number) {
        json += ",\"" + std::to_string(number) + "\":" + std::to_string(number);
    }
    const JsonDocument document(json + '}');
    const JsonValue root = document.root();
    JsonObject object(root);
    EXPECT_EQ(object.required("39").integer(), 39);
    EXPECT_EQ(object.required("first").integer(), -1);
    EXPECT_EQ(object.required("20").integer(), 20);
    EXPECT_FALSE(object.optional("40"));
}

TEST(JsonReader, AnEscapedKeyIsTheKey)
{
    EXPECT_EQ(readMember<std::int64_t>(R"({"\u0069d":7})", "id"), 7);
}

TEST(JsonReader, KeysTellCaseAndBlanksApart)
{
    EXPECT_EQ(refusalOf([] { (void)readMember<std::int64_t>(R"({"ID":7," id":8})", "id"); }),
        "The data is malformed: the document has no \"id\".");
}

TEST(JsonReader, AKeyGivenTwiceIsRefusedEvenIfNobodyAsksForIt)
{
    const auto verdictOn = [](const std::string& json) {
        return refusalOf([&] { (void)readMember<std::int64_t>(json, "a"); });
    };
    EXPECT_EQ(verdictOn(R"({"a":1,"b":2,"b":2})"),
        "The data is malformed: the document gives the key \"b\" twice.");
    EXPECT_EQ(verdictOn(R"({"a":1,"\u0061":1})"),
        "The data is malformed: the document gives the key \"a\" twice.");
}

TEST(JsonReader, AKeyGivenTwiceAmongManyIsRefused)
{
    std::string json = "{\"a\":1";
    for (int number = 0; number < 40; ++number) {
        json += ",\"k" + std::to_string(number) + "\":0";
    }
    const auto verdictOn = [](const std::string& text) {
        return refusalOf([&] { (void)readMember<std::int64_t>(text, "a"); });
    };
    EXPECT_EQ(verdictOn(json + "}"), accepted);
    EXPECT_EQ(verdictOn(json + ",\"k3\":0}"),
        "The data is malformed: the document gives the key \"k3\" twice.");
}

TEST(JsonReader, ALongKeyIsNamedByItsBeginningInWholeCharacters)
{
    const std::string key = std::string(79, 'k') + "é" + std::string(40, 'k');
    EXPECT_EQ(refusalOf([&] {
        (void)readMember<std::int64_t>("{\"" + key + "\":1,\"" + key + "\":2}", "a");
    }),
        "The data is malformed: the document gives the key \"" + std::string(79, 'k')
            + "…\" twice.");
    EXPECT_EQ(refusalOf([&] { (void)readMember<bool>("{\"" + key + "\":1}", key); }),
        "The data is malformed: " + std::string(79, 'k') + "… isn't true or false.");
}

TEST(JsonReader, NullCountsAsAbsentForAnOptionalMemberOnly)
{
    const JsonDocument document(R"({"a":null})");
    const JsonValue root = document.root();
    JsonObject object(root);
    EXPECT_FALSE(object.optional("a"));
    EXPECT_FALSE(object.optional("b"));
    EXPECT_EQ(refusalOf([&] { (void)object.required("a").flag(); }),
        "The data is malformed: a isn't true or false.");
}

TEST(JsonReader, AnOptionalMemberOfTheWrongTypeIsRefused)
{
    const JsonDocument document(R"({"a":1})");
    const JsonValue root = document.root();
    JsonObject object(root);
    EXPECT_NE(refusalOf([&] { (void)object.optional("a")->flag(); }), accepted);
}

} // namespace
} // namespace KestryCore
