#pragma once

#include <string_view>

namespace Kestry {

/// What follows the table in the completion script for zsh.
extern const std::string_view zshCompletion;

} // namespace Kestry
