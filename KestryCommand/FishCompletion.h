#pragma once

#include <string_view>

namespace Kestry {

/// What follows the table in the completion script for fish.
extern const std::string_view fishCompletion;

} // namespace Kestry
