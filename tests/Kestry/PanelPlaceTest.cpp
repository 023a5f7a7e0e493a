#include "PanelPlace.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using Screen = PanelPlace::Screen;
using Side = PanelPlace::Side;

TEST(PanelPlaceTest, WhatWasStoredReadsBackAsTheSamePlace)
{
    for (const PanelPlace& place :
        {PanelPlace{}, PanelPlace{.screen = Screen::pointer, .side = Side::left},
            PanelPlace{.screen = Screen::named, .screenName = "DP-1", .side = Side::right},
            PanelPlace{.screen = Screen::named, .screenName = "primary"},
            PanelPlace{.screen = Screen::named, .screenName = "screen: é"}}) {
        EXPECT_EQ(panelPlaceFrom(screenText(place), sideText(place)), place) << screenText(place);
    }
}

TEST(PanelPlaceTest, WithoutAChoiceItIsTheCenterOfThePrimaryScreen)
{
    EXPECT_EQ(panelPlaceFrom(std::nullopt, std::nullopt), PanelPlace{});
}

TEST(PanelPlaceTest, AnUnknownTextIsNoChoice)
{
    for (const char* text : {"", "Primary", "screen:", "DP-1", "middle"}) {
        EXPECT_EQ(panelPlaceFrom(text, text), PanelPlace{}) << text;
    }
}

} // namespace
} // namespace Kestry
