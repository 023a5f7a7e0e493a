#pragma once

#include <QQuickItem>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "ApplicationWorld.h"
#include "EditorForm.h"
#include "FakeChooser.h"
#include "LedgerError.h"

namespace Kestry {

/// A ledger on a disk of its own and all that a form asks for. Menus are only remembered, and what
/// is run beside the main thread waits until it is told to.
class EditorFixture : public ::testing::Test {
protected:
    static QString draft(const QObject& form, const char* name)
    {
        return form.property(name).toString();
    }

    /// Chooses the entry with this text from a menu.
    static void choose(const Menu& menu, const std::string& text)
    {
        for (const MenuEntry& entry : menu) {
            if (entry.text == text) {
                entry.action();
                return;
            }
        }
        FAIL() << text << " is not in the menu";
    }

    static std::vector<std::string> texts(const Menu& menu)
    {
        std::vector<std::string> result;
        for (const MenuEntry& entry : menu) {
            result.push_back(entry.text);
        }
        return result;
    }

    /// A session of one interval that ended an hour ago.
    KestryCore::Uuid addEntry(const KestryCore::Uuid& project, double seconds)
    {
        KestryCore::NewEntry entry;
        entry.title = "Design";
        entry.start = world.now() + -(3600.0 + seconds);
        entry.duration = seconds;
        return store.addEntry(project, entry);
    }
    [[nodiscard]] KestryCore::TimeEntry entry(const KestryCore::Uuid& id) const
    {
        return *store.data()->entries.find(id);
    }
    [[nodiscard]] KestryCore::Client client(const KestryCore::Uuid& id) const
    {
        return *store.data()->clients.find(id);
    }

    [[nodiscard]] std::string importLogo() const
    {
        if (!logo.failure.empty()) {
            throw KestryCore::LedgerError(logo.failure);
        }
        return logo.logo;
    }

    /// Does what waits beside the main thread.
    void workBeside()
    {
        const auto waiting = std::exchange(beside, {});
        for (const auto& [work, done] : waiting) {
            work();
            done();
        }
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("Europe/Berlin", "en_US")};
    std::vector<std::pair<std::function<void()>, std::function<void()>>> beside;
    FakeChooser chooser;
    LogoResult logo{.logo = "PNG"};
    Menu opened; ///< The menu that was opened last.
    EditorWorld surroundings{store, state, [this] { return world.now(); }, world.scheduler,
        calendar, KestryCore::MoneyText("en_US"), QLocale("en_US"),
        [this](Menu menu, const QString&, const QQuickItem&) { opened = std::move(menu); }, chooser,
        {.import = [this](const std::string&, const auto&) { return importLogo(); },
            .runBeside = [this](auto work, auto done) { beside.emplace_back(work, done); }}};
};

} // namespace Kestry
