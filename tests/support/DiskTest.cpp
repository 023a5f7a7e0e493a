#include "Disk.h"

#include <gtest/gtest.h>

#include <set>

namespace KestryCore {
namespace {

using Contents = std::map<std::string, std::string>;

class DiskTest : public testing::Test {
protected:
    DiskTest()
    {
        disk.putDirectory("/");
        disk.put("/a", "old");
    }

    /// A new file, all of it synced but its name.
    Disk::FileID createSynced(const std::string& path, const std::string& bytes)
    {
        const Disk::FileID id = disk.create(path, false);
        disk.append(id, bytes);
        disk.sync(id);
        return id;
    }

    /// Everything that a power cut may leave.
    std::set<Contents> possibilities()
    {
        std::set<Contents> all;
        EveryChoice choices;
        do {
            Disk left = disk;
            left.cutPower(choices);
            all.insert(left.contents());
        } while (choices.next());
        return all;
    }

    Disk disk;
};

TEST_F(DiskTest, WhatIsSyncedOutlivesAPowerCut)
{
    createSynced("/b", "new");
    disk.syncDirectory("/");
    EXPECT_EQ(possibilities(), (std::set<Contents>{{{"/a", "old"}, {"/b", "new"}}}));
}

TEST_F(DiskTest, ARenameThatIsNotSyncedHappenedOrNotOrLeftTheOldName)
{
    createSynced("/b", "new");
    disk.syncDirectory("/");
    disk.rename("/b", "/a");
    EXPECT_EQ(possibilities(),
        (std::set<Contents>{
            {{"/a", "old"}, {"/b", "new"}}, {{"/a", "new"}}, {{"/a", "new"}, {"/b", "new"}}}));
}

TEST_F(DiskTest, ChangesOfNamesReachTheDiskIndependently)
{
    const Disk::FileID id = disk.find("/a");
    disk.link(id, "/b");
    disk.remove("/a");
    EXPECT_EQ(possibilities(),
        (std::set<Contents>{{{"/a", "old"}}, {{"/a", "old"}, {"/b", "old"}}, {{"/b", "old"}}, {}}));
}

TEST_F(DiskTest, AFileInADirectoryThatWasLostIsLost)
{
    disk.create("/new", true);
    createSynced("/new/b", "bytes");
    disk.syncDirectory("/new");
    EXPECT_EQ(possibilities(),
        (std::set<Contents>{{{"/a", "old"}}, {{"/a", "old"}, {"/new/b", "bytes"}}}));
}

TEST_F(DiskTest, BytesThatWereNotSyncedAreThereGoneZeroOrTorn)
{
    const std::string zero(1, '\0');
    disk.append(disk.find("/a"), "12");
    std::set<std::string> contents;
    for (const Contents& left : possibilities()) {
        contents.insert(left.at("/a"));
    }
    EXPECT_EQ(contents,
        (std::set<std::string>{
            "old", "old12", "old" + zero + zero, "old1", "old1" + zero, "old" + zero + "2"}));
}

TEST_F(DiskTest, BytesAreTornAtSectorsAndPages)
{
    const std::string bytes(3 * 4096, 'x');
    disk.append(disk.find("/a"), bytes);
    std::set<std::size_t> sizes;
    for (const Contents& left : possibilities()) {
        sizes.insert(left.at("/a").size() - 3);
    }
    EXPECT_EQ(sizes, (std::set<std::size_t>{0, 1, 512, 4096, 6144, 8192, 11776, 12287, 12288}));
}

TEST_F(DiskTest, AnyPowerCutLeavesADiskOnWhichNothingIsInDoubt)
{
    createSynced("/b", "new");
    disk.rename("/b", "/a");
    disk.append(disk.find("/a"), "more");
    SeededChoices choices(1);
    disk.cutPower(choices);
    EXPECT_EQ(possibilities(), std::set<Contents>{disk.contents()});
}

TEST_F(DiskTest, APowerCutTellsTheUnitsAtWhichItTore)
{
    disk.append(disk.find("/a"), std::string(513, 'x'));
    std::set<std::set<std::size_t>> tears;
    EveryChoice choices;
    do {
        Disk left = disk;
        tears.insert(left.cutPower(choices));
    } while (choices.next());
    EXPECT_EQ(tears, (std::set<std::set<std::size_t>>{{}, {1}, {512}}));
}

TEST_F(DiskTest, OneChangeApartIsEachChangeKeptAloneAndEachMissingAlone)
{
    createSynced("/b", "2");
    createSynced("/c", "3");
    createSynced("/d", "4");
    std::multiset<std::size_t> files;
    for (const std::size_t answer : {std::size_t{0}, std::size_t{1}}) {
        OneApart choices(answer);
        do {
            Disk left = disk;
            left.cutPower(choices);
            files.insert(left.contents().size());
        } while (choices.next());
    }
    EXPECT_EQ(files, (std::multiset<std::size_t>{1, 2, 2, 2, 3, 3, 3, 4}));
}

TEST(OneApartTest, GivesEachQuestionEachOtherAnswerAlone)
{
    std::multiset<std::string> seen;
    OneApart choices(1);
    do {
        const std::size_t first = choices.below(2);
        const std::size_t second = choices.below(3);
        seen.insert(std::to_string(first) + std::to_string(second));
    } while (choices.next());
    EXPECT_EQ(seen, (std::multiset<std::string>{"11", "01", "10", "12"}));
}

TEST(EveryChoiceTest, GivesEachCombinationOnce)
{
    std::multiset<std::string> seen;
    EveryChoice choices;
    do {
        const std::size_t first = choices.below(2);
        const std::size_t second = first == 0 ? 0 : choices.below(3);
        seen.insert(std::to_string(first) + std::to_string(second));
    } while (choices.next());
    EXPECT_EQ(seen, (std::multiset<std::string>{"00", "10", "11", "12"}));
}

} // namespace
} // namespace KestryCore
