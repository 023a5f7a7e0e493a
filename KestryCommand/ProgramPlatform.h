#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Console.h"
#include "Date.h"
#include "Environment.h"
#include "FileSystem.h"
#include "LocalClient.h"
#include "LocalMessage.h"
#include "TimeStore.h"
#include "Uuid.h"

namespace Kestry {

/// What the program needs of the system. Functions that may be empty say so.
struct ProgramPlatform {
    KestryCore::FileSystem& files;
    Console& console;
    KestryCore::EnvironmentLookup environment;
    KestryCore::Clock now;
    std::function<void(double seconds)> sleep;
    /// Makes a logo of the bytes of a picture file. Throws LedgerError when that is not possible.
    std::function<std::string(std::string_view picture)> logoFromPicture;
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    /// Takes over a store that a command has finished with; everything in it is saved. A program
    /// that is about to end keeps it until then, because destroying a large ledger takes longer
    /// than reading it. When empty, the store is destroyed at once.
    std::function<void(std::unique_ptr<KestryCore::TimeStore>)> dispose{};
    /// Hands a command over to the application that has the data directory. When empty, commands
    /// are carried out on the files only.
    std::function<LocalReply(const LocalCommand&)> handOver{};
    /// Removes the access of other users to a directory of this user; true when they had some. When
    /// empty, permissions stay as they are.
    std::function<bool(const std::string& directory)> closeToOthers{};
};

} // namespace Kestry
