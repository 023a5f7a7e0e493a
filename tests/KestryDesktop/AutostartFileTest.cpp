#include "AutostartFile.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "LedgerError.h"

namespace Kestry {
namespace {

constexpr auto ourName = "org.kestry.Kestry.desktop";
constexpr auto copiedName = "org.kestry.Kestry.autostart.desktop";

class AutostartFileTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = ourName) const
    {
        return configuration.filePath("autostart/" + name);
    }
    void write(const QByteArray& contents, const QString& name = ourName) const
    {
        QDir(configuration.path()).mkpath("autostart");
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    [[nodiscard]] QByteArray read(const QString& name = ourName) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir configuration;
    AutostartFile autostart{configuration.path(), "/opt/kestry/bin/kestry"};
};

TEST_F(AutostartFileTest, WithoutAFileTheProgramDoesNotStart)
{
    EXPECT_FALSE(autostart.isOn());
    autostart.set(false);
    EXPECT_FALSE(QDir(configuration.filePath("autostart")).exists());
}

TEST_F(AutostartFileTest, SwitchedOnThereIsAFileThatStartsThisProgram)
{
    autostart.set(true);
    EXPECT_TRUE(autostart.isOn());
    EXPECT_TRUE(read().startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(read().contains("\nExec=\"/opt/kestry/bin/kestry\"\n"));
}

TEST_F(AutostartFileTest, SwitchedOffAFileAsWeWriteItIsGone)
{
    autostart.set(true);
    autostart.set(false);
    EXPECT_FALSE(autostart.isOn());
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(AutostartFileTest, AFileThatSomebodyEditedStaysButForItsKey)
{
    const QByteArray edited = "[Desktop Entry]\nType=Application\nExec=kestry --demo\n\n"
                              "[Desktop Action x]\nHidden=false\n";
    write(edited);
    EXPECT_TRUE(autostart.isOn());
    autostart.set(false);
    EXPECT_FALSE(autostart.isOn());
    EXPECT_EQ(read(),
        "[Desktop Entry]\nType=Application\nExec=kestry --demo\nHidden=true\n\n"
        "[Desktop Action x]\nHidden=false\n");
    autostart.set(true);
    EXPECT_TRUE(autostart.isOn());
    EXPECT_TRUE(read().contains("Exec=kestry --demo\nHidden=false\n"));
}

TEST_F(AutostartFileTest, AFileThatTheDesktopSwitchedOffIsOff)
{
    for (const char* line : {"Hidden=true", "Hidden = true", "X-GNOME-Autostart-enabled=false"}) {
        write(QByteArray("[Desktop Entry]\nExec=kestry\n") + line + "\n");
        EXPECT_FALSE(autostart.isOn()) << line;
        autostart.set(true);
        EXPECT_TRUE(autostart.isOn()) << line;
        EXPECT_TRUE(read().contains("Exec=kestry\n")) << line;
    }
}

TEST_F(AutostartFileTest, AFileThatIsNoDesktopEntryIsOffAndWrittenAnew)
{
    for (const char* contents : {"", "garbage\n[Other]\nHidden=false\n"}) {
        write(contents);
        EXPECT_FALSE(autostart.isOn()) << contents;
        autostart.set(false);
        EXPECT_EQ(read(), contents);
        autostart.set(true);
        EXPECT_TRUE(autostart.isOn()) << contents;
        EXPECT_TRUE(read().startsWith("[Desktop Entry]\n"));
        autostart.set(false);
        EXPECT_FALSE(autostart.isOn()) << contents;
        EXPECT_FALSE(QFile::exists(path()));
    }
}

TEST_F(AutostartFileTest, AKeyInACommentOrAnotherGroupSaysNothing)
{
    write("[Desktop Entry]\n# Hidden=true\nExec=kestry\n[Other]\nHidden=true\n");
    EXPECT_TRUE(autostart.isOn());
}

TEST_F(AutostartFileTest, TheCopyThatTheManualToldOfIsTheSameSwitch)
{
    write("[Desktop Entry]\nExec=kestry\n", copiedName);
    EXPECT_TRUE(autostart.isOn());
    autostart.set(false);
    EXPECT_FALSE(autostart.isOn());
    EXPECT_TRUE(read(copiedName).contains("Hidden=true"));
    autostart.set(true);
    EXPECT_TRUE(autostart.isOn());
    EXPECT_FALSE(QFile::exists(path())); // two files would start it twice
}

TEST_F(AutostartFileTest, AChangeFromOutsideIsTold)
{
    int changes = 0;
    autostart.follow([&] { ++changes; });
    write("[Desktop Entry]\nExec=kestry\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 1; }));
    QFile::remove(path());
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes == 2; }));
    EXPECT_FALSE(autostart.isOn());
}

TEST_F(AutostartFileTest, AFileThatCannotBeWrittenIsToldAndChangesNothing)
{
    QFile blocking(configuration.filePath("autostart")); // where the folder would be
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    try {
        autostart.set(true);
        FAIL() << "not refused";
    } catch (const KestryCore::LedgerError& refusal) {
        EXPECT_EQ(std::string(refusal.what()),
            "Whether Kestry starts with the desktop could not be stored in "
                + configuration.filePath("autostart").toStdString()
                + ": the folder cannot be made.");
    }
    EXPECT_FALSE(autostart.isOn());
}

TEST_F(AutostartFileTest, APathOfAnyLettersIsQuoted)
{
    EXPECT_EQ(execText("/opt/my apps/kestry"), "\"/opt/my apps/kestry\"");
    EXPECT_EQ(execText("/opt/100%/kestry"), "\"/opt/100%%/kestry\"");
    EXPECT_EQ(execText("/opt/$x/\"k\""), "\"/opt/\\\\$x/\\\\\"k\\\\\"\"");
    EXPECT_EQ(execText("/opt/a\\b"), "\"/opt/a\\\\\\\\b\"");
}

} // namespace
} // namespace Kestry
