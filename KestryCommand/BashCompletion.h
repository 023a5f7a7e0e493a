#pragma once

#include <string_view>

namespace Kestry {

/// What follows the table in the completion script for bash.
extern const std::string_view bashCompletion;

} // namespace Kestry
