#include "PatientFiles.h"

#include <future>
#include <memory>
#include <utility>

namespace Kestry {

using KestryCore::FileSystem;

PatientFiles::PatientFiles(
    FileSystem& files, KestryCore::Scheduler& scheduler, std::chrono::milliseconds patience)
    : files_(files), scheduler_(scheduler), patience_(patience)
{
    thread_.setMaxThreadCount(1);
}

void PatientFiles::tell(Signs signs)
{
    signs_ = std::move(signs);
}

void PatientFiles::beginTurn()
{
    if (limit_) {
        return;
    }
    limit_ = std::chrono::steady_clock::now() + patience_;
    turn_ = scheduler_.after(0.0, [this] {
        limit_.reset();
        if (std::exchange(isTold_, false) && signs_.over) {
            signs_.over();
        }
    });
}

template <class Call>
auto PatientFiles::patiently(Call call)
{
    if (!signs_.slow) {
        return call();
    }
    beginTurn();
    const auto task = std::make_shared<std::packaged_task<decltype(call())()>>(std::move(call));
    auto result = task->get_future();
    thread_.start([task] { (*task)(); });
    if (!isTold_ && result.wait_until(*limit_) == std::future_status::timeout) {
        isTold_ = true;
        signs_.slow();
    }
    return result.get();
}

std::string PatientFiles::applicationSupportDirectory() const
{
    return files_.applicationSupportDirectory();
}

std::optional<KestryCore::FileStatus> PatientFiles::status(const std::string& path)
{
    return patiently([&] { return files_.status(path); });
}

std::vector<std::string> PatientFiles::list(const std::string& directory)
{
    return patiently([&] { return files_.list(directory); });
}

FileSystem::Handle PatientFiles::open(const std::string& path, KestryCore::FileUse use)
{
    return patiently([&] { return files_.open(path, use); });
}

std::uint64_t PatientFiles::size(Handle handle)
{
    return patiently([&] { return files_.size(handle); });
}

std::size_t PatientFiles::read(Handle handle, char* buffer, std::size_t capacity)
{
    return patiently([&] { return files_.read(handle, buffer, capacity); });
}

KestryCore::FileIdentity PatientFiles::identity(Handle handle)
{
    return patiently([&] { return files_.identity(handle); });
}

void PatientFiles::setAccess(Handle handle, const std::optional<std::string>& like)
{
    patiently([&] { files_.setAccess(handle, like); });
}

std::size_t PatientFiles::write(Handle handle, std::span<const std::string_view> pieces)
{
    return patiently([&] { return files_.write(handle, pieces); });
}

void PatientFiles::sync(Handle handle)
{
    patiently([&] { files_.sync(handle); });
}

void PatientFiles::close(Handle handle)
{
    patiently([&] { files_.close(handle); });
}

void PatientFiles::rename(const std::string& from, const std::string& to)
{
    patiently([&] { files_.rename(from, to); });
}

void PatientFiles::link(Handle handle, const std::string& to)
{
    patiently([&] { files_.link(handle, to); });
}

void PatientFiles::remove(const std::string& path)
{
    patiently([&] { files_.remove(path); });
}

bool PatientFiles::createDirectory(const std::string& path)
{
    return patiently([&] { return files_.createDirectory(path); });
}

KestryCore::LockAttempt PatientFiles::lockDirectory(const std::string& path)
{
    return patiently([&] { return files_.lockDirectory(path); });
}

} // namespace Kestry
