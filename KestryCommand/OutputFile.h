#pragma once

#include <string>
#include <string_view>

#include "LocalMessage.h"

namespace Kestry {

/// What became of the bytes for a file.
enum class FileWritten {
    beside,           ///< They are in a file or a stream of their own.
    asStandardOutput, ///< They went where the standard output goes: nothing is to follow them.
};

/// Writes a file that the user has named, as this process sees it.
///
/// An ordinary file is replaced whole or not at all: an existing one, which must be writable, keeps
/// its mode, its owner and its access control list as far as the system lets it; a new one gets
/// what the process gives to all its files. A symbolic link stays and its target is replaced.
/// A pipe, a terminal or another device that takes a stream gets the bytes as one, and so does a
/// descriptor of this process, as in `/dev/stdout`. The folder is looked up once: whatever comes to
/// stand at its path meanwhile is not touched.
///
/// Refuses everything else, and in the ledger's folder all names that might be those of its own
/// files. Fails with a `LedgerError` that tells what stands in the way.
FileWritten writeOutputFile(const FileToWrite& file, const std::string& ledgerDirectory);

/// Comma-separated values as a terminal may show them: whatever could act on it is made visible.
[[nodiscard]] std::string shownCsv(std::string_view csv);

} // namespace Kestry
