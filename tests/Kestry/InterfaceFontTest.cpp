#include "InterfaceFont.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

namespace Kestry {
namespace {

class InterfaceFontTest : public ::testing::Test {
protected:
    ~InterfaceFontTest() override { QGuiApplication::setFont(before); }

    /// A text in a window, with some of its font given.
    QQuickItem& show(const QByteArray& given)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nText { " + given + " }", {});
        auto* item = qobject_cast<QQuickItem*>(component.create());
        item->setParent(&view);
        item->setParentItem(view.contentItem());
        return *item;
    }
    [[nodiscard]] static QFont fontOf(const QQuickItem& item)
    {
        return item.property("font").value<QFont>();
    }

    QFont before = QGuiApplication::font();
    DesktopPreferences preferences;
    QQmlEngine engine;
    QQuickView view{&engine, nullptr};
    InterfaceFont font{preferences};
};

TEST_F(InterfaceFontTest, WithoutOneOfTheDesktopItIsInter)
{
    EXPECT_EQ("Inter", QGuiApplication::font().families().front());
}

TEST_F(InterfaceFontTest, TheOneOfTheDesktopComesFirst)
{
    preferences.setFontFamily("Cantarell");
    EXPECT_EQ("Cantarell", QGuiApplication::font().families().at(0));
    EXPECT_EQ("Inter", QGuiApplication::font().families().at(1));
    preferences.setFontFamily("");
    EXPECT_EQ("Inter", QGuiApplication::font().families().front());
}

TEST_F(InterfaceFontTest, WhatIsShownAlreadyFollows)
{
    const QQuickItem& text = show("font.pixelSize: 17; font.weight: Font.Medium");
    preferences.setFontFamily("Cantarell");
    EXPECT_EQ("Cantarell", fontOf(text).families().front());
    EXPECT_EQ(17, fontOf(text).pixelSize());
    EXPECT_EQ(QFont::Medium, fontOf(text).weight());
}

TEST_F(InterfaceFontTest, ABoundSizeIsStillFollowed)
{
    QQuickItem& text = show("property int size: 12; font.pixelSize: size");
    preferences.setFontFamily("Cantarell");
    text.setProperty("size", 18);
    EXPECT_EQ(18, fontOf(text).pixelSize());
    EXPECT_EQ("Cantarell", fontOf(text).families().front());
}

TEST_F(InterfaceFontTest, ATextWithAFamilyOfItsOwnKeepsIt)
{
    const QQuickItem& text = show("font.family: 'monospace'");
    preferences.setFontFamily("Cantarell");
    EXPECT_EQ("monospace", fontOf(text).family());
}

} // namespace
} // namespace Kestry
