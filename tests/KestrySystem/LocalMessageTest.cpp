#include "LocalMessage.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

LocalCommand sampleCommand()
{
    LocalCommand command;
    command.words = {"start", "", "Aster\nStudio", std::string("\0x", 2)};
    command.dataDirectory = "/home/a/ledger";
    command.namedDirectory = "ledger";
    command.environment = {{"LANG", "de_DE"}, {"NO_COLOR", ""}};
    command.timeZone = "Europe/Berlin";
    command.writesToTerminal = true;
    command.isPrepared = true;
    command.isConfirmed = true;
    command.session = "";
    command.logo = std::string("\0PNG", 4);
    command.secret = "open sesame";
    return command;
}

/// What is in the one frame of a message.
std::string contentOf(const std::string& message)
{
    LocalFrameReader reader(maximumRequestBytes);
    reader.add(message);
    return reader.next().value().content;
}

std::string header(const std::string& kind, std::uint32_t size)
{
    return "KST3" + kind + std::string(reinterpret_cast<const char*>(&size), sizeof size);
}

TEST(LocalMessage, WhatIsEncodedReadsBackAsItWas)
{
    EXPECT_EQ(decodeCommand(contentOf(encodeMessage(sampleCommand()))), sampleCommand());
    EXPECT_EQ(decodeCommand(contentOf(encodeMessage(LocalCommand{}))), LocalCommand{});
    const LocalActivation activation{{"kestry://update?token=1", ""}, "token"};
    EXPECT_EQ(decodeActivation(contentOf(encodeMessage(activation))), activation);
    LocalAnswer answer{-1, true, std::string(100'000, 'x'), "why"};
    EXPECT_EQ(decodeAnswer(contentOf(encodeMessage(answer))), answer);
    answer.file = FileToWrite{"out.csv", std::string("\0a", 2)};
    EXPECT_EQ(decodeAnswer(contentOf(encodeMessage(answer))), answer);
}

TEST(LocalMessage, WhatIsCutOffOrHasMoreBehindItIsNoMessage)
{
    const std::string content = contentOf(encodeMessage(sampleCommand()));
    for (std::size_t size = 0; size < content.size(); ++size) {
        EXPECT_FALSE(decodeCommand(content.substr(0, size))) << size;
    }
    EXPECT_FALSE(decodeCommand(content + '\0'));
    EXPECT_FALSE(decodeAnswer(content));
    EXPECT_FALSE(decodeActivation("\x01"));
}

TEST(LocalMessage, CountsThatNothingStandsBehindAreNoMessage)
{
    const std::string most(4, '\xFF');
    EXPECT_FALSE(decodeCommand(most));
    EXPECT_FALSE(decodeActivation(most + most));
    EXPECT_FALSE(decodeAnswer(most + '\1' + most));
    EXPECT_FALSE(decodeAnswer(std::string(4, '\0') + '\2' + std::string(8, '\0')));
}

TEST(LocalMessage, AFieldThatHoldsMoreThanItMayIsNoMessage)
{
    using Limits = LocalMessageLimits;
    const auto expectLimit = [](auto fill, std::size_t most) {
        LocalCommand command;
        fill(command, most);
        EXPECT_EQ(decodeCommand(contentOf(encodeMessage(command))), command);
        fill(command, most + 1);
        EXPECT_FALSE(decodeCommand(contentOf(encodeMessage(command))));
        EXPECT_FALSE(isWithinLimits(command));
    };
    const auto text = [](std::size_t size) { return std::string(size, 'x'); };
    expectLimit([&](auto& c, auto n) { c.words = {text(n)}; }, Limits::word);
    expectLimit([&](auto& c, auto n) { c.words.assign(n, ""); }, Limits::words);
    expectLimit([&](auto& c, auto n) { c.dataDirectory = text(n); }, Limits::path);
    expectLimit([&](auto& c, auto n) { c.namedDirectory = text(n); }, Limits::path);
    expectLimit([&](auto& c, auto n) { c.environment["LANG"] = text(n); }, Limits::setting);
    expectLimit([&](auto& c, auto n) { c.environment = {{text(n), ""}}; }, Limits::setting);
    expectLimit([&](auto& c, auto n) { c.timeZone = text(n); }, Limits::setting);
    expectLimit([&](auto& c, auto n) { c.session = text(n); }, Limits::setting);
    expectLimit([&](auto& c, auto n) { c.logo = text(n); }, Limits::file);
    expectLimit([&](auto& c, auto n) { c.secret = text(n); }, Limits::secret);
}

TEST(LocalMessage, MoreVariablesOrAddressesThanAnybodyHasAreNoMessage)
{
    LocalCommand command;
    for (std::size_t count = 0; count <= LocalMessageLimits::settings; ++count) {
        command.environment[std::to_string(count)] = "";
    }
    EXPECT_FALSE(decodeCommand(contentOf(encodeMessage(command))));
    LocalActivation activation;
    activation.urls.assign(LocalMessageLimits::urls + 1, "kestry:");
    EXPECT_FALSE(decodeActivation(contentOf(encodeMessage(activation))));
    activation.urls = {std::string(LocalMessageLimits::word + 1, 'x')};
    EXPECT_FALSE(decodeActivation(contentOf(encodeMessage(activation))));
}

TEST(LocalMessage, ARequestWithAllItsFieldsAtTheirLimitsFitsInAFrame)
{
    using Limits = LocalMessageLimits;
    LocalCommand command;
    command.words.assign(Limits::words, std::string(Limits::word, 'x'));
    command.dataDirectory = std::string(Limits::path, 'x');
    command.namedDirectory = command.dataDirectory;
    command.logo = std::string(Limits::file, 'x');
    command.secret = std::string(Limits::secret, 'x');
    EXPECT_EQ(decodeCommand(contentOf(encodeMessage(command))), command);
}

TEST(LocalMessage, AVariableWithoutAValueIsNoMessage)
{
    LocalCommand command;
    command.environment = {{"A", ""}};
    std::string content = contentOf(encodeMessage(command));
    // One text of the two that the variable has, and none of the other.
    const std::size_t count = content.find('\2');
    content[count] = '\1';
    content.erase(count + 4 + 4 + 1, 4);
    EXPECT_FALSE(decodeCommand(content));
}

TEST(LocalMessage, FramesComeOutWholeHoweverTheBytesComeIn)
{
    const std::string stream =
        encodeMessage(LocalMessageKind::taken) + encodeMessage(LocalAnswer{0, false, "out", ""});
    LocalFrameReader reader(maximumAnswerBytes);
    std::string kinds;
    for (const char byte : stream) {
        reader.add(std::string_view(&byte, 1));
        while (const auto frame = reader.next()) {
            kinds += static_cast<char>(frame->kind);
        }
    }
    EXPECT_EQ(kinds, "TR");
    EXPECT_FALSE(reader.isBroken());
}

TEST(LocalMessage, AnotherProtocolBreaksTheStreamAtItsFirstByte)
{
    LocalFrameReader reader(maximumRequestBytes);
    reader.add("G");
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isBroken());
    LocalFrameReader other(maximumRequestBytes);
    other.add("KST1C");
    EXPECT_FALSE(other.next());
    EXPECT_TRUE(other.isBroken());
}

TEST(LocalMessage, AFrameBeyondTheBoundBreaksTheStreamBeforeItIsThere)
{
    LocalFrameReader reader(10);
    reader.add(header("C", 11));
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.isBroken());
    LocalFrameReader other(10);
    other.add(header("C", 10) + std::string(10, 'x'));
    EXPECT_EQ(other.next()->content.size(), 10);
}

} // namespace
} // namespace Kestry
