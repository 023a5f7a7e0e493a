#include "UpdateInstallation.h"

#include <gtest/gtest.h>

#include "InstalledPrefix.h"
#include "Refusal.h"

namespace Kestry {
namespace {

using namespace KestryCore;

class UpdateInstallationTest : public testing::Test, public InstalledPrefix {
protected:
    /// With which words an archive is refused. The installed version stays whatever they are.
    std::string refusal(const AppcastItem& item, const std::string& archive)
    {
        const std::string words = refusalOf([&] { install(item, archive); });
        if (words != accepted) {
            EXPECT_EQ(startable(), "1.2.0") << words;
            EXPECT_FALSE(prefix.trial()) << words;
        }
        return words;
    }

    const std::string release = testArchive(versionEntries("1.3.0"));
    const std::string notOurs =
        "The new version was refused: it isn't signed by those who make Kestry.";
};

TEST_F(UpdateInstallationTest, ASignedNewVersionIsInstalledAndItsArchiveGone)
{
    EXPECT_EQ(refusal(announce("1.3.0", release), release), accepted);
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_FALSE(files.status("/home/kestry/updates/archive"));
}

TEST_F(UpdateInstallationTest, AnArchiveSignedByAnotherKeyIsRefused)
{
    AppcastItem item = announce("1.3.0", release);
    item.signature = SigningKey().sign(release);
    EXPECT_EQ(refusal(item, release), notOurs);
}

TEST_F(UpdateInstallationTest, AnArchiveChangedOnItsWayIsRefused)
{
    std::string changed = release;
    changed[changed.size() / 2] = static_cast<char>(changed[changed.size() / 2] ^ 1);
    EXPECT_EQ(refusal(announce("1.3.0", release), changed), notOurs);
}

TEST_F(UpdateInstallationTest, NothingOfAnUnsignedArchiveIsUnpacked)
{
    AppcastItem item = announce("1.3.0", release);
    item.signature.fill(0);
    EXPECT_EQ(refusal(item, release), notOurs);
    EXPECT_TRUE(files.list("/home/kestry/versions/1.3.0").empty());
}

TEST_F(UpdateInstallationTest, AnOldSignedArchiveUnderANewNameIsRefused)
{
    const std::string old = testArchive(versionEntries("1.1.0"));
    EXPECT_EQ(refusal(announce("1.3.0", old), old),
        "The new version was refused: it was announced as 1.3.0, and it is 1.1.0.");
}

TEST_F(UpdateInstallationTest, AnOldSignedArchiveUnderItsOwnNameIsRefused)
{
    const std::string old = testArchive(versionEntries("1.1.0"));
    EXPECT_EQ(refusal(announce("1.1.0", old), old),
        "The new version was refused: 1.1.0 isn't newer than 1.2.0.");
}

TEST_F(UpdateInstallationTest, ASwappedFeedCannotGiveOneVersionForAnother)
{
    const std::string other = testArchive(versionEntries("1.2.5"));
    EXPECT_EQ(refusal(announce("1.3.0", other), other),
        "The new version was refused: it was announced as 1.3.0, and it is 1.2.5.");
}

TEST_F(UpdateInstallationTest, AnArchiveOfAnotherLengthIsRefused)
{
    const std::string words = "The new version was refused: it isn't as large as announced.";
    const AppcastItem item = announce("1.3.0", release);
    EXPECT_EQ(refusal(item, release.substr(0, release.size() - 1)), words);
    EXPECT_EQ(refusal(item, release + '\0'), words);
    EXPECT_EQ(refusal(item, release + release), words);
    EXPECT_EQ(refusal(item, ""), words);
}

TEST_F(UpdateInstallationTest, ASignedArchiveThatLeadsOutIsRefusedAllTheSame)
{
    auto entries = versionEntries("1.3.0");
    entries.push_back({.path = "../1.2.0/bin/kestry", .content = "evil", .mode = 0755});
    const std::string evil = testArchive(entries);
    EXPECT_EQ(refusal(announce("1.3.0", evil), evil),
        "The new version was refused: “../1.2.0/bin/kestry” in its archive leads out of its "
        "folder.");
}

TEST_F(UpdateInstallationTest, ARefusedArchiveIsClearedAway)
{
    AppcastItem item = announce("1.3.0", release);
    item.signature.fill(0);
    (void)refusal(item, release);
    prefix.clear();
    EXPECT_FALSE(files.status("/home/kestry/updates"));
    EXPECT_FALSE(files.status("/home/kestry/versions/1.3.0"));
}

} // namespace
} // namespace Kestry
