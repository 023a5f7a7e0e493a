#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <ctime>
#include <functional>
#include <map>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerGenerator.h"
#include "LedgerValidation.h"
#include "MemoryFileSystem.h"
#include "MemoryMeter.h"
#include "Refusal.h"
#include "SampleLedger.h"

// Whatever stands in a file, reading it takes no more than a fixed multiple of its size, in memory
// and in time. Memory is counted. Time is compared with that of an ordinary ledger of the same
// size in the same run, so that a slow or busy machine changes nothing.

namespace KestryCore {
namespace {

constexpr std::size_t megabyte = 1'000'000;

/// The reader's own tables for a text of N bytes take 14 N; the text and its records are held
/// beside them.
constexpr std::size_t mostMemoryPerByte = 24;
constexpr double mostTimePerOrdinaryTime = 40.0;

std::string verdictOn(std::string bytes)
{
    return refusalOf([&] { validate(decodeLedger(std::move(bytes))); });
}

std::string repeated(std::string_view element, std::size_t size, std::string_view separator = ",")
{
    std::string text(element);
    text.reserve(size + element.size() + separator.size());
    while (text.size() < size) {
        text += separator;
        text += element;
    }
    return text;
}

std::string ledgerWithClients(const std::string& clients)
{
    return R"({"projects":[],"entries":[],"clients":[)" + clients + "]}";
}

std::string ledgerWithMember(const std::string& members)
{
    return R"({"projects":[],"entries":[],"clients":[],)" + members + "}";
}

/// The sample ledger with this in the place of its entry's intervals.
std::string ledgerWithSpans(const std::string& spans)
{
    std::string document = encodeLedger(Sample::ledger());
    const std::size_t start = document.find("\"spans\":[") + 9;
    return document.replace(start, document.find(']', start) - start, spans);
}

/// An ordinary ledger of about so many bytes.
std::string ordinaryLedger(std::size_t size)
{
    constexpr std::size_t bytesPerSession = 290;
    LedgerShape shape;
    shape.sessions = size / bytesPerSession;
    return encodeLedger(generateLedger(shape));
}

/// Clients whose identifiers differ as `pattern` tells.
std::string clientsNumbered(std::size_t size, const std::function<Uuid(std::uint64_t)>& pattern)
{
    std::string clients;
    clients.reserve(size + 200);
    for (std::uint64_t number = 0; clients.size() < size; ++number) {
        clients += clients.empty() ? "" : ",";
        clients += R"({"id":")" + pattern(number).text()
            + R"(","name":"A","hourlyRateCents":0,"colorHex":""})";
    }
    return clients;
}

Uuid fromHalves(std::uint64_t high, std::uint64_t low)
{
    return std::bit_cast<Uuid>(std::array{high, low});
}

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double secondsToRead(const std::string& bytes)
{
    const double start = processorSeconds();
    (void)verdictOn(bytes);
    return processorSeconds() - start;
}

struct HostileFile {
    std::string verdict; ///< None where the parser's own words may tell one of several things.
    std::function<std::string(std::size_t)> bytes;
};

const std::string invalid = "The file isn't valid JSON.";
const std::string badNumber =
    "The file isn't valid JSON: it holds a malformed or excessive number.";
const std::string badString = "The file isn't valid JSON: it holds a malformed string.";
const std::string tooDeep = "The JSON in the file is nested too deeply.";
const std::string notUtf8 = "The file isn't valid UTF-8 text.";

std::string distinctKeys(std::size_t size)
{
    std::string keys;
    for (std::size_t number = 0; keys.size() < size; ++number) {
        keys += (keys.empty() ? "\"" : ",\"") + std::to_string(number) + "\":0";
    }
    return keys;
}

/// Files made to be as dear as can be, by name.
const std::map<std::string, HostileFile>& hostileFiles()
{
    static const std::map<std::string, HostileFile> files{
        {"OpeningBrackets", {invalid, [](std::size_t size) { return std::string(size, '['); }}},
        {"NestedArrays",
            {tooDeep,
                [](std::size_t size) {
                    return std::string(size / 2, '[') + std::string(size / 2, ']');
                }}},
        {"NestedObjects",
            {tooDeep,
                [](std::size_t size) {
                    return repeated("{\"a\":", size, "") + '0' + std::string(size / 5 + 1, '}');
                }}},
        {"EmptyArraysUnderAnUnknownKey",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":[" + repeated("[]", size) + "]");
                }}},
        {"NumbersUnderAnUnknownKey",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":[" + repeated("1", size) + "]");
                }}},
        {"LongFractionsUnderAnUnknownKey",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember(
                        "\"x\":[" + repeated("1." + std::string(900, '7') + "e-200", size) + "]");
                }}},
        {"OneNumberOfManyDigits",
            {badNumber,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":" + std::string(size, '9'));
                }}},
        {"OneFractionOfManyDigits",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":0." + std::string(size, '3'));
                }}},
        {"OneExponentOfManyDigits",
            {badNumber,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":1e" + std::string(size, '9'));
                }}},
        {"OneLongString",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":\"" + std::string(size, 'a') + '"');
                }}},
        {"UnclosedString",
            {badString, [](std::size_t size) { return '"' + std::string(size, 'a'); }}},
        {"OneLongName",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithClients(R"({"id":")" + Sample::clientID().text()
                        + R"(","name":")" + std::string(size, 'a')
                        + R"(","hourlyRateCents":0,"colorHex":""})");
                }}},
        {"EscapedCharacters",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":\"" + repeated("\\u00e9", size, "") + '"');
                }}},
        {"LoneSurrogates",
            {badString,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":\"" + repeated("\\ud800", size, "") + '"');
                }}},
        {"BytesThatAreNotUtf8",
            {notUtf8,
                [](std::size_t size) {
                    return ledgerWithMember("\"x\":\"" + std::string(size, '\xFF') + '"');
                }}},
        {"Blanks", {"The file is empty.", [](std::size_t size) { return std::string(size, ' '); }}},
        {"ZeroBytes", {invalid, [](std::size_t size) { return std::string(size, '\0'); }}},
        {"UnknownKeys",
            {accepted, [](std::size_t size) { return ledgerWithMember(distinctKeys(size)); }}},
        {"OneKeyAllOver",
            {"The data is malformed: the document gives the key \"k\" twice.",
                [](std::size_t size) { return ledgerWithMember(repeated("\"k\":0", size)); }}},
        {"EmptySpans",
            {"Time intervals must be ordered, with dates between 1970 and 2200.",
                [](std::size_t size) {
                    return ledgerWithSpans(repeated(R"({"start":1e99,"end":1e99})", size));
                }}},
        {"SpansOfNoLength",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithSpans(repeated(R"({"start":0,"end":0})", size));
                }}},
        {"SpansWithoutKeys",
            {"The data is malformed: entries[0].spans[0] has no \"start\".",
                [](std::size_t size) { return ledgerWithSpans(repeated("{}", size)); }}},
        {"IdentifiersThatCountUp",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithClients(clientsNumbered(
                        size, [](std::uint64_t number) { return fromHalves(0, number); }));
                }}},
        {"IdentifiersWithTheirHalvesTurnedOver",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithClients(clientsNumbered(size, [](std::uint64_t number) {
                        return number % 2 == 0 ? fromHalves(~number, number + 1)
                                               : fromHalves(number, ~(number - 1));
                    }));
                }}},
        {"IdentifiersThatDifferInTheHighestBits",
            {accepted,
                [](std::size_t size) {
                    return ledgerWithClients(clientsNumbered(size, [](std::uint64_t number) {
                        return fromHalves(number << 44, number << 44);
                    }));
                }}},
    };
    return files;
}

class HostileFiles : public testing::TestWithParam<std::string> {
protected:
    [[nodiscard]] static std::string file(std::size_t size)
    {
        return hostileFiles().at(GetParam()).bytes(size);
    }
};

TEST_P(HostileFiles, OpenOrAreRefusedInWords)
{
    EXPECT_EQ(verdictOn(file(megabyte)), hostileFiles().at(GetParam()).verdict);
}

TEST_P(HostileFiles, TakeABoundedMultipleOfTheirSizeInMemory)
{
    std::string bytes = file(4 * megabyte);
    const std::size_t size = bytes.size();
    const MemoryMeter meter;
    (void)verdictOn(std::move(bytes));
    EXPECT_LE(meter.peakBytes(), mostMemoryPerByte * size);
}

TEST_P(HostileFiles, TakeABoundedMultipleOfAnOrdinaryFilesTime)
{
    static const double ordinary = secondsToRead(ordinaryLedger(4 * megabyte));
    EXPECT_LE(secondsToRead(file(4 * megabyte)), mostTimePerOrdinaryTime * ordinary);
}

std::vector<std::string> names()
{
    std::vector<std::string> names;
    for (const auto& [name, file] : hostileFiles()) {
        names.push_back(name);
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    All, HostileFiles, testing::ValuesIn(names()), [](const auto& test) { return test.param; });

TEST(ReadingLimits, AnOrdinaryLedgerStaysWithinTheSameMemory)
{
    std::string bytes = ordinaryLedger(4 * megabyte);
    const std::size_t size = bytes.size();
    const MemoryMeter meter;
    EXPECT_EQ(verdictOn(std::move(bytes)), accepted);
    EXPECT_LE(meter.peakBytes(), mostMemoryPerByte * size);
}

TEST(ReadingLimits, ANumberOfFiftyMillionDigitsIsRefused)
{
    EXPECT_EQ(verdictOn(ledgerWithMember("\"x\":" + std::string(50 * megabyte, '9'))), badNumber);
}

TEST(ReadingLimits, ARefusalIsShortHoweverLongTheKeyThatItNames)
{
    const std::string key(megabyte, 'k');
    const std::string member = '"' + key + "\":0";
    EXPECT_LT(verdictOn(ledgerWithMember(member + ',' + member)).size(), 300U);
    EXPECT_LT(verdictOn(ledgerWithMember(R"("replication":{"deviceID":"d","deviceName":"n",)"
                                         R"("accountID":"a","outbox":{)"
                            + member + "}}"))
                  .size(),
        300U);
}

TEST(ReadingLimits, AMachineWithTooLittleMemoryRefusesInWordsAtEachPoint)
{
    MemoryFileSystem files;
    files.put("/home/ledger.json", ordinaryLedger(megabyte / 4));
    int refusals = 0;
    std::string verdict;
    for (std::size_t limit = 2'000; verdict != accepted; limit += limit / 8) {
        MemoryMeter meter;
        meter.refuseBeyond(limit);
        verdict = refusalOf([&] { validate(decodeLedger(readFile(files, "/home/ledger.json"))); });
        refusals += verdict != accepted ? 1 : 0;
        EXPECT_TRUE(
            verdict == accepted || verdict == "The file is too large to be read into memory.")
            << verdict;
    }
    EXPECT_GT(refusals, 20);
}

} // namespace
} // namespace KestryCore
