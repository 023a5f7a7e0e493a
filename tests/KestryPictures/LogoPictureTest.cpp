#include "LogoPicture.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <thread>

#include "ClientLogo.h"
#include "LogoImages.h"
#include "PictureFile.h"
#include "PictureFiles.h"
#include "Refusal.h"

namespace Kestry {
namespace {

using namespace PictureFiles;
using KestryCore::refusalOf;

constexpr const char* tooLarge = "This image is too large to use as a logo.";

std::string verdict(const std::string& bytes)
{
    return refusalOf([&] { (void)logoFromPicture(bytes); });
}

Pixels logoOf(const std::string& bytes)
{
    return pixels(logoFromPicture(bytes));
}

std::string quartersIn(const char* format, Size size = {40, 20})
{
    return file(format, size, quarters(size));
}

/// A picture file of this folder.
std::string storedFile(const std::string& name)
{
    std::ifstream stream(std::string(KESTRY_PICTURES) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Size sizeOfLogo(Size size)
{
    return logoOf(quartersIn("png", size)).size;
}

TEST(LogoPicture, ALogoHasPassedTheRuleForStoredOnes)
{
    const std::string logo = logoFromPicture(quartersIn("png", {800, 600}));
    EXPECT_EQ(refusalOf([&] { KestryCore::validateClientLogo(logo); }), KestryCore::accepted);
}

TEST(LogoPicture, EveryFormatIsReadInItsColours)
{
    for (const char* format : {"png", "jpeg", "webp"}) {
        const Pixels logo = logoOf(quartersIn(format));
        EXPECT_EQ(logo.size, (Size{40, 20})) << format;
        EXPECT_EQ(logo.quarters(), "RGBW") << format;
    }
}

TEST(LogoPicture, PhotographsOfPhonesAreRead)
{
    const Pixels logo = logoOf(storedFile("quarters.heic"));
    EXPECT_EQ(logo.size, (Size{64, 32}));
    EXPECT_EQ(logo.quarters(), "RGBW");
}

TEST(LogoPicture, AJpegIsTurnedUprightFromEachOfTheEightOrientations)
{
    const std::string stored = quartersIn("jpeg");
    const std::vector<std::string> upright = {
        "RGBW", "GRWB", "WBGR", "BWRG", "RBGW", "BRWG", "WGBR", "GWRB"};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const bool isLittleEndian : {false, true}) {
            const Pixels logo = logoOf(withOrientation(stored, orientation, isLittleEndian));
            EXPECT_EQ(logo.quarters(), upright[static_cast<std::size_t>(orientation - 1)])
                << orientation;
            EXPECT_EQ(logo.size, orientation < 5 ? (Size{40, 20}) : (Size{20, 40})) << orientation;
        }
    }
}

TEST(LogoPicture, APictureThatHasToShrinkIsTurnedUprightToo)
{
    const std::string stored = quartersIn("jpeg", {1024, 512});
    const Pixels logo = logoOf(withOrientation(stored, 6));
    EXPECT_EQ(logo.size, (Size{128, 256}));
    EXPECT_EQ(logo.quarters(), "BRWG");
}

TEST(LogoPicture, TheLongestSideIsAtMost256PixelsAndTheShapeStays)
{
    EXPECT_EQ(sizeOfLogo({256, 256}), (Size{256, 256}));
    EXPECT_EQ(sizeOfLogo({257, 257}), (Size{256, 256}));
    EXPECT_EQ(sizeOfLogo({1000, 500}), (Size{256, 128}));
    EXPECT_EQ(sizeOfLogo({500, 1000}), (Size{128, 256}));
}

TEST(LogoPicture, AThinPictureKeepsAPixelOfEachSide)
{
    EXPECT_EQ(sizeOfLogo({5000, 1}), (Size{256, 1}));
    EXPECT_EQ(sizeOfLogo({1, 5000}), (Size{1, 256}));
}

TEST(LogoPicture, ASmallPictureIsNotMadeLarger)
{
    EXPECT_EQ(sizeOfLogo({1, 1}), (Size{1, 1}));
    EXPECT_EQ(sizeOfLogo({17, 255}), (Size{17, 255}));
}

TEST(LogoPicture, APictureWhoseFileIsTooLargeAt256PixelsComesOutAt128)
{
    EXPECT_EQ(logoOf(file("png", {256, 256}, noise())).size, (Size{128, 128}));
    EXPECT_EQ(logoOf(file("png", {256, 200}, noise())).size, (Size{256, 200}));
}

TEST(LogoPicture, OfAnAnimationTheFirstImageIsUsed)
{
    const std::string logo = logoFromPicture(gif({30, 20}, "BRG"));
    EXPECT_EQ(pixels(logo).size, (Size{30, 20}));
    EXPECT_EQ(pixels(logo).quarters(), "BBBB");
    EXPECT_EQ(refusalOf([&] { KestryCore::validateClientLogo(logo); }), KestryCore::accepted);
}

TEST(LogoPicture, AFirstImageThatCoversAPartOfTheCanvasIsRead)
{
    const Pixels logo = logoOf(gif({40, 20}, "R", Size{40, 10}));
    EXPECT_EQ(logo.size, (Size{40, 20}));
    EXPECT_EQ(letter(logo.at(20, 5)), 'R');
    EXPECT_EQ(logo.at(20, 15).alpha, 0);
}

TEST(LogoPicture, OfAnAnimatedWebpTheFirstImageIsUsed)
{
    const Pixels logo = logoOf(animatedWebp({40, 20}, {red, green}));
    EXPECT_EQ(logo.size, (Size{40, 20}));
    EXPECT_EQ(logo.quarters(), "RRRR");
}

TEST(LogoPicture, ALogoTellsNothingElseAboutThePicture)
{
    using KestryCore::LogoImages::withChunk;
    const std::string named = withChunk(quartersIn("png"), "tEXt", std::string("Author\0Me", 9));
    const std::vector<std::string> pixelsAlone = {"IHDR", "sBIT", "IDAT", "IEND"};
    EXPECT_EQ(chunkTypes(logoFromPicture(named)), pixelsAlone);
    EXPECT_EQ(chunkTypes(logoFromPicture(withOrientation(quartersIn("jpeg"), 3))), pixelsAlone);
}

TEST(LogoPicture, TheSamePictureAlwaysGivesTheSameBytes)
{
    const std::string logo = logoFromPicture(quartersIn("png", {300, 300}));
    EXPECT_EQ(logoFromPicture(quartersIn("png", {300, 300})), logo);
}

TEST(LogoPicture, FineStripesBecomeTheirMeanColourAndNoPattern)
{
    const Painter stripes = [](int x, int) { return x % 2 == 0 ? white : Colour{0, 0, 0}; };
    const Pixels logo = logoOf(file("png", {1024, 64}, stripes));
    for (int x = 0; x < logo.size.width; ++x) {
        EXPECT_NEAR(logo.at(x, 8).green, 128, 2) << x;
    }
}

TEST(LogoPicture, PlainColoursStayExactlyWhatTheyAre)
{
    const Painter plain = [](int, int) { return Colour{183, 165, 255}; };
    const Pixels logo = logoOf(file("png", {777, 333}, plain));
    for (int x = 0; x < logo.size.width; ++x) {
        EXPECT_EQ(logo.at(x, 50), (Colour{183, 165, 255})) << x;
    }
}

TEST(LogoPicture, WhatIsTransparentStaysSoAndDoesNotTaintItsNeighbours)
{
    const Painter disc = [](int x, int) { return x % 4 < 2 ? red : Colour{0, 255, 0, 0}; };
    const Pixels logo = logoOf(file("png", {1024, 16}, disc));
    const Colour mixed = logo.at(100, 2);
    EXPECT_NEAR(mixed.alpha, 128, 2);
    EXPECT_NEAR(mixed.red, 255, 1);
    EXPECT_NEAR(mixed.green, 0, 1);
}

TEST(LogoPicture, EveryKindOfPngPixelIsRead)
{
    using namespace KestryCore::LogoImages;
    for (const ImageForm& form :
        {ImageForm{.pixels = KestryCore::LogoImages::Pixels::grey, .bitDepth = 1},
            ImageForm{.pixels = KestryCore::LogoImages::Pixels::grey, .bitDepth = 16},
            ImageForm{.pixels = KestryCore::LogoImages::Pixels::greyWithAlpha},
            ImageForm{.pixels = KestryCore::LogoImages::Pixels::palette, .bitDepth = 1},
            ImageForm{.pixels = KestryCore::LogoImages::Pixels::colourWithAlpha, .bitDepth = 16},
            ImageForm{.width = 9, .height = 9, .interlaced = true}}) {
        EXPECT_EQ(verdict(png(form)), KestryCore::accepted) << static_cast<int>(form.pixels);
    }
}

TEST(LogoPicture, AFileOfExactly20MebibytesIsAcceptedAndOneMoreByteIsRefused)
{
    using KestryCore::LogoImages::paddedTo;
    const std::string small = quartersIn("png");
    EXPECT_EQ(verdict(paddedTo(small, 20'971'520)), KestryCore::accepted);
    EXPECT_EQ(verdict(paddedTo(small, 20'971'521)), "Choose an image smaller than 20 MB.");
}

TEST(LogoPicture, AFileThatIsNoPictureIsRefusedInWords)
{
    for (const char* text : {"", "no image", "<svg xmlns='http://www.w3.org/2000/svg'/>", "BM",
             "%PDF-1.7", "/* XPM */", "RIFF    WAVE"}) {
        EXPECT_EQ(verdict(text), KestryCore::unreadablePicture) << text;
    }
}

TEST(LogoPicture, ADrawingThatCouldFetchFilesIsNotRead)
{
    EXPECT_EQ(verdict("<?xml version=\"1.0\"?><svg xmlns=\"http://www.w3.org/2000/svg\" "
                      "width=\"9\" height=\"9\"><rect width=\"9\" height=\"9\"/></svg>"),
        KestryCore::unreadablePicture);
}

TEST(LogoPicture, AFileCutOffAnywhereIsRefused)
{
    const std::vector<std::string> files = {quartersIn("png"), quartersIn("jpeg"),
        quartersIn("webp"), gif({4, 4}, "R"), storedFile("quarters.heic")};
    for (const std::string& whole : files) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            EXPECT_EQ(verdict(whole.substr(0, length)), KestryCore::unreadablePicture)
                << whole.substr(0, 12) << length;
        }
    }
}

TEST(LogoPicture, DamagedPixelsAreRefused)
{
    EXPECT_EQ(verdict(KestryCore::LogoImages::withDamagedChunk(quartersIn("png"), "IDAT")),
        KestryCore::unreadablePicture);
}

TEST(LogoPicture, APictureOfMoreThan100MegapixelsIsRefused)
{
    EXPECT_EQ(verdict(pngOfHeaderAlone(100'000, 100'000)), tooLarge);
    EXPECT_EQ(verdict(pngOfHeaderAlone(100'001, 1'000)), tooLarge);
}

TEST(LogoPicture, APhotographThatDeclaresMoreThan100MegapixelsIsRefused)
{
    std::string photograph = storedFile("quarters.heic");
    for (std::size_t at = 0; (at = photograph.find("ispe", at)) != std::string::npos; ++at) {
        photograph.replace(at + 8, 8, std::string("\0\0\x75\x30\0\0\x4E\x20", 8));
    }
    EXPECT_EQ(verdict(photograph), tooLarge);
}

TEST(LogoPicture, RowsThatAreMissingAreNotFilledUp)
{
    EXPECT_EQ(verdict(pngOfHeaderAlone(1, 100)), KestryCore::unreadablePicture);
}

TEST(LogoPicture, SeveralPicturesCanBeReadAtATime)
{
    std::vector<std::string> found(4);
    {
        std::vector<std::jthread> threads;
        for (std::string& each : found) {
            threads.emplace_back([&each] {
                for (const char* format : {"png", "jpeg", "webp"}) {
                    each += logoOf(quartersIn(format, {600, 400})).quarters();
                }
            });
        }
    }
    EXPECT_EQ(found, std::vector<std::string>(4, "RGBWRGBWRGBW"));
}

TEST(LogoPicture, OfAnAnimatedPngTheImageForThoseWithoutAnimationsIsUsed)
{
    EXPECT_EQ(logoOf(animatedPng({40, 20}, quarters({40, 20}))).quarters(), "RGBW");
}

TEST(LogoPicture, WhatIsTransparentInAPaletteStaysSo)
{
    const Pixels logo = logoOf(palettePng({red, Colour{0, 255, 0, 64}, Colour{0, 0, 255, 0}}));
    EXPECT_EQ(logo.size, (Size{3, 1}));
    EXPECT_EQ(logo.at(0, 0), red);
    EXPECT_EQ(logo.at(1, 0), (Colour{0, 255, 0, 64}));
    EXPECT_EQ(logo.at(2, 0).alpha, 0);
}

} // namespace
} // namespace Kestry
