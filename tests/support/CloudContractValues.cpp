// Names and values come back bit for bit.

#include <cmath>
#include <limits>

#include "CloudContract.h"

namespace KestryCore {
namespace {

TEST_P(CloudContract, NumbersComeBackBitForBit)
{
    makeZone();
    CloudRecord numbers = record("a");
    using Limits = std::numeric_limits<double>;
    int count = 0;
    for (const double number : {0.0, 1.0, -1.0, 0.1, 1.0 / 3.0, 785000000.25, 1e-7, 1e21,
             9007199254740993.0, Limits::max(), Limits::lowest(), Limits::min(),
             Limits::denorm_min(), std::nextafter(1.0, 2.0)}) {
        numbers.fields["number " + std::to_string(++count)] = number;
    }
    EXPECT_EQ(saved(one(), numbers).fields, numbers.fields);
    EXPECT_EQ(stored("a").value().fields, numbers.fields);
}

TEST_P(CloudContract, TextsComeBackBitForBit)
{
    makeZone();
    CloudRecord texts = record("a");
    texts.fields["empty"] = "";
    texts.fields["controls"] = std::string("\0\x01\n\r\t\x1f\x7f", 7);
    texts.fields["quotes"] = "\"'\\/</script>%00&amp;";
    texts.fields["composed"] = "\u00e9";
    texts.fields["decomposed"] = "e\u0301";
    texts.fields["planes"] =
        "\u05e9\u05dc\u05d5\u05dd \u65e5\u672c \U0001F642 \uFFFD \uFEFF \U0010FFFF";
    texts.fields["separators"] = "\u2028\u2029";
    texts.fields["long"] = std::string(100'000, 'x');
    texts.fields["number"] = "1";
    texts.fields["null"] = "null";
    EXPECT_EQ(saved(one(), texts).fields, texts.fields);
    EXPECT_EQ(stored("a").value().fields, texts.fields);
}

TEST_P(CloudContract, BytesComeBackBitForBitAndAreNoText)
{
    makeZone();
    CloudRecord bytes = record("a");
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    bytes.fields["all"] = CloudBytes{all};
    bytes.fields["empty"] = CloudBytes{};
    bytes.fields["text"] = CloudBytes{"text"};
    bytes.fields["as text"] = "dGV4dA==";
    bytes.fields["one"] = CloudBytes{"\xff"};
    bytes.fields["two"] = CloudBytes{"\xff\xfe"};
    EXPECT_EQ(saved(one(), bytes).fields, bytes.fields);
    EXPECT_EQ(stored("a").value().fields, bytes.fields);
}

TEST_P(CloudContract, FieldsMayBeCalledAnything)
{
    makeZone();
    CloudRecord odd = record("a");
    for (const char* const name : {"id", "rev", "type", "name", "fields", "value", "deleted", "a b",
             "\u00fc\U0001F642", "a.b", "$a", "_a", "__proto__", "", "constructor"}) {
        odd.fields[name] = std::string("of ") + name;
    }
    (void)saved(one(), odd);
    EXPECT_EQ(stored("a").value().fields, odd.fields);
}

TEST_P(CloudContract, TheTypeOfARecordIsKept)
{
    makeZone();
    CloudRecord other = record("a");
    other.type = "Another type/\u00fc";
    EXPECT_EQ(saved(one(), other).type, other.type);
    EXPECT_EQ(stored("a").value().type, other.type);
}

TEST_P(CloudContract, RecordsMayHaveOddNames)
{
    makeZone();
    const std::vector<std::string> names{"a", "A", "client:6F9619FF-8B86-D011-B42D-00CF4FC964FF",
        "a b", "a/b", "a%2Fb", "a+b", "a?b#c&d=e", "\"quoted\"", "back\\slash", "..", ".", "-",
        "\u00e9", "e\u0301", "\u65e5\u672c \U0001F642", "constructor", "0", "00", "null",
        std::string(255, 'x')};
    std::vector<CloudRecord> records;
    for (const std::string& name : names) {
        records.push_back(record(name, "named " + name));
    }
    const Results results = save(one(), records);
    const Reading reading = read(two());
    EXPECT_EQ(reading.records.size(), names.size());
    for (const std::string& name : names) {
        ASSERT_TRUE(isSaved(results.at(name))) << name;
        ASSERT_TRUE(reading.records.contains(name)) << name;
        EXPECT_EQ(reading.records.at(name), std::get<CloudRecord>(results.at(name).result));
        expectChanged(refused(two(), record(name)), reading.records.at(name));
    }
}

TEST_P(CloudContract, ANameThatTheStoreCannotTakeFailsAlone)
{
    makeZone();
    const std::vector<std::string> names{"_design/a", "_a", "", std::string("a\0b", 3), "a\nb"};
    std::vector<CloudRecord> records{record("good")};
    for (const std::string& name : names) {
        records.push_back(record(name));
    }
    const Results results = save(one(), records);
    const Reading reading = read(two());
    EXPECT_TRUE(isSaved(results.at("good")));
    for (const std::string& name : names) {
        EXPECT_EQ(reading.records.contains(name), isSaved(results.at(name))) << name;
    }
}

TEST_P(CloudContract, FourMebibytesComeBackBitForBit)
{
    makeZone();
    std::string payload(std::size_t{4} << 20U, '\0');
    unsigned state = 1;
    for (char& byte : payload) {
        state = state * 1'664'525U + 1'013'904'223U;
        byte = static_cast<char>(state >> 24U);
    }
    CloudRecord large = record("a");
    large.fields["bytes"] = CloudBytes{payload};
    const CloudRecord first = saved(one(), large);
    EXPECT_TRUE(first.fields == large.fields);
    EXPECT_TRUE(stored("a") == first);
    const CloudError refusal = refused(two(), record("a"));
    ASSERT_NE(refusal.serverRecord(), nullptr);
    EXPECT_TRUE(*refusal.serverRecord() == first);
}

TEST_P(CloudContract, ABatchOfFourMebibytesEachIsSaved)
{
    makeZone();
    std::vector<CloudRecord> records;
    for (const char* const name : {"a", "b", "c", "d", "e", "f"}) {
        records.push_back(record(name));
        records.back().fields["bytes"] = CloudBytes{std::string(std::size_t{4} << 20U, name[0])};
    }
    for (const auto& [name, result] : save(one(), records)) {
        EXPECT_TRUE(isSaved(result)) << name;
    }
    const Reading reading = read(two());
    EXPECT_EQ(reading.records.size(), 6U);
    EXPECT_GE(reading.records.at("f").fields.size(), 3U);
    EXPECT_EQ(bytesOf(reading.records.at("f")), bytesOf(records.back()));
}

} // namespace
} // namespace KestryCore
