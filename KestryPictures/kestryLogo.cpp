// Makes a logo of a picture: reads a picture file from standard input, and writes to standard
// output the logo, or a sentence that says why there is none. A decoder that crashes or runs wild
// on a damaged file takes its process with it, so this one does nothing else. LogoImport.h starts
// it.

#include <sys/resource.h>
#include <unistd.h>

#include <exception>
#include <string>

#include "LedgerError.h"
#include "LogoPicture.h"
#include "PictureFile.h"
#include "StandardStreams.h"

namespace {

void limit(int resource, rlim_t most)
{
    const rlimit both{most, most};
    (void)setrlimit(static_cast<__rlimit_resource>(resource), &both);
}

/// A picture of the largest size takes a third of each. What takes more is not what it says.
void limitWork()
{
    constexpr rlim_t gigabyte = rlim_t{1} << 30;
    limit(RLIMIT_AS, 2 * gigabyte);
    limit(RLIMIT_CPU, 30);
    limit(RLIMIT_CORE, 0);
}

/// Standard input, but no more of it than shows that it is too long.
std::string readInput()
{
    std::string bytes(KestryCore::maximumPictureBytes + 1, '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count = read(STDIN_FILENO, bytes.data() + length, bytes.size() - length);
        if (count <= 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

std::string answer()
{
    try {
        return Kestry::logoFromPicture(readInput());
    } catch (const KestryCore::LedgerError& refusal) {
        return refusal.what();
    }
}

} // namespace

int main()
{
    limitWork();
    try {
        return Kestry::writeAll(STDOUT_FILENO, answer()) == 0 ? 0 : 1;
    } catch (const std::exception&) {
        return 1; // Out of memory: no answer.
    }
}
