#include "UpdateSheetText.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using Step = UpdateStage::Step;

class UpdateSheetTextTest : public ::testing::Test {
protected:
    [[nodiscard]] UpdateSheetText at(Step step)
    {
        stage.step = step;
        return UpdateSheetText::of(stage, version, failure, locale);
    }

    UpdateStage stage{.update = {"1.3.0", "", 24'300'000}};
    QString version = "1.2.0";
    std::optional<std::string> failure;
    QLocale locale{"en_US"};
};

TEST_F(UpdateSheetTextTest, ThereIsNothingToShowWithoutAnUpdate)
{
    EXPECT_EQ(at(Step::nothing), UpdateSheetText());
}

TEST_F(UpdateSheetTextTest, ACheckCanBeCalledOff)
{
    EXPECT_EQ(at(Step::checking),
        (UpdateSheetText{.title = "Checking for updates…", .dismiss = "Cancel"}));
}

TEST_F(UpdateSheetTextTest, ANewestVersionIsNamed)
{
    const UpdateSheetText text = at(Step::upToDate);
    EXPECT_EQ(text.title, "You’re up to date.");
    EXPECT_EQ(text.message, "Kestry 1.2.0 is the newest version.");
    EXPECT_EQ(text.dismiss, "OK");
    EXPECT_EQ(text.install, "");
    version = "";
    EXPECT_EQ(at(Step::upToDate).message, "This is the newest version.");
}

TEST_F(UpdateSheetTextTest, WhatWasFoundIsToldWithItsSizeAndWhatThereIs)
{
    const UpdateSheetText text = at(Step::found);
    EXPECT_EQ(text.title, "An update is available.");
    EXPECT_EQ(text.message, "Kestry 1.3.0 · 24.3 MB\nYou have Kestry 1.2.0.");
    EXPECT_EQ(text.install, "Install and Relaunch");
    EXPECT_EQ(text.dismiss, "Later");
    EXPECT_EQ(text.progress, std::nullopt);
}

TEST_F(UpdateSheetTextTest, WhatIsNotKnownIsNotTold)
{
    version = "";
    stage.update.bytes = 0;
    EXPECT_EQ(at(Step::found).message, "Kestry 1.3.0");
}

TEST_F(UpdateSheetTextTest, ADownloadTellsHowFarItIs)
{
    stage.received = 12'150'000;
    const UpdateSheetText text = at(Step::downloading);
    EXPECT_EQ(text.title, "Downloading Kestry 1.3.0");
    EXPECT_EQ(text.message, "12.2 MB of 24.3 MB");
    EXPECT_EQ(text.progress, 0.5);
    EXPECT_EQ(text.install, "");
    EXPECT_EQ(text.dismiss, "Cancel");
}

TEST_F(UpdateSheetTextTest, SizesAreWrittenAsTheUserWritesThem)
{
    locale = QLocale("de_DE");
    EXPECT_EQ(at(Step::found).message, "Kestry 1.3.0 · 24,3 MB\nYou have Kestry 1.2.0.");
}

TEST_F(UpdateSheetTextTest, ADownloadOfUnknownSizeHasNoMeasure)
{
    stage.update.bytes = 0;
    stage.received = 5000;
    const UpdateSheetText text = at(Step::downloading);
    EXPECT_EQ(text.message, "5.0 kB");
    EXPECT_EQ(text.progress, std::nullopt);
}

TEST_F(UpdateSheetTextTest, MoreThanWasAnnouncedIsNoMoreThanAll)
{
    stage.received = 99'000'000;
    EXPECT_EQ(at(Step::downloading).progress, 1.0);
    stage.received = -1;
    EXPECT_EQ(at(Step::downloading).progress, 0.0);
}

TEST_F(UpdateSheetTextTest, AnInstallationCannotBeLeft)
{
    const UpdateSheetText text = at(Step::unpacking);
    EXPECT_EQ(text.title, "Installing Kestry 1.3.0");
    EXPECT_FALSE(text.canDismiss);
    EXPECT_EQ(text.progress, 1.0);
    EXPECT_EQ(text.install, "");
}

TEST_F(UpdateSheetTextTest, AnUpdateThatWaitsSaysWhyTheLastRelaunchWasRefused)
{
    EXPECT_EQ(at(Step::ready).message, "Kestry quits and starts again as the new version.");
    failure = "Finish the current session.";
    const UpdateSheetText text = at(Step::ready);
    EXPECT_EQ(text.title, "Kestry 1.3.0 is ready.");
    EXPECT_EQ(text.message, "Finish the current session.");
    EXPECT_EQ(text.install, "Install and Relaunch");
    EXPECT_EQ(text.dismiss, "Later");
}

TEST_F(UpdateSheetTextTest, AFailureSaysWhatHasFailed)
{
    stage.failure = "The disk is full.";
    EXPECT_EQ(at(Step::failed).title, "Kestry 1.3.0 could not be installed.");
    EXPECT_EQ(at(Step::failed).message, "The disk is full.");
    EXPECT_EQ(at(Step::failed).dismiss, "OK");
    stage.update = {};
    EXPECT_EQ(at(Step::failed).title, "Updates could not be checked.");
}

} // namespace
} // namespace Kestry
