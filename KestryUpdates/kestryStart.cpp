#include <cstdio>
#include <exception>

#include "HelperProgram.h"
#include "PosixFileSystem.h"
#include "StartGuard.h"

// What people start in an installation that updates itself: PREFIX/bin/kestry.
int main(int argc, char* argv[])
{
    try {
        KestryCore::PosixFileSystem files;
        const std::string root =
            KestryCore::parentPath(KestryCore::parentPath(Kestry::programNear("kestry")));
        Kestry::UpdatePrefix prefix(files, root);
        return Kestry::startCurrentVersion(prefix, {argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
