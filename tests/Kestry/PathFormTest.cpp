#include "PathForm.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <optional>

#include "FakeChooser.h"

namespace Kestry {
namespace {

class PathFormTest : public ::testing::Test {
protected:
    void ask(const FileQuestion& question)
    {
        form.ask(question, [this](const FileAnswer& each) { answer = each; });
    }
    /// Asks on a desktop without a dialog.
    void askHere(const FileQuestion& question)
    {
        ask(question);
        dialog.answer({FileAnswer::Kind::unavailable});
    }
    void accept(const QString& path)
    {
        form.setPath(path);
        form.accept();
    }
    [[nodiscard]] FileQuestion saving() const
    {
        return {.purpose = FileQuestion::Purpose::save,
            .title = "Export saved sessions",
            .fileName = "sessions.csv",
            .folder = folder.path(),
            .typeName = "Comma-separated text"};
    }
    [[nodiscard]] FileQuestion opening() const
    {
        return {.purpose = FileQuestion::Purpose::open,
            .title = "Choose a logo",
            .folder = folder.path(),
            .typeName = "PNG, JPEG, or HEIC · Up to 20 MB"};
    }
    [[nodiscard]] QString inFolder(const QString& name) const { return folder.filePath(name); }
    void write(const QString& name) const
    {
        QFile file(inFolder(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    [[nodiscard]] QString chosen() const
    {
        return answer && answer->kind == FileAnswer::Kind::chosen ? answer->path : QString();
    }

    QTemporaryDir folder;
    FakeChooser dialog;
    PathForm form{dialog};
    std::optional<FileAnswer> answer;
};

TEST_F(PathFormTest, TheDialogOfTheDesktopAnswersWhereThereIsOne)
{
    ask(saving());
    EXPECT_EQ(dialog.asked.fileName, "sessions.csv");
    EXPECT_FALSE(form.isOpen());
    dialog.choose("/home/sessions.csv");
    EXPECT_EQ(chosen(), "/home/sessions.csv");
    EXPECT_FALSE(form.isOpen());
}

TEST_F(PathFormTest, WithoutADialogItAsksForThePath)
{
    askHere(saving());
    EXPECT_TRUE(form.isOpen());
    EXPECT_EQ(form.title(), "Export saved sessions");
    EXPECT_EQ(form.line(), "Comma-separated text");
    EXPECT_EQ(form.path(), inFolder("sessions.csv"));
    EXPECT_FALSE(answer);
    form.accept();
    EXPECT_EQ(chosen(), inFolder("sessions.csv"));
    EXPECT_FALSE(form.isOpen());
}

TEST_F(PathFormTest, ATypedNameIsInTheFolderWhereTheChoiceBegins)
{
    askHere(saving());
    accept(" mine.csv ");
    EXPECT_EQ(chosen(), inFolder("mine.csv"));
}

TEST_F(PathFormTest, ATildeMeansTheHomeFolder)
{
    askHere(saving());
    accept("~/mine.csv");
    EXPECT_EQ(chosen(), QDir::home().filePath("mine.csv"));
}

TEST_F(PathFormTest, ATildeAloneIsTheHomeFolderAndNoFile)
{
    askHere(saving());
    accept("~");
    EXPECT_EQ(form.note(), "Enter the name of a file.");
    EXPECT_FALSE(answer);
}

TEST_F(PathFormTest, StaysOpenUntilThePathIsUsable)
{
    askHere(saving());
    accept(" ");
    EXPECT_EQ(form.note(), "Enter the name of a file.");
    accept(folder.path());
    EXPECT_EQ(form.note(), "Enter the name of a file.");
    form.setPath("/nowhere/at/all/a.csv");
    EXPECT_EQ(form.note(), "");
    form.accept();
    EXPECT_EQ(
        form.note(), "There is no folder \"/nowhere/at/all\". Enter the path of an existing one.");
    EXPECT_TRUE(form.isOpen());
    EXPECT_FALSE(answer);
}

TEST_F(PathFormTest, AnExistingFileIsReplacedOnlyAfterASecondWord)
{
    write("a.csv");
    askHere(saving());
    EXPECT_EQ(form.acceptLabel(), "Save");
    accept("a.csv");
    EXPECT_EQ(form.note(), "\"a.csv\" already exists. Replace it, or enter another name.");
    EXPECT_EQ(form.acceptLabel(), "Replace");
    EXPECT_FALSE(answer);
    form.accept();
    EXPECT_EQ(chosen(), inFolder("a.csv"));
}

TEST_F(PathFormTest, AnotherNameIsAskedAboutAnew)
{
    write("a.csv");
    write("b.csv");
    askHere(saving());
    accept("a.csv");
    form.setPath("b.csv");
    EXPECT_EQ(form.acceptLabel(), "Save");
    form.accept();
    EXPECT_FALSE(answer);
}

TEST_F(PathFormTest, OnlyAnExistingFileCanBeOpened)
{
    write("logo.png");
    askHere(opening());
    EXPECT_EQ(form.acceptLabel(), "Open");
    EXPECT_EQ(form.path(), "");
    accept("missing.png");
    EXPECT_EQ(form.note(),
        "There is no file \"missing.png\" in that folder. Enter the name of an existing one.");
    accept("logo.png");
    EXPECT_EQ(chosen(), inFolder("logo.png"));
}

TEST_F(PathFormTest, AClosedFormIsACancelledQuestion)
{
    askHere(saving());
    form.cancel();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->kind, FileAnswer::Kind::cancelled);
    answer.reset();
    form.accept();
    EXPECT_FALSE(answer);
}

TEST_F(PathFormTest, AnotherQuestionTakesThePlaceOfTheFirst)
{
    bool isFirstAnswered = false;
    form.ask(saving(), [&](const FileAnswer&) { isFirstAnswered = true; });
    dialog.answer({FileAnswer::Kind::unavailable});
    ask(opening());
    EXPECT_FALSE(form.isOpen());
    dialog.choose("/logo.png");
    EXPECT_EQ(chosen(), "/logo.png");
    EXPECT_FALSE(isFirstAnswered);
}

} // namespace
} // namespace Kestry
