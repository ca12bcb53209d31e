// Runs a fuzzer over all files of the folders on the command line. Works with any compiler. If an
// input ends the program, the last name printed is the name of its file.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzzer.h"

int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::exists(argv[i])) continue;  // there are no regressions
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::printf("%s\n", entry.path().string().c_str());
            std::fflush(stdout);
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            Expect(!file.bad(), "the file can be read");
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++count;
        }
    }
    Expect(count > 0, "the folders contain inputs");
    std::printf("%d inputs\n", count);
    return 0;
}
