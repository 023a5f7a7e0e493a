#pragma once

#include <string>

#include "AppcastFeed.h"
#include "MemoryFileSystem.h"
#include "SigningKey.h"
#include "TestArchive.h"
#include "UpdateInstallation.h"
#include "UpdatePrefix.h"

namespace Kestry {

inline UpdateVersion testVersion(const std::string& text)
{
    return UpdateVersion::parse(text).value();
}

/// An installation in memory, of version 1.2.0, with a ledger beside it.
class InstalledPrefix {
public:
    InstalledPrefix()
    {
        for (const char* path : {"/home/kestry", "/home/kestry/bin", "/home/kestry/versions",
                 "/home/kestry/versions/1.2.0", "/home/kestry/versions/1.2.0/bin", "/home/data"}) {
            files.putDirectory(path);
        }
        files.put("/home/kestry/bin/kestry", "launcher");
        files.put("/home/kestry/versions/1.2.0/bin/kestry", "program 1.2.0");
        files.putLink("/home/kestry/current", "versions/1.2.0");
        files.put("/home/data/ledger.json", "ledger");
    }

    /// The version that a start begins, when that one is whole; else what is wrong.
    [[nodiscard]] std::string startable()
    {
        if (files.content("/home/kestry/bin/kestry") != "launcher") {
            return "no launcher";
        }
        if (files.content("/home/data/ledger.json") != "ledger") {
            return "the ledger was touched";
        }
        const std::string version = currentText();
        const std::string root = "/home/kestry/versions/" + version;
        if (files.content(root + "/bin/kestry") != "program " + version) {
            return "no program of " + version;
        }
        const bool isWhole = version == "1.2.0"
            || (files.content(root + "/lib/libkestry.so.1.0") == std::string(3000, 'l')
                && files.content(root + "/lib/libkestry.so.1") == "libkestry.so.1.0"
                && files.content(root + "/share/kestry/Info.json").value_or("").find(version)
                    != std::string::npos);
        return isWhole ? version : "half of " + version;
    }
    [[nodiscard]] std::string currentText()
    {
        const std::optional<std::string> target = files.content("/home/kestry/current");
        return target ? target->substr(target->find('/') + 1) : "nothing";
    }
    /// Whether what was before a trial is there to go back to.
    [[nodiscard]] bool canGoBack()
    {
        const auto trial = prefix.trial();
        return !trial
            || files.content(prefix.program(trial->previous))
            == "program " + trial->previous.text();
    }

    /// What the feed says of an archive that is signed with the key.
    [[nodiscard]] AppcastItem announce(const std::string& version, const std::string& archive) const
    {
        AppcastItem item{.version = testVersion(version), .shortVersion = version};
        item.url = "https://example.org/archive";
        item.bytes = static_cast<std::int64_t>(archive.size());
        item.signature = key.sign(archive);
        return item;
    }
    /// All that an update does to files, but for the network.
    void install(const AppcastItem& item, const std::string& archive)
    {
        const UpdatePrefix::Room room = prefix.makeRoom(item.version);
        const FileSystem::Handle handle = files.open(room.archive, KestryCore::FileUse::create);
        try {
            std::string_view rest = archive;
            while (!rest.empty()) {
                rest.remove_prefix(files.write(handle, std::span(&rest, 1)));
            }
        } catch (...) {
            closeQuietly(files, handle);
            throw;
        }
        files.close(handle);
        layDownUpdate(files, room, item, {key.publicKey(), testVersion("1.2.0")});
        prefix.switchTo(item.version);
    }
    void install(const std::string& version = "1.3.0")
    {
        const std::string archive =
            testArchive(versionEntries(version), archive_write_add_filter_zstd);
        install(announce(version, archive), archive);
    }

    using FileSystem = KestryCore::FileSystem;
    KestryCore::MemoryFileSystem files;
    UpdatePrefix prefix{files, "/home/kestry"};
    SigningKey key;
};

} // namespace Kestry
