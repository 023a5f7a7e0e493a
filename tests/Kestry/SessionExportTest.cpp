#include "SessionExport.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

#include "ApplicationWorld.h"
#include "FakeChooser.h"

namespace Kestry {
namespace {

/// No file of this process grows beyond a size while this lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limited{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_{};
};

class SessionExportTest : public ::testing::Test {
protected:
    SessionExportTest()
    {
        KestryCore::NewEntry entry;
        entry.clientID = addClient(store, "Aster Studio", Projects::disabled);
        entry.title = "Design";
        entry.start = world.now() + -7200.0;
        entry.duration = 3600.0;
        store.addEntry(entry);
    }

    void choose(const QString& path)
    {
        chooser.choose(path);
        world.scheduler.advance(1);
    }
    [[nodiscard]] QString inDocuments(const QString& name) const
    {
        return documents.filePath(name);
    }
    [[nodiscard]] static QByteArray contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] std::string failure() const { return store.errorMessage()->value_or(""); }
    [[nodiscard]] std::string message() const { return state.exportMessage->value_or(""); }

    ApplicationWorld world;
    QTemporaryDir documents;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    FakeChooser chooser;
    SessionExport command{{store, state, chooser, world.defaults, world.scheduler,
        [this] { return world.now(); }, documents.path()}};
};

TEST_F(SessionExportTest, AsksTheDesktopForACsvFileOfToday)
{
    command.start();
    EXPECT_EQ(chooser.asked.title, "Export saved sessions");
    EXPECT_EQ(chooser.asked.fileName, "Kestry-sessions-2025-09-19.csv");
    EXPECT_EQ(chooser.asked.folder, documents.path());
    EXPECT_EQ(chooser.asked.purpose, FileQuestion::Purpose::save);
    EXPECT_EQ(chooser.asked.mimeTypes, QStringList{"text/csv"});
    EXPECT_EQ(chooser.asked.endings, QStringList{".csv"});
}

TEST_F(SessionExportTest, WritesAllSavedSessionsAndSaysSo)
{
    command.start();
    choose(inDocuments("a.csv"));
    const QByteArray written = contents(inDocuments("a.csv"));
    EXPECT_TRUE(written.startsWith("Client,Project,Description"));
    EXPECT_TRUE(written.contains("\"Design\""));
    EXPECT_EQ(message(), "Exported 1 saved sessions to a.csv.");
    EXPECT_EQ(failure(), "");
}

TEST_F(SessionExportTest, ACancelledChoiceDoesNothing)
{
    command.start();
    chooser.answer({FileAnswer::Kind::cancelled});
    world.scheduler.advance(1);
    EXPECT_EQ(message(), "");
    EXPECT_EQ(failure(), "");
    EXPECT_FALSE(command.isWriting());
}

TEST_F(SessionExportTest, AFailedWriteIsToldAndKeepsTheMessageBefore)
{
    state.exportMessage.assign("Before.");
    command.start();
    choose(inDocuments("missing/a.csv"));
    EXPECT_NE(failure(), "");
    EXPECT_EQ(message(), "Before.");
    EXPECT_FALSE(command.isWriting());
}

TEST_F(SessionExportTest, APipeIsRefusedAndNotWaitedFor)
{
    ASSERT_EQ(mkfifo(inDocuments("pipe").toStdString().c_str(), 0600), 0);
    command.start();
    choose(inDocuments("pipe"));
    EXPECT_EQ(failure(),
        "Sessions are exported to an ordinary file on this computer. Choose "
        "another file.");
}

TEST_F(SessionExportTest, AChoiceWithoutAPathIsRefused)
{
    command.start();
    choose("");
    EXPECT_EQ(failure(),
        "Sessions are exported to an ordinary file on this computer. Choose "
        "another file.");
}

TEST_F(SessionExportTest, TheLedgerItselfIsNeverReplaced)
{
    const QByteArray before = world.ledgerBytes();
    command.start();
    choose(world.directory.filePath("ledger.json"));
    EXPECT_NE(failure(), "");
    EXPECT_EQ(world.ledgerBytes(), before);
}

TEST_F(SessionExportTest, SaysThatItIsWriting)
{
    command.start();
    chooser.choose(inDocuments("a.csv"));
    EXPECT_TRUE(command.isWriting());
    EXPECT_FALSE(QFileInfo::exists(inDocuments("a.csv")));
    world.scheduler.advance(1);
    EXPECT_FALSE(command.isWriting());
}

TEST_F(SessionExportTest, WhatIsStillToBeWrittenIsFinishedOnRequest)
{
    EXPECT_TRUE(command.finish());
    command.start();
    chooser.choose(inDocuments("a.csv"));
    EXPECT_TRUE(command.finish());
    EXPECT_FALSE(command.isWriting());
    EXPECT_TRUE(QFile::remove(inDocuments("a.csv")));
    world.scheduler.advance(1);
    EXPECT_FALSE(QFileInfo::exists(inDocuments("a.csv"))); // it is not written again
}

TEST_F(SessionExportTest, WhatCannotBeFinishedIsTold)
{
    command.start();
    chooser.choose(inDocuments("missing/a.csv"));
    EXPECT_FALSE(command.finish());
    EXPECT_NE(failure(), "");
}

TEST_F(SessionExportTest, SessionsInMemoryAreExportedThoughTheLedgerWasDamaged)
{
    world.damageLedger();
    EXPECT_THROW(addClient(store, "Birch"), KestryCore::LedgerError);
    command.start();
    choose(inDocuments("a.csv"));
    EXPECT_EQ(message(), "Exported 1 saved sessions to a.csv.");
}

/// The command over a ledger that could not be read, and has no backup.
class UnreadLedgerExportTest : public ::testing::Test {
protected:
    static KestryCore::StoreOptions damaged(const ApplicationWorld& world)
    {
        QFile file(world.directory.filePath("ledger.json"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("damaged");
        return world.onDisk();
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), damaged(world)};
    AppState state{world.defaults};
    FakeChooser chooser;
    SessionExport command{{store, state, chooser, world.defaults, world.scheduler,
        [this] { return world.now(); }, {}}};
};

TEST_F(UnreadLedgerExportTest, IsRefusedInTheWordsOfTheStore)
{
    store.dismissFailure();
    command.start();
    EXPECT_EQ(chooser.asked.title, "");
    EXPECT_EQ(store.errorMessage()->value_or(""),
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_FALSE(state.exportMessage->has_value());
}

TEST_F(SessionExportTest, TheLastFolderIsProposedAgain)
{
    ASSERT_TRUE(QDir(documents.path()).mkdir("reports"));
    command.start();
    choose(inDocuments("reports/a.csv"));
    command.start();
    EXPECT_EQ(chooser.asked.folder, inDocuments("reports"));
    ASSERT_TRUE(QDir(inDocuments("reports")).removeRecursively());
    command.start();
    EXPECT_EQ(chooser.asked.folder, documents.path());
}

TEST_F(SessionExportTest, NothingIsAskedWhileAFileIsWritten)
{
    command.start();
    chooser.choose(inDocuments("a.csv"));
    chooser.asked = {};
    command.start();
    EXPECT_EQ(chooser.asked.title, "");
    world.scheduler.advance(1);
    command.start();
    EXPECT_EQ(chooser.asked.title, "Export saved sessions");
}

TEST_F(SessionExportTest, AWriteThatFailsHalfWayLeavesTheFileBeforeAndNoHalfOne)
{
    write(inDocuments("a.csv"), "mine");
    {
        const FileSizeLimit limit(100);
        command.start();
        choose(inDocuments("a.csv"));
    }
    EXPECT_EQ(failure(), "a.csv could not be written: File too large.");
    EXPECT_EQ(contents(inDocuments("a.csv")), "mine");
    EXPECT_EQ(QDir(documents.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.csv"});
}

} // namespace
} // namespace Kestry
