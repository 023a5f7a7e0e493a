#include "SettingsDefaults.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <string>
#include <vector>

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
    [[nodiscard]] QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

class UnstoredSettingsTest : public SettingsDefaultsTest {
protected:
    UnstoredSettingsTest()
    {
        defaults.setFailureAction([this](const std::string& words) { told.push_back(words); });
    }
    void block() const { QDir().mkpath(path() + "/not a file"); }
    void unblock() const { QDir(path()).removeRecursively(); }

    SettingsDefaults defaults{path()};
    std::vector<std::string> told;
};

TEST_F(UnstoredSettingsTest, WhatCannotBeStoredIsToldOnceAndLastsUntilTheEnd)
{
    block();
    defaults.setString("appearanceMode", "light");
    defaults.setBoolean("notchEnabled", false);
    EXPECT_EQ(told,
        std::vector<std::string>{"Your settings could not be stored in " + path().toStdString()
            + ". Changes to them last until you quit Kestry."});
    EXPECT_EQ(defaults.string("appearanceMode"), "light");
}

TEST_F(UnstoredSettingsTest, WhatCanBeStoredAgainIsStoredAndTheNextFailureIsTold)
{
    block();
    defaults.setString("appearanceMode", "light");
    unblock();
    defaults.setBoolean("notchEnabled", false);
    EXPECT_EQ(told.size(), 1U);
    EXPECT_TRUE(content().contains("appearanceMode=light"));
    EXPECT_TRUE(content().contains("notchEnabled=false"));
    QFile::remove(path());
    block();
    defaults.setBoolean("notchEnabled", true);
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(UnstoredSettingsTest, ADamagedFileIsNoFailure)
{
    write("[General\nnotchEnabled=false\n");
    defaults.setString("appearanceMode", "light");
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(content().contains("appearanceMode=light"));
}

} // namespace
} // namespace Kestry
