#include "PictureFile.h"

#include <algorithm>

#include "LedgerError.h"

namespace KestryCore {

void requirePictureSize(std::size_t bytes)
{
    if (bytes > maximumPictureBytes) {
        throw LedgerError("Choose an image smaller than 20 MB.");
    }
}

std::string readPictureFile(FileSystem& files, const std::string& path)
{
    constexpr std::size_t most = maximumPictureBytes + 1;
    constexpr std::size_t step = std::size_t{1024} * 1024;
    const OpenFile file(files, path);
    std::string bytes;
    std::size_t length = 0;
    while (length < most) {
        bytes.resize(std::min(length + step, most));
        const std::size_t count =
            files.read(file.handle(), bytes.data() + length, bytes.size() - length);
        if (count == 0) {
            break;
        }
        length += count;
    }
    requirePictureSize(length);
    bytes.resize(length);
    return bytes;
}

} // namespace KestryCore
