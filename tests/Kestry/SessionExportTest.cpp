#include "SessionExport.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include <sys/stat.h>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

/// A chooser that is answered by the test.
class FakeChooser final : public FileChooser {
public:
    void askWhereToSave(const SaveQuestion& question, Answered answered) override
    {
        asked = question;
        answer = std::move(answered);
    }

    SaveQuestion asked;
    Answered answer;
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
        chooser.answer({SaveAnswer::Kind::chosen, path});
        world.scheduler.advance(1);
    }
    void save()
    {
        command.save();
        world.scheduler.advance(1);
    }
    /// Opens the form of ours.
    void ask()
    {
        command.start();
        chooser.answer({SaveAnswer::Kind::unavailable});
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
    EXPECT_EQ(chooser.asked.mimeType, "text/csv");
    EXPECT_EQ(chooser.asked.ending, ".csv");
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
    chooser.answer({SaveAnswer::Kind::cancelled});
    world.scheduler.advance(1);
    EXPECT_EQ(message(), "");
    EXPECT_EQ(failure(), "");
    EXPECT_FALSE(command.isAsking());
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

TEST_F(SessionExportTest, AFileThatCannotBeReplacedStaysWhole)
{
    write(inDocuments("a.csv"), "mine");
    ASSERT_EQ(mkfifo(inDocuments("pipe").toStdString().c_str(), 0600), 0);
    command.start();
    choose(inDocuments("pipe"));
    EXPECT_EQ(failure(),
        "Sessions are exported to an ordinary file on this computer. Choose "
        "another file.");
    EXPECT_EQ(contents(inDocuments("a.csv")), "mine");
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
    chooser.answer({SaveAnswer::Kind::chosen, inDocuments("a.csv")});
    EXPECT_TRUE(command.isWriting());
    EXPECT_FALSE(QFileInfo::exists(inDocuments("a.csv")));
    world.scheduler.advance(1);
    EXPECT_FALSE(command.isWriting());
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

TEST_F(SessionExportTest, WithoutADialogOfTheDesktopItAsksItself)
{
    ask();
    EXPECT_TRUE(command.isAsking());
    EXPECT_EQ(command.path(), inDocuments("Kestry-sessions-2025-09-19.csv"));
    save();
    EXPECT_FALSE(command.isAsking());
    EXPECT_EQ(message(), "Exported 1 saved sessions to Kestry-sessions-2025-09-19.csv.");
    EXPECT_TRUE(QFileInfo::exists(inDocuments("Kestry-sessions-2025-09-19.csv")));
}

TEST_F(SessionExportTest, ATypedNameIsInTheProposedFolder)
{
    ask();
    command.setPath(" mine.csv ");
    save();
    EXPECT_TRUE(QFileInfo::exists(inDocuments("mine.csv")));
}

TEST_F(SessionExportTest, TheFormStaysOpenUntilItsPathIsUsable)
{
    ask();
    command.setPath(" ");
    save();
    EXPECT_EQ(command.note(), "Enter the name of a file.");
    command.setPath(documents.path());
    save();
    EXPECT_EQ(command.note(), "Enter the name of a file.");
    command.setPath("/nowhere/at/all/a.csv");
    EXPECT_EQ(command.note(), "");
    save();
    EXPECT_EQ(command.note(),
        "There is no folder \"/nowhere/at/all\". Enter the path of an existing one.");
    EXPECT_TRUE(command.isAsking());
    EXPECT_EQ(message() + failure(), "");
}

TEST_F(SessionExportTest, AnExistingFileIsReplacedOnlyAfterASecondWord)
{
    write(inDocuments("a.csv"), "mine");
    ask();
    command.setPath("a.csv");
    EXPECT_EQ(command.saveLabel(), "Save");
    save();
    EXPECT_EQ(command.note(), "\"a.csv\" already exists. Replace it, or enter another name.");
    EXPECT_EQ(command.saveLabel(), "Replace");
    EXPECT_EQ(contents(inDocuments("a.csv")), "mine");
    save();
    EXPECT_TRUE(contents(inDocuments("a.csv")).startsWith("Client,"));
}

TEST_F(SessionExportTest, AnotherNameIsAskedAboutAnew)
{
    write(inDocuments("a.csv"), "mine");
    write(inDocuments("b.csv"), "mine");
    ask();
    command.setPath("a.csv");
    save();
    command.setPath("b.csv");
    EXPECT_EQ(command.saveLabel(), "Save");
    save();
    EXPECT_EQ(contents(inDocuments("b.csv")), "mine");
}

TEST_F(SessionExportTest, AClosedFormWritesNothing)
{
    ask();
    command.cancel();
    save();
    EXPECT_EQ(message() + failure(), "");
    EXPECT_TRUE(QDir(documents.path()).isEmpty());
}

} // namespace
} // namespace Kestry
