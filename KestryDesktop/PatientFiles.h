#pragma once

#include <QThreadPool>

#include <chrono>
#include <functional>
#include <optional>

#include "FileSystem.h"
#include "Scheduler.h"

namespace Kestry {

/// A file system that tells when the disk is slow. While somebody wants to be told, calls are made
/// on another thread. The caller waits for each one all the same, so that they come one after the
/// other as before. It is to be called on the thread of the scheduler only.
class PatientFiles final : public KestryCore::FileSystem {
public:
    /// What happens once the calls of one turn of the event loop have taken too long together, in
    /// the midst of one of them, and what happens after that turn. They must not use this.
    struct Signs {
        std::function<void()> slow{};
        std::function<void()> over{};
    };

    /// Files and scheduler must outlive this.
    PatientFiles(KestryCore::FileSystem& files, KestryCore::Scheduler& scheduler,
        std::chrono::milliseconds patience = std::chrono::milliseconds(300));

    /// Without `slow`, nobody is told.
    void tell(Signs signs);

    [[nodiscard]] std::string applicationSupportDirectory() const override;
    [[nodiscard]] std::optional<KestryCore::FileStatus> status(const std::string& path) override;
    [[nodiscard]] std::vector<std::string> list(const std::string& directory) override;
    [[nodiscard]] Handle open(const std::string& path, KestryCore::FileUse use) override;
    [[nodiscard]] std::uint64_t size(Handle handle) override;
    [[nodiscard]] std::size_t read(Handle handle, char* buffer, std::size_t capacity) override;
    [[nodiscard]] KestryCore::FileIdentity identity(Handle handle) override;
    void setAccess(Handle handle, const std::optional<std::string>& like) override;
    [[nodiscard]] std::size_t write(
        Handle handle, std::span<const std::string_view> pieces) override;
    void sync(Handle handle) override;
    void close(Handle handle) override;
    void rename(const std::string& from, const std::string& to) override;
    void link(Handle handle, const std::string& to) override;
    void remove(const std::string& path) override;
    bool createDirectory(const std::string& path) override;
    [[nodiscard]] KestryCore::LockAttempt lockDirectory(const std::string& path) override;

private:
    template <class Call>
    auto patiently(Call call);
    void beginTurn();

    KestryCore::FileSystem& files_;
    KestryCore::Scheduler& scheduler_;
    std::chrono::milliseconds patience_;
    Signs signs_;
    QThreadPool thread_;
    /// When the calls of this turn have taken too long; nullopt before the first of them.
    std::optional<std::chrono::steady_clock::time_point> limit_;
    bool isTold_ = false; ///< In this turn.
    KestryCore::Timer turn_;
};

} // namespace Kestry
