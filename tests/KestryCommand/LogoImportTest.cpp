#include "LogoImport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "LogoImages.h"
#include "PictureFile.h"
#include "Refusal.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

using KestryCore::refusalOf;

/// A program in the place of `kestry-logo`, that does what a line of the shell says.
class LogoImport : public testing::Test {
protected:
    std::string refusalFrom(const std::string& line)
    {
        const std::string program = directory_.path("program");
        std::ofstream(program) << "#!/bin/sh\n" << line << "\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return refusalOf([&] {
            logo_ = importedLogo(KestryCore::LogoImages::png(), program, source_.get_token());
        });
    }

    KestryCore::TemporaryDirectory directory_;
    std::stop_source source_;
    std::string logo_;
};

TEST_F(LogoImport, TheLogoThatTheProgramWritesIsReturned)
{
    EXPECT_EQ(refusalFrom("cat"), KestryCore::accepted);
    EXPECT_EQ(logo_, KestryCore::LogoImages::png());
}

TEST_F(LogoImport, TheSentenceThatTheProgramWritesIsTheReason)
{
    EXPECT_EQ(refusalFrom("printf 'The logo could not be saved.'"), "The logo could not be saved.");
}

TEST_F(LogoImport, AProgramThatCrashesCouldNotReadThePicture)
{
    EXPECT_EQ(refusalFrom("kill -SEGV $$"), KestryCore::unreadablePicture);
}

TEST_F(LogoImport, HalfALogoIsRefused)
{
    EXPECT_EQ(refusalFrom("head -c 40"),
        "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
}

TEST_F(LogoImport, APictureThatIsTooLargeIsRefusedWithoutTheProgram)
{
    const std::string picture(KestryCore::maximumPictureBytes + 1, 'x');
    EXPECT_EQ(refusalOf([&] { (void)importedLogo(picture, "/missing/program"); }),
        "Choose an image smaller than 20 MB.");
}

TEST_F(LogoImport, TheProgramIsEndedWhenTheImportIsStopped)
{
    source_.request_stop();
    EXPECT_EQ(refusalFrom("exec sleep 60"), KestryCore::unreadablePicture);
}

} // namespace
} // namespace Kestry
