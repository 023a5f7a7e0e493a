#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "FakeUpdateFramework.h"
#include "ShellMenus.h"

namespace Kestry {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> words(const Menu& menu)
{
    std::vector<std::string> words;
    for (const MenuEntry& entry : menu) {
        words.push_back(entry.kind == MenuEntry::Kind::separator ? "-" : entry.text);
    }
    return words;
}

const MenuEntry& entry(const Menu& menu, const std::string& text)
{
    const auto found = std::ranges::find(menu, text, &MenuEntry::text);
    EXPECT_NE(menu.end(), found) << text;
    return *found;
}

class ShellMenusTest : public ::testing::Test {
protected:
    [[nodiscard]] Menu mainMenu()
    {
        return Kestry::mainMenu(commander, updater,
            [this](WindowKeys::Command command) { performed.push_back(command); });
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    int quits = 0;
    std::vector<WindowKeys::Command> performed; ///< What the window was told to do.
    Commander commander{store, state, [this] { return world.now(); }, [this] { ++quits; }};
    FakeUpdateFramework::Witness witness;
    SoftwareUpdater updater{{store, state, {.feed = UpdateFeed{"https://updates.example/", {}}},
        FakeUpdateFramework::factory(witness), {}}};
};

TEST_F(ShellMenusTest, TheStatusMenuHasItsEntriesInOrderWithoutShortcuts)
{
    const Menu menu = statusMenu(commander);

    EXPECT_THAT(words(menu),
        ElementsAre("Open Kestry", "Show notch controls", "-", "Start / pause / resume",
            "Stop & save session", "-", "Quit Kestry"));
    EXPECT_TRUE(std::ranges::all_of(menu, [](auto& each) { return each.shortcut.empty(); }));
}

TEST_F(ShellMenusTest, TheStatusMenuCommandsTheSession)
{
    addClient(store, "Birch");
    const Menu menu = statusMenu(commander);

    entry(menu, "Start / pause / resume").action();
    EXPECT_TRUE(store.data()->active);
    world.scheduler.advance(5);
    entry(menu, "Stop & save session").action();
    EXPECT_EQ(1U, store.data()->entries.size());
    entry(menu, "Quit Kestry").action();
    EXPECT_EQ(1, quits);
}

TEST_F(ShellMenusTest, TheStatusMenuOpensTheWindowAndTheNotchControls)
{
    std::vector<std::string> opened;
    state.installOpenDashboard([&] { opened.emplace_back("window"); });
    state.installNotch([&] { opened.emplace_back("notch"); }, {});
    const Menu menu = statusMenu(commander);

    entry(menu, "Open Kestry").action();
    entry(menu, "Show notch controls").action();

    EXPECT_THAT(opened, ElementsAre("window", "notch"));
}

TEST_F(ShellMenusTest, TheMainMenuHasItsEntriesInOrder)
{
    EXPECT_THAT(words(mainMenu()),
        ElementsAre("Check for Updates…", "-", "New client", "New project", "-", "Settings…", "-",
            "Session", "-", "Keyboard shortcuts", "Close window", "Quit Kestry"));
}

TEST_F(ShellMenusTest, TheWindowShowsItsKeysAndClosesFromTheMainMenu)
{
    const Menu menu = mainMenu();
    EXPECT_EQ("F1", entry(menu, "Keyboard shortcuts").shortcut);
    entry(menu, "Keyboard shortcuts").action();
    EXPECT_EQ("Ctrl+W", entry(menu, "Close window").shortcut);
    entry(menu, "Close window").action();
    EXPECT_THAT(performed, ElementsAre(WindowKeys::ShowKeys, WindowKeys::CloseWindow));
}

TEST_F(ShellMenusTest, TheMainMenuHasItsShortcuts)
{
    const Menu menu = mainMenu();

    EXPECT_EQ("Ctrl+N", entry(menu, "New client").shortcut);
    EXPECT_EQ("", entry(menu, "New project").shortcut);
    EXPECT_EQ("Ctrl+,", entry(menu, "Settings…").shortcut);
    const Menu& session = entry(menu, "Session").entries;
    EXPECT_THAT(words(session),
        ElementsAre("Start / pause / resume", "Stop & save", "Show notch controls"));
    EXPECT_EQ("Ctrl+T", session[0].shortcut);
    EXPECT_EQ("Ctrl+Shift+S", session[1].shortcut);
    EXPECT_EQ("Ctrl+Alt+N", session[2].shortcut);
}

TEST_F(ShellMenusTest, ANewProjectIsOfferedOnlyWhileAClientHasProjects)
{
    addClient(store, "Alder", Projects::disabled);
    EXPECT_FALSE(entry(mainMenu(), "New project").isEnabled);

    addClient(store, "Birch");
    EXPECT_TRUE(entry(mainMenu(), "New project").isEnabled);
}

TEST_F(ShellMenusTest, UpdatesCannotBeCheckedForInABuildWithoutThem)
{
    EXPECT_FALSE(entry(mainMenu(), "Check for Updates…").isEnabled);
}

TEST_F(ShellMenusTest, UpdatesCanBeCheckedForWhileTheFrameworkCan)
{
    updater.configure();
    EXPECT_FALSE(entry(mainMenu(), "Check for Updates…").isEnabled);
    witness.framework->published.canCheckForUpdates.assign(true);
    const Menu menu = mainMenu();
    EXPECT_TRUE(entry(menu, "Check for Updates…").isEnabled);
    EXPECT_EQ("", entry(menu, "Check for Updates…").shortcut);

    entry(menu, "Check for Updates…").action();
    EXPECT_THAT(witness.framework->told, ElementsAre("check"));
}

} // namespace
} // namespace Kestry
