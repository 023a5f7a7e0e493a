#include "SettingsDefaults.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace Kestry {
namespace {

class SettingsDefaultsTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return directory_.filePath("Kestry.ini"); }
    void write(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

private:
    QTemporaryDir directory_;
};

TEST_F(SettingsDefaultsTest, AnAbsentKeyIsNotAFalseOne)
{
    write("[General]\nmenuBarEnabled=false\n");
    const SettingsDefaults defaults(path());
    EXPECT_EQ(defaults.boolean("notchEnabled"), std::nullopt);
    EXPECT_EQ(defaults.boolean("menuBarEnabled"), false);
}

TEST_F(SettingsDefaultsTest, WhatIsNoBooleanCountsAsAbsent)
{
    write("[General]\nnotchEnabled=perhaps\nmenuBarEnabled=1\n");
    const SettingsDefaults defaults(path());
    EXPECT_EQ(defaults.boolean("notchEnabled"), std::nullopt);
    EXPECT_EQ(defaults.boolean("menuBarEnabled"), std::nullopt);
}

TEST_F(SettingsDefaultsTest, AValueIsStoredAtOnce)
{
    SettingsDefaults defaults(path());
    defaults.setBoolean("notchEnabled", false);
    EXPECT_EQ(SettingsDefaults(path()).boolean("notchEnabled"), false);
}

TEST_F(SettingsDefaultsTest, ATextIsStoredAtOnceAndAnAbsentOneIsNone)
{
    SettingsDefaults defaults(path());
    EXPECT_EQ(defaults.string("accentColorHex"), std::nullopt);
    defaults.setString("accentColorHex", "000080");
    EXPECT_EQ(SettingsDefaults(path()).string("accentColorHex"), "000080");
}

} // namespace
} // namespace Kestry
