#pragma once

#include "AppcastFeed.h"
#include "UpdatePrefix.h"

namespace Kestry {

/// What decides whether an archive is laid down.
struct UpdateTrust {
    UpdateKey publicKey{};
    UpdateVersion running;
};

/// Verifies the archive in a room and unpacks it there, in this order:
///
/// 1. It has as many bytes as announced. It is read once; the rest is about these bytes.
/// 2. The announced signature over all of them is by the owner of the key.
/// 3. It is unpacked, with nothing in it that leads out of its folder.
/// 4. The version in it is the one announced, and newer than the running one.
///
/// Then it is whole and on the disk. Throws LedgerError, in words for people; what lies in the room
/// then is for `UpdatePrefix::clear`. It takes seconds, and may run on another thread.
void layDownUpdate(KestryCore::TreeFiles& files, const UpdatePrefix::Room& room,
    const AppcastItem& item, const UpdateTrust& trust);

} // namespace Kestry
