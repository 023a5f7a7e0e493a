#include "StartGuard.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "PosixFileSystem.h"
#include "TemporaryDirectory.h"
#include "UpdatePrefix.h"

namespace Kestry {
namespace {

using namespace KestryCore;

/// A real installation whose versions are small scripts, started by the real launcher.
class StartGuardTest : public testing::Test {
protected:
    StartGuardTest()
    {
        std::filesystem::create_directories(root.path("bin"));
        std::filesystem::copy_file(KESTRY_START_PROGRAM, root.path("bin/kestry"));
        lay("1.2.0", "exit 0");
        std::filesystem::create_symlink("versions/1.2.0", root.path("current"));
    }

    /// A version that notes that it runs, then does what the script says.
    void lay(const std::string& version, const std::string& script)
    {
        const std::string directory = root.path("versions/" + version + "/bin");
        std::filesystem::create_directories(directory);
        std::ofstream(directory + "/kestry")
            << "#!/bin/sh\ncd '" << root.path() << "'\necho " << version << " \"$@\" >>log\n"
            << script << "\n";
        std::filesystem::permissions(directory + "/kestry", std::filesystem::perms::owner_all);
    }
    /// The same on trial.
    void layOnTrial(const std::string& script)
    {
        lay("1.3.0", script);
        prefix.switchTo(UpdateVersion::parse("1.3.0").value());
    }

    /// The exit status of the launcher.
    int start(const std::vector<std::string>& arguments = {})
    {
        const pid_t process = fork();
        if (process == 0) {
            becomeLauncher(arguments);
        }
        return statusOf(process);
    }
    static int statusOf(pid_t process)
    {
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    [[noreturn]] void becomeLauncher(const std::vector<std::string>& arguments)
    {
        try {
            becomeProgram(root.path("bin/kestry"), arguments);
        } catch (...) {
            _exit(99);
        }
    }

    std::string log()
    {
        std::ifstream file(root.path("log"));
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }
    std::string current() { return prefix.current()->text(); }

    TemporaryDirectory root;
    PosixFileSystem files;
    UpdatePrefix prefix{files, root.path()};
};

TEST_F(StartGuardTest, WithoutATrialTheLauncherBecomesTheVersionWithItsArguments)
{
    lay("1.2.0", "echo $PPID $$ >>pids; exit 7");
    EXPECT_EQ(start({"--data-directory", "a b", ""}), 7);
    EXPECT_EQ(log(), "1.2.0 --data-directory a b \n");
}

TEST_F(StartGuardTest, AVersionThatConfirmsKeepsRunningAndItsStatusIsPassedOn)
{
    layOnTrial("rm trial; exit 5");
    EXPECT_EQ(start({"x"}), 5);
    EXPECT_EQ(log(), "1.3.0 x\n");
    EXPECT_EQ(current(), "1.3.0");
}

TEST_F(StartGuardTest, AVersionThatFailsGivesWayToTheOneBefore)
{
    layOnTrial("exit 3");
    EXPECT_EQ(start({"x", "y"}), 0);
    EXPECT_EQ(log(), "1.3.0 x y\n1.2.0 x y\n");
    EXPECT_EQ(current(), "1.2.0");
    EXPECT_EQ(prefix.takeFailed()->version.text(), "1.3.0");
}

TEST_F(StartGuardTest, AVersionThatCrashesGivesWayToTheOneBefore)
{
    layOnTrial("kill -SEGV $$");
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(log(), "1.3.0\n1.2.0\n");
    EXPECT_EQ(current(), "1.2.0");
}

TEST_F(StartGuardTest, AVersionThatCannotBeRunGivesWayToTheOneBefore)
{
    layOnTrial("exit 0");
    std::filesystem::permissions(
        root.path("versions/1.3.0/bin/kestry"), std::filesystem::perms::owner_read);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(log(), "1.2.0\n");
    std::filesystem::remove_all(root.path("versions/1.3.0"));
}

TEST_F(StartGuardTest, AVersionThatIsNoProgramForThisMachineGivesWay)
{
    layOnTrial("exit 0");
    std::ofstream(root.path("versions/1.3.0/bin/kestry")) << "\x7f"
                                                             "ELF for another machine";
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(log(), "1.2.0\n");
    EXPECT_EQ(current(), "1.2.0");
}

TEST_F(StartGuardTest, AVersionThatHangsGivesWayWhenSomebodyEndsIt)
{
    layOnTrial("kill -KILL $$");
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(log(), "1.3.0\n1.2.0\n");
    EXPECT_EQ(current(), "1.2.0");
}

TEST_F(StartGuardTest, AStartThatIsRefusedInWordsDecidesNothing)
{
    layOnTrial("exit 1");
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(log(), "1.3.0\n");
    EXPECT_EQ(current(), "1.3.0");
    EXPECT_TRUE(prefix.trial());
}

TEST_F(StartGuardTest, WhereTheEndsOfChildrenAreIgnoredTheLauncherEndsAllTheSame)
{
    layOnTrial("exit 3");
    const pid_t process = fork();
    if (process == 0) {
        signal(SIGCHLD, SIG_IGN);
        becomeLauncher({});
    }
    EXPECT_EQ(statusOf(process), 0);
    EXPECT_EQ(log(), "1.3.0\n1.2.0\n");
}

TEST_F(StartGuardTest, AMarkThatMakesNoSenseGuardsNothing)
{
    layOnTrial("exit 6");
    std::filesystem::remove(root.path("trial"));
    std::filesystem::create_directory(root.path("trial"));
    EXPECT_EQ(start(), 6);
    EXPECT_EQ(log(), "1.3.0\n");
}

TEST_F(StartGuardTest, AStartThatHandsOverDecidesNothing)
{
    layOnTrial("exit 0");
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(log(), "1.3.0\n");
    EXPECT_TRUE(prefix.trial());
}

TEST_F(StartGuardTest, WhoIsAskedToEndAsksTheVersionAndDecidesNothing)
{
    layOnTrial("trap 'echo asked >>log; exit 9' TERM; echo up >>log; while :; do sleep 0.05; done");
    const pid_t process = fork();
    if (process == 0) {
        becomeLauncher({});
    }
    while (log().find("up") == std::string::npos) {
        usleep(10'000);
    }
    kill(process, SIGTERM);
    EXPECT_EQ(statusOf(process), 9);
    EXPECT_EQ(log(), "1.3.0\nup\nasked\n");
    EXPECT_TRUE(prefix.trial());
}

TEST_F(StartGuardTest, AMarkOfASwitchThatWasNeverMadeGuardsNothing)
{
    std::ofstream(root.path("trial")) << "1.3.0\n1.1.0\n";
    lay("1.2.0", "exit 6");
    EXPECT_EQ(start(), 6);
    EXPECT_EQ(log(), "1.2.0\n");
}

TEST_F(StartGuardTest, TheLauncherMayBeStartedThroughALink)
{
    const TemporaryDirectory elsewhere;
    std::filesystem::create_symlink(root.path("bin/kestry"), elsewhere.path("kestry"));
    EXPECT_EQ(std::system((elsewhere.path("kestry") + " z").c_str()), 0);
    EXPECT_EQ(log(), "1.2.0 z\n");
}

TEST_F(StartGuardTest, AnInstallationWithoutAVersionIsToldInWords)
{
    std::filesystem::remove(root.path("current"));
    EXPECT_EQ(
        WEXITSTATUS(std::system((root.path("bin/kestry") + " 2>" + root.path("words")).c_str())),
        1);
    std::ifstream file(root.path("words"));
    std::string words;
    std::getline(file, words);
    EXPECT_EQ(words, "This installation of Kestry has no current version.");
}

} // namespace
} // namespace Kestry
