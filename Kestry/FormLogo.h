#pragma once

#include <functional>
#include <stop_token>
#include <string>

namespace Kestry {

/// A picture as a logo, or why it cannot be one. One of the two is empty.
struct LogoResult {
    std::string logo{};    ///< The bytes of a PNG image.
    std::string failure{}; ///< One sentence.
};

/// What importing a logo needs.
struct LogoSource {
    /// Makes a logo, the bytes of a PNG image, of a picture file. Called beside the main thread.
    /// Throws the reason when there is no logo, and soon after it was told to stop. Empty: no logo
    /// can be imported.
    std::function<std::string(const std::string& path, const std::stop_token& stop)> import{};
    /// Calls `work` beside the main thread, and `done` on it afterwards.
    std::function<void(std::function<void()> work, std::function<void()> done)> runBeside{};
};

/// The logo that a form makes of a picture file, one at a time.
class FormLogo {
public:
    /// `finished` is called on the main thread, and never after this is destroyed.
    using Finished = std::function<void(const LogoResult& result)>;

    /// The source must outlive this.
    FormLogo(const LogoSource& source, Finished finished);
    FormLogo(const FormLogo&) = delete;
    FormLogo& operator=(const FormLogo&) = delete;
    ~FormLogo() { cancel(); }

    [[nodiscard]] bool isPossible() const { return source_.import && source_.runBeside; }
    [[nodiscard]] bool isRunning() const { return running_.stop_possible(); }
    /// Reads a file, in the place of one that is still read.
    void start(const std::string& path);
    /// Stops what runs, and drops its result.
    void cancel();

private:
    const LogoSource& source_;
    Finished finished_;
    std::stop_source running_{std::nostopstate}; ///< Without a state while nothing runs.
};

} // namespace Kestry
