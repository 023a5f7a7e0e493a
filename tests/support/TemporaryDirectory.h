#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace KestryCore {

/// A real, empty directory of the test's own, removed with everything in it at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        path_ = (std::filesystem::temp_directory_path() / "kestry-test-XXXXXX").string();
        if (mkdtemp(path_.data()) == nullptr) {
            throw std::runtime_error("No temporary directory could be made.");
        }
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(const std::string& name) const { return path_ + '/' + name; }

private:
    std::string path_;
};

/// An environment variable set, or unset, for as long as this lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name))
    {
        if (const char* before = std::getenv(name_.c_str())) {
            before_ = before;
        }
        set(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(before_); }

private:
    void set(const std::optional<std::string>& value) const
    {
        if (value) {
            setenv(name_.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> before_;
};

} // namespace KestryCore
