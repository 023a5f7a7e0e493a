#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace Kestry {

/// A picture as a logo, or why it cannot be one. One of the two is empty.
struct LogoResult {
    std::string logo{};    ///< The bytes of a PNG image.
    std::string failure{}; ///< One sentence.
};

/// What importing a logo needs.
struct LogoSource {
    /// Makes a logo from the bytes of a picture. Called beside the main thread. Empty: no logo can
    /// be imported.
    std::function<LogoResult(const std::string& picture)> normalise{};
    /// Calls `work` beside the main thread, and `done` on it afterwards.
    std::function<void(std::function<void()> work, std::function<void()> done)> runBeside{};
    /// Lets the user choose a picture, and calls `chosen` with its path; never when there is none.
    std::function<void(std::function<void(const std::string& path)> chosen)> chooseFile{};
};

/// Reads pictures from files as logos, one at a time.
class LogoImport {
public:
    /// The largest picture that is read, in bytes.
    static constexpr std::size_t maximumPictureBytes = 20'971'520;

    /// `finished` is called on the main thread, and never after the import is destroyed.
    using Finished = std::function<void(const LogoResult& result)>;

    /// The source must outlive the import.
    LogoImport(const LogoSource& source, Finished finished);

    [[nodiscard]] bool isPossible() const { return source_.normalise && source_.runBeside; }
    [[nodiscard]] bool isRunning() const { return running_ != nullptr; }
    /// Reads a file. The result of one that still runs is dropped.
    void start(const std::string& path);
    /// Drops the result of what runs.
    void cancel() { running_.reset(); }

private:
    const LogoSource& source_;
    Finished finished_;
    std::shared_ptr<bool> running_; ///< Null while nothing runs.
};

} // namespace Kestry
