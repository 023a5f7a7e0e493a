#include "CouchAnswers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CloudRefusal.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;

constexpr const char* senseless =
    "The record store gave an answer that makes no sense. Your local changes are saved and will "
    "retry.";

TEST(CouchAnswersTest, ACouchServerTellsWhoItIs)
{
    EXPECT_EQ(
        couchWelcome(R"({"couchdb":"Welcome","version":"3.5.0","uuid":"abc"})").identity, "abc");
    EXPECT_EQ(couchWelcome(R"({"couchdb":"Welcome","version":"2.0.0"})").identity, "");
}

TEST(CouchAnswersTest, AnotherServerOfTheSameLanguageIsTaken)
{
    EXPECT_EQ(couchWelcome(R"({"express-pouchdb":"Welcome!","version":"4.2.0",)"
                           R"("vendor":{"name":"x"},"uuid":"2f90"})")
                  .identity,
        "2f90");
}

TEST(CouchAnswersTest, AnOldServerIsRefused)
{
    EXPECT_THAT(
        cloudWordsOf([] { (void)couchWelcome(R"({"couchdb":"Welcome","version":"1.7.2"})"); }),
        HasSubstr("too old"));
}

TEST(CouchAnswersTest, AnotherKindOfServerIsRefused)
{
    for (const char* const body : {"", "<html></html>", "{}", "[]", "null", "\"couchdb\"",
             R"({"version":"1"})", R"({"couchdb":1,"version":2})", R"({"couchdb":"Welcome"} x)"}) {
        EXPECT_EQ(cloudWordsOf([&] { (void)couchWelcome(body); }),
            "There is no CouchDB server at this address. Check the address under Connections in "
            "Settings.")
            << body;
    }
}

TEST(CouchAnswersTest, ASessionHasAUserOrAStranger)
{
    EXPECT_EQ(couchUser(R"({"ok":true,"userCtx":{"name":"anna","roles":[]}})"), "anna");
    EXPECT_EQ(couchUser(R"({"ok":true,"userCtx":{"name":null,"roles":[]}})"), std::nullopt);
}

TEST(CouchAnswersTest, ABatchTellsOfEachDocument)
{
    const auto saved = couchSaved(R"([{"ok":true,"id":"a","rev":"1-a"},)"
                                  R"({"id":"b","error":"conflict","reason":"x","rev":"9-x"},)"
                                  R"({"ok":true,"id":"c","rev":"2-c","accepted":true}])");
    ASSERT_EQ(saved.size(), 3U);
    EXPECT_EQ(saved[0].revision, "1-a");
    EXPECT_EQ(saved[1].error, "conflict");
    EXPECT_EQ(saved[1].revision, "");
    EXPECT_EQ(saved[2].revision, "2-c");
}

TEST(CouchAnswersTest, RowsAreThereDeletedOrMissing)
{
    const auto rows =
        couchRows(R"({"total_rows":3,"offset":null,"rows":[)"
                  R"({"id":"a","key":"a","value":{"rev":"1-a"},"doc":{"_id":"a","_rev":"1-a"}},)"
                  R"({"id":"b","key":"b","value":{"rev":"2-b","deleted":true},"doc":null},)"
                  R"({"key":"c","error":"not_found"}]})");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].document->id, "a");
    EXPECT_TRUE(rows[1].isDeleted);
    EXPECT_FALSE(rows[1].document);
    EXPECT_TRUE(rows[2].isMissing);
}

TEST(CouchAnswersTest, AFeedTellsOfChangesAndDeletions)
{
    const auto feed =
        couchFeed(R"({"results":[)"
                  R"({"seq":"1-g1","id":"a","changes":[{"rev":"1-a"},{"rev":"1-x"}]},)"
                  R"({"seq":"2-g1","id":"b","changes":[{"rev":"2-b"}],"deleted":true}],)"
                  R"("last_seq":"2-g1","pending":5})");
    ASSERT_EQ(feed.changes.size(), 2U);
    EXPECT_EQ(feed.changes[0].revision, "1-a");
    EXPECT_TRUE(feed.changes[1].isDeleted);
    EXPECT_EQ(feed.last, "2-g1");
    EXPECT_EQ(feed.pending, 5);
}

TEST(CouchAnswersTest, ASimpleServerCountsInNumbersAndTellsNothingOfTheRest)
{
    const auto feed = couchFeed(R"({"results":[],"last_seq":205})");
    EXPECT_EQ(feed.last, "205");
    EXPECT_EQ(feed.pending, std::nullopt);
}

TEST(CouchAnswersTest, VersionsThatAreNotThereAreLeftOut)
{
    const auto versions =
        couchVersions(R"({"results":[{"id":"a","docs":[{"ok":{"_id":"a","_rev":"1-a"}},)"
                      R"({"error":{"id":"a","rev":"1-b","error":"not_found"}}]}]})");
    ASSERT_EQ(versions.size(), 1U);
    EXPECT_EQ(versions[0].revision, "1-a");
}

TEST(CouchAnswersTest, AnAnswerOfAnotherFormIsAFailureInWords)
{
    const std::string deep(5000, '[');
    for (const std::string& body :
        {std::string(), std::string("{"), std::string("null"), std::string("[1]"),
            std::string("{\"rows\":1,\"results\":1,\"userCtx\":1}"), std::string("[{\"id\":1}]"),
            std::string("{\"rows\":[{}],\"results\":[{}],\"last_seq\":true}"),
            std::string("\xff\xfe"), deep, std::string("<html>busy</html>"),
            std::string(100, '\0')}) {
        EXPECT_EQ(cloudWordsOf([&] { (void)couchUser(body); }), senseless) << body;
        EXPECT_EQ(cloudWordsOf([&] { (void)couchSaved(body); }), senseless) << body;
        EXPECT_EQ(cloudWordsOf([&] { (void)couchRows(body); }), senseless) << body;
        EXPECT_EQ(cloudWordsOf([&] { (void)couchVersions(body); }), senseless) << body;
        EXPECT_EQ(cloudWordsOf([&] { (void)couchFeed(body); }), senseless) << body;
        EXPECT_EQ(couchErrorWord(body), "");
    }
}

TEST(CouchAnswersTest, AnswersThatAreCutAnywhereAreFailuresInWords)
{
    const std::string feed =
        R"({"results":[{"seq":"1-g","id":"a","changes":[{"rev":"1-a"}],)"
        R"("doc":{"_id":"a","_rev":"1-a","fields":{"n":1}}}],"last_seq":"1-g"})";
    for (std::size_t length = 0; length < feed.size(); ++length) {
        EXPECT_EQ(cloudWordsOf([&] { (void)couchFeed(feed.substr(0, length)); }), senseless);
    }
}

TEST(CouchAnswersTest, AFailureHasAWord)
{
    EXPECT_EQ(couchErrorWord(R"({"error":"not_found","reason":"missing"})"), "not_found");
}

} // namespace
} // namespace Kestry
