#include "LogoImport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <utility>
#include <vector>

#include "LedgerError.h"

namespace Kestry {
namespace {

class LogoImportTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string file(qint64 size) const
    {
        QFile written(directory.filePath("picture"));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        EXPECT_TRUE(written.resize(size));
        return written.fileName().toStdString();
    }
    void workBeside()
    {
        for (const auto& [work, done] : std::exchange(beside, {})) {
            work();
            done();
        }
    }

    QTemporaryDir directory;
    std::vector<std::pair<std::function<void()>, std::function<void()>>> beside;
    std::size_t seenBytes = 0;
    LogoSource source{.normalise =
                          [this](const std::string& picture) {
                              seenBytes = picture.size();
                              return LogoResult{.logo = std::to_string(picture.size())};
                          },
        .runBeside = [this](auto work, auto done) { beside.emplace_back(work, done); }};
    std::optional<LogoResult> result;
    std::optional<LogoImport> import{
        std::in_place, source, [this](const LogoResult& finished) { result = finished; }};
};

TEST_F(LogoImportTest, TheBytesOfAFileBecomeALogo)
{
    import->start(file(12));
    EXPECT_TRUE(import->isRunning());
    EXPECT_FALSE(result);
    workBeside();
    EXPECT_FALSE(import->isRunning());
    EXPECT_EQ("12", result->logo);
    EXPECT_EQ("", result->failure);
}

TEST_F(LogoImportTest, AFileOfTheLargestSizeIsReadAndOneByteMoreIsNot)
{
    import->start(file(20'971'520));
    workBeside();
    EXPECT_EQ(20'971'520U, seenBytes);

    seenBytes = 0;
    import->start(file(20'971'521));
    workBeside();
    EXPECT_EQ("Choose an image smaller than 20 MB.", result->failure);
    EXPECT_EQ(0U, seenBytes);
}

TEST_F(LogoImportTest, AFileThatCannotBeOpenedSaysWhy)
{
    import->start(directory.filePath("missing").toStdString());
    workBeside();
    EXPECT_EQ("No such file or directory", result->failure);
}

TEST_F(LogoImportTest, AnErrorOfTheNormaliserIsTold)
{
    source.normalise = [](const std::string&) -> LogoResult {
        throw KestryCore::LedgerError("The logo could not be saved.");
    };
    import->start(file(12));
    workBeside();
    EXPECT_EQ("The logo could not be saved.", result->failure);
}

TEST_F(LogoImportTest, ALaterPictureTakesThePlaceOfOneThatIsStillRead)
{
    import->start(file(12));
    import->start(file(13));
    workBeside();
    EXPECT_EQ("13", result->logo);
}

TEST_F(LogoImportTest, WhatWasCancelledIsDropped)
{
    import->start(file(12));
    import->cancel();
    workBeside();
    EXPECT_FALSE(result);
}

TEST_F(LogoImportTest, NothingIsToldAfterTheImportHasGone)
{
    import->start(file(12));
    import.reset();
    workBeside();
    EXPECT_FALSE(result);
}

TEST_F(LogoImportTest, WithoutANormaliserNothingIsRead)
{
    source.normalise = nullptr;
    import->start(file(12));
    EXPECT_FALSE(import->isPossible());
    EXPECT_TRUE(beside.empty());
}

} // namespace
} // namespace Kestry
