#pragma once

#include <stop_token>
#include <string>
#include <string_view>

namespace Kestry {

/// Makes a logo of the bytes of a picture file, by the program `kestry-logo` at the path `program`.
/// Waits for it: a large picture takes some seconds. The result has passed `validateClientLogo`.
/// Throws LedgerError with the reason when there is no logo, and some other when it is stopped. It
/// can be called on any thread.
[[nodiscard]] std::string importedLogo(
    std::string_view picture, const std::string& program, const std::stop_token& stop = {});

} // namespace Kestry
