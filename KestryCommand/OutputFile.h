#pragma once

#include <string>
#include <string_view>

#include "LocalMessage.h"

namespace Kestry {

/// Where the bytes for a file went.
enum class FileWritten {
    beside,           ///< To a file or a stream of their own.
    asStandardOutput, ///< To the standard output, where nothing may follow them.
};

/// Writes a file that the user has named, as this process sees it.
///
/// An ordinary file is replaced whole or not at all: an existing one, which must be writable, keeps
/// its mode, its owner and its access control list as far as the system lets it; a new one gets
/// what the process gives to all its files. A symbolic link stays and its target is replaced.
/// A pipe, a terminal or another device that takes a stream gets the bytes as one, and so does a
/// descriptor of this process, as in `/dev/stdout`. The folder is looked up once: if
/// another one takes its path meanwhile, that one is not touched.
///
/// Refuses everything else, and in the ledger's folder every name that the store might use. Throws
/// a `LedgerError` with the reason.
FileWritten writeOutputFile(const FileToWrite& file, const std::string& ledgerDirectory);

/// Comma-separated values for a terminal: control characters are made visible.
[[nodiscard]] std::string shownCsv(std::string_view csv);

} // namespace Kestry
