#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <map>
#include <string>

#include "PosixFileSystem.h"
#include "TimeStore.h"
#include "UserDefaults.h"
#include "VirtualScheduler.h"

namespace Kestry {

/// User defaults that last as long as the test.
class MapDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<bool> boolean(const std::string& key) const override
    {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setBoolean(const std::string& key, bool value) override { values[key] = value; }
    [[nodiscard]] std::optional<std::string> string(const std::string& key) const override
    {
        const auto found = strings.find(key);
        return found == strings.end() ? std::nullopt : std::optional(found->second);
    }
    void setString(const std::string& key, const std::string& value) override
    {
        strings[key] = value;
    }

    std::map<std::string, bool> values;
    std::map<std::string, std::string> strings;
};

/// The world around the application under test: time that passes when told to, defaults, a
/// directory of its own, and words for making a ledger.
class ApplicationWorld {
public:
    static constexpr KestryCore::Date morning{780000000.0};

    [[nodiscard]] KestryCore::Date now() const { return morning + scheduler.now() + clockAhead; }
    [[nodiscard]] KestryCore::StorePlatform storePlatform()
    {
        return {.files = files,
            .now = [this] { return now(); },
            .steady = [this] { return scheduler.now(); }};
    }

    /// Options for a store over the test's directory.
    [[nodiscard]] KestryCore::StoreOptions onDisk() const
    {
        KestryCore::StoreOptions options;
        options.directory = directory.path().toStdString();
        return options;
    }
    /// Options for a store in memory alone.
    [[nodiscard]] static KestryCore::StoreOptions inMemory()
    {
        KestryCore::StoreOptions options;
        options.demoLedger = KestryCore::LedgerData{};
        return options;
    }

    [[nodiscard]] QByteArray ledgerBytes() const
    {
        QFile file(directory.filePath("ledger.json"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Cuts the ledger on the disk short, so that no later change can be saved.
    void damageLedger() const { QFile(directory.filePath("ledger.json")).resize(10); }

    KestryCore::VirtualScheduler scheduler;
    double clockAhead = 0.0; ///< By so many seconds somebody has set the clock forward.
    KestryCore::PosixFileSystem files;
    MapDefaults defaults;
    QTemporaryDir directory;
};

enum class Projects { enabled, disabled };

inline KestryCore::Uuid addClient(
    KestryCore::TimeStore& store, const std::string& name, Projects projects = Projects::enabled)
{
    KestryCore::NewClient client;
    client.name = name;
    client.colorHex = "A2A5AA";
    client.projectsEnabled = projects == Projects::enabled;
    return store.addClient(client);
}

inline KestryCore::Uuid addProject(
    KestryCore::TimeStore& store, const KestryCore::Uuid& client, const std::string& name)
{
    return store.addProject(client, {name, 10000, true});
}

} // namespace Kestry
