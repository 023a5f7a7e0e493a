#include "UserLocale.h"

#include <gmock/gmock.h>

#include <map>

#include "LedgerError.h"

namespace KestryCore {
namespace {

using testing::ThrowsMessage;

std::string localeIn(const std::map<std::string, std::string>& variables)
{
    return userLocale([&](const std::string& name) {
        const auto found = variables.find(name);
        return found != variables.end() ? std::optional(found->second) : std::nullopt;
    });
}

TEST(UserLocale, IsWhatTheEnvironmentSaysOfMoney)
{
    EXPECT_EQ(localeIn({{"LANG", "en_GB.UTF-8"}}), "en_GB");
    EXPECT_EQ(localeIn({{"LANG", "en_US.UTF-8"}, {"LC_MONETARY", "de_DE.UTF-8"}}), "de_DE");
    EXPECT_EQ(localeIn({{"LC_ALL", "fr_FR"}, {"LC_MONETARY", "de_DE.UTF-8"}}), "fr_FR");
}

TEST(UserLocale, PassesOverEmptyVariables)
{
    EXPECT_EQ(localeIn({{"LC_ALL", ""}, {"LANG", "de_AT"}}), "de_AT");
}

TEST(UserLocale, IsAmericanWhereNothingIsSaidOfAPerson)
{
    for (const char* name : {"C", "POSIX", "C.UTF-8", "xx_YY", "\xFF"}) {
        EXPECT_EQ(localeIn({{"LC_ALL", name}, {"LANG", "de_DE"}}), "en_US") << name;
    }
    EXPECT_EQ(localeIn({}), "en_US");
}

TEST(RequireLocale, TakesTheUsualWaysOfWriting)
{
    EXPECT_EQ(requireLocale("de_DE"), "de_DE");
    EXPECT_EQ(requireLocale("de-DE"), "de_DE");
    EXPECT_EQ(requireLocale("de_DE.UTF-8@euro"), "de_DE");
    EXPECT_EQ(requireLocale("en"), "en");
    EXPECT_EQ(requireLocale("es_419"), "es_419");
}

TEST(RequireLocale, RefusesLanguagesAndCountriesThatThereAreNot)
{
    EXPECT_THAT([] { (void)requireLocale("xx"); },
        ThrowsMessage<LedgerError>(
            "There is no locale \"xx\". Give one as in \"de_DE\" or \"en\"."));
    for (const char* name : {"", "de_XX", "german", "1", ".UTF-8"}) {
        EXPECT_THROW((void)requireLocale(name), LedgerError) << name;
    }
}

TEST(RequireLocale, TellsALocaleThatWasProbablyMeant)
{
    const auto expectNear = [](const std::string& name, const std::string& near) {
        EXPECT_THAT([&] { (void)requireLocale(name); },
            ThrowsMessage<LedgerError>(
                "There is no locale \"" + name + "\". Did you mean \"" + near + "\"?"));
    };
    expectNear("de_XX", "de");
    expectNear("german", "de");
    expectNear("dx_DE", "de_DE");
    expectNear("en_UXS", "en_US");
}

} // namespace
} // namespace KestryCore
