#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "UpdateFramework.h"

namespace Kestry {

/// A framework that does nothing by itself: it remembers what it is told, and a test publishes what
/// it would.
class FakeUpdateFramework final : public UpdateFramework {
public:
    /// What is left of it for a test, whoever owns the framework.
    struct Witness {
        FakeUpdateFramework* framework = nullptr;
        int made = 0;
        UpdateFrameworkSetup setup{};
        std::string startFailure{}; ///< Why it cannot start; empty when it can.
    };

    explicit FakeUpdateFramework(Witness& witness) : witness_(witness) { }

    [[nodiscard]] static UpdateFrameworkFactory factory(Witness& witness)
    {
        return [&witness](UpdateFrameworkSetup setup) {
            auto framework = std::make_unique<FakeUpdateFramework>(witness);
            witness.framework = framework.get();
            witness.setup = std::move(setup);
            ++witness.made;
            return framework;
        };
    }

    [[nodiscard]] const UpdateFrameworkFields& fields() const override { return published; }
    void start(UpdateDelegate& itsDelegate) override
    {
        if (!witness_.startFailure.empty()) {
            throw std::runtime_error(witness_.startFailure);
        }
        delegate = &itsDelegate;
    }
    void setAutomaticallyChecksForUpdates(bool isAutomatic) override
    {
        published.automaticallyChecksForUpdates.assign(isAutomatic);
    }
    void checkForUpdates() override { told.emplace_back("check"); }
    void install() override { told.emplace_back("install"); }
    void dismiss() override { told.emplace_back("dismiss"); }

    UpdateFrameworkFields published;
    UpdateDelegate* delegate = nullptr;
    std::vector<std::string> told;

private:
    Witness& witness_;
};

} // namespace Kestry
