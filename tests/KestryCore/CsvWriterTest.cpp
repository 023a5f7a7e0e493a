#include "CsvWriter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace KestryCore {
namespace {

using Decimals = CsvWriter::Decimals;

/// The text of one cell, without its quotes.
template <class Write>
std::string cellOf(Write write)
{
    CsvWriter writer("", 0);
    write(writer);
    writer.endLine();
    const std::string text = writer.take();
    return text.substr(3, text.size() - 6);
}

std::string number(double value, Decimals decimals)
{
    return cellOf([&](CsvWriter& writer) { writer.number(value, decimals); });
}

std::string exactNumber(double value)
{
    return cellOf([&](CsvWriter& writer) { writer.exactNumber(value); });
}

/// What the C library makes of it.
std::string printed(double value, const char* form)
{
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), form, value);
    return text.data();
}

TEST(CsvWriter, PartsCellsByCommasAndEndsLines)
{
    CsvWriter writer("first", 0);
    writer.text("a");
    writer.empty();
    writer.flag(true);
    writer.endLine();
    writer.flag(false);
    writer.endLine();
    EXPECT_EQ(writer.take(), "first\r\n\"a\",\"\",\"true\"\r\n\"false\"\r\n");
}

TEST(CsvWriter, PutsAnApostropheBeforeANegativeNumber)
{
    EXPECT_EQ(number(-1.5, Decimals::two), "'-1.50");
    EXPECT_EQ(exactNumber(-1.5), "'-1.5");
}

TEST(CsvWriter, RoundsExactHalvesToAnEvenDigit)
{
    EXPECT_EQ(number(0.125, Decimals::two), "0.12");
    EXPECT_EQ(number(0.375, Decimals::two), "0.38");
    EXPECT_EQ(number(0.0078125, Decimals::six), "0.007812");
    EXPECT_EQ(number(1.005, Decimals::two), "1.00"); // 1.00499999…
    EXPECT_EQ(number(1.015, Decimals::two), "1.01"); // 1.01499999…
    EXPECT_EQ(number(0.995, Decimals::two), "0.99"); // 0.99499999…
    EXPECT_EQ(number(99.999, Decimals::two), "100.00");
}

TEST(CsvWriter, WritesTheLargestAndTheSmallestOfNumbers)
{
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(number(largest, Decimals::six), printed(largest, "%.6f"));
    EXPECT_EQ(number(5e-324, Decimals::six), "0.000000");
    EXPECT_EQ(exactNumber(5e-324), "5e-324");
    EXPECT_EQ(exactNumber(largest), "1.7976931348623157e+308");
}

TEST(CsvWriter, AddsAPointToWholeNumbersOnly)
{
    EXPECT_EQ(exactNumber(0.0), "0.0");
    EXPECT_EQ(exactNumber(300000.0), "300000.0");
    EXPECT_EQ(exactNumber(0.1), "0.1");
    EXPECT_EQ(exactNumber(1e16), "1e+16");
}

RC_GTEST_PROP(CsvWriter, RoundsAsTheCLibraryDoes, (std::uint32_t hours, std::uint32_t parts))
{
    const auto power = std::ldexp(1.0, static_cast<int>(*rc::gen::inRange(0, 40)));
    for (const double value : {hours / 3600.0, parts / 1000.0, parts / power,
             std::nextafter(parts / power, 0.0), parts * power, (parts % 10000 + 0.5) / 1e6}) {
        RC_ASSERT(number(value, Decimals::two) == printed(value, "%.2f"));
        RC_ASSERT(number(value, Decimals::six) == printed(value, "%.6f"));
    }
}

RC_GTEST_PROP(CsvWriter, WritesNumbersThatReadBack, (std::uint64_t bits))
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    RC_PRE(value >= 0.0 && std::isfinite(value));
    const std::string text = exactNumber(value);
    RC_ASSERT(std::strtod(text.c_str(), nullptr) == value);
    RC_ASSERT(text.find_first_of(".e") != std::string::npos);
}

TEST(CsvWriter, TakesTextsOfAnyLength)
{
    for (const std::size_t size : {0, 4090, 4095, 4096, 4097, 100'000}) {
        std::string text(size, 'x');
        EXPECT_EQ(cellOf([&](CsvWriter& writer) { writer.text(text); }), text);
        text += '"';
        EXPECT_EQ(cellOf([&](CsvWriter& writer) { writer.text(text); }), text + '"');
    }
}

TEST(CsvWriter, KeepsTheOrderOfCellsThroughManyLines)
{
    CsvWriter writer("", 0);
    std::string expected = "\r\n";
    for (int line = 0; line < 1000; ++line) {
        const std::string text(static_cast<std::size_t>(line % 97), 'y');
        writer.text(text);
        writer.exactNumber(line);
        writer.endLine();
        expected += '"' + text + "\",\"" + std::to_string(line) + ".0\"\r\n";
    }
    EXPECT_EQ(writer.take(), expected);
}

} // namespace
} // namespace KestryCore
