#pragma once

#include "EditorFixture.h"
#include "EntryForm.h"

namespace Kestry {

/// A client with a project whose sessions are edited, and sessions of them.
class EntryFormFixture : public EditorFixture {
protected:
    static constexpr double length = 3600.0 + 4 * 60.0 + 9.0;

    /// A session of 1 h 4 min 9 s with a pause.
    KestryCore::Uuid addWithPause()
    {
        const auto id = store.start(website, "Design", world.now());
        world.scheduler.advance(3600);
        store.pause(world.now());
        world.scheduler.advance(600);
        store.resume(world.now());
        world.scheduler.advance(length - 3600);
        store.stop(world.now());
        return id;
    }
    [[nodiscard]] static Editor::EntryForm route(const KestryCore::Uuid& id) { return {id}; }
    [[nodiscard]] const KestryCore::TimeEntry& onlyEntry() const
    {
        return store.data()->entries.front();
    }

    KestryCore::Uuid birch = addClient(store, "Birch");
    KestryCore::Uuid website = addProject(store, birch, "Website");
};

} // namespace Kestry
