#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class StatusReport : public CommandFixture { };

TEST_F(StatusReport, ShowsTheSessionAsItStands)
{
    addClientAndStart();
    pass(600);
    EXPECT_EQ(done({"status"}),
        "State    running, last checkpoint 09:00\n"
        "Elapsed  00:10:00\n"
        "Title    Sketches\n"
        "Client   Aster Studio\n"
        "Project  Website\n"
        "Value    $25.00\n");
}

TEST_F(StatusReport, TellsTheStatusAsJson)
{
    addClientAndStart();
    pass(600);
    const std::string status = done({"status", "--json"});
    EXPECT_THAT(status, StartsWith("{\"state\":\"running\",\"active\":{\"id\":\""));
    EXPECT_THAT(status,
        HasSubstr("\"elapsedSeconds\":600,\"clock\":\"00:10:00\",\"client\":\"Aster Studio\","
                  "\"project\":\"Website\",\"earnedCents\":2500,\"valueText\":\"$25.00\","
                  "\"recoveredSession\":false,\"recoveryAvailable\":false,\"blocked\":false,"
                  "\"errorMessage\":null,\"dataDirectory\":\""));
}

TEST_F(StatusReport, TellsAbsentValuesAsNull)
{
    const std::string status = done({"status", "--json"});
    EXPECT_THAT(status,
        StartsWith(
            "{\"state\":\"idle\",\"active\":null,\"elapsedSeconds\":0,\"clock\":\"00:00:00\","
            "\"client\":null,\"project\":null,\"earnedCents\":null,\"valueText\":null,"));
}

TEST_F(StatusReport, SaysWhyASessionHasNoValue)
{
    done({"client", "add", "Aster"});
    done({"start", "aster"});
    EXPECT_THAT(done({"status", "--json"}), HasSubstr("\"valueText\":\"Rate not set\""));
}

TEST_F(StatusReport, HidesTheDefaultProjectOfAClientWithoutProjects)
{
    done({"client", "add", "Aster", "--no-projects", "--rate", "100"});
    EXPECT_EQ(done({"start", "aster"}), "Started: Aster.\n");
    EXPECT_THAT(done({"status", "--json"}), HasSubstr("\"client\":\"Aster\",\"project\":null"));
    EXPECT_EQ(done({"project", "list"}), "There are no projects yet.\n");
}

TEST_F(StatusReport, ColorsOnlyATerminal)
{
    console_.isTerminal = true;
    EXPECT_THAT(done({"status"}), HasSubstr("\x1B["));
    environment_["NO_COLOR"] = "";
    EXPECT_THAT(done({"status"}), Not(HasSubstr("\x1B[")));
    environment_ = {{"TERM", "dumb"}};
    EXPECT_THAT(done({"status"}), Not(HasSubstr("\x1B[")));
}

} // namespace
} // namespace Kestry
