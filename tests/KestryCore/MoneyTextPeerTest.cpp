#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "TextForms.h"

namespace KestryCore {
namespace {

/// What another program that knows the world's locales makes of an amount.
struct PeerText {
    std::string locale;
    std::string decimals;
    std::string cents;
    std::string text;
};

std::string outputOf(const std::string& command)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> part{};
    while (pipe && std::fgets(part.data(), part.size(), pipe.get()) != nullptr) {
        output += part.data();
    }
    return output;
}

std::vector<PeerText> peerTexts()
{
    std::istringstream lines(outputOf("node '" KESTRY_TEST_SUPPORT "/currencyText.js'"));
    std::vector<PeerText> texts;
    PeerText next;
    while (std::getline(lines, next.locale, '\t') && std::getline(lines, next.decimals, '\t')
        && std::getline(lines, next.cents, '\t') && std::getline(lines, next.text)) {
        texts.push_back(next);
    }
    return texts;
}

/// The text without that in which versions of the locale data are known to differ: newer ones
/// group with a straight apostrophe in Switzerland, do not group four digits in Hungary, Italy and
/// Slovenia, and have a foreign currency behind the amount in Norway.
std::string withoutKnownDifferences(const std::string& locale, const std::string& text)
{
    static const std::set<std::string> fourDigitsTogether{"hu-HU", "it-CH", "it-IT", "sl-SI"};
    static const std::regex apostrophe("\u2019");
    static const std::regex groupOfFour(
        "(^|[^0-9])([0-9])(?:\\.|'|\u00A0)([0-9]{3})(?!(?:\\.|'|\u00A0)?[0-9]{3})");
    static const std::regex currency("USD\u00A0|\u00A0USD");
    std::string result = std::regex_replace(text, apostrophe, "'");
    if (fourDigitsTogether.contains(locale)) {
        result = std::regex_replace(result, groupOfFour, "$1$2$3");
    }
    return locale == "nb-NO" ? std::regex_replace(result, currency, "") : result;
}

TEST(MoneyText, AgreesWithAnotherProgramInManyLocales)
{
    std::map<std::string, MoneyText> words;
    for (const PeerText& peer : peerTexts()) {
        const MoneyText& here = words.try_emplace(peer.locale, peer.locale).first->second;
        const double cents = std::strtod(peer.cents.c_str(), nullptr);
        const std::string ours = peer.decimals == "2" ? here.money(cents) : here.wholeMoney(cents);
        if (ours != peer.text) {
            EXPECT_EQ(withoutKnownDifferences(peer.locale, ours),
                withoutKnownDifferences(peer.locale, peer.text))
                << peer.locale << ' ' << peer.cents;
        }
    }
    EXPECT_GE(words.size(), 50U) << "Is Node.js there?";
}

} // namespace
} // namespace KestryCore
