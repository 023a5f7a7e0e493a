#include "PictureFormat.h"

#include <gtest/gtest.h>

#include "PictureFiles.h"

namespace Kestry {
namespace {

using enum PictureFormat;
using namespace PictureFiles;

std::string picture(const char* format)
{
    return file(format, {4, 4}, quarters({4, 4}));
}

/// A box of a HEIF file.
std::string box(std::string_view type, const std::string& content)
{
    const auto length = static_cast<char>(content.size() + 8);
    return std::string("\0\0\0", 3) + length + std::string(type) + content;
}

/// The box that declares a size of 30,000 by 20,000 or 1 by 1 pixels.
std::string sizeBox(bool isLarge)
{
    using namespace std::string_literals;
    return box("ispe", isLarge ? "\0\0\0\0\0\0\x75\x30\0\0\x4E\x20"s : "\0\0\0\0\0\0\0\1\0\0\0\1"s);
}

std::string heifFile(const std::string& sizes)
{
    return box("ftyp", "heicmif1")
        + box("meta", std::string(4, '\0') + box("iprp", box("ipco", sizes)));
}

/// A WebP file that begins with such a chunk.
std::string webpFile(std::string_view type, const std::string& content)
{
    return "RIFF    WEBP" + std::string(type) + "    " + content;
}

TEST(PictureFormat, TheFirstBytesNameTheFormat)
{
    EXPECT_EQ(pictureFormat(picture("png")), png);
    EXPECT_EQ(pictureFormat(picture("jpeg")), jpeg);
    EXPECT_EQ(pictureFormat(picture("webp")), webp);
    EXPECT_EQ(pictureFormat(PictureFiles::gif({1, 1}, "R")), PictureFormat::gif);
    EXPECT_EQ(pictureFormat(heifFile("")), heif);
}

TEST(PictureFormat, OtherFormatsAreNotAskedFor)
{
    for (const char* bytes : {"", "<svg/>", "BM6     ", "II*", "/* XPM */", "RIFF    WAVEfmt "}) {
        EXPECT_EQ(pictureFormat(bytes), std::nullopt) << bytes;
    }
}

TEST(PictureFormat, WhatFollowsTheEndOfAPictureIsIgnored)
{
    EXPECT_TRUE(reachesItsEnd(picture("png") + "more", png));
    EXPECT_TRUE(reachesItsEnd(picture("jpeg") + "more", jpeg));
    EXPECT_TRUE(reachesItsEnd(picture("webp") + "more", webp));
}

TEST(PictureFormat, APictureThatIsCutOffDoesNotReachItsEnd)
{
    for (const auto& [name, format] :
        {std::pair("png", png), std::pair("jpeg", jpeg), std::pair("webp", webp)}) {
        const std::string whole = picture(name);
        for (std::size_t length = 12; length < whole.size(); ++length) {
            EXPECT_FALSE(reachesItsEnd(whole.substr(0, length), format)) << name << length;
        }
    }
}

TEST(PictureFormat, TheEndOfAPreviewInsideAJpegIsNotItsOwn)
{
    const std::string preview = std::string("\xFF\xE1\0\x06\xFF\xD8\xFF\xD9", 8);
    const std::string whole = picture("jpeg");
    EXPECT_FALSE(
        reachesItsEnd(whole.substr(0, 2) + preview + whole.substr(2, whole.size() - 4), jpeg));
}

TEST(PictureFormat, AWebpFileDeclaresItsPixelsInOneOfThreeWays)
{
    using namespace std::string_literals;
    const std::string extended = "\0\0\0\0\xFF\x3F\0\xFF\x1F\0"s;
    EXPECT_EQ(declaredPixels(webpFile("VP8X", extended), webp), 16'384U * 8'192U);
    const std::string lossless = "\x2F\xFE\xBF\xFF\x0F"s;
    EXPECT_EQ(declaredPixels(webpFile("VP8L", lossless), webp), 16'383U * 16'383U);
    const std::string lossy = "\0\0\0\x9D\x01\x2A\x10\x27\x11\x27"s;
    EXPECT_EQ(declaredPixels(webpFile("VP8 ", lossy), webp), 10'000U * 10'001U);
}

TEST(PictureFormat, OfAHeifFileTheLargestDeclaredSizeCounts)
{
    EXPECT_EQ(declaredPixels(heifFile(sizeBox(false) + sizeBox(true)), heif), 600'000'000U);
    EXPECT_EQ(declaredPixels(heifFile(sizeBox(false)), heif), 1U);
}

TEST(PictureFormat, AFileThatDeclaresNoSizeHasNone)
{
    EXPECT_EQ(declaredPixels(heifFile(""), heif), 0U);
    EXPECT_EQ(declaredPixels(webpFile("ICCP", ""), webp), 0U);
    EXPECT_EQ(declaredPixels(picture("png"), png), 0U);
}

TEST(PictureFormat, OfAnAnimatedGifOnlyTheFirstImageIsUnpacked)
{
    using namespace std::string_literals;
    const std::string first = PictureFiles::gif({40, 20}, "B");
    EXPECT_EQ(gifOfFirstImage(first), first);
    EXPECT_EQ(gifOfFirstImage(PictureFiles::gif({40, 20}, "BRG")), first);
    const std::string comment = "!\xFE\x02;,\0"s;
    const std::size_t begin = first.find(',');
    EXPECT_EQ(gifOfFirstImage(first.substr(0, begin) + comment + first.substr(begin) + "more"),
        first.substr(0, begin) + comment + first.substr(begin));
}

TEST(PictureFormat, AGifThatIsCutOffBehindItsFirstImageDoesNotReachItsEnd)
{
    const std::string whole = PictureFiles::gif({40, 20}, "BRG");
    EXPECT_TRUE(reachesItsEnd(whole, PictureFormat::gif));
    EXPECT_TRUE(reachesItsEnd(whole + "more", PictureFormat::gif));
    for (std::size_t length = 6; length < whole.size(); ++length) {
        EXPECT_FALSE(reachesItsEnd(whole.substr(0, length), PictureFormat::gif)) << length;
    }
}

} // namespace
} // namespace Kestry
