#pragma once

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "SessionList.h"

namespace Kestry {

/// The world around a list of sessions: one client with one project, and sessions on it.
class SessionListFixture : public ::testing::Test {
protected:
    SessionListFixture()
    {
        aster = addClient(store, "Aster Studio");
        website = addProject(store, aster, "Website");
    }

    SessionList::World worldOfList() { return worldOf(store); }
    SessionList::World worldOf(KestryCore::TimeStore& shown)
    {
        return {commander, shown, state, world.scheduler, [this] { return world.now(); }, calendar,
            KestryCore::MoneyText("en_US"),
            [this](Menu opened, const QString& /*name*/, const QQuickItem& /*item*/) {
                menu = std::move(opened);
            },
            deletion};
    }

    KestryCore::Uuid save(const std::string& title, double hoursAgo = 1.0, double hours = 0.5)
    {
        const KestryCore::Date start = world.now() + -3600.0 * hoursAgo;
        return saveAt(title, start, start + 3600.0 * hours);
    }
    KestryCore::Uuid saveAt(const std::string& title, KestryCore::Date start, KestryCore::Date end)
    {
        return saveOn(website, title, start, end);
    }
    KestryCore::Uuid saveOn(const KestryCore::Uuid& project, const std::string& title,
        KestryCore::Date start, KestryCore::Date end)
    {
        KestryCore::NewEntry entry;
        entry.clientID = store.data()->projects.find(project)->clientID;
        entry.projectID = project;
        entry.title = title;
        entry.start = start;
        entry.duration = end - start;
        const KestryCore::Uuid id = store.addEntry(entry);
        world.scheduler.turn();
        return id;
    }
    void start(const std::string& title)
    {
        store.start(website, title, world.now());
        world.scheduler.turn();
    }
    [[nodiscard]] static QStringList labels(SessionList& list)
    {
        QStringList result;
        for (int row = 0; row < list.rows()->rowCount(); ++row) {
            result << list.rows()->data(list.rows()->index(row), Qt::DisplayRole).toString();
        }
        return result;
    }
    [[nodiscard]] KestryCore::Date inMonth(int month, int day, int hourOfDay = 0) const
    {
        return *calendar->date({KestryCore::CalendarDay{2025, month, day}, hourOfDay, 0, 0.0});
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("Europe/Berlin", "en_US")};
    SessionDeletion deletion{store, world.scheduler};
    Menu menu;
    KestryCore::Uuid aster;
    KestryCore::Uuid website;
};

} // namespace Kestry
