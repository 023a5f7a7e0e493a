#pragma once

#include <QTest>

#include <optional>
#include <string>
#include <utility>

#include "LedgerError.h"
#include "Scheduler.h"
#include "TaskOwner.h"

namespace Kestry {

/// Runs a task on the event loop and says how it ends: with "(accepted)" or a refusal.
class AwaitedUpdate {
public:
    explicit AwaitedUpdate(KestryCore::Scheduler& scheduler)
        : owner_(scheduler, [this](std::exception_ptr failure) { keep(failure); })
    {
    }

    void start(KestryCore::Task<void> task) { owner_.start(run(std::move(task))); }
    [[nodiscard]] bool isOver() const { return words_.has_value(); }
    std::string words()
    {
        return QTest::qWaitFor([this] { return isOver(); }, 20'000) ? *words_ : "(does not end)";
    }

private:
    KestryCore::Task<void> run(KestryCore::Task<void> task)
    {
        co_await task;
        words_ = "(accepted)";
    }
    void keep(const std::exception_ptr& failure)
    {
        try {
            std::rethrow_exception(failure);
        } catch (const KestryCore::LedgerError& error) {
            words_ = error.what();
        }
    }

    std::optional<std::string> words_;
    KestryCore::TaskOwner owner_;
};

} // namespace Kestry
