// The store of the simulation is put under the promises that every cloud store makes.

#include "CloudContract.h"
#include "CloudLine.h"

namespace KestryCore {
namespace {

class SimulatedCloudUnderTest final : public CloudUnderTest {
public:
    SimulatedCloudUnderTest()
    {
        for (CloudLine& line : lines_) {
            line.account = CloudLine::ownAccount;
        }
    }

    std::unique_ptr<CloudContainer> open() override
    {
        opened_ = (opened_ + 1) % lines_.size();
        return lines_.at(opened_).open();
    }
    Scheduler& scheduler() override { return loop_; }
    void runUntil(const std::function<bool()>& holds) override
    {
        while (!holds() && loop_.nextDue()) {
            seconds_ = loop_.nextDue().value();
            loop_.runNext();
        }
    }
    void removeZone(const CloudZoneID&) override { store_.wipe(); }
    void removeRecord(const CloudRecordID& record) override { store_.remove(record.name); }
    void setReachable(bool isReachable) override
    {
        for (CloudLine& line : lines_) {
            line.isOnline = isReachable;
        }
    }
    CloudErrorCode codeOfZoneMadeAnew() const override { return CloudErrorCode::storeReplaced; }
    std::size_t pageBytes() const override { return 1 << 20; }

private:
    double seconds_ = 0.0;
    MachineLoop loop_{seconds_};
    CloudStore store_;
    CloudWeather weather_{store_};
    SimulatedCloud cloud_{store_, loop_, weather_};
    std::array<CloudLine, 2> lines_{CloudLine(cloud_, loop_), CloudLine(cloud_, loop_)};
    std::size_t opened_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Simulated, CloudContract,
    testing::Values(
        CloudStoreKind{"Simulated", [] { return std::make_unique<SimulatedCloudUnderTest>(); }}),
    CloudStoreKind::nameOf);

} // namespace
} // namespace KestryCore
