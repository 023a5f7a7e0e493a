#include "PortalFileChooser.h"

#include <gtest/gtest.h>

#include <QTest>

#include <optional>
#include <vector>

#include "FakePortal.h"

namespace Kestry {
namespace {

class PortalFileChooserTest : public ::testing::Test {
protected:
    ~PortalFileChooserTest() override
    {
        QDBusConnection::disconnectFromBus("program");
        QDBusConnection::disconnectFromBus("portal");
    }

    void ask(FileQuestion::Purpose purpose = FileQuestion::Purpose::save)
    {
        chooser.ask({.purpose = purpose,
                        .title = "Choose",
                        .fileName = purpose == FileQuestion::Purpose::save ? "a.csv" : "",
                        .folder = "/home",
                        .typeName = "Text",
                        .mimeTypes = {"text/csv"},
                        .endings = {".csv"}},
            [this](const FileAnswer& each) { answers.push_back(each); });
    }
    void waitForQuestion(int count = 1)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return portal->asked.size() == count; }));
    }
    /// Asks, and waits until the portal has been asked.
    void askPortal(FileQuestion::Purpose purpose = FileQuestion::Purpose::save)
    {
        ask(purpose);
        waitForQuestion();
    }
    void openPortal(FakePortal::Habit habit = FakePortal::Habit::repliesAtOnce)
    {
        portal.emplace(bus.connect("portal"), habit);
    }
    [[nodiscard]] bool isAnswered(FileAnswer::Kind kind)
    {
        return QTest::qWaitFor([&] { return !answers.empty(); }) && answers.back().kind == kind;
    }
    /// Long enough for a message to arrive that should not.
    static void settle() { QTest::qWait(100); }

    static constexpr int patienceMilliseconds = 300;
    PrivateBus bus;
    std::optional<FakePortal> portal;
    std::vector<FileAnswer> answers;
    PortalFileChooser chooser{[this] { return bus.connect("program"); }, patienceMilliseconds};
};

TEST_F(PortalFileChooserTest, TheFileThatIsChosenToSaveToIsTheAnswer)
{
    openPortal();
    askPortal();
    EXPECT_EQ(portal->asked[0].member(), "SaveFile");
    EXPECT_EQ(portal->asked[0].arguments().at(1).toString(), "Choose");
    EXPECT_EQ(portal->options["current_name"].toString(), "a.csv");
    EXPECT_EQ(portal->options["current_folder"].toByteArray(), QByteArray("/home\0", 6));
    EXPECT_TRUE(answers.empty());
    portal->respond(0, {"file:///home/my%20100%25.csv"});
    ASSERT_TRUE(isAnswered(FileAnswer::Kind::chosen));
    EXPECT_EQ(answers[0].path, "/home/my 100%.csv");
}

TEST_F(PortalFileChooserTest, AFileToOpenIsAskedForWithoutAName)
{
    openPortal();
    askPortal(FileQuestion::Purpose::open);
    EXPECT_EQ(portal->asked[0].member(), "OpenFile");
    EXPECT_FALSE(portal->options.contains("current_name"));
    portal->respond(0, {"file:///home/logo.png"});
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::chosen));
}

TEST_F(PortalFileChooserTest, EveryCodeButSuccessIsACancelledDialog)
{
    openPortal();
    for (const uint code : {1U, 2U, 3U}) {
        answers.clear();
        ask();
        waitForQuestion(static_cast<int>(code));
        portal->respond(code, {"file:///home/a.csv"}, static_cast<int>(code) - 1);
        EXPECT_TRUE(isAnswered(FileAnswer::Kind::cancelled)) << code;
    }
}

TEST_F(PortalFileChooserTest, AFileOutsideOfTheFileSystemHasNoPath)
{
    openPortal();
    askPortal();
    portal->respond(0, {"sftp://example.org/a.csv"});
    ASSERT_TRUE(isAnswered(FileAnswer::Kind::chosen));
    EXPECT_EQ(answers[0].path, "");
}

TEST_F(PortalFileChooserTest, WithoutAPortalThereIsNoDialog)
{
    ask();
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::unavailable));
}

TEST_F(PortalFileChooserTest, WithoutABusThereIsNoDialog)
{
    PortalFileChooser alone([] { return QDBusConnection("none"); });
    alone.ask({}, [this](const FileAnswer& each) { answers.push_back(each); });
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::unavailable));
}

TEST_F(PortalFileChooserTest, APortalThatHasNoFileChooserIsNone)
{
    openPortal(FakePortal::Habit::refuses);
    ask();
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::unavailable));
}

TEST_F(PortalFileChooserTest, APortalThatEndsTakesItsDialogWithIt)
{
    openPortal();
    askPortal();
    settle();
    portal->end();
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::unavailable));
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(PortalFileChooserTest, APortalThatRepliesTooLateIsToldToCloseItsDialog)
{
    openPortal(FakePortal::Habit::repliesWhenTold);
    askPortal();
    ASSERT_TRUE(isAnswered(FileAnswer::Kind::unavailable));
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal->closed == portal->requests; }));
    portal->reply();
    portal->respond(0, {"file:///home/a.csv"});
    settle();
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(PortalFileChooserTest, AnAnswerMayComeBeforeTheReply)
{
    openPortal(FakePortal::Habit::repliesWhenTold);
    askPortal();
    portal->respond(0, {"file:///home/a.csv"});
    portal->reply();
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::chosen));
    settle();
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(PortalFileChooserTest, AnOldPortalAnswersAtAHandleOfItsOwn)
{
    openPortal(FakePortal::Habit::hasItsOwnHandle);
    askPortal();
    settle(); // the reply tells where
    portal->respond(0, {"file:///home/a.csv"});
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::chosen));
}

TEST_F(PortalFileChooserTest, AnotherQuestionClosesTheDialogOfTheFirst)
{
    openPortal();
    askPortal();
    settle();
    ask(FileQuestion::Purpose::open);
    waitForQuestion(2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal->closed.size() == 1; }));
    EXPECT_EQ(portal->closed[0], portal->requests[0]);
    portal->respond(0, {"file:///home/first.csv"}, 0);
    portal->respond(0, {"file:///home/second.csv"}, 1);
    ASSERT_TRUE(isAnswered(FileAnswer::Kind::chosen));
    settle();
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].path, "/home/second.csv");
}

} // namespace
} // namespace Kestry
