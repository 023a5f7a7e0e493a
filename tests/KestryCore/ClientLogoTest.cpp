#include "ClientLogo.h"

#include <gtest/gtest.h>

#include "LogoImages.h"
#include "Refusal.h"

namespace KestryCore {
namespace {

using namespace LogoImages;

constexpr const char* refused =
    "Client logos must be valid PNG images up to 256 pixels and 256 KB.";

std::string verdict(const std::string& bytes)
{
    return refusalOf([&] { validateClientLogo(bytes); });
}

TEST(ClientLogo, SidesFrom1To256PixelsAreAccepted)
{
    EXPECT_EQ(verdict(png({.width = 1, .height = 1})), accepted);
    EXPECT_EQ(verdict(png({.width = 256, .height = 256})), accepted);
    EXPECT_EQ(verdict(png({.width = 1, .height = 256})), accepted);
}

TEST(ClientLogo, ASideOf257PixelsIsRefused)
{
    EXPECT_EQ(verdict(png({.width = 257, .height = 1})), refused);
    EXPECT_EQ(verdict(png({.width = 1, .height = 257})), refused);
}

TEST(ClientLogo, EveryKindOfPngPixelIsAccepted)
{
    for (const ImageForm& form : {ImageForm{.pixels = Pixels::grey, .bitDepth = 1},
             ImageForm{.pixels = Pixels::grey, .bitDepth = 16},
             ImageForm{.pixels = Pixels::greyWithAlpha}, ImageForm{.pixels = Pixels::palette},
             ImageForm{.pixels = Pixels::palette, .bitDepth = 1},
             ImageForm{.pixels = Pixels::colour},
             ImageForm{.pixels = Pixels::colourWithAlpha, .bitDepth = 16}}) {
        EXPECT_EQ(verdict(png(form)), accepted) << static_cast<int>(form.pixels);
    }
}

TEST(ClientLogo, AnInterlacedImageIsAccepted)
{
    EXPECT_EQ(verdict(png({.width = 9, .height = 9, .interlaced = true})), accepted);
}

TEST(ClientLogo, NoBytesAreRefused)
{
    EXPECT_EQ(verdict(""), refused);
}

TEST(ClientLogo, Exactly262144BytesAreAcceptedAndOneMoreIsRefused)
{
    EXPECT_EQ(verdict(paddedTo(png(), 262'144)), accepted);
    EXPECT_EQ(verdict(paddedTo(png(), 262'145)), refused);
}

TEST(ClientLogo, AnImageOfAnotherFormatIsRefused)
{
    EXPECT_EQ(verdict(jpeg()), refused);
    EXPECT_EQ(verdict("GIF89a" + std::string(64, '\0')), refused);
    EXPECT_EQ(verdict("<svg xmlns=\"http://www.w3.org/2000/svg\"/>"), refused);
}

TEST(ClientLogo, AFileCutOffAnywhereBeforeItsLastChunkEndsIsRefused)
{
    const std::string whole = png({.width = 16, .height = 16});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(verdict(whole.substr(0, length)), refused) << length;
    }
}

TEST(ClientLogo, DamagedPixelsOrHeaderAreRefused)
{
    const std::string whole = png({.width = 16, .height = 16});
    EXPECT_EQ(verdict(withDamagedChunk(whole, "IDAT")), refused);
    EXPECT_EQ(verdict(withDamagedChunk(whole, "IHDR")), refused);
}

TEST(ClientLogo, AnAnimationOfSeveralFramesIsRefused)
{
    EXPECT_EQ(verdict(withChunk(png(), "acTL", animationHeader(2))), refused);
    EXPECT_EQ(verdict(withChunk(png(), "acTL", animationHeader(0))), refused);
}

TEST(ClientLogo, AnAnimationOfOneFrameIsAccepted)
{
    EXPECT_EQ(verdict(withChunk(png(), "acTL", animationHeader(1))), accepted);
}

TEST(ClientLogo, AnAnimationHeaderTooShortForACountIsRefused)
{
    EXPECT_EQ(verdict(withChunk(png(), "acTL", "\x01")), refused);
}

TEST(ClientLogo, PackedTextAndProfilesBesideTheImageAreOfNoAccount)
{
    for (const char* type : {"zTXt", "iTXt", "iCCP"}) {
        EXPECT_EQ(verdict(withChunk(png(), type, "no text")), accepted) << type;
        EXPECT_EQ(verdict(withDamagedChunk(withChunk(png(), type, "no text"), type)), accepted);
    }
}

TEST(ClientLogo, NothingMayStandBeforeTheHeader)
{
    const std::string text = withChunk(png(), "zTXt", "no text");
    const std::string chunk = text.substr(33, 12 + 7);
    EXPECT_EQ(verdict(png().insert(8, chunk)), refused);
}

TEST(ClientLogo, AChunkThatClaimsToBeLongerThanTheFileIsRefused)
{
    std::string bytes = png();
    bytes[8] = '\xFF';
    EXPECT_EQ(verdict(bytes), refused);
}

} // namespace
} // namespace KestryCore
