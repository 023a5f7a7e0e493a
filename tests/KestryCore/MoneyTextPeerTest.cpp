#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
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

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    for (auto place = text.find(from); place != std::string::npos;
         place = text.find(from, place + to.size())) {
        text.replace(place, from.size(), to);
    }
    return text;
}

bool isDigit(std::string_view text, std::size_t place)
{
    return place < text.size() && text[place] >= '0' && text[place] <= '9';
}

bool hasThreeDigits(std::string_view text, std::size_t place)
{
    return isDigit(text, place) && isDigit(text, place + 1) && isDigit(text, place + 2);
}

/// Takes the separator out of a number of just four digits.
std::string withFourDigitsTogether(std::string text, std::string_view separator)
{
    for (auto place = text.find(separator); place != std::string::npos;
         place = text.find(separator, place + 1)) {
        const bool beginsNumber =
            place > 0 && isDigit(text, place - 1) && (place == 1 || !isDigit(text, place - 2));
        const std::size_t digits = place + separator.size();
        const std::size_t behind = digits + 3;
        const bool goesOn = isDigit(text, behind)
            || (std::string_view(text).substr(std::min(behind, text.size())).starts_with(separator)
                && hasThreeDigits(text, behind + separator.size()));
        if (beginsNumber && hasThreeDigits(text, digits) && !goesOn) {
            text.erase(place, separator.size());
        }
    }
    return text;
}

/// The text without that in which versions of the locale data are known to differ: newer ones
/// group with a straight apostrophe in Switzerland, do not group four digits in Hungary, Italy and
/// Slovenia, and have a foreign currency behind the amount in Norway.
std::string withoutKnownDifferences(const std::string& locale, const std::string& text)
{
    static const std::set<std::string> fourDigitsTogether{"hu-HU", "it-CH", "it-IT", "sl-SI"};
    std::string result = replaced(text, "\u2019", "'");
    if (fourDigitsTogether.contains(locale)) {
        for (const std::string_view separator : {".", "'", "\u00A0"}) {
            result = withFourDigitsTogether(result, separator);
        }
    }
    return locale == "nb-NO" ? replaced(replaced(result, "USD\u00A0", ""), "\u00A0USD", "")
                             : result;
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
