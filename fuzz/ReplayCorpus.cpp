#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

// Stands in for the fuzzing engine where there is none: feeds each file of a folder to the fuzzer
// once, whole and cut off at many places, so that the ordinary tests keep what fuzzing has found.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void feed(const std::string& bytes)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

void feedWholeAndCutOff(const std::string& bytes)
{
    constexpr std::size_t cuts = 64;
    feed(bytes);
    for (std::size_t cut = 0; cut < cuts; ++cut) {
        feed(bytes.substr(0, bytes.size() * cut / cuts));
    }
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "Usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    std::set<std::filesystem::path> paths;
    for (const auto& file : std::filesystem::directory_iterator(arguments[1])) {
        paths.insert(file.path());
    }
    for (const std::filesystem::path& path : paths) {
        std::printf("%s\n", path.c_str());
        std::fflush(stdout); // Should this file end the program, its name has been told.
        std::ifstream file(path, std::ios::binary);
        feedWholeAndCutOff({std::istreambuf_iterator<char>(file), {}});
    }
    if (paths.empty()) {
        std::fprintf(stderr, "There is no file in %s.\n", arguments[1]);
        return 1;
    }
    return 0;
}
