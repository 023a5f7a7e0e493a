#pragma once

#include <string>
#include <string_view>

namespace Kestry {

/// Makes a logo, as `validateClientLogo` wants it, of the bytes of a picture file: the first image,
/// upright, at most 256 pixels wide and high, or 128 when the file of that is too large; a PNG that
/// tells nothing else about the picture. Throws LedgerError when this is not possible. It can be
/// called on several threads at a time.
[[nodiscard]] std::string logoFromPicture(std::string_view bytes);

} // namespace Kestry
