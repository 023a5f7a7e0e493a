#include "UpdateHandoff.h"

#include "LedgerError.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

UpdateHandoff sampleHandoff()
{
    return {StoreWorld::uuid(7), StoreWorld::runningLedger().active};
}

TEST(UpdateHandoff, ReadsBackWhatWasWritten)
{
    EXPECT_EQ(decodeUpdateHandoff(encodeUpdateHandoff(sampleHandoff())), sampleHandoff());
}

TEST(UpdateHandoff, WritesTheTokenInUpperCaseAndTheSessionOnlyWhenThereIsOne)
{
    const Uuid token = Uuid::parse("1b4e28ba-2fa1-11d2-883f-0016d3cca427").value();
    EXPECT_EQ(encodeUpdateHandoff({token, std::nullopt}),
        R"({"token":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427"})");
    EXPECT_NE(encodeUpdateHandoff(sampleHandoff()).find(R"("active":{"id":)"), std::string::npos);
}

TEST(UpdateHandoff, ReadsALowerCaseTokenAndKeysOfLaterVersions)
{
    const UpdateHandoff handoff = decodeUpdateHandoff(
        R"({"later":1,"active":null,"token":"1b4e28ba-2fa1-11d2-883f-0016d3cca427"})");
    EXPECT_EQ(handoff.token.text(), "1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
    EXPECT_FALSE(handoff.active.has_value());
}

TEST(UpdateHandoff, RefusesEveryCutOffForm)
{
    const std::string whole = encodeUpdateHandoff(sampleHandoff());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_THROW((void)decodeUpdateHandoff(whole.substr(0, length)), LedgerError) << length;
    }
}

TEST(UpdateHandoff, RefusesAMissingOrMalformedToken)
{
    for (const char* text : {"{}", R"({"token":"x"})", R"({"token":7})", "[]", "null"}) {
        EXPECT_THROW((void)decodeUpdateHandoff(text), LedgerError) << text;
    }
}

} // namespace
} // namespace KestryCore
