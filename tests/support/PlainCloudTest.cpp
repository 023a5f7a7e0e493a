#include "PlainCloud.h"

#include "CloudContract.h"
#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

class PlainCloudUnderTest final : public CloudUnderTest {
public:
    std::unique_ptr<CloudContainer> open() override { return cloud_.open(); }
    Scheduler& scheduler() override { return scheduler_; }
    void runUntil(const std::function<bool()>& holds) override
    {
        for (int turns = 0; turns < 10'000 && !holds(); ++turns) {
            scheduler_.advance(0.01);
        }
    }
    void removeZone(const CloudZoneID& zone) override { cloud_.removeZone(zone); }
    void removeRecord(const CloudRecordID& record) override { cloud_.removeRecord(record); }
    void setReachable(bool isReachable) override { cloud_.isReachable = isReachable; }
    std::size_t pageBytes() const override { return cloud_.pageBytes; }

private:
    VirtualScheduler scheduler_;
    PlainCloud cloud_{scheduler_};
};

INSTANTIATE_TEST_SUITE_P(Plain, CloudContract,
    testing::Values(
        CloudStoreKind{"PlainCloud", [] { return std::make_unique<PlainCloudUnderTest>(); }}),
    CloudStoreKind::nameOf);

} // namespace
} // namespace KestryCore
