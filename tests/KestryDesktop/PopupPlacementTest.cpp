#include "PopupPlacement.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

constexpr QRect screen(0, 0, 1280, 800);
constexpr QRect button(490, 50, 200, 28);

TEST(PopupPlacement, AMenuHangsBelowItsItemAtItsLeftEdge)
{
    EXPECT_EQ(menuFrame(button, {160, 100}, screen, MenuSide::left), QRect(490, 80, 160, 100));
}

TEST(PopupPlacement, AMenuCanEndAtTheRightEdgeOfItsItem)
{
    EXPECT_EQ(menuFrame(button, {160, 100}, screen, MenuSide::right), QRect(530, 80, 160, 100));
}

TEST(PopupPlacement, AMenuWithoutRoomBelowStandsAboveItsItem)
{
    const QRect low(490, 750, 200, 28);
    EXPECT_EQ(menuFrame(low, {160, 100}, screen, MenuSide::left), QRect(490, 648, 160, 100));
}

TEST(PopupPlacement, AMenuStaysWithinTheScreen)
{
    const QRect atRight(1200, 50, 60, 28);
    EXPECT_EQ(menuFrame(atRight, {160, 100}, screen, MenuSide::left).right(), screen.right());
    const QRect atLeft(0, 50, 60, 28);
    EXPECT_EQ(menuFrame(atLeft, {160, 100}, screen, MenuSide::right).left(), 0);
}

TEST(PopupPlacement, AMenuHigherThanTheScreenIsAsHighAsTheScreen)
{
    EXPECT_EQ(menuFrame(button, {160, 2000}, screen, MenuSide::left), QRect(490, 0, 160, 800));
}

TEST(PopupPlacement, AMenuOnASecondScreenStaysThere)
{
    const QRect second(1280, 0, 1280, 800);
    const QRect item(1280, 50, 60, 28);
    EXPECT_EQ(menuFrame(item, {160, 100}, second, MenuSide::right).left(), 1280);
}

TEST(PopupPlacement, ATipHangsBelowThePointerAndAboveItAtTheLowerEdge)
{
    EXPECT_EQ(tipFrameAtPointer({100, 100}, {80, 24}, screen), QRect(100, 120, 80, 24));
    const QRect low = tipFrameAtPointer({100, 790}, {80, 24}, screen);
    EXPECT_LT(low.bottom(), 790);
}

TEST(PopupPlacement, ATipStaysWithinTheScreen)
{
    EXPECT_EQ(tipFrameAtPointer({1270, 100}, {80, 24}, screen).right(), screen.right());
}

TEST(PopupPlacement, ATipBesideAnItemIsAtItsRightAndInTheMiddle)
{
    EXPECT_EQ(tipFrameBeside(button, {80, 24}, screen), QRect(696, 52, 80, 24));
    const QRect atRight(1200, 50, 70, 28);
    EXPECT_LT(tipFrameBeside(atRight, {80, 24}, screen).right(), atRight.left());
}

} // namespace
} // namespace Kestry
