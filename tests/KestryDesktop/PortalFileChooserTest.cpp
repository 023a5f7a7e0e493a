#include "PortalFileChooser.h"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>

#include <optional>
#include <utility>

namespace Kestry {
namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr auto desktopPath = "/org/freedesktop/portal/desktop";

/// A message bus of the test's own.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        daemon_.waitForReadyRead();
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus()
    {
        daemon_.kill();
        daemon_.waitForFinished();
    }

    [[nodiscard]] QDBusConnection connect(const QString& name) const
    {
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QProcess daemon_;
    QString address_;
};

/// A portal that is answered for by the test.
class Portal final : public QDBusVirtualObject {
public:
    enum class Habit { repliesAtOnce, hasItsOwnHandle, repliesWhenTold, refuses };

    explicit Portal(QDBusConnection bus, Habit habit = Habit::repliesAtOnce)
        : bus_(std::move(bus)), habit_(habit)
    {
        bus_.registerVirtualObject(desktopPath, this, QDBusConnection::SubPath);
        bus_.registerService(service);
    }
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;
    ~Portal() override { end(); }

    void end()
    {
        bus_.unregisterService(service);
        bus_.unregisterObject(desktopPath, QDBusConnection::UnregisterTree);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override
    {
        if (message.member() == "Close") {
            closed << message.path();
            return true;
        }
        asked.append(message);
        options = qdbus_cast<QVariantMap>(message.arguments().at(2));
        QString sender = message.service().mid(1);
        requests << (habit_ == Habit::hasItsOwnHandle
                ? QString("/org/freedesktop/portal/desktop/request/old")
                : QString("%1/request/%2/%3")
                      .arg(desktopPath, sender.replace('.', '_'),
                          options["handle_token"].toString()));
        if (habit_ == Habit::refuses) {
            bus_.send(message.createErrorReply(QDBusError::UnknownMethod, "No file chooser"));
        } else if (habit_ != Habit::repliesWhenTold) {
            reply();
        }
        return true;
    }
    /// Says which object answers.
    void reply()
    {
        bus_.send(asked.back().createReply(QVariant::fromValue(QDBusObjectPath(requests.back()))));
    }
    /// What the user has done in the dialog of a question.
    void respond(uint code, const QStringList& addresses, int question = 0)
    {
        QDBusMessage signal = QDBusMessage::createTargetedSignal(asked.at(question).service(),
            requests.at(question), "org.freedesktop.portal.Request", "Response");
        signal << code << QVariantMap{{"uris", addresses}};
        bus_.send(signal);
    }

    QList<QDBusMessage> asked;
    QVariantMap options; ///< Of the latest question.
    QStringList requests;
    QStringList closed;

private:
    QDBusConnection bus_;
    Habit habit_;
};

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
    void openPortal(Portal::Habit habit = Portal::Habit::repliesAtOnce)
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
    std::optional<Portal> portal;
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
    openPortal(Portal::Habit::refuses);
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
    openPortal(Portal::Habit::repliesWhenTold);
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
    openPortal(Portal::Habit::repliesWhenTold);
    askPortal();
    portal->respond(0, {"file:///home/a.csv"});
    portal->reply();
    EXPECT_TRUE(isAnswered(FileAnswer::Kind::chosen));
    settle();
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(PortalFileChooserTest, AnOldPortalAnswersAtAHandleOfItsOwn)
{
    openPortal(Portal::Habit::hasItsOwnHandle);
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
