#pragma once

#include <string>

#include "UpdateArchive.h"
#include "UpdateVersion.h"

namespace Kestry {

/// Makes sure that an unpacked tree is the version that was announced, and newer than the running
/// one, by what stands in the signed archive itself. So an older archive, signed long ago, is not
/// taken under a new name. Throws LedgerError, in words for people.
void requireAnnouncedVersion(KestryCore::FileSystem& files, const std::string& directory,
    const UnpackedTree& tree, const UpdateVersion& announced, const UpdateVersion& running);

} // namespace Kestry
