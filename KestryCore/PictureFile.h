#pragma once

#include <cstddef>
#include <string>

#include "FileSystem.h"

namespace KestryCore {

/// The largest picture file, in bytes, that a logo is made of.
inline constexpr std::size_t maximumPictureBytes = 20'971'520;

/// The words for bytes that are no picture, or that no decoder here can read.
inline constexpr const char* unreadablePicture =
    "This image could not be read. Choose a PNG, JPEG, or another supported image.";

/// Throws LedgerError for a picture file of more than `maximumPictureBytes`.
void requirePictureSize(std::size_t bytes);

/// Returns the content of a picture file. Reads at most one byte more than `maximumPictureBytes`,
/// and throws LedgerError when that byte is there. Throws FileError when the file can't be read.
[[nodiscard]] std::string readPictureFile(FileSystem& files, const std::string& path);

} // namespace KestryCore
