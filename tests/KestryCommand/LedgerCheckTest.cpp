#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::StartsWith;

class LedgerCheck : public CommandFixture { };

TEST_F(LedgerCheck, ChecksBothFiles)
{
    EXPECT_EQ(done({"check", "--json"}),
        "{\"ledger\":{\"exists\":false,\"valid\":false,\"message\":null,\"clients\":null,"
        "\"projects\":null,\"entries\":null,\"active\":false},\"backup\":{\"exists\":false,"
        "\"valid\":false,\"message\":null,\"clients\":null,\"projects\":null,\"entries\":null,"
        "\"active\":false},\"preserved\":[]}\n");
    addClientAndStart();
    EXPECT_THAT(done({"check", "--json"}),
        StartsWith("{\"ledger\":{\"exists\":true,\"valid\":true,\"message\":null,\"clients\":1,"
                   "\"projects\":1,\"entries\":0,\"active\":true},\"backup\":{\"exists\":true,"
                   "\"valid\":true,\"message\":null,\"clients\":1,\"projects\":1,\"entries\":0,"
                   "\"active\":false}"));
}

TEST_F(LedgerCheck, FailsACheckOfAFileThatIsNotValid)
{
    addClientAndStart();
    damageLedger();
    EXPECT_EQ(run({"check"}), ExitStatus::refused);
    EXPECT_EQ(console_.output,
        "Ledger  NOT VALID: The file isn't valid JSON: it holds a malformed string.\n"
        "Backup  valid: 1 client, 1 project, 0 saved sessions\n");
}

} // namespace
} // namespace Kestry
