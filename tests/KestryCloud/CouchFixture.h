#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Awaited.h"
#include "CloudRefusal.h"
#include "CouchCloudContainer.h"
#include "CouchDouble.h"
#include "QtScheduler.h"
#include "SentRecord.h"

namespace Kestry {

/// A server of our own with a zone in the database "hours", and two devices of one user.
class CouchFixture : public ::testing::Test {
protected:
    using Kind = DoubleFault::Kind;
    using Results = std::vector<KestryCore::CloudRecordResult>;

    struct Device {
        std::unique_ptr<CouchCloudContainer> container;
        [[nodiscard]] KestryCore::CloudDatabase& store() const
        {
            return container->privateDatabase();
        }
    };

    static inline const KestryCore::CloudZoneID zone{"KestryWorkspace"};
    static constexpr const char* hours = "hours";

    CouchFixture()
    {
        limits.pageBytes = std::size_t{1} << 20U;
        limits.patienceSeconds = 0.01;
        limits.lookSeconds = 0.0;  // These tests do within it what else takes an administrator.
        limits.doubtSeconds = 0.0; // A second look is enough.
        limits.answerSeconds = 20.0;
        restart(one);
        restart(two);
        server.createDatabase(hours);
        run(one.store().createZone(zone));
        server.requests.clear();
    }

    /// The device starts anew, with what it has kept.
    void restart(Device& device)
    {
        CouchPlatform platform{scheduler};
        platform.limits = limits;
        platform.now = [] { return KestryCore::Date{784111777.0 - 978307200.0}; };
        device.container = std::make_unique<CouchCloudContainer>(
            CouchAddress{server.url(), hours}, CouchAccount{user, password}, platform);
    }

    template <class Value>
    Value run(KestryCore::Task<Value> task)
    {
        return await(scheduler, std::move(task));
    }
    void run(KestryCore::Task<void> task) { await(scheduler, std::move(task)); }
    template <class Value>
    KestryCore::CloudError failureOf(KestryCore::Task<Value> task)
    {
        const auto failure = cloudFailureOf([&] { (void)run(std::move(task)); });
        EXPECT_TRUE(failure.has_value()) << "It does not fail.";
        return failure.value_or(KestryCore::CloudError(""));
    }

    // Records.

    static KestryCore::CloudRecord record(const std::string& name, const std::string& text = "text")
    {
        KestryCore::CloudRecord made{{name, zone}, "KestryRecord", {}, {}};
        made.fields["text"] = text;
        return made;
    }
    static KestryCore::CloudRecord changed(KestryCore::CloudRecord record, const std::string& text)
    {
        record.fields["text"] = text;
        return record;
    }
    static std::string textOf(const KestryCore::CloudRecord& record)
    {
        return std::get<std::string>(record.fields.at("text"));
    }
    static std::string nameOf(const std::string& record) { return zone.name + "/" + record; }

    // Verbs.

    Results save(const Device& device, std::vector<KestryCore::CloudRecord> records)
    {
        return run(device.store().save(std::move(records)));
    }
    KestryCore::CloudRecord saved(const Device& device, const KestryCore::CloudRecord& record)
    {
        const Results results = save(device, {record});
        return std::get<KestryCore::CloudRecord>(results.at(0).result);
    }
    KestryCore::CloudError refused(const Device& device, const KestryCore::CloudRecord& record)
    {
        const Results results = save(device, {record});
        return std::get<KestryCore::CloudError>(results.at(0).result);
    }
    KestryCore::CloudChanges changes(
        const Device& device, std::optional<KestryCore::CloudCursor> since = {})
    {
        return run(device.store().changes(zone, std::move(since)));
    }
    /// The texts of the records in a page, by name.
    static std::map<std::string, std::string> texts(const KestryCore::CloudChanges& page)
    {
        std::map<std::string, std::string> found;
        for (const auto& modification : page.modifications) {
            found[modification.id.name] =
                textOf(std::get<KestryCore::CloudRecord>(modification.result));
        }
        return found;
    }
    /// Another writer is accepted over the same version, as in a cluster.
    KestryCore::CloudRecord acceptRival(
        const KestryCore::CloudRecord& record, const std::string& parent, bool wins)
    {
        KestryCore::CloudRecord rival = record;
        rival.serverVersion = server.accept(hours, sentDocument(record), parent, wins);
        return rival;
    }
    void failNext(const std::string& pathEnd, const DoubleAnswer& answer)
    {
        server.failNext(pathEnd, {.kind = Kind::answer, .answer = answer});
    }
    void failNext(const std::string& pathEnd, Kind kind)
    {
        server.failNext(pathEnd, {.kind = kind});
    }

    std::string user = "anna";
    std::string password = "secret";
    CouchLimits limits;
    QtScheduler scheduler;
    CouchDouble server;
    Device one;
    Device two;
};

} // namespace Kestry
