#include "DesktopFolders.h"

#include <gtest/gtest.h>

#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <vector>

#include "FakePortal.h"

namespace Kestry {
namespace {

/// A file manager on the bus that remembers what it was asked for.
class FileManager final : public QDBusVirtualObject {
public:
    explicit FileManager(QDBusConnection bus) : bus_(std::move(bus))
    {
        bus_.registerVirtualObject("/org/freedesktop/FileManager1", this);
        bus_.registerService("org.freedesktop.FileManager1");
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override
    {
        asked << message.member() << message.arguments().front().toStringList();
        bus_.send(message.createReply());
        return true;
    }

    QStringList asked;

private:
    QDBusConnection bus_;
};

class DesktopFoldersTest : public ::testing::Test {
protected:
    DesktopFoldersTest() : path_(qgetenv("PATH")) { qputenv("PATH", programs.path().toUtf8()); }
    ~DesktopFoldersTest() override
    {
        qputenv("PATH", path_);
        for (const char* name : {"program", "portal", "manager"}) {
            QDBusConnection::disconnectFromBus(name);
        }
    }

    void open()
    {
        folders.open(folder.path(), [this](bool isOpened) { answers.push_back(isOpened); });
    }
    /// A program `xdg-open` that does this.
    void install(const QByteArray& script) const
    {
        QFile file(programs.filePath("xdg-open"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// What became of the first folder, once that is known.
    std::optional<bool> answer()
    {
        return QTest::qWaitFor([&] { return !answers.empty(); })
            ? std::optional<bool>(answers.front())
            : std::nullopt;
    }
    void openPortal(FakePortal::Habit habit = FakePortal::Habit::repliesAtOnce)
    {
        portal.emplace(bus.connect("portal"), habit);
    }
    void waitForPortal()
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return portal->asked.size() == 1; }));
    }

    static constexpr int patienceMilliseconds = 300;
    const QByteArray path_;
    QTemporaryDir programs;
    QTemporaryDir folder;
    PrivateBus bus;
    std::optional<FakePortal> portal;
    std::vector<bool> answers;
    DesktopFolders folders{[this] { return bus.connect("program"); }, patienceMilliseconds};
};

TEST_F(DesktopFoldersTest, ThePortalIsHandedTheFolderItself)
{
    openPortal();
    open();
    EXPECT_TRUE(answers.empty());
    waitForPortal();
    EXPECT_EQ(portal->asked[0].member(), "OpenDirectory");
    const auto handed = portal->asked[0].arguments().at(1).value<QDBusUnixFileDescriptor>();
    const QString link = QString("/proc/self/fd/%1").arg(handed.fileDescriptor());
    EXPECT_EQ(QFile::symLinkTarget(link), QDir(folder.path()).canonicalPath());
    portal->answer(0, {});
    EXPECT_EQ(answer(), true);
}

TEST_F(DesktopFoldersTest, AUserWhoCancelsIsNotAskedAgain)
{
    openPortal();
    FileManager manager(bus.connect("manager"));
    open();
    waitForPortal();
    portal->answer(1, {});
    EXPECT_EQ(answer(), true);
    EXPECT_TRUE(manager.asked.isEmpty());
}

TEST_F(DesktopFoldersTest, WithoutAPortalTheFileManagerOpensIt)
{
    FileManager manager(bus.connect("manager"));
    open();
    EXPECT_EQ(answer(), true);
    EXPECT_EQ(manager.asked, QStringList({"ShowFolders", "file://" + folder.path()}));
}

TEST_F(DesktopFoldersTest, APortalThatFailsIsFollowedByTheFileManager)
{
    openPortal();
    FileManager manager(bus.connect("manager"));
    open();
    waitForPortal();
    portal->answer(2, {});
    EXPECT_EQ(answer(), true);
    EXPECT_EQ(manager.asked.size(), 2);
}

TEST_F(DesktopFoldersTest, APortalThatNeverAnswersIsNotWaitedFor)
{
    openPortal();
    FileManager manager(bus.connect("manager"));
    open();
    waitForPortal();
    EXPECT_EQ(answer(), true);
    EXPECT_EQ(manager.asked.size(), 2);
    EXPECT_EQ(portal->closed, portal->requests);
}

TEST_F(DesktopFoldersTest, WithoutBothTheProgramOpensIt)
{
    const QString note = folder.filePath("opened");
    install("echo \"$1\" > " + note.toUtf8());
    open();
    EXPECT_EQ(answer(), true);
    QFile file(note);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), folder.path().toUtf8() + "\n");
}

TEST_F(DesktopFoldersTest, AProgramThatStillRunsHasTakenTheFolder)
{
    install("exec /bin/sleep 30");
    open();
    EXPECT_EQ(answer(), true);
}

TEST_F(DesktopFoldersTest, AProgramThatFailsHasNotOpenedIt)
{
    install("exit 3");
    open();
    EXPECT_EQ(answer(), false);
}

TEST_F(DesktopFoldersTest, WithNothingThatOpensFoldersTheAnswerIsNo)
{
    open();
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(answer(), false);
}

TEST_F(DesktopFoldersTest, WithoutABusTheProgramIsLeft)
{
    install("exit 0");
    DesktopFolders alone([] { return QDBusConnection("none"); }, patienceMilliseconds);
    alone.open(folder.path(), [this](bool isOpened) { answers.push_back(isOpened); });
    EXPECT_EQ(answer(), true);
}

TEST_F(DesktopFoldersTest, AFolderThatComesInBetweenTakesThePlaceOfTheFirst)
{
    openPortal();
    open();
    waitForPortal();
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal->asked.size() == 2; }));
    portal->answer(0, {}, 0);
    portal->answer(0, {}, 1);
    EXPECT_EQ(answer(), true);
    QTest::qWait(100);
    EXPECT_EQ(answers.size(), 1U);
}

} // namespace
} // namespace Kestry
