#pragma once

#include <chrono>
#include <stop_token>
#include <string>
#include <string_view>

namespace Kestry {

/// The path of a program of ours: `relativePath` from the folder of the running program's file.
/// Throws FileError when that file can't be found out.
[[nodiscard]] std::string programNear(std::string_view relativePath);

/// What ends a program before its own end.
struct HelperLimits {
    std::chrono::milliseconds most = std::chrono::minutes(1); ///< From its start, at work or not.
    std::stop_token stop{};                                   ///< At once, when this is requested.
};

/// Runs a program to its end, with `input` as its standard input, and returns what it has written
/// to its standard output. What it writes to standard error is dropped, and it
/// has no other file of this process. Returns an incomplete or
/// empty text when it crashes, or reaches a limit, which kills it. Throws FileError when it can't
/// be started, or when there is no room for its input. It can be called on several threads at a
/// time.
[[nodiscard]] std::string helperOutput(
    const std::string& program, std::string_view input, const HelperLimits& limits = {});

} // namespace Kestry
