#include "WindowKeys.h"

#include <gtest/gtest.h>

#include <QKeySequence>
#include <QSet>

namespace Kestry {
namespace {

WindowKeys::Command commandOf(const QVariant& each)
{
    return static_cast<WindowKeys::Command>(each.toMap()["command"].toInt());
}

TEST(WindowKeysTest, EachKeyIsOneThatTheToolkitKnowsAndHasOneCommand)
{
    QSet<QString> keys;
    for (const QVariant& each : WindowKeys::commands()) {
        const auto command = commandOf(each);
        for (const QString& key : WindowKeys::sequences(command)) {
            EXPECT_EQ(QKeySequence(key).toString(), key);
            EXPECT_FALSE(keys.contains(key)) << key.toStdString();
            keys << key;
        }
    }
    EXPECT_EQ(keys.size(), 11);
    EXPECT_FALSE(keys.contains("Ctrl+Return")); // the form's own
}

TEST(WindowKeysTest, TheSheetShowsTheKeysOfEachCommandOnce)
{
    QStringList shown;
    QStringList words;
    for (const QVariant& group : WindowKeys::groups()) {
        for (const QVariant& row : group.toMap()["rows"].toList()) {
            shown << row.toMap()["keys"].toString();
            words << row.toMap()["words"].toString();
        }
    }
    for (const QVariant& each : WindowKeys::commands()) {
        const auto command = commandOf(each);
        EXPECT_EQ(shown.count(WindowKeys::sequences(command).join(" or ")), 1);
    }
    EXPECT_EQ(words.removeDuplicates(), 0); // no two rows of one thing
}

TEST(WindowKeysTest, TheListOfKeysHasTwoKeys)
{
    EXPECT_EQ(WindowKeys::sequences(WindowKeys::ShowKeys), QStringList({"F1", "Ctrl+?"}));
    EXPECT_EQ(WindowKeys::keyText(WindowKeys::ShowKeys), "F1");
}

TEST(WindowKeysTest, WhatChangesWhatASheetIsAboutWaitsForIt)
{
    QStringList always;
    for (const QVariant& each : WindowKeys::commands()) {
        if (each.toMap()["isAlways"].toBool()) {
            always << WindowKeys::sequences(commandOf(each));
        }
    }
    EXPECT_EQ(always, QStringList({"Ctrl+T", "Ctrl+Shift+S", "Ctrl+Alt+N", "Ctrl+W", "Ctrl+Q"}));
}

} // namespace
} // namespace Kestry
