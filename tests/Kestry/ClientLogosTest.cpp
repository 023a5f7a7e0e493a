#include "ClientLogos.h"

#include <gtest/gtest.h>

#include <QBuffer>

namespace Kestry {
namespace {

using KestryCore::Client;
using KestryCore::Uuid;

std::string picture(int width, int height, QColor color)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

class ClientLogosTest : public ::testing::Test {
protected:
    ClientLogosTest()
    {
        aster.id = Uuid::random();
        aster.name = "Aster";
        aster.logoData = picture(64, 32, Qt::red);
    }

    [[nodiscard]] QImage logo(const ClientLogos::Clients& clients)
    {
        return logos.logo(clients, aster.id);
    }

    Client aster;
    ClientLogos logos;
};

TEST_F(ClientLogosTest, ALogoIsDecodedOnce)
{
    const ClientLogos::Clients clients{aster};
    EXPECT_EQ(QSize(64, 32), logo(clients).size());
    EXPECT_EQ(logo(clients).cacheKey(), logo(clients).cacheKey());
}

TEST_F(ClientLogosTest, AnotherChangeOfTheClientLeavesTheDecodedLogo)
{
    const QImage before = logo({aster});
    aster.name = "Alder";
    EXPECT_EQ(before.cacheKey(), logo({aster}).cacheKey());
}

TEST_F(ClientLogosTest, AChangedLogoIsDecodedAgain)
{
    EXPECT_EQ(QColor(Qt::red), logo({aster}).pixelColor(0, 0));
    aster.logoData = picture(64, 32, Qt::blue);
    EXPECT_EQ(QColor(Qt::blue), logo({aster}).pixelColor(0, 0));
    aster.logoData.reset();
    EXPECT_TRUE(logo({aster}).isNull());
}

TEST_F(ClientLogosTest, AClientThatIsGoneHasNone)
{
    EXPECT_FALSE(logo({aster}).isNull());
    EXPECT_TRUE(logo({}).isNull());
}

TEST_F(ClientLogosTest, BytesThatAreNoImageGiveNone)
{
    aster.logoData = "not a picture";
    EXPECT_TRUE(logo({aster}).isNull());
}

TEST_F(ClientLogosTest, ALargeLogoIsKeptAsLargeAsViewsNeedIt)
{
    aster.logoData = picture(256, 64, Qt::red);
    EXPECT_EQ(QSize(128, 32), logo({aster}).size());
}

} // namespace
} // namespace Kestry
