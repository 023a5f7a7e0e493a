#include "HandedCommand.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "CommandFixture.h"
#include "Descriptor.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

KestryCore::EnvironmentLookup environmentOf(std::map<std::string, std::string> variables)
{
    return [known = std::move(variables)](const std::string& name) {
        const auto found = known.find(name);
        return found != known.end() ? std::optional(found->second) : std::nullopt;
    };
}

TEST(HandedCommand, TheTimeZoneOfTheTerminalGoesWithTheWords)
{
    for (const char* zone : {"UTC", "Europe/Berlin", "America/Ciudad_Juarez", "Etc/GMT+3", "EST",
             "CET-1CEST,M3.5.0,M10.5.0/3", "<+03>-3"}) {
        const auto environment = environmentOf({{"TZ", zone}, {"HOME", "/a"}});
        EXPECT_EQ(unreadCommandToHandOver({"status"}, environment)->timeZone, zone);
    }
}

TEST(HandedCommand, AZoneIsHandedOverByItsNameHoweverItIsGiven)
{
    for (const char* zone : {":Europe/Berlin", "posix/Europe/Berlin", "right/Europe/Berlin",
             "../zoneinfo/Europe/Berlin", "/usr/share/zoneinfo/Europe/Berlin"}) {
        const auto environment = environmentOf({{"TZ", zone}, {"HOME", "/a"}});
        EXPECT_EQ(unreadCommandToHandOver({"status"}, environment)->timeZone, "Europe/Berlin");
    }
}

TEST(HandedCommand, TheFolderShowsAtAGlance)
{
    const auto environment = environmentOf({{"TZ", "UTC"}, {"HOME", "/home/a"}});
    const auto folderOf = [&](const std::vector<std::string>& words) {
        return unreadCommandToHandOver(words, environment)->dataDirectory;
    };
    EXPECT_EQ(folderOf({"status"}), "/home/a/.local/share/Kestry");
    EXPECT_EQ(folderOf({"status", "--data-directory", "x"}), "x");
    EXPECT_EQ(folderOf({"--data-directory=x", "status"}), "x");
    EXPECT_EQ(folderOf({"rename", "--", "--data-directory", "x"}), "/home/a/.local/share/Kestry");
    EXPECT_EQ(folderOf({"status", "--data-directory"}), "/home/a/.local/share/Kestry");
}

TEST(HandedCommand, TheEnvironmentNamesTheFolderWhereTheWordsDoNot)
{
    const auto folderOf = [](std::map<std::string, std::string> variables) {
        variables["TZ"] = "UTC";
        return unreadCommandToHandOver({"status"}, environmentOf(std::move(variables)))
            ->dataDirectory;
    };
    EXPECT_EQ(folderOf({{"HOME", "/a"}, {"KESTRY_DATA_DIR", "/k"}}), "/k");
    EXPECT_EQ(folderOf({{"HOME", "/a"}, {"XDG_DATA_HOME", "/d"}}), "/d/Kestry");
    EXPECT_EQ(folderOf({{"HOME", "/a"}, {"XDG_DATA_HOME", "d"}}), "/a/.local/share/Kestry");
}

TEST(HandedCommand, WhatDoesNotShowAtAGlanceIsLeftToTheWholeProgram)
{
    EXPECT_FALSE(unreadCommandToHandOver({}, environmentOf({{"TZ", "UTC"}, {"HOME", "/a"}})));
    EXPECT_FALSE(unreadCommandToHandOver({"status"}, environmentOf({{"TZ", "UTC"}})));
    const KestryCore::TemporaryDirectory folder;
    std::ofstream(folder.path("zone")) << "TZif without a rule";
    EXPECT_FALSE(unreadCommandToHandOver(
        {"status"}, environmentOf({{"TZ", folder.path("zone")}, {"HOME", "/a"}})));
}

TEST(HandedCommand, WhatDecidesTheMeaningOfWordsGoesWithThem)
{
    const auto command = unreadCommandToHandOver({"export", "x.csv"},
        environmentOf({{"TZ", "Asia/Tokyo"}, {"HOME", "/a"}, {"LANG", "de_DE"}, {"PATH", "/bin"}}));
    EXPECT_EQ(command->words, (std::vector<std::string>{"export", "x.csv"}));
    EXPECT_EQ(command->timeZone, "Asia/Tokyo");
    EXPECT_EQ(command->environment, (std::map<std::string, std::string>{{"LANG", "de_DE"}}));
    EXPECT_FALSE(command->namedDirectory);
    EXPECT_FALSE(command->isPrepared || command->isConfirmed);
}

TEST(HandedCommand, WordsThatAreTooLongForTheApplicationAreLeftToTheWholeProgram)
{
    const auto environment = environmentOf({{"TZ", "UTC"}, {"HOME", "/a"}});
    const std::string most(LocalMessageLimits::word, 'x');
    EXPECT_TRUE(unreadCommandToHandOver({"rename", most}, environment));
    EXPECT_FALSE(unreadCommandToHandOver({"rename", most + "x"}, environment));
}

TEST(HandedCommand, AFolderThatIsNamedNeedsNoHome)
{
    const auto environment = environmentOf({{"TZ", "UTC"}, {"KESTRY_DATA_DIR", "/k"}});
    EXPECT_EQ(unreadCommandToHandOver({"status"}, environment)->dataDirectory, "/k");
    EXPECT_EQ(
        unreadCommandToHandOver({"--data-directory", "x", "status"}, environmentOf({{"TZ", "UTC"}}))
            ->dataDirectory,
        "x");
}

class ShownAnswer : public testing::Test {
protected:
    int show(const LocalAnswer& answer)
    {
        const Descriptor output(open(folder.path("out").c_str(), O_CREAT | outputMode, 0600));
        const Descriptor errors(open(folder.path("err").c_str(), O_CREAT | O_WRONLY, 0600));
        return showAnswer(answer, output.number(), errors.number());
    }
    [[nodiscard]] std::string shown(const std::string& name) const
    {
        return fileContent(folder.path(name));
    }

    KestryCore::TemporaryDirectory folder;
    int outputMode = O_WRONLY;
};

TEST_F(ShownAnswer, GoesToBothStreamsAndGivesTheStatus)
{
    EXPECT_EQ(show({2, false, "out", "why"}), 2);
    EXPECT_EQ(shown("out"), "out");
    EXPECT_EQ(shown("err"), "why");
}

TEST_F(ShownAnswer, ThatCannotBeWrittenIsARefusalAndTellsOfAChangeThatWasMade)
{
    outputMode = O_RDONLY;
    EXPECT_EQ(show({0, false, "out", ""}), 1);
    EXPECT_EQ(shown("err"), "The output could not be written: Bad file descriptor.\n");
    EXPECT_EQ(show({0, true, "out", ""}), 1);
    EXPECT_EQ(shown("err"),
        "The change has been made and saved; only its result can't be shown. The output could not "
        "be written: Bad file descriptor.\n");
}

} // namespace
} // namespace Kestry
