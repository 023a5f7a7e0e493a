#include "UpdateInstallation.h"

#include "UpdateArchive.h"
#include "UpdateContents.h"

namespace Kestry {

using namespace KestryCore;

void layDownUpdate(TreeFiles& files, const UpdatePrefix::Room& room, const AppcastItem& item,
    const UpdateTrust& trust)
{
    const std::string archive = readFile(files, room.archive);
    refuseUnless(static_cast<std::int64_t>(archive.size()) == item.bytes,
        "The new version was refused: it isn't as large as announced.");
    refuseUnless(isSignedBy(trust.publicKey, item.signature, archive),
        "The new version was refused: it isn't signed by those who make Kestry.");
    const UnpackedTree tree =
        withinMemory([&] { return unpackArchive(archive, files, room.directory); });
    requireAnnouncedVersion(files, room.directory, tree, item.version, trust.running);
    files.remove(room.archive);
}

} // namespace Kestry
