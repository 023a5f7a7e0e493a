#include "StoredFields.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <limits>

#include "ArbitraryText.h"

namespace KestryCore {
namespace {

CloudRecord recordWith(std::map<std::string, CloudValue> fields)
{
    return {{"client:1", {"Zone"}}, "KestryRecord", "7-ab", std::move(fields)};
}

/// What reading gives for a record of that name and version; nullopt for a refusal.
std::optional<CloudRecord> readAs(const CloudRecord& like, const std::string& bytes)
{
    CloudRecord record{like.id, {}, like.serverVersion, {}};
    return decodeStoredFields(bytes, record) ? std::optional(record) : std::nullopt;
}

CloudRecord sample()
{
    return recordWith({{"deleted", 0.0}, {"revision", "text"}, {"payload", CloudBytes{"{}"}}});
}

rc::Gen<CloudValue> arbitraryValue()
{
    return rc::gen::oneOf(rc::gen::map(rc::gen::arbitrary<double>(),
                              [](double number) { return CloudValue(number); }),
        rc::gen::map(arbitraryText(), [](std::string text) { return CloudValue(text); }),
        rc::gen::map(rc::gen::arbitrary<std::string>(),
            [](std::string bytes) { return CloudValue(CloudBytes{bytes}); }));
}

CloudRecord arbitraryRecord()
{
    CloudRecord record;
    record.id = {*arbitraryText(), {"Zone"}};
    record.type = *arbitraryText();
    record.serverVersion = *arbitraryText();
    for (const auto& name : *rc::gen::container<std::vector<std::string>>(arbitraryText())) {
        record.fields[name] = *arbitraryValue();
    }
    return record;
}

TEST(StoredFields, AnyRecordComesBack)
{
    EXPECT_TRUE(rc::check([] {
        const CloudRecord record = arbitraryRecord();
        RC_ASSERT(readAs(record, encodeStoredFields(record)) == record);
    }));
}

TEST(StoredFields, NumbersComeBackBitForBit)
{
    const double odd = std::bit_cast<double>(std::uint64_t{0x7FF8'0000'DEAD'BEEF});
    for (const double number : {-0.0, std::numeric_limits<double>::infinity(), odd}) {
        const CloudRecord record = recordWith({{"n", number}});
        const auto read = readAs(record, encodeStoredFields(record));
        const double back = std::get<double>(read.value().fields.at("n"));
        EXPECT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(number));
    }
}

TEST(StoredFields, TheBytesStayTheSameBetweenVersionsOfTheProgram)
{
    const std::string bytes = encodeStoredFields(recordWith({{"a", 1.0}, {"b", CloudBytes{"x"}}}));
    const std::string expected("\x0c\0\0\0\0\0\0\0KestryRecord"
                               "\1\0\0\0\0\0\0\0an\0\0\0\0\0\0\xf0\x3f"
                               "\1\0\0\0\0\0\0\0bb\1\0\0\0\0\0\0\0x",
        57);
    EXPECT_EQ(bytes.substr(8), expected);
}

TEST(StoredFields, ContentOfAnotherRecordOrVersionIsRefused)
{
    const CloudRecord record = sample();
    CloudRecord other = record;
    other.id.name = "client:2";
    EXPECT_EQ(readAs(other, encodeStoredFields(record)), std::nullopt);
    other = record;
    other.serverVersion = "8-ab";
    EXPECT_EQ(readAs(other, encodeStoredFields(record)), std::nullopt);
}

TEST(StoredFields, AnyChangedByteIsNoticed)
{
    const std::string bytes = encodeStoredFields(sample());
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        for (const int change : {1, 0x20, 0x80, 0xFF}) {
            std::string damaged = bytes;
            damaged[index] = static_cast<char>(damaged[index] ^ change);
            EXPECT_EQ(readAs(sample(), damaged), std::nullopt) << index;
        }
    }
}

TEST(StoredFields, BytesThatWereCutOffOrAddedAreRefused)
{
    const std::string bytes = encodeStoredFields(sample());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_EQ(readAs(sample(), bytes.substr(0, size)), std::nullopt) << size;
    }
    EXPECT_EQ(readAs(sample(), bytes + '\0'), std::nullopt);
}

TEST(StoredFields, ARefusalLeavesTheRecordAsItIs)
{
    CloudRecord record = sample();
    EXPECT_FALSE(decodeStoredFields("damaged", record));
    EXPECT_EQ(record, sample());
}

} // namespace
} // namespace KestryCore
