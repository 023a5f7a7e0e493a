#include "CouchDocument.h"

#include <gtest/gtest.h>

#include <limits>

#include "CloudRefusal.h"

namespace Kestry {
namespace {

using namespace KestryCore;

CloudRecord sampleRecord()
{
    CloudRecord record{{"Client:A", {"Workspace"}}, "KestryRecord", "3-abc", {}};
    record.fields["schema"] = 1.0;
    record.fields["writer"] = std::string("desk");
    record.fields["payload"] = CloudBytes{std::string("a\0b", 3)};
    return record;
}

CouchDocument readDocument(const std::string& json)
{
    const JsonDocument document(json);
    return couchDocument(document.root());
}

TEST(CouchDocumentTest, ARecordIsWrittenInThisForm)
{
    EXPECT_EQ(couchJson(documentOf(sampleRecord())),
        R"({"_id":"Workspace\/Client:A","_rev":"3-abc","type":"KestryRecord",)"
        R"("fields":{"payload":{"base64":"YQBi"},"schema":1,"writer":"desk"}})");
}

TEST(CouchDocumentTest, WhatIsWrittenReadsAsTheSameRecord)
{
    EXPECT_EQ(recordOf(readDocument(couchJson(documentOf(sampleRecord())))), sampleRecord());
}

TEST(CouchDocumentTest, FieldsThatBeginWithAnUnderscoreAreKeptFromTheServersOwn)
{
    CloudRecord record = sampleRecord();
    record.fields = {{"__proto__", 1.0}, {"_a", 2.0}, {"a", 3.0}};
    const std::string json = couchJson(documentOf(record));
    EXPECT_NE(json.find(R"("___proto__":1,"__a":2,"a":3)"), std::string::npos) << json;
    EXPECT_EQ(recordOf(readDocument(json)), record);
}

TEST(CouchDocumentTest, ANewRecordHasNoRevision)
{
    CloudRecord record = sampleRecord();
    record.serverVersion.clear();
    EXPECT_EQ(couchJson(documentOf(record)).find("_rev"), std::string::npos);
}

TEST(CouchDocumentTest, ADeletionSaysSo)
{
    CouchDocument document;
    document.id = "Workspace/a";
    document.revision = "1-a";
    document.isDeleted = true;
    EXPECT_TRUE(readDocument(couchJson(document)).isDeleted);
}

TEST(CouchDocumentTest, WhatTheServerAddsIsRead)
{
    const CouchDocument document =
        readDocument(R"({"_id":"a","_rev":"3-c","_conflicts":["3-b","2-a"],)"
                     R"("_revisions":{"start":3,"ids":["c","b","a"]}})");
    EXPECT_EQ(document.overruled, (std::vector<std::string>{"3-b", "2-a"}));
    EXPECT_EQ(document.history, (std::vector<std::string>{"3-c", "2-b", "1-a"}));
}

TEST(CouchDocumentTest, AHistoryThatIsLongerThanItsNewestRevisionIsOldIsRefused)
{
    for (const char* const start : {"-9223372036854775808", "-1", "0", "1"}) {
        const std::string json = R"({"_id":"a","_rev":"2-b","_revisions":{"start":)"
            + std::string(start) + R"(,"ids":["b","a"]}})";
        EXPECT_THROW((void)readDocument(json), LedgerError) << start;
    }
}

TEST(CouchDocumentTest, FieldsOfAnotherFormAreLeftOut)
{
    const CouchDocument document =
        readDocument(R"({"_id":"a","_rev":"1-a","type":7,"fields":{"t":true,)"
                     R"("n":null,"l":[1],"o":{},"b":{"base64":"?"},"ok":1}})");
    EXPECT_EQ(document.type, "");
    EXPECT_EQ(document.fields, (std::map<std::string, CloudValue>{{"ok", 1.0}}));
}

TEST(CouchDocumentTest, AForeignDocumentIsOneOfNoType)
{
    const CouchDocument document =
        readDocument(R"({"_id":"Workspace/a","_rev":"1-a","fields":"none"})");
    EXPECT_EQ(recordOf(document), (CloudRecord{{"a", {"Workspace"}}, "", "1-a", {}}));
}

TEST(CouchDocumentTest, ADocumentWithoutANameOrARevisionIsRefused)
{
    for (const char* const json :
        {"{}", R"({"_id":"a"})", R"({"_rev":"1-a"})", "[]", "1", R"({"_id":1,"_rev":"1-a"})",
            R"({"_id":"a","_rev":null})", R"({"_id":"a","_rev":"1-a","_conflicts":[1]})"}) {
        EXPECT_THROW((void)readDocument(json), LedgerError) << json;
    }
}

TEST(CouchDocumentTest, WhatWouldFailAWholeBatchIsNotSent)
{
    const auto refused = [](const auto& change) {
        CouchDocument document = documentOf(sampleRecord());
        change(document);
        return cloudFailureOf([&] { (void)couchJson(document); }).has_value();
    };
    EXPECT_FALSE(refused([](CouchDocument&) {}));
    EXPECT_TRUE(refused([](CouchDocument& document) { document.id = "_design/a"; }));
    EXPECT_TRUE(refused([](CouchDocument& document) { document.id = ""; }));
    EXPECT_TRUE(refused([](CouchDocument& document) { document.id = "a\xff"; }));
    for (const char* const revision : {"v", "1", "1-", "-a", "0-a", "x-a", "\n"}) {
        EXPECT_TRUE(refused([&](CouchDocument& document) { document.revision = revision; }));
    }
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(refused([&](CouchDocument& document) { document.fields["n"] = infinite; }));
    EXPECT_TRUE(refused([](CouchDocument& document) { document.fields["t"] = "\xff"; }));
}

TEST(CouchDocumentTest, NamesOfRecordsMeetNoOtherNames)
{
    const CloudRecordID odd{"a/b", {"zone:x"}};
    EXPECT_EQ(recordOfDocument(recordDocument(odd)), odd);
    EXPECT_FALSE(recordOfDocument(zoneDocument({"x"})));
    EXPECT_FALSE(recordOfDocument(deviceDocument("x")));
    EXPECT_FALSE(recordOfDocument("_design/x"));
    EXPECT_FALSE(deviceOfDocument("device:x/y"));
    EXPECT_EQ(deviceOfDocument(deviceDocument("x")), "x");
}

TEST(CouchDocumentTest, AGenerationIsTheNumberBeforeTheHyphen)
{
    EXPECT_EQ(generationOf("12-abc"), 12);
    for (const char* const revision : {"", "12", "-1-a", "a-1", "99999999999999999999-a", "0-a"}) {
        EXPECT_EQ(generationOf(revision), 0) << revision;
    }
}

TEST(CouchDocumentTest, ARevisionIsBehindByItsGenerationAndThenByItsHash)
{
    EXPECT_TRUE(isBehind("9-f", "10-a"));
    EXPECT_FALSE(isBehind("10-a", "9-f"));
    EXPECT_TRUE(isBehind("2-a", "2-b"));
    EXPECT_FALSE(isBehind("2-b", "2-b"));
    EXPECT_TRUE(isBehind("", "1-a"));
}

} // namespace
} // namespace Kestry
