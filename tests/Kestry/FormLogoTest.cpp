#include "FormLogo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "LedgerError.h"

namespace Kestry {
namespace {

class FormLogoTest : public ::testing::Test {
protected:
    void workBeside()
    {
        for (const auto& [work, done] : std::exchange(beside, {})) {
            work();
            done();
        }
    }

    std::vector<std::pair<std::function<void()>, std::function<void()>>> beside;
    LogoSource source{
        .import = [](const std::string& path, const auto&) { return "the logo of " + path; },
        .runBeside = [this](auto work, auto done) { beside.emplace_back(work, done); }};
    std::optional<LogoResult> result;
    std::optional<FormLogo> logo{
        std::in_place, source, [this](const LogoResult& finished) { result = finished; }};
};

TEST_F(FormLogoTest, AFileBecomesALogo)
{
    logo->start("first.png");
    EXPECT_TRUE(logo->isRunning());
    EXPECT_FALSE(result);
    workBeside();
    EXPECT_FALSE(logo->isRunning());
    EXPECT_EQ("the logo of first.png", result->logo);
    EXPECT_EQ("", result->failure);
}

TEST_F(FormLogoTest, WhyAPictureIsNoLogoIsTold)
{
    source.import = [](const std::string&, const auto&) -> std::string {
        throw KestryCore::LedgerError("The logo could not be saved.");
    };
    logo->start("first.png");
    workBeside();
    EXPECT_EQ("The logo could not be saved.", result->failure);
}

TEST_F(FormLogoTest, ALaterPictureTakesThePlaceOfOneThatIsStillRead)
{
    logo->start("first.png");
    logo->start("second.png");
    workBeside();
    EXPECT_EQ("the logo of second.png", result->logo);
}

TEST_F(FormLogoTest, WhatWasCancelledIsDropped)
{
    logo->start("first.png");
    logo->cancel();
    workBeside();
    EXPECT_FALSE(result);
}

TEST_F(FormLogoTest, WhatIsReadIsStoppedWhenItIsWantedNoLonger)
{
    std::vector<std::stop_token> stops;
    source.import = [&](const std::string&, const std::stop_token& stop) {
        stops.push_back(stop);
        return std::string();
    };
    const auto wantedNoLonger = [&](const std::function<void()>& step) {
        logo->start("picture.png");
        beside.back().first();
        EXPECT_FALSE(stops.back().stop_requested());
        step();
        return stops.back().stop_requested();
    };
    EXPECT_TRUE(wantedNoLonger([&] { logo->cancel(); }));
    EXPECT_TRUE(wantedNoLonger([&] { logo->start("other.png"); }));
    EXPECT_TRUE(wantedNoLonger([&] { logo.reset(); }));
}

TEST_F(FormLogoTest, WhatWasCancelledBeforeItsTurnIsNotReadAtAll)
{
    int reads = 0;
    source.import = [&](const std::string&, const auto&) {
        ++reads;
        return std::string();
    };
    logo->start("first.png");
    logo->start("second.png");
    workBeside();
    EXPECT_EQ(reads, 1);
}

TEST_F(FormLogoTest, NothingIsToldAfterItHasGone)
{
    logo->start("first.png");
    logo.reset();
    workBeside();
    EXPECT_FALSE(result);
}

TEST_F(FormLogoTest, WithoutAnImportNothingIsRead)
{
    source.import = nullptr;
    logo->start("first.png");
    EXPECT_FALSE(logo->isPossible());
    EXPECT_TRUE(beside.empty());
}

} // namespace
} // namespace Kestry
