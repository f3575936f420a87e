// The main of a fuzz target where libFuzzer isn't: each file of the folders and files named is
// handed to the target once. Status 1 when there was none.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

namespace {

void Replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> read{std::istreambuf_iterator<char>(file), {}};
    const std::vector<std::uint8_t> bytes(read.begin(), read.end());
    std::printf("%s: %zu bytes\n", path.c_str(), bytes.size());
    std::fflush(stdout); // What crashes is the last line.
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            Replay(argv[i]);
            ++count;
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            Replay(entry.path());
            ++count;
        }
    }
    return count > 0 ? 0 : 1;
}
