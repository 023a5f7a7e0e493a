#include "UpdateRequest.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "MemoryFileSystem.h"

namespace Kestry {
namespace {

const std::string writtenToken = "0F5B7A52-3C11-4E0B-9A63-6C1D2B7E8F90";
const KestryCore::Uuid wantedToken = *KestryCore::Uuid::parse(writtenToken);
const std::string directory = "/home/ledger";
const std::string requestPath = directory + "/update-request";

TEST(UpdateToken, IsThatOfTheFirstUrlThatAsksForAnUpdate)
{
    const std::string asking = "kestry://update?token=" + writtenToken;
    EXPECT_EQ(updateToken({asking}), wantedToken);
    EXPECT_EQ(updateToken({"kestry://open", "https://update?token=1", asking}), wantedToken);
    EXPECT_EQ(updateToken({"kestry://update?token=other", asking}), std::nullopt);
    EXPECT_EQ(updateToken({"kestry://update?x=%", asking}), std::nullopt);
    EXPECT_EQ(updateToken({}), std::nullopt);
}

TEST(UpdateToken, MustBeAUuidInAnItemOfThatName)
{
    for (const std::string& query : {std::string("?token"), std::string("?token="),
             "?TOKEN=" + writtenToken, "?token=%20" + writtenToken, "?token=" + writtenToken + "0",
             "?a=b&token&token=" + writtenToken, "#token=" + writtenToken, std::string()}) {
        EXPECT_EQ(updateToken({"kestry://update" + query}), std::nullopt) << query;
    }
    EXPECT_EQ(
        updateToken({"kestry://update?token=0f5b7a52-3c11-4e0b-9a63-6c1d2b7e8f90"}), wantedToken);
}

class UpdateRequestTest : public testing::Test {
protected:
    UpdateRequestTest() { files.putDirectory(directory); }

    [[nodiscard]] bool holds(const std::string& content)
    {
        files.put(requestPath, content);
        return UpdateRequest(files, directory).holds(wantedToken);
    }

    KestryCore::MemoryFileSystem files;
};

TEST_F(UpdateRequestTest, ItsTokenMayStandAmongBlanksAndLineEnds)
{
    EXPECT_TRUE(holds(writtenToken));
    EXPECT_TRUE(holds(writtenToken + "\n"));
    EXPECT_TRUE(holds("\r\n\t " + writtenToken + " \r\n"));
    EXPECT_TRUE(holds("0f5b7a52-3c11-4e0b-9a63-6c1d2b7e8f90"));
}

TEST_F(UpdateRequestTest, AFileOf129BytesIsNoneEvenWithTheRightToken)
{
    EXPECT_TRUE(holds(writtenToken + std::string(128 - 36, ' ')));
    EXPECT_FALSE(holds(writtenToken + std::string(129 - 36, ' ')));
}

TEST_F(UpdateRequestTest, AnythingButTheTokenIsNone)
{
    for (const std::string& content : {std::string(), std::string("\n"), writtenToken + "x",
             "{" + writtenToken + "}", writtenToken + " " + writtenToken, writtenToken + "\xFF",
             std::string("0F5B7A52-3C11-4E0B-9A63-6C1D2B7E8F91")}) {
        EXPECT_FALSE(holds(content)) << content;
    }
}

TEST_F(UpdateRequestTest, AFileThatCannotBeReadIsNone)
{
    EXPECT_FALSE(UpdateRequest(files, directory).holds(wantedToken));
    files.put(requestPath, writtenToken);
    for (int call = 1; call <= 3; ++call) {
        files.failCall(call, EIO);
        EXPECT_FALSE(UpdateRequest(files, directory).holds(wantedToken)) << files.faultyCall();
        EXPECT_TRUE(files.faultHappened());
    }
    EXPECT_EQ(files.openHandles(), 0U);
}

TEST_F(UpdateRequestTest, IsRemovedOrTellsWhyNot)
{
    files.put(requestPath, writtenToken);
    files.failCall(1, EACCES);
    try {
        UpdateRequest(files, directory).remove();
        ADD_FAILURE() << "removed";
    } catch (const KestryCore::LedgerError& failure) {
        EXPECT_STREQ(failure.what(), "update-request could not be removed: Permission denied.");
    }
    files.heal();
    UpdateRequest(files, directory).remove();
    EXPECT_FALSE(files.content(requestPath));
}

TEST_F(UpdateRequestTest, TheAcknowledgementIsOneCompactObject)
{
    acknowledgeUpdate(files, "/home/new/ledger", wantedToken, "/opt/Kestry.AppImage");
    EXPECT_EQ(files.content("/home/new/ledger/update-ready.json"),
        "{\"token\":\"" + writtenToken + "\",\"pid\":" + std::to_string(getpid())
            + ",\"bundlePath\":\"\\/opt\\/Kestry.AppImage\"}");
}

TEST_F(UpdateRequestTest, AnAcknowledgementIsWrittenWholeOrNotAtAll)
{
    const std::string path = directory + "/update-ready.json";
    files.put(path, "earlier");
    for (int call = 1;; ++call) {
        files.failCall(call, ENOSPC);
        try {
            acknowledgeUpdate(files, directory, wantedToken, "/opt/kestry");
        } catch (const KestryCore::LedgerError&) {
            EXPECT_EQ(files.content(path), "earlier") << files.faultyCall();
        }
        if (!files.faultHappened()) {
            break;
        }
    }
    EXPECT_NE(files.content(path), "earlier");
}

} // namespace
} // namespace Kestry
