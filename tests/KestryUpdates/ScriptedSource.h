#pragma once

#include <string>

#include "FileSystem.h"
#include "LedgerError.h"
#include "Reply.h"
#include "UpdateSource.h"

namespace Kestry {

/// Gives what a test says, a second after it was asked for.
class ScriptedSource final : public UpdateSource {
public:
    ScriptedSource(KestryCore::Scheduler& scheduler, KestryCore::FileSystem& files)
        : scheduler_(scheduler), files_(files)
    {
    }

    std::string feedBytes;
    std::string archiveBytes;
    std::string failure; ///< With which everything ends, unless it is empty.
    int feeds = 0;
    int archives = 0;

    [[nodiscard]] KestryCore::Task<std::string> feed(std::string /*url*/) override
    {
        ++feeds;
        KestryCore::Delay delay(scheduler_, 1.0);
        co_await delay;
        refuseIfTold();
        co_return feedBytes;
    }

    [[nodiscard]] KestryCore::Task<void> archive(ArchiveRequest request) override
    {
        ++archives;
        request.progress(1);
        KestryCore::Delay delay(scheduler_, 1.0);
        co_await delay;
        refuseIfTold();
        write(request.path);
        request.progress(static_cast<std::int64_t>(archiveBytes.size()));
    }

private:
    void refuseIfTold() const
    {
        if (!failure.empty()) {
            throw KestryCore::LedgerError(failure);
        }
    }
    void write(const std::string& path)
    {
        const auto handle = files_.open(path, KestryCore::FileUse::create);
        std::string_view rest = archiveBytes;
        while (!rest.empty()) {
            rest.remove_prefix(files_.write(handle, std::span(&rest, 1)));
        }
        files_.close(handle);
    }

    KestryCore::Scheduler& scheduler_;
    KestryCore::FileSystem& files_;
};

} // namespace Kestry
