#include "AvatarShape.h"

#include <gtest/gtest.h>

#include <QPainter>

namespace Kestry {
namespace {

class AvatarShapeTest : public ::testing::Test {
protected:
    AvatarShapeTest() { avatar.setSize({40, 40}); }

    /// The avatar as it is drawn on a screen of twice the density.
    [[nodiscard]] QImage drawn()
    {
        QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(2, 2);
        avatar.paint(&painter);
        return image;
    }
    [[nodiscard]] QString initialOf(const QString& name)
    {
        avatar.setProperty("name", name);
        return avatar.initial();
    }
    /// Red at the left and blue at the right, with a thin edge of white at both ends.
    [[nodiscard]] static QImage wideLogo()
    {
        QImage image(128, 64, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.fillRect(8, 0, 56, 64, Qt::red);
        painter.fillRect(64, 0, 56, 64, Qt::blue);
        return image;
    }

    AvatarShape avatar;
};

TEST_F(AvatarShapeTest, TheInitialIsTheFirstCharacterInUpperCase)
{
    EXPECT_EQ("A", initialOf("aster"));
    EXPECT_EQ("É", initialOf(" élan"));
    EXPECT_EQ("👩‍🎨", initialOf("👩‍🎨 studio"));
    EXPECT_EQ("م", initialOf("مراجعة"));
    EXPECT_EQ("", initialOf(" "));
}

TEST_F(AvatarShapeTest, ALogoFillsTheSquareAndIsCutAtItsLongerSides)
{
    avatar.setProperty("logo", wideLogo());
    EXPECT_TRUE(avatar.hasLogo());
    const QImage image = drawn();
    EXPECT_EQ(QColor(Qt::red), image.pixelColor(1, 40));
    EXPECT_EQ(QColor(Qt::red), image.pixelColor(20, 78));
    EXPECT_EQ(QColor(Qt::blue), image.pixelColor(78, 40));
}

TEST_F(AvatarShapeTest, WithoutALogoTheSquareHasTheColour)
{
    avatar.setProperty("color", QColor(Qt::green));
    EXPECT_FALSE(avatar.hasLogo());
    EXPECT_EQ(QColor(Qt::green), drawn().pixelColor(40, 40));
}

TEST_F(AvatarShapeTest, TheCornersAreFree)
{
    avatar.setProperty("logo", wideLogo());
    const QImage image = drawn();
    for (const QPoint corner : {QPoint(1, 1), QPoint(78, 1), QPoint(1, 78), QPoint(78, 78)}) {
        EXPECT_EQ(0, image.pixelColor(corner).alpha());
    }
}

TEST_F(AvatarShapeTest, AVerySmallLogoIsDrawnAsWell)
{
    QImage dot(1, 200, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::red);
    avatar.setProperty("logo", dot);
    EXPECT_EQ(QColor(Qt::red), drawn().pixelColor(40, 40));
}

} // namespace
} // namespace Kestry
