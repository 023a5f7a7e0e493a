#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "Console.h"
#include "Date.h"
#include "Environment.h"
#include "FileSystem.h"
#include "LedgerError.h"
#include "LocalClient.h"
#include "LocalMessage.h"
#include "TimeStore.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// The store of a program that carries out commands of others, and what it takes from them. Files
/// that those name are read before and written afterwards, where they were typed.
struct LiveStore {
    KestryCore::TimeStore& store;
    /// The calendar of the time zone where the command was typed.
    std::function<KestryCore::ZoneCalendar(const std::string& locale)> systemCalendar;
    std::string dataDirectory; ///< As whoever typed the command names it.
};

/// The application has the data directory and can't be replaced by working on the files.
class DirectoryInUse : public KestryCore::LedgerError {
public:
    DirectoryInUse(const std::string& message, std::string holder)
        : LedgerError(message), holder_(std::move(holder))
    {
    }

    /// Who it is, as in "kestry (process 4711)"; empty when not known.
    [[nodiscard]] const std::string& holder() const { return holder_; }

private:
    std::string holder_;
};

/// What the program needs of the world.
struct ProgramPlatform {
    KestryCore::FileSystem& files;
    Console& console;
    KestryCore::EnvironmentLookup environment;
    KestryCore::Clock now;
    std::function<void(double seconds)> sleep;
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    /// Takes a store that a command is done with, all of it saved. A program that is about to end
    /// can leave it standing: taking a large ledger apart record by record takes longer than
    /// reading it. Without this it is taken apart.
    std::function<void(std::unique_ptr<KestryCore::TimeStore>)> dispose{};
    /// Hands a command over to the application that has the data directory, if one does. Without
    /// this nobody is asked.
    std::function<LocalReply(const LocalCommand&)> handOver{};
    /// Takes all access away from others to a directory of the user's own; true when they had some.
    /// Without this it stays as it is.
    std::function<bool(const std::string& directory)> closeToOthers{};
    /// The open store to work on, where that is not for this program to open.
    const LiveStore* live = nullptr;
    /// Takes a file that is not for this program to write. Without this it writes files by itself.
    std::function<void(FileToWrite)> keepFile{};
};

} // namespace Kestry
