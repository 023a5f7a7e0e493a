#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "CouchServer.h"
#include "Task.h"

namespace Kestry {

/// How many documents are read at once.
struct CouchBodiesLimits {
    std::size_t rows = 200; ///< In one request, at first.
    /// Of fields altogether: when these are read, the rest of the names is left.
    std::size_t bytes = std::numeric_limits<std::size_t>::max();
};

struct CouchBodies {
    std::vector<CouchRow> rows;
    std::size_t asked = 0; ///< So many of the names, from the first on, were asked for.
};

/// Reads whole documents by name, in smaller groups where an answer would be too long. Each is as a
/// majority of the server's machines has it: never older than what the server has acknowledged. The
/// server must outlive the task.
[[nodiscard]] KestryCore::Task<CouchBodies> readBodies(
    CouchServer& server, std::vector<std::string> ids, CouchBodiesLimits limits);

/// Bytes of text and data in the fields of a document.
[[nodiscard]] std::size_t fieldBytes(const CouchDocument& document);

} // namespace Kestry
