#include "PictureFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "PosixFileSystem.h"
#include "Refusal.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

class PictureFile : public testing::Test {
protected:
    /// Makes the file so many zeros long.
    void writeZeros(std::uintmax_t bytes)
    {
        std::ofstream(path_, std::ios::binary).put('\0');
        std::filesystem::resize_file(path_, bytes);
    }

    std::string verdict()
    {
        return refusalOf([&] { content_ = readPictureFile(files_, path_); });
    }

    TemporaryDirectory directory_;
    std::string path_ = directory_.path("picture");
    PosixFileSystem files_;
    std::string content_;
};

TEST_F(PictureFile, TheWholeContentIsRead)
{
    std::ofstream(path_) << "any bytes";
    EXPECT_EQ(verdict(), accepted);
    EXPECT_EQ(content_, "any bytes");
}

TEST_F(PictureFile, Exactly20MebibytesAreAcceptedAndOneMoreByteIsRefused)
{
    writeZeros(20'971'520);
    EXPECT_EQ(verdict(), accepted);
    EXPECT_EQ(content_.size(), 20'971'520U);
    writeZeros(20'971'521);
    EXPECT_EQ(verdict(), "Choose an image smaller than 20 MB.");
}

TEST_F(PictureFile, AFileLargerThanTheMemoryIsNotReadToItsEnd)
{
    writeZeros(std::uintmax_t{1} << 40);
    EXPECT_EQ(verdict(), "Choose an image smaller than 20 MB.");
}

TEST_F(PictureFile, AFileThatIsMissingGivesTheSystemsReason)
{
    EXPECT_EQ(verdict(), "picture could not be read: No such file or directory.");
}

} // namespace
} // namespace KestryCore
