#pragma once

#include <array>

namespace Kestry {

/// The shells for which there is a completion script.
enum class Shell { bash, zsh, fish };

/// Their names, in the order of the enumeration.
inline constexpr std::array shellNames{"bash", "zsh", "fish"};

} // namespace Kestry
