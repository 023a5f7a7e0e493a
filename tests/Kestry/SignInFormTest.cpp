#include "SignInForm.h"

#include <gtest/gtest.h>

#include "AccountWorld.h"

namespace Kestry {
namespace {

class SignInFormTest : public ::testing::Test, public AccountWorld {
protected:
    void fill(const QString& address, const QString& user)
    {
        form.open();
        form.setAddress(address);
        form.setUser(user);
    }

    SignInForm form{account};
};

TEST_F(SignInFormTest, TheStoreIsAskedBeforeTheFormCloses)
{
    fill(" https://example.org/hours ", " mia ");
    form.submit(" a b ");
    EXPECT_TRUE(form.isChecking());
    EXPECT_TRUE(form.isOpen());
    answerAll();
    EXPECT_FALSE(form.isOpen());
    EXPECT_FALSE(form.isChecking());
    EXPECT_EQ(opened.address, "https://example.org/hours");
    EXPECT_EQ(opened.user, "mia");
    EXPECT_EQ(opened.password, " a b ");
}

TEST_F(SignInFormTest, NamesAndPasswordsAreInAnyScript)
{
    fill("https://example.org/hours", QString::fromUtf8("jürgen🎈"));
    form.submit(QString::fromUtf8("Öffne dich: رسائل"));
    answerAll();
    EXPECT_FALSE(form.isOpen());
    EXPECT_EQ(opened.user, "jürgen🎈");
    EXPECT_EQ(opened.password, "Öffne dich: رسائل");
    EXPECT_EQ(world.defaults.strings["cloudUser"], "jürgen🎈");
}

TEST_F(SignInFormTest, ARefusalIsToldAndLeavesTheFormOpen)
{
    fill("https://example.org/hours", "mia");
    cloud.failures.emplace("status", KestryCore::CloudError("The password is wrong."));
    form.submit("x");
    answerAll();
    EXPECT_TRUE(form.isOpen());
    EXPECT_FALSE(form.isChecking());
    EXPECT_EQ(form.message(), "The password is wrong.");
    form.submit("y");
    EXPECT_EQ(form.message(), "");
}

TEST_F(SignInFormTest, AnAddressAndAUserAreNeeded)
{
    fill("  ", "mia");
    form.submit("x");
    EXPECT_EQ(form.message(), "Enter the address of the record store.");
    fill("https://example.org", " ");
    form.submit("x");
    EXPECT_EQ(form.message(), "Enter your name on the server.");
    EXPECT_TRUE(cloud.asked().empty());
}

TEST_F(SignInFormTest, WhatIsTooLongForAPasswordIsToldBeforeAnythingIsAsked)
{
    fill("https://example.org/hours", "mia");
    form.submit(QString(10'000, 'x'));
    EXPECT_EQ(form.message(), "No password is as long as this.");
    EXPECT_TRUE(cloud.asked().empty());
    form.submit(QString(4'096, 'x'));
    answerAll();
    EXPECT_FALSE(form.isOpen());
}

TEST_F(SignInFormTest, AFileNeedsNeitherUserNorPassword)
{
    fill("sqlite:/shared/store", "mia");
    EXPECT_FALSE(form.needsUser());
    form.submit("left over");
    answerAll();
    EXPECT_FALSE(form.isOpen());
    EXPECT_EQ(opened.user, "");
    EXPECT_EQ(opened.password, "");
}

TEST_F(SignInFormTest, CancellingEndsTheQuestionToTheStore)
{
    fill("https://example.org/hours", "mia");
    form.submit("x");
    world.scheduler.turn();
    form.cancel();
    answerAll();
    EXPECT_FALSE(form.isOpen());
    EXPECT_FALSE(*account.name());
}

TEST_F(SignInFormTest, WhatBecameOfACancelledTryIsNothingToTheNext)
{
    fill("https://example.org/hours", "mia");
    form.submit("x");
    form.cancel();
    fill("https://example.org/hours", "mia");
    form.submit("y");
    world.scheduler.turn();
    EXPECT_TRUE(form.isChecking());
    EXPECT_EQ(form.message(), "");
    answerAll();
    EXPECT_FALSE(form.isOpen());
}

TEST_F(SignInFormTest, ClosingAFormThatAsksNobodyLeavesTheSignInOfOthers)
{
    account.signIn({"https://example.org/hours", "leo", "z"}, [](const auto&) {});
    form.open();
    form.cancel();
    answerAll();
    EXPECT_EQ((*account.name())->user, "leo");
}

TEST_F(SignInFormTest, ASignInFromElsewhereEndsTheTryInWords)
{
    fill("https://example.org/hours", "mia");
    form.submit("x");
    world.scheduler.turn();
    account.signIn({"https://example.org/hours", "leo", "z"}, [](const auto&) {});
    answerAll();
    EXPECT_FALSE(form.isChecking());
    EXPECT_EQ(form.message(), "Another sign-in has taken the place of this one.");
    EXPECT_EQ((*account.name())->user, "leo");
}

TEST_F(SignInFormTest, ItOpensWithTheAccountThatIsSignedIn)
{
    fill("https://example.org/hours", "mia");
    form.submit("x");
    answerAll();
    form.open();
    EXPECT_EQ(form.address(), "https://example.org/hours");
    EXPECT_EQ(form.user(), "mia");
    EXPECT_EQ(form.message(), "");
}

} // namespace
} // namespace Kestry
