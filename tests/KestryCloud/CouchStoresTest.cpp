#include <QTest>

#include "CloudContract.h"
#include "CouchCloudContainer.h"
#include "CouchDouble.h"
#include "QtScheduler.h"
#include "SentRecord.h"

// The contract of cloud stores, against a server of our own.

namespace Kestry {
namespace {

using namespace KestryCore;

constexpr const char* contractDatabase = "hours";

CouchLimits quickLimits()
{
    CouchLimits limits;
    limits.pageBytes = std::size_t{1} << 20U;
    limits.answerBytes = std::size_t{16} << 20U;
    limits.patienceSeconds = 0.01;
    return limits;
}

class CouchUnderTest : public CloudUnderTest {
public:
    std::unique_ptr<CloudContainer> open() override
    {
        const CouchAddress address{server.url(), contractDatabase};
        CouchPlatform platform{scheduler_};
        platform.limits = quickLimits();
        return std::make_unique<CouchCloudContainer>(
            address, CouchAccount{"anna", "secret"}, platform);
    }
    Scheduler& scheduler() override { return scheduler_; }
    void runUntil(const std::function<bool()>& holds) override
    {
        (void)QTest::qWaitFor(holds, 120'000);
    }
    void removeZone(const CloudZoneID& /*zone*/) override
    {
        server.removeDatabase(contractDatabase);
    }
    void removeRecord(const CloudRecordID& record) override
    {
        server.removeDocument(contractDatabase, recordDocument(record));
    }
    void setReachable(bool isReachable) override { server.setReachable(isReachable); }
    bool overrule(const CloudRecord& base, const CloudRecord& rival) override
    {
        (void)server.accept(contractDatabase, sentDocument(rival), revisionOf(base), true);
        return true;
    }
    std::size_t pageBytes() const override { return quickLimits().pageBytes; }
    CloudErrorCode codeOfZoneMadeAnew() const override { return CloudErrorCode::storeReplaced; }

    CouchDouble server;

private:
    QtScheduler scheduler_;
};

/// A simpler server, with what it and busy clusters do to answers and feeds.
class SimpleCouchUnderTest final : public CouchUnderTest {
public:
    SimpleCouchUnderTest()
    {
        server.isSimple = true;
        server.shufflesAnswers = true;
        server.repeatsRows = true;
        server.reversesRows = true;
    }
};

INSTANTIATE_TEST_SUITE_P(Couch, CloudContract,
    testing::Values(CloudStoreKind{"Couch", [] { return std::make_unique<CouchUnderTest>(); }},
        CloudStoreKind{"SimpleCouch", [] { return std::make_unique<SimpleCouchUnderTest>(); }}),
    CloudStoreKind::nameOf);

} // namespace
} // namespace Kestry
